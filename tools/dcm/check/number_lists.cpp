#include "tools/dcm/check/number_lists.h"

#include <cinttypes>
#include <cstdio>
#include <cstring>

namespace dcmtool {

BitList readBitList(const Value &value)
{
    BitList list;
    list.isFaulty =
        dcmStr2BitList(value.text, 1, static_cast<uint32_t>(value.content.limit), list.bits, sizeof list.bits) != 0;
    // The library ignores a number that the end of the field cuts off.
    const size_t length = std::strlen(value.text);
    list.isFaulty = list.isFaulty || (length > 0 && value.text[length - 1] == '-');
    return list;
}

std::string hexadecimal(uint32_t number)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%" PRIx32, number);
    return text;
}

std::string shown(const Relation &relation, uint32_t number)
{
    const bool isType = relation.target == Target::cardType;
    return std::string(relation.what) + " " + (isType ? hexadecimal(number) : std::to_string(number));
}

std::vector<uint32_t> namedButNotDescribed(const Value &value, const Relation &relation, Findings &findings)
{
    const CheckedType &type = value.context.type;
    const TargetIndex &targets = type.declarations.targets();
    return missing(numbersNamed(value.text, value.content), [&](uint32_t number) {
        if (targets.has(relation, type.described, number))
            return true;
        const Node faulty = targets.findFaulty(relation, type.described, number);
        if (faulty != nullptr)
            findings.follow(faulty, value, shown(relation, number) + " is named here");
        return faulty != nullptr;
    });
}

namespace {

// Where an item of a list ends: numbers are parted by any character, ranges by commas.
size_t itemEnd(const std::string &text, size_t begin, Kind kind)
{
    if (kind == Kind::bitList)
        return std::min(text.find(',', begin), text.size());
    const char *end = nullptr;
    static_cast<void>(dcm::readNumber(text.c_str() + begin, &end));
    return std::max(begin, static_cast<size_t>(end - text.c_str()));
}

} // namespace

ValuePart faultyItem(const std::string &list, const dcm::Content &content)
{
    for (size_t begin = 0; begin < list.size();) {
        const size_t end = std::min(list.find(',', begin), list.size());
        uint8_t bits[DCM_PANEL_IF_MAX / 8] = {};
        const std::string item = list.substr(begin, end - begin);
        if (dcmStr2BitList(item.c_str(), 1, static_cast<uint32_t>(content.limit), bits, sizeof bits) != 0) {
            const size_t first = item.find_first_not_of(kBlanks);
            if (first != std::string::npos)
                return {begin + first, item.find_last_not_of(kBlanks) + 1 - first};
        }
        begin = end + 1;
    }
    return {0, list.size()};
}

Finding &atNumbers(const Value &value, const std::vector<uint32_t> &numbers, const std::string &text,
                   Findings &findings)
{
    const std::string list = value.text;
    for (size_t begin = 0; begin < list.size();) {
        const size_t end = itemEnd(list, begin, value.content.kind);
        const std::vector<uint32_t> named = numbersNamed(list.substr(begin, end - begin).c_str(), value.content);
        if (std::any_of(named.begin(), named.end(), [&](uint32_t number) {
                return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
            })) {
            const size_t first = std::min(list.find_first_not_of(kBlanks, begin), end);
            return findings.atItem(value, {first, end - first}, text);
        }
        begin = end + 1;
    }
    return findings.at(value, text);
}

} // namespace dcmtool
