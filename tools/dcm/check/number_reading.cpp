#include "tools/dcm/check/number_reading.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace dcmtool {

Reading readingOf(const std::string &text)
{
    Reading reading;
    const size_t first = text.find_first_not_of(" \t\r\n\v\f");
    if (first == std::string::npos)
        return reading;
    char *end = nullptr;
    errno = 0;
    reading.bits = std::strtoull(text.c_str(), &end, 0);
    reading.isTooLong = errno == ERANGE;
    reading.isNumber = end != text.c_str();
    reading.isNegative = text[first] == '-';
    const size_t digits = first + (text[first] == '-' || text[first] == '+' ? 1 : 0);
    reading.isOctal = reading.isNumber && text[digits] == '0' && digits + 1 < text.size() &&
                      std::strchr("1234567", text[digits + 1]) != nullptr &&
                      reading.bits != std::strtoull(text.c_str(), nullptr, 10);
    const std::string tail = end;
    const size_t last = tail.find_last_not_of(" \t\r\n");
    reading.tail = last == std::string::npos ? "" : tail.substr(0, last + 1);
    return reading;
}

Finding &atNumber(const Value &value, const NumberItem &item, const std::string &text, Findings &findings)
{
    const size_t first = item.text.find_first_not_of(kBlanks);
    if (item.text == value.text || first == std::string::npos)
        return findings.at(value, text);
    const size_t size = item.text.find_last_not_of(kBlanks) + 1 - first;
    return findings.atItem(value, {item.begin + first, size}, text);
}

bool isShort(const char *text)
{
    if (text[0] < '1' || text[0] > '9')
        return text[0] == '0' && text[1] == '\0';
    size_t length = 1;
    while (text[length] >= '0' && text[length] <= '9')
        length++;
    return text[length] == '\0' && length <= 9;
}

} // namespace dcmtool
