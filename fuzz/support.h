// Common parts of the fuzz targets: checks, memory next to unreadable pages, the description in memory, and checks of
// the reports and the output of the library.
#ifndef DCM_FUZZ_SUPPORT_H
#define DCM_FUZZ_SUPPORT_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

// Checks a property of every input; the fuzzer keeps an input for which it fails.
#define DCM_FUZZ_CHECK(condition)                                                                                      \
    ((condition) ? static_cast<void>(0) : dcmfuzz::failCheck(#condition, __FILE__, __LINE__))

namespace dcmfuzz {

[[noreturn]] void failCheck(const char *condition, const char *file, int line);

// Pages between two unreadable pages.
class GuardedRoom {
public:
    explicit GuardedRoom(size_t capacity);
    ~GuardedRoom();
    GuardedRoom(const GuardedRoom &) = delete;
    GuardedRoom &operator=(const GuardedRoom &) = delete;

    // `size` bytes directly before the last page, or directly after the first page. The room is filled first.
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

// A text whose terminator is the last readable byte.
class GuardedText {
public:
    explicit GuardedText(size_t longest) : room_(longest + 1) {}
    const char *place(const std::string &text);

private:
    GuardedRoom room_;
};

// The bytes of an input, consumed one by one; zeros at the end.
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
    // The rest, up to its first zero byte.
    std::string text();

private:
    const uint8_t *data_;
    size_t size_;
};

// The description that the queries read, by its path and for every path in "/etc/zorconf".
void writeDescription(const void *data, size_t size);
const char *descriptionPath();
const std::string &description();
// Whether the description may hold an element or attribute of this name.
bool mayHold(const char *name);

// The number of reports since the last call. Each was checked: the log call has the leading arguments 0, 3, 0 and a
// format that begins with "[%s:%u]: " and ends in "\r\n", and the same text was printed next.
size_t takeReportCount();
// The texts of the reports.
std::string takeReports();

} // namespace dcmfuzz

#endif
