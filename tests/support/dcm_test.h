// The fixture of the tests: runs a query on XML in the test, and records all effects of the call.
#ifndef DCM_TESTS_SUPPORT_DCM_TEST_H
#define DCM_TESTS_SUPPORT_DCM_TEST_H

#include <dcm.h>
#include <libxml/tree.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace dcmtest {

// The reports of a call, innermost failure first, one string each: the text without the line end, with the source line
// masked as "#" and the file of the test as "FILE": "[dcmFrameInfoGet:#]: xmlfile(FILE) frame decode led failed."
using Messages = std::vector<std::string>;

// The effects of a call besides its result.
struct Effects {
    Messages messages;
    std::string output; // standard output, not masked
};

// Runs `call` and records its effects. Every test uses it, so each report of the whole suite is checked: the log call
// has the leading arguments 0, 3, 0, a format that begins with "[%s:%u]: " and ends in "\r\n", and the same text is
// printed on standard output, in the same order. `file` is masked as FILE. Other output (of a Show function) is allowed
// only with `alsoPrints`.
enum class Output { reportsOnly, alsoPrints };
Effects effectsOf(const std::function<void()> &call, const std::string &file = {}, Output output = Output::reportsOnly);

// Standard output of `call`.
std::string outputOf(const std::function<void()> &call);

// A file in the temporary folder, removed with the object.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string &content);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;
    const std::string &path() const { return path_; }
    const char *c_str() const { return path_.c_str(); }

private:
    std::string path_;
};

// During its lifetime, a temporary folder replaces "/etc/zorconf" for the library (file access is wrapped at link time;
// nothing on the machine is changed).
class Zorconf {
public:
    Zorconf();
    ~Zorconf();
    Zorconf(const Zorconf &) = delete;
    Zorconf &operator=(const Zorconf &) = delete;
    // Writes the file that the library sees as "/etc/zorconf/device/<name>".
    void write(const std::string &name, const std::string &content) const;
    // The path of that file, and the folder that replaces "/etc/zorconf".
    std::string path(const std::string &name) const { return root_ + "/device/" + name; }
    const std::string &root() const { return root_; }

private:
    std::string root_;
};

// A record between two guards: a write outside the record is a failure in every test.
template <class Record> class Guarded {
public:
    // The record is filled with a byte that no default and no test uses, so that fields that are not cleared are
    // visible.
    Guarded() : room_(new Room)
    {
        std::memset(room_.get(), 0, sizeof(Room));
        std::memset(room_->before, 0x5A, sizeof room_->before);
        std::memset(static_cast<void *>(&room_->record), 0xA5, sizeof(Record));
        std::memset(room_->behind, 0x5A, sizeof room_->behind);
    }
    ~Guarded()
    {
        if (room_ == nullptr)
            return;
        for (unsigned char byte : room_->before)
            EXPECT_EQ(byte, 0x5A) << "written before the record";
        for (unsigned char byte : room_->behind)
            EXPECT_EQ(byte, 0x5A) << "written behind the record";
    }
    Guarded(Guarded &&) = default;
    Guarded &operator=(Guarded &&) = delete;
    Record *get() { return &room_->record; }
    const Record &operator*() const { return room_->record; }
    const Record *operator->() const { return &room_->record; }

private:
    struct Room {
        unsigned char before[64];
        Record record;
        unsigned char behind[64];
    };
    std::unique_ptr<Room> room_;
};

// The result, record and reports of a query.
template <class Record> struct Answer {
    int result = 0;
    Guarded<Record> info;
    Messages messages;
};

// The queries on a file with this content.
Answer<DcmFrameInfo> queryFrame(uint32_t typeId, const std::string &xml);
Answer<DcmSlotInfo> querySlot(uint32_t typeId, const std::string &xml);
Answer<DcmCardInfo> queryCard(uint32_t typeId, uint32_t mode, const std::string &xml);

// A device whose only frame (or slot, or card in mode 0) has type 1 and these children; queried for type 1.
Answer<DcmFrameInfo> frameWith(const std::string &children);
Answer<DcmSlotInfo> slotWith(const std::string &children);
Answer<DcmCardInfo> cardWith(const std::string &children);

// A parsed element, for the exported decoders: Element("<led-entity num='1'/>").node().
class Element {
public:
    explicit Element(const std::string &xml);
    ~Element();
    Element(const Element &) = delete;
    Element &operator=(const Element &) = delete;
    xmlNodePtr node() const;

private:
    xmlDocPtr document_;
};

// A literal as the text type of the library.
inline const unsigned char *text(const char *literal)
{
    return reinterpret_cast<const unsigned char *>(literal);
}

// The bytes of a bit array, or of anything else.
template <class Field> std::vector<unsigned> bytesOf(const Field &field)
{
    const auto *bytes = reinterpret_cast<const unsigned char *>(&field);
    return std::vector<unsigned>(bytes, bytes + sizeof field);
}
template <class Field> bool isAllZero(const Field &field)
{
    for (unsigned byte : bytesOf(field))
        if (byte != 0)
            return false;
    return true;
}

// The text of a field that is not terminated when it is full.
template <std::size_t Size> std::string textOf(const char (&field)[Size])
{
    return std::string(field, strnlen(field, Size));
}

// The content of a file.
std::string readFile(const std::string &path);
// Writes a file, which may exist.
void writeFile(const std::string &path, const std::string &content);

// The content of a file in the tests folder; golden("frame-example.txt") is in tests/golden.
std::string golden(const std::string &name);
// The path of an example, as in example("device.xml").
std::string example(const std::string &name);

// "a\r\nb\r\n" for readable expectations: lines("a", "b").
template <class... Lines> std::string lines(const Lines &...line)
{
    std::string text;
    ((text += std::string(line) + "\r\n"), ...);
    return text;
}

} // namespace dcmtest

#endif
