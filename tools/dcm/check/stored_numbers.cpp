#include "tools/dcm/check/stored_numbers.h"

#include "tools/dcm/check/number_reading.h"

namespace dcmtool {

int64_t storedNumber(uint32_t number, const dcm::Content &content)
{
    const unsigned bits = bitsOf(content);
    const int64_t low = number & ((int64_t{1} << bits) - 1);
    const bool isNegative = content.isSigned && (low >> (bits - 1)) != 0;
    return isNegative ? low - (int64_t{1} << bits) : low;
}

std::optional<Stored> numberIn(const Context &context, std::string_view name, std::string_view ending)
{
    std::optional<Stored> last;
    for (const KnownChild &child : context.children) {
        const dcm::NamedElement &row = context.rowOf(child);
        // Most names begin with another letter.
        if (row.name[0] != name[0])
            continue;
        const std::string_view rowName = row.name;
        const bool isMeant = rowName.size() == name.size() + ending.size() && rowName.substr(0, name.size()) == name &&
                             rowName.substr(name.size()) == ending;
        if (!isMeant || row.element->content.kind != dcm::Kind::number)
            continue;
        const dcm::Text text = dcm::Text::content(child.node, {"dcm"});
        const char *end = nullptr;
        if (!text)
            continue;
        const uint32_t number = dcm::readNumber(text.c_str(), &end);
        if (end != text.c_str())
            last = {child.node, row.name, storedNumber(number, row.element->content)};
    }
    return last;
}

Finding &report(const Stored &number, const std::string &relation, const Stored &other, const std::string &outcome,
                Findings &findings)
{
    return findings
        .atContent(number.node, quotedName(number.name) + " " + std::to_string(number.value) + " is " + relation + " " +
                                    quotedName(other.name) + " " + std::to_string(other.value) + ": " + outcome)
        .noting(findings.file().contentSpan(other.node), quotedName(other.name) + " is here");
}

bool isLimit(std::string_view name)
{
    return name.size() > 3 && (name.substr(name.size() - 3) == kMax || name.substr(name.size() - 3) == kMin);
}

} // namespace dcmtool
