#include "tools/dcm/check/number_lists.h"

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

std::vector<uint32_t> namedButNotDescribed(const Value &value, const Relation &relation)
{
    const CheckedType &type = value.context.type;
    return missing(numbersNamed(value.text, value.content),
                   [&](uint32_t number) { return type.declarations.targets().has(relation, type.described, number); });
}

} // namespace dcmtool
