#include "tools/format/prose.h"

#include "tools/format/values.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <stdexcept>

namespace dcmformat {

namespace {

// The keys that a key with "{a,b}" in it abbreviates.
std::vector<std::string> keysOf(const std::string &pattern)
{
    const size_t open = pattern.find('{');
    if (open == std::string::npos)
        return {pattern};
    const size_t close = pattern.find('}', open);
    if (close == std::string::npos)
        throw std::runtime_error("[" + pattern + "]: no closing brace");
    std::vector<std::string> keys;
    std::istringstream choices(pattern.substr(open + 1, close - open - 1));
    for (std::string choice; std::getline(choices, choice, ',');)
        for (const std::string &key : keysOf(pattern.substr(0, open) + choice + pattern.substr(close + 1)))
            keys.push_back(key);
    return keys;
}

bool beginsWith(const std::string &text, const std::string &beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

std::string trimmed(const std::string &text)
{
    const size_t first = text.find_first_not_of(" \n");
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \n") - first + 1);
}

// Lines of an example that is an element keep their layout, without the 4 blanks before each.
std::string unindented(const std::string &example)
{
    std::istringstream lines(example);
    std::string text;
    for (std::string line; std::getline(lines, line);)
        text += (beginsWith(line, "    ") ? line.substr(4) : trimmed(line)) + "\n";
    return trimmed(text);
}

} // namespace

Prose::Prose(const std::string &text)
{
    static const std::string kParts[] = {"left out:", "wrong:", "example:"};
    std::istringstream lines(text);
    std::string key;
    Entry entry;
    std::string *part = nullptr;
    const auto finish = [&] {
        if (key.empty())
            return;
        for (std::string *field : {&entry.meaning, &entry.leftOut, &entry.wrong})
            *field = trimmed(*field);
        entry.example = unindented(entry.example);
        for (const std::string &single : keysOf(key))
            add(single, entry);
    };
    for (std::string line; std::getline(lines, line);) {
        if (beginsWith(line, "#"))
            continue;
        if (beginsWith(line, "[")) {
            finish();
            key = line.substr(1, line.find(']') - 1);
            entry = {};
            part = &entry.meaning;
            continue;
        }
        std::string *const fields[] = {&entry.leftOut, &entry.wrong, &entry.example};
        for (size_t i = 0; i < std::size(kParts); i++)
            if (beginsWith(line, kParts[i])) {
                part = fields[i];
                line.erase(0, kParts[i].size());
            }
        if (part != nullptr)
            *part += line + "\n";
        else if (!line.empty())
            throw std::runtime_error("text in front of the first key: " + line);
    }
    finish();
}

void Prose::add(const std::string &key, const Entry &entry)
{
    if (!entries_.emplace(key, entry).second)
        throw std::runtime_error("[" + key + "]: there are two");
}

const Entry &Prose::of(const std::string &key) const
{
    const auto found = entries_.find(key);
    if (found == entries_.end())
        throw std::runtime_error("[" + key + "]: there is none");
    return found->second;
}

std::vector<std::string> Prose::faults(const Tree &tree) const
{
    std::vector<std::string> faults;
    std::set<std::string> known;
    const auto expect = [&](const std::string &key, bool isOptional, bool hasExample) {
        known.insert(key);
        const auto found = entries_.find(key);
        if (found == entries_.end()) {
            faults.push_back("[" + key + "]: there is none");
            return;
        }
        const Entry &entry = found->second;
        if (entry.meaning.empty())
            faults.push_back("[" + key + "]: no meaning");
        if (isOptional && entry.leftOut.empty())
            faults.push_back("[" + key + "]: does not say what holds where it is left out");
        if (!isOptional && !entry.leftOut.empty())
            faults.push_back("[" + key + "]: is not left out");
        if (hasExample == entry.example.empty())
            faults.push_back("[" + key + "]: " + (hasExample ? "no example" : "needs no example"));
    };
    for (const Place *section : tree.sections()) {
        expect(section->path, false, true);
        for (size_t i = 0; i < section->element->attributeCount; i++) {
            const dcm::Attribute &attribute = section->element->attributes[i];
            expect(attributeKey(*section, attribute), attribute.need == dcm::Need::optional, true);
        }
        for (const auto &child : section->children)
            if (!child->isSection())
                expect(child->path, child->element->most == 1, true);
    }
    for (const NamedVocabulary &vocabulary : vocabularies())
        expect("words " + vocabulary.name, false, false);
    for (const auto &keyed : entries_)
        if (known.count(keyed.first) == 0)
            faults.push_back("[" + keyed.first + "]: there is nothing of this name");
    return faults;
}

std::string attributeKey(const Place &place, const dcm::Attribute &attribute)
{
    return place.path + "@" + attribute.name;
}

std::string readFile(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

} // namespace dcmformat
