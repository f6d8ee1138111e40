#include "tools/format/coverage.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace dcmformat {

namespace {

struct Question {
    const char *name;
    const char *heading;
};

constexpr Question kQuestions[] = {
    {"missing", "left out"},
    {"zero", "0, empty or unknown"},
    {"limit", "at or beyond its limit"},
    {"contradicts", "contradicts another"},
    {"repeats", "repeated"},
    {"absent", "names what does not exist"},
    {"unnamed", "named by nothing"},
};

const char *wordOf(dcm::Kind kind)
{
    constexpr const char *words[] = {"none",    "number",     "count",   "id",   "keyword", "ledState",
                                     "bitList", "numberList", "typeIds", "text", "ledName", "source"};
    static_assert(std::size(words) == static_cast<size_t>(dcm::Kind::source) + 1);
    return words[static_cast<size_t>(kind)];
}

void addPlaces(const Place &place, std::vector<CoveredPlace> &places)
{
    const dcm::Element &element = *place.element;
    places.push_back({place.path, {element.most == 1 ? "element" : "several", wordOf(element.content.kind)}});
    if (!place.isDescribedHere())
        return;
    for (size_t i = 0; i < element.attributeCount; i++) {
        const dcm::Attribute &attribute = element.attributes[i];
        CoveredPlace covered = {place.path + "@" + attribute.name, {"attribute", wordOf(attribute.content.kind)}};
        if (attribute.need == dcm::Need::required)
            covered.kinds.insert("required");
        places.push_back(covered);
    }
    for (const auto &child : place.children)
        addPlaces(*child, places);
}

std::string cellOf(const std::string &answer)
{
    if (answer[0] == '-')
        return "*" + answer.substr(1) + "*";
    std::string cell;
    for (const std::string &rule : Coverage::rulesIn(answer))
        cell.append(cell.empty() ? "[" : ", [").append(rule).append("](").append(rule).append(".md)");
    return cell;
}

} // namespace

std::vector<CoveredPlace> coveredPlaces(const Tree &tree)
{
    std::vector<CoveredPlace> places;
    for (const auto &child : tree.device->children)
        addPlaces(*child, places);
    addPlaces(*tree.vm, places);
    return places;
}

const std::vector<std::string> &coverageQuestions()
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        for (const Question &question : kQuestions)
            all.emplace_back(question.name);
        return all;
    }();
    return names;
}

bool Coverage::Line::matches(const CoveredPlace &place) const
{
    if (pattern[0] == ':')
        return place.kinds.count(pattern.substr(1)) != 0;
    const size_t begin = place.path.size() - std::min(place.path.size(), pattern.size());
    return place.path.substr(begin) == pattern && (begin == 0 || place.path[begin - 1] == '/');
}

Coverage::Coverage(const std::string &text)
{
    std::istringstream file(text);
    for (std::string written; std::getline(file, written);) {
        std::istringstream words(written);
        std::string word;
        if (!(words >> word) || word[0] == '#')
            continue;
        if (word == "=") {
            std::string reason;
            words >> word >> std::ws;
            std::getline(words, reason);
            reasons_.emplace_back(word, reason);
            continue;
        }
        Line line = {word, {}};
        while (words >> word) {
            const size_t equals = std::min(word.find('='), word.size() - 1);
            line.answers[word.substr(0, equals)] = word.substr(equals + 1);
        }
        lines_.push_back(line);
    }
}

std::string Coverage::answer(const CoveredPlace &place, const std::string &question) const
{
    std::string last;
    for (const Line &line : lines_)
        if (const auto found = line.answers.find(question); found != line.answers.end() && line.matches(place))
            last = found->second;
    return last;
}

std::vector<std::string> Coverage::rulesIn(const std::string &answer)
{
    std::vector<std::string> rules;
    std::istringstream names(answer[0] == '-' ? "" : answer);
    for (std::string name; std::getline(names, name, '+');)
        rules.push_back(name);
    return rules;
}

std::string coveragePage(const Tree &tree, const Coverage &coverage)
{
    std::string page =
        "<!-- Written by \"./dev reference\" from coverage.txt and the library's tables: change those. -->\n\n"
        "# Rules by element and attribute\n\n"
        "For each element and attribute of a description: the rules that report what may be wrong there, or "
        "why no rule is\nneeded. What may be in several places is listed once, as in the reference of the "
        "format.\n\n";
    for (const auto &[name, reason] : coverage.reasons())
        page.append("- *").append(name).append("*: ").append(reason).append("\n");
    page += "\n| Place |";
    std::string rule = "\n|---|";
    for (const Question &question : kQuestions) {
        page += std::string(" ") + question.heading + " |";
        rule += "---|";
    }
    page += rule + "\n";
    for (const CoveredPlace &place : coveredPlaces(tree)) {
        page += "| `" + place.path + "` |";
        for (const Question &question : kQuestions)
            page += " " + cellOf(coverage.answer(place, question.name)) + " |";
        page += "\n";
    }
    return page;
}

} // namespace dcmformat
