#include "tools/dcm/check/check.h"

#include "card/card.h"
#include "common/bits.h"
#include "frame/frame.h"
#include "slot/slot.h"
#include "tools/dcm/check/format_lookup.h"
#include "tools/dcm/check/query_failures.h"
#include "vm/vm.h"

#include <libxml/tree.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace dcmtool {

// ---- The format -----------------------------------------------------------------------------------------------------

const std::vector<dcm::NamedElement> &deviceChildren()
{
    static const std::vector<dcm::NamedElement> children = {
        {dcm::kFrameName, &dcm::kFrameElement},
        {dcm::kSlotName, &dcm::kSlotElement},
        {dcm::kCardName, &dcm::kCardElement},
    };
    return children;
}

const dcm::NamedElement &rowOf(RecordKind kind)
{
    static const dcm::NamedElement vm = {dcm::kVmName, &dcm::kVmElement};
    return kind == RecordKind::vm ? vm : deviceChildren()[static_cast<size_t>(kind)];
}

size_t findRow(const dcm::Element &format, const char *name, size_t from)
{
    for (size_t i = 0; i < format.childCount; i++) {
        const size_t row = from + i < format.childCount ? from + i : from + i - format.childCount;
        if (std::strcmp(format.children[row].name, name) == 0)
            return row;
    }
    return format.childCount;
}

const dcm::Attribute *findAttribute(const dcm::Element &format, const char *name)
{
    for (size_t i = 0; i < format.attributeCount; i++)
        if (std::strcmp(format.attributes[i].name, name) == 0)
            return &format.attributes[i];
    return nullptr;
}

const dcm::Attribute *findAttribute(const dcm::Element &format, dcm::Kind kind)
{
    for (size_t i = 0; i < format.attributeCount; i++)
        if (format.attributes[i].content.kind == kind)
            return &format.attributes[i];
    return nullptr;
}

const dcm::Attribute *idAttribute(const dcm::Element &format)
{
    const dcm::Attribute *id = findAttribute(format, dcm::Kind::id);
    return id != nullptr ? id : findAttribute(format, dcm::Kind::bitList);
}

std::vector<uint32_t> idsOf(Node element, const dcm::Element &format)
{
    const dcm::Attribute *id = idAttribute(format);
    if (id == nullptr)
        return {};
    const dcm::Text text = dcm::Text::attribute(element, id->name, {"dcm"});
    if (!text)
        return {};
    return id->content.kind == dcm::Kind::id ? std::vector<uint32_t>{text.number()}
                                             : numbersOf(text.c_str(), id->content);
}

std::vector<uint32_t> numbersOf(const char *list, const dcm::Content &content)
{
    uint8_t bits[DCM_PANEL_IF_MAX / 8] = {};
    static_cast<void>(dcmStr2BitList(list, 1, static_cast<uint32_t>(content.limit), bits, sizeof bits));
    std::vector<uint32_t> numbers;
    for (uint32_t bit = 0; bit < content.kept; bit++)
        if (dcm::_dcmBitTest(bits, bit) != 0)
            numbers.push_back(bit + 1);
    return numbers;
}

const dcm::Element *formatOf(Node element)
{
    const Node parent = element->parent;
    if (parent == nullptr || parent->type != XML_ELEMENT_NODE)
        return dcm::isNamed(element, dcm::kVmName) ? &dcm::kVmElement : nullptr;
    if (parent->parent == nullptr || parent->parent->type != XML_ELEMENT_NODE) {
        if (!dcm::isNamed(parent, dcm::kVmName)) {
            for (const dcm::NamedElement &child : deviceChildren())
                if (dcm::isNamed(element, child.name))
                    return child.element;
            return nullptr;
        }
    }
    const dcm::Element *format = formatOf(parent);
    if (format == nullptr)
        return nullptr;
    const size_t row = findRow(*format, dcm::nameOf(element));
    return row < format->childCount ? format->children[row].element : nullptr;
}

const dcm::Attribute *Spot::attribute(const char *attributeName) const
{
    return findAttribute(*format, attributeName);
}

const std::vector<uint32_t> &Spot::ids() const
{
    if (!readIds)
        readIds = idsOf(node, *format);
    return *readIds;
}

// ---- Paths ----------------------------------------------------------------------------------------------------------

namespace {

// An element among others of its kind goes by its first attribute.
std::string stepOf(Node element)
{
    std::string step = shortened(dcm::nameOf(element));
    const dcm::Element *format = formatOf(element);
    if (format == nullptr || format->most == 1 || format->attributeCount == 0)
        return step;
    const dcm::Text id = dcm::Text::attribute(element, format->attributes[0].name, {"dcm"});
    if (id && *id.c_str() != '\0')
        step.append(" ").append(shortened(id.c_str()));
    // A card has a second one.
    if (format == &dcm::kCardElement) {
        const dcm::Text mode = dcm::Text::attribute(element, format->attributes[1].name, {"dcm"});
        if (mode && mode.number() != 0)
            step.append(" ").append(format->attributes[1].name).append(" ").append(shortened(mode.c_str()));
    }
    return step;
}

} // namespace

std::string pathOf(Node element)
{
    const Node parent = element->parent;
    const bool isBelowRoot = parent != nullptr && parent->type == XML_ELEMENT_NODE;
    if (!isBelowRoot || (dcm::isNamed(parent, dcm::kDeviceName) && parent->parent->type != XML_ELEMENT_NODE))
        return stepOf(element);
    return pathOf(parent) + "/" + stepOf(element);
}

// ---- Texts of the file ----------------------------------------------------------------------------------------------

std::string shortened(std::string_view text, size_t most)
{
    if (text.size() <= most)
        return std::string(text);
    const auto isInCharacter = [&](size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80; };
    while (most > 0 && isInCharacter(most))
        most--;
    return std::string(text.substr(0, most)) + "...";
}

std::string quoted(std::string_view text)
{
    return "'" + shortened(text) + "'";
}

// ---- Findings -------------------------------------------------------------------------------------------------------

namespace {

constexpr size_t kLongestText = 1000; // of a finding, whose parts are cut where they are quoted

bool isBefore(const Finding &one, const Finding &other)
{
    return std::pair(one.span.begin, one.order) < std::pair(other.span.begin, other.order);
}

} // namespace

Findings::Found &Findings::foundAt(Node element)
{
    if (!apart_.empty())
        if (const auto apart = apart_.find({running_, element}); apart != apart_.end())
            return apart->second;
    return found_[running_];
}

// Whether a check that says nothing where the query fails for the very fault may be about such a place.
bool Findings::isToldAt(Node element) const
{
    if (!running_->look.isOfIgnoredFaults)
        return false;
    const auto next = told_.lower_bound({element, 0});
    return next != told_.end() && next->first == element;
}

bool Findings::counts(Node element)
{
    Found &found = foundAt(element);
    if (found.kept.size() < kMostOfCheck || isToldAt(element))
        return false;
    found.count++;
    return true;
}

template <class SpanOf> Finding &Findings::add(Node element, const SpanOf &spanOf, const std::string &text)
{
    counted_ = {};
    if (isToldAt(element) && told_.count({element, spanOf().begin}) != 0)
        return counted_;
    Found &found = foundAt(element);
    found.count++;
    if (running_ == &kQueryFails)
        told_.emplace(element, spanOf().begin);
    if (found.kept.size() >= kMostOfCheck)
        return counted_;
    Finding finding;
    finding.check = running_;
    finding.severity = running_->severity;
    finding.element = element;
    finding.span = spanOf();
    finding.path = element != nullptr ? pathOf(element) : "";
    finding.text = shortened(text, kLongestText);
    finding.order = order_++;
    found.kept.push_back(std::move(finding));
    return found.kept.back();
}

Finding &Findings::at(Node element, Span span, const std::string &text)
{
    return add(
        element, [&] { return span; }, text);
}

Finding &Findings::at(const Value &value, const std::string &text)
{
    return value.attribute != nullptr ? atValue(value.spot.node, value.attribute->name, text)
                                      : atContent(value.spot.node, text);
}

Finding &Findings::atName(Node element, const std::string &text)
{
    return add(
        element, [&] { return file_.nameSpan(element); }, text);
}

Finding &Findings::atAttribute(Node element, const char *attribute, const std::string &text)
{
    return add(
        element, [&] { return file_.attributeSpan(element, attribute); }, text);
}

Finding &Findings::atValue(Node element, const char *attribute, const std::string &text)
{
    return add(
        element, [&] { return file_.valueSpan(element, attribute); }, text);
}

Finding &Findings::atContent(Node element, const std::string &text)
{
    return add(
        element, [&] { return file_.contentSpan(element); }, text);
}

void Findings::setApart(const Check &check, Node element)
{
    apart_.try_emplace({&check, element});
}

bool Findings::takeOut(const Check &check, Node element)
{
    const auto apart = apart_.find({&check, element});
    if (apart == apart_.end() || apart->second.count == 0)
        return false;
    apart->second = {};
    return true;
}

std::vector<Finding> Findings::take()
{
    for (auto &[key, apart] : apart_) {
        Found &found = found_[key.first];
        found.count += apart.count;
        std::move(apart.kept.begin(), apart.kept.end(), std::back_inserter(found.kept));
    }
    apart_.clear();
    std::vector<Finding> all;
    for (auto &[check, found] : found_) {
        std::sort(found.kept.begin(), found.kept.end(), isBefore);
        if (found.kept.size() > kMostOfCheck)
            found.kept.resize(kMostOfCheck);
        if (!found.kept.empty())
            found.kept.back().more = found.count - found.kept.size();
        // The finding that says so may be one that is only counted.
        if (found.count > found.kept.size() && ended_.count(check) != 0)
            found.kept.back().text += "; the search for others has ended because it takes too long";
        std::move(found.kept.begin(), found.kept.end(), std::back_inserter(all));
    }
    found_.clear();
    std::sort(all.begin(), all.end(), isBefore);
    return all;
}

// ---- Words ----------------------------------------------------------------------------------------------------------

namespace {

// How many letters have to be changed, left out, put in or swapped with their neighbour.
size_t distance(const std::string &one, const std::string &other)
{
    std::vector<std::vector<size_t>> cost(one.size() + 1, std::vector<size_t>(other.size() + 1));
    for (size_t i = 0; i <= one.size(); i++)
        cost[i][0] = i;
    for (size_t j = 0; j <= other.size(); j++)
        cost[0][j] = j;
    for (size_t i = 1; i <= one.size(); i++)
        for (size_t j = 1; j <= other.size(); j++) {
            const size_t change = cost[i - 1][j - 1] + (one[i - 1] == other[j - 1] ? 0 : 1);
            cost[i][j] = std::min({change, cost[i - 1][j] + 1, cost[i][j - 1] + 1});
            if (i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1])
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
        }
    return cost[one.size()][other.size()];
}

// Without what people get wrong most: blanks, capitals, and which mark stands between the parts.
std::string plain(const std::string &text)
{
    std::string letters;
    for (const char character : text)
        if (std::strchr(" \t\r\n-_.", character) == nullptr)
            letters += static_cast<char>(character >= 'A' && character <= 'Z' ? character - 'A' + 'a' : character);
    return letters;
}

constexpr size_t kLongestWord = 64;

} // namespace

std::string nearest(const std::string &written, const std::vector<std::string> &words)
{
    if (written.empty() || written.size() > kLongestWord)
        return "";
    const std::string letters = plain(written);
    size_t least = letters.size() / 3 + 1;
    std::string found;
    for (const std::string &word : words) {
        const size_t away = word == written ? SIZE_MAX : distance(letters, plain(word));
        if (away < least || (away == least && found.empty() && away < letters.size())) {
            least = away;
            found = word;
        }
    }
    return found;
}

size_t rowOf(const dcm::Vocabulary &vocabulary, const char *word)
{
    if (vocabulary.rows == nullptr) {
        const dcm::Word *row = dcm::findWord(vocabulary, reinterpret_cast<const unsigned char *>(word));
        return row != nullptr ? static_cast<size_t>(row - vocabulary.words) : vocabulary.count;
    }
    size_t row = 0;
    while (row < vocabulary.count && std::strncmp(vocabulary.rows[row], word, DCM_KEYWORD_SIZE) != 0)
        row++;
    return row;
}

std::string listed(const std::vector<std::string> &words)
{
    constexpr size_t kShown = 14;
    std::string list;
    for (size_t i = 0; i < words.size() && i < kShown; i++)
        list += (i == 0 ? "'" : ", '") + words[i] + "'";
    if (words.size() > kShown)
        list += " and " + std::to_string(words.size() - kShown) + " more";
    return list;
}

// ---- The lists ------------------------------------------------------------------------------------------------------

const Check *findCheck(const std::string &name)
{
    for (const Checks &checks : allChecks())
        for (const Check &check : checks)
            if (name == check.name)
                return &check;
    return nullptr;
}

} // namespace dcmtool
