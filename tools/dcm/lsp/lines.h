// Positions in a text as the protocol counts them.
#ifndef DCM_TOOLS_LSP_LINES_H
#define DCM_TOOLS_LSP_LINES_H

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace dcmlsp {

// The units in which a position counts: bytes, or 16 bits of which some characters have two.
enum class Units : uint8_t { utf8, utf16 };

// Both count from 0.
struct Position {
    size_t line = 0;
    size_t character = 0;
};

// The text is valid UTF-8, and outlives the object.
class Lines {
public:
    Lines(std::string_view text, Units units);

    // The byte at a position. A position after the end of its line is that end, one in a character its beginning.
    size_t offsetOf(Position position) const;
    Position positionOf(size_t offset) const;

private:
    size_t unitsBefore(size_t offset) const;

    static constexpr size_t kStride = 1024;
    std::string_view text_;
    Units units_;
    std::vector<size_t> starts_;  // of the lines
    std::vector<size_t> strides_; // the units before every kStride-th byte
};

} // namespace dcmlsp

#endif
