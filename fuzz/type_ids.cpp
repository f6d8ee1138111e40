#include "fuzz/type_ids.h"

#include <cstdlib>
#include <string>

namespace dcmfuzz {

namespace {

// The number in an attribute of a tag.
uint32_t numberIn(const std::string &tag, const std::string &attribute)
{
    const size_t at = tag.find(' ' + attribute + '=');
    if (at == std::string::npos)
        return 0;
    const size_t value = at + attribute.size() + 3;
    return value < tag.size() ? static_cast<uint32_t>(std::strtoull(tag.c_str() + value, nullptr, 0)) : 0;
}

} // namespace

TypeIds findTypeIds(const uint8_t *data, size_t size, const char *name)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    const std::string opening = std::string("<") + name;
    size_t begin = text.find(opening);
    if (begin == std::string::npos)
        return {1, 0};
    if (size % 2 == 1) {
        if (const size_t second = text.find(opening, begin + 1); second != std::string::npos)
            begin = second;
    }
    const std::string tag = text.substr(begin, text.find('>', begin) - begin);
    return {numberIn(tag, "typeid"), numberIn(tag, "mode")};
}

} // namespace dcmfuzz
