#include "tools/format/reference.h"

#include "tools/format/document.h"
#include "tools/format/values.h"

#include <algorithm>
#include <sstream>

namespace dcmformat {

namespace {

std::string coded(const std::string &text)
{
    return "`" + text + "`";
}

std::string linked(const Place &section)
{
    return "[" + section.path + "](#" + anchorOf(section.path) + ")";
}

std::string tag(const std::string &name, const std::string &content)
{
    return "<" + name + ">" + content + "</" + name + ">";
}

std::string howMany(const Place &place)
{
    const size_t most = place.element->most;
    if (most == dcm::kAnyNumber)
        return "any number";
    return most == 1 ? "one" : "at most " + std::to_string(most);
}

std::string howOften(const Place &place)
{
    const size_t most = place.element->most;
    if (most == dcm::kAnyNumber)
        return "any number of times";
    return most == 1 ? "once" : "at most " + std::to_string(most) + " times";
}

// "one of the words", "a number".
std::string article(const std::string &value)
{
    return value.compare(0, 7, "number ") == 0 ? "a " + value : value;
}

// The value of an element in the table of its parent.
std::string valueOf(const Place &place)
{
    if (place.isSection())
        return howMany(place) + "; see " + linked(*place.described);
    if (!place.isList())
        return describe(place, place.element->content) + (place.element->most == 1 ? "" : "; " + howMany(place));
    const Place &item = *place.children.front();
    return coded("<" + item.name + ">") + ", " + howMany(item) + ", each " +
           article(describe(item, item.element->content));
}

Row rowOf(const Place &place, const Prose &prose)
{
    const std::string name = coded("<" + place.name + ">");
    if (place.isSection()) {
        // The element's own section has the remaining facts.
        const std::string &meaning = prose.of(place.described->path).meaning;
        const size_t end = meaning.find(". ");
        std::string first = meaning.substr(0, end == std::string::npos ? end : end + 1);
        std::replace(first.begin(), first.end(), '\n', ' ');
        return {name, valueOf(place), "", first.substr(0, first.find(". ")), "", ""};
    }
    const Entry &entry = prose.of(place.path);
    return {name, valueOf(place), entry.leftOut, entry.meaning, entry.wrong, coded(exampleOf(place, entry))};
}

Block attributeTable(const Place &section, const Prose &prose)
{
    Block table = {Block::Kind::table, "Attribute"};
    for (size_t i = 0; i < section.element->attributeCount; i++) {
        const dcm::Attribute &attribute = section.element->attributes[i];
        const Entry &entry = prose.of(attributeKey(section, attribute));
        table.rows.push_back({coded(attribute.name), describe(section, attribute.content),
                              attribute.need == dcm::Need::required ? "required" : entry.leftOut, entry.meaning,
                              entry.wrong, coded(std::string(attribute.name) + "=\"" + entry.example + "\"")});
    }
    return table;
}

Block elementTable(const Place &section, const Prose &prose)
{
    Block table = {Block::Kind::table, "Element"};
    for (const auto &child : section.children)
        table.rows.push_back(rowOf(*child, prose));
    return table;
}

std::string parentsOf(const Tree &tree, const Place &section)
{
    std::string parents;
    for (const Place *place : tree.placesOf(section))
        if (place->parent != nullptr)
            parents +=
                (parents.empty() ? "" : ", ") + (place->parent->path == "device" ? "`device`" : linked(*place->parent));
    if (parents.empty())
        return "The root of a file.";
    return "Occurs in " + parents + ", " + howOften(section) + ".";
}

void addParagraphs(Document &document, const std::string &text)
{
    for (Block &block : readBlocks(text))
        document.push_back(std::move(block));
}

void addSection(Document &document, const Tree &tree, const Place &section, const Prose &prose)
{
    const Entry &entry = prose.of(section.path);
    document.push_back({Block::Kind::heading, section.path, 3});
    addParagraphs(document, entry.meaning);
    std::string where = parentsOf(tree, section);
    if (section.element->content.kind != dcm::Kind::none)
        where += " Text: " + describe(section, section.element->content) + ".";
    if (!entry.wrong.empty())
        where += " Wrong: " + entry.wrong;
    document.push_back({Block::Kind::paragraph, where});
    if (section.element->attributeCount > 0)
        document.push_back(attributeTable(section, prose));
    if (!section.children.empty())
        document.push_back(elementTable(section, prose));
    document.push_back({Block::Kind::paragraph, "Example:"});
    document.push_back({Block::Kind::code, entry.example});
}

std::string listOf(const std::vector<std::string> &words)
{
    std::string text;
    for (const std::string &word : words)
        text += (text.empty() ? "" : ", ") + coded(word);
    return text + ".";
}

Document makeReference(const Tree &tree, const Prose &prose, const std::string &introduction)
{
    Document document = readBlocks(introduction);
    document.push_back({Block::Kind::heading, "Elements", 2});
    document.push_back(
        {Block::Kind::paragraph,
         "An element is identified by its path below `device`. One that occurs in several places is described once, under the shortest of its paths."});
    for (const Place *section : tree.sections())
        addSection(document, tree, *section, prose);

    document.push_back({Block::Kind::heading, "Words", 2});
    for (const NamedVocabulary &vocabulary : vocabularies()) {
        document.push_back({Block::Kind::heading, vocabulary.title, 3});
        addParagraphs(document, prose.of("words " + vocabulary.name).meaning);
        document.push_back({Block::Kind::paragraph, listOf(wordsOf(*vocabulary.words))});
    }
    document.push_back({Block::Kind::heading, "LED states", 3});
    document.push_back({Block::Kind::paragraph, "The type of an LED determines its states."});
    for (const LedStates &states : ledStates())
        document.push_back({Block::Kind::item, listOf(states.types).substr(0, listOf(states.types).size() - 1) + ": " +
                                                   listOf(states.words)});
    return document;
}

} // namespace

std::string exampleOf(const Place &place, const Entry &entry)
{
    if (place.isSection())
        return entry.example;
    if (!place.isList())
        return tag(place.name, entry.example);
    std::istringstream values(entry.example);
    std::string items;
    for (std::string value; values >> value;)
        items += tag(place.children.front()->name, value);
    return tag(place.name, items);
}

namespace {

const Place *childOf(const Place &place, const std::string &name)
{
    for (const auto &child : place.children)
        if (child->name == name)
            return child.get();
    return nullptr;
}

const dcm::Attribute *attributeOf(const Place &place, const std::string &name)
{
    for (size_t i = 0; i < place.element->attributeCount; i++)
        if (name == place.element->attributes[i].name)
            return &place.element->attributes[i];
    return nullptr;
}

// The key of an element's entry.
std::string keyOf(const Place &place)
{
    if (place.isSection() || place.parent == nullptr)
        return place.described->path;
    // The value of a list has no entry of its own.
    const Place &holder = place.parent->isList() ? *place.parent : place;
    return holder.parent->described->path + "/" + holder.name;
}

// Whether a path ends with the names of another.
bool endsWith(const std::string &path, const std::string &end)
{
    if (end.size() >= path.size())
        return path == end;
    const size_t before = path.size() - end.size() - 1;
    return (path[before] == '/' || path[before] == '@') && path.compare(before + 1, end.size(), end) == 0;
}

// The target of a path below a root. For an attribute, `place` is its element.
struct Found {
    const Place *place = nullptr;
    const dcm::Attribute *attribute = nullptr;
};

Found find(const Place &root, const std::string &path)
{
    std::string names = path;
    std::replace(names.begin(), names.end(), '@', '/');
    std::istringstream steps(names);
    Found found = {&root};
    for (std::string name; std::getline(steps, name, '/');) {
        if (found.attribute != nullptr)
            return {};
        const Place *child = childOf(*found.place, name);
        const dcm::Attribute *attribute = attributeOf(*found.place, name);
        if (child == nullptr && attribute == nullptr)
            return {};
        if (child != nullptr)
            found.place = child;
        else
            found.attribute = attribute;
    }
    return found;
}

Found findBelow(const Tree &tree, const std::string &path)
{
    if (path == tree.device->name)
        return {tree.device.get()};
    const std::string vm = tree.vm->name;
    if (path == vm)
        return {tree.vm.get()};
    const bool isOfVm = path.compare(0, vm.size(), vm) == 0 && (path[vm.size()] == '/' || path[vm.size()] == '@');
    return isOfVm ? find(*tree.vm, path.substr(vm.size() + 1)) : find(*tree.device, path);
}

// Adds a row of a section's table as a list.
void addRow(Document &document, const Row &row, const dcm::Content &content)
{
    addParagraphs(document, row.meaning);
    const auto add = [&](const std::string &title, const std::string &text) {
        if (!text.empty())
            document.push_back({Block::Kind::item, title + ": " + text});
    };
    add("value", row.value);
    if (content.kind == dcm::Kind::keyword) {
        add("words", listOf(wordsOf(content)));
        add("their values", "dcm words " + nameOf(content.vocabulary).name);
    }
    if (content.kind == dcm::Kind::ledState)
        add("words", "dcm words led-state");
    if (row.leftOut == "required")
        document.push_back({Block::Kind::item, row.leftOut});
    else
        add("left out", row.leftOut);
    add("wrong", row.wrong);
    add("example", row.example);
}

} // namespace

std::vector<std::string> referenceKeys(const Tree &tree)
{
    std::vector<std::string> keys;
    for (const Place *section : tree.sections()) {
        keys.push_back(section->path);
        for (size_t i = 0; i < section->element->attributeCount; i++)
            keys.push_back(attributeKey(*section, section->element->attributes[i]));
        for (const auto &child : section->children)
            if (!child->isSection())
                keys.push_back(child->path);
    }
    return keys;
}

std::string keyOfPath(const Tree &tree, const std::string &path)
{
    const std::string device = tree.device->name + "/";
    std::string below = path.substr(path.find_first_not_of('/') == std::string::npos ? 0 : path.find_first_not_of('/'));
    if (below.compare(0, device.size(), device) == 0)
        below.erase(0, device.size());
    const Found found = findBelow(tree, below);
    if (found.place == nullptr || below.empty())
        return "";
    return found.attribute != nullptr ? attributeKey(*found.place->described, *found.attribute) : keyOf(*found.place);
}

std::vector<std::string> keysOfEnd(const Tree &tree, const std::string &end)
{
    std::vector<std::string> keys;
    const auto add = [&](const std::string &path, const std::string &key) {
        if (endsWith(path, end) && std::find(keys.begin(), keys.end(), key) == keys.end())
            keys.push_back(key);
    };
    for (const Place *root : {static_cast<const Place *>(tree.device.get()), static_cast<const Place *>(tree.vm.get())})
        forEach(*root, [&](const Place &place) {
            add(place.path, keyOf(place));
            for (size_t i = 0; i < place.element->attributeCount; i++)
                add(attributeKey(place, place.element->attributes[i]),
                    attributeKey(*place.described, place.element->attributes[i]));
        });
    return keys;
}

Summary summaryOf(const Tree &tree, const Prose &prose, const std::string &key)
{
    std::string meaning = prose.of(key).meaning;
    std::replace(meaning.begin(), meaning.end(), '\n', ' ');
    meaning.erase(std::min(meaning.find(". "), meaning.size()));
    meaning.erase(meaning.find_last_not_of('.') + 1);
    const Found found = findBelow(tree, key);
    if (found.attribute == nullptr && found.place->isSection())
        return {plainText(meaning), ""};
    const dcm::Content &content = found.attribute != nullptr ? found.attribute->content
                                  : found.place->isList()    ? found.place->children.front()->element->content
                                                             : found.place->element->content;
    std::string value = plainText(describe(*found.place, content));
    if (content.kind == dcm::Kind::keyword && wordsOf(content).size() > kFewWords)
        value += "; dcm words " + nameOf(content.vocabulary).name;
    return {plainText(meaning), value};
}

Document referenceEntry(const Tree &tree, const Prose &prose, const std::string &key)
{
    const Found found = findBelow(tree, key);
    Document document;
    if (found.attribute == nullptr && found.place->isSection()) {
        addSection(document, tree, *found.place, prose);
        return document;
    }
    document.push_back({Block::Kind::heading, key, 3});
    if (found.attribute == nullptr) {
        const Place &item = found.place->isList() ? *found.place->children.front() : *found.place;
        addRow(document, rowOf(*found.place, prose), item.element->content);
        return document;
    }
    for (const Row &row : attributeTable(*found.place, prose).rows)
        if (row.name == coded(found.attribute->name))
            addRow(document, row, found.attribute->content);
    return document;
}

std::string markdownReference(const Tree &tree, const Prose &prose, const std::string &introduction)
{
    return "<!-- Written by \"./dev reference\" from the library's tables and docs/format/: change those. -->\n\n"
           "# The format of descriptions\n\n" +
           toMarkdown(makeReference(tree, prose, introduction));
}

std::string manPage(const Tree &tree, const Prose &prose, const std::string &introduction)
{
    return R"(.\" Written by dcm-format from the library's tables and docs/format/: change those.
.Dd November 21, 2026
.Dt DCM-DESCRIPTION 5
.Os
.Sh NAME
.Nm dcm-description
.Nd format of the files that describe a network element's hardware
.Sh DESCRIPTION
)" + toMdoc(makeReference(tree, prose, introduction)) +
           R"(.Sh FILES
.Bl -tag -width Ds
.It Pa /etc/zorconf/device/device.xml
The device description that queries read unless they are given another.
.It Pa /etc/zorconf/device/vm\-ID.xml
The panel ports of a virtual machine.
.El
.Sh SEE ALSO
.Xr dcm 1 ,
.Xr dcm 3
)";
}

} // namespace dcmformat
