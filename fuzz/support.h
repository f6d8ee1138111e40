// What every fuzz target uses: checks, memory with an end that cannot be overrun, the description file in memory, and
// an eye on what the library reports and prints.
#ifndef DCM_FUZZ_SUPPORT_H
#define DCM_FUZZ_SUPPORT_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

// A property that holds for every input; the fuzzer keeps the input for which it does not.
#define DCM_FUZZ_CHECK(condition)                                                                                      \
    ((condition) ? static_cast<void>(0) : dcmfuzz::failCheck(#condition, __FILE__, __LINE__))

namespace dcmfuzz {

[[noreturn]] void failCheck(const char *condition, const char *file, int line);

// Pages between two pages that nobody may touch.
class GuardedRoom {
public:
    explicit GuardedRoom(size_t capacity);
    ~GuardedRoom();
    GuardedRoom(const GuardedRoom &) = delete;
    GuardedRoom &operator=(const GuardedRoom &) = delete;

    // `size` bytes directly in front of the page behind, or directly behind the page in front. The room is filled
    // first.
    uint8_t *atEnd(size_t size, uint8_t fill);
    uint8_t *atStart(size_t size, uint8_t fill);
    size_t capacity() const { return capacity_; }

private:
    uint8_t *pages_;
    size_t capacity_;
};

template <class Record> class GuardedRecord {
public:
    Record *atEnd(uint8_t fill) { return reinterpret_cast<Record *>(room_.atEnd(sizeof(Record), fill)); }
    Record *atStart(uint8_t fill) { return reinterpret_cast<Record *>(room_.atStart(sizeof(Record), fill)); }

private:
    GuardedRoom room_{sizeof(Record)};
};

// A text whose terminator is the last byte that may be read.
class GuardedText {
public:
    explicit GuardedText(size_t longest) : room_(longest + 1) {}
    const char *place(const std::string &text);

private:
    GuardedRoom room_;
};

// The bytes of an input, taken one by one; zeros when there are no more.
class Input {
public:
    Input(const uint8_t *data, size_t size) : data_(data), size_(size) {}
    bool isAtEnd() const { return size_ == 0; }
    uint8_t byte();
    uint16_t word() { return static_cast<uint16_t>(byte() | byte() << 8); }
    // A number below `bound`, which is at least 1.
    uint32_t below(uint32_t bound) { return (bound > 256 ? word() : byte()) % bound; }
    // True for one value in `n`, and never at the end of the input.
    bool oneIn(uint32_t n) { return below(n) == n - 1; }
    // What is left, up to its first zero byte.
    std::string text();

private:
    const uint8_t *data_;
    size_t size_;
};

// What the queries read, by its path and as whatever file they look for below "/etc/zorconf".
void writeDescription(const void *data, size_t size);
const char *descriptionPath();
const std::string &description();
// Whether the description may hold an element or attribute of this name.
bool mayHold(const char *name);

// How many reports there were since the last call. Each was checked: the log call has the leading arguments 0, 3, 0 and
// a format that begins "[%s:%u]: " and ends "\r\n", and the same text was printed before anything else was.
size_t takeReportCount();
// What they said.
std::string takeReports();

} // namespace dcmfuzz

#endif
