#include "tools/dcm/lsp/lines.h"

#include "tools/dcm/description/markup.h"

#include <algorithm>

namespace dcmlsp {

namespace {

constexpr unsigned char kFirstOfFour = 0xF0; // bytes of UTF-8, of which UTF-16 makes two units

size_t unitsOf(char byte, Units units)
{
    if (units == Units::utf8)
        return 1;
    if (!dcmtool::isCharacter(byte))
        return 0;
    return static_cast<unsigned char>(byte) >= kFirstOfFour ? 2 : 1;
}

} // namespace

Lines::Lines(std::string_view text, Units units) : text_(text), units_(units), starts_({0})
{
    size_t count = 0;
    for (size_t i = 0; i < text.size(); i++) {
        if (i % kStride == 0)
            strides_.push_back(count);
        count += unitsOf(text[i], units);
        const bool isFirstOfTwo = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
        if (text[i] == '\n' || (text[i] == '\r' && !isFirstOfTwo))
            starts_.push_back(i + 1);
    }
    strides_.push_back(count);
}

size_t Lines::unitsBefore(size_t offset) const
{
    const size_t stride = std::min(offset / kStride, strides_.size() - 1);
    size_t units = strides_[stride];
    for (size_t i = stride * kStride; i < offset; i++)
        units += unitsOf(text_[i], units_);
    return units;
}

size_t Lines::offsetOf(Position position) const
{
    if (position.line >= starts_.size())
        return text_.size();
    size_t at = starts_[position.line];
    size_t end = position.line + 1 < starts_.size() ? starts_[position.line + 1] : text_.size();
    while (end > at && (text_[end - 1] == '\n' || text_[end - 1] == '\r'))
        end--;
    for (size_t left = position.character; at < end && left > 0;) {
        size_t next = at + 1;
        while (next < end && !dcmtool::isCharacter(text_[next]))
            next++;
        const size_t units = units_ == Units::utf8 ? next - at : unitsOf(text_[at], units_);
        if (units > left)
            break;
        left -= units;
        at = next;
    }
    return at;
}

Position Lines::positionOf(size_t offset) const
{
    offset = std::min(offset, text_.size());
    const auto next = std::upper_bound(starts_.begin(), starts_.end(), offset);
    return {static_cast<size_t>(next - starts_.begin()) - 1, unitsBefore(offset) - unitsBefore(*(next - 1))};
}

} // namespace dcmlsp
