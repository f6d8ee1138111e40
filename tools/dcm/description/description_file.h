// A description as the tool reads it: parsed once, with the position of every element, attribute and text.
#ifndef DCM_TOOLS_DESCRIPTION_FILE_H
#define DCM_TOOLS_DESCRIPTION_FILE_H

#include "common/xml.h"
#include "tools/dcm/description/markup.h"
#include "tools/dcm/library_log.h"

#include <dcm.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct _xmlParserCtxt;

namespace dcmtool {

using dcm::Node;

// A position as people count: from 1; a column is a character (a code point; a tab is one).
struct Place {
    size_t line = 1;
    size_t column = 1;
};

enum class RecordKind : uint8_t { frame, slot, card, vm };

// A frame, slot or card of a description, or a VM's port list.
struct DescribedType {
    RecordKind kind = RecordKind::frame;
    Node element = nullptr;
    std::vector<uint32_t> typeIds; // several only for a slot; none for a slot without "typeid" and for a port list
    uint32_t mode = 0;             // of a card
};

// A record of each kind.
struct AnyRecord {
    DcmFrameInfo frame;
    DcmSlotInfo slot;
    DcmCardInfo card;
    DcmVmPortInfo vm;
};

// Calls `function` with the record of a kind.
template <class Function> void visitRecord(RecordKind kind, AnyRecord &records, const Function &function)
{
    switch (kind) {
    case RecordKind::frame:
        return function(records.frame);
    case RecordKind::slot:
        return function(records.slot);
    case RecordKind::card:
        return function(records.card);
    case RecordKind::vm:
        return function(records.vm);
    }
}

// The result of decoding a type.
struct Outcome {
    bool isDecoded = false;
    std::vector<Message> messages; // innermost first; a query that succeeds may have messages, too
    size_t messageCount = 0;       // includes those that are not kept
};

class DescriptionFile {
public:
    enum class State : uint8_t { unreadable, notXml, parsed };
    // Whether the content of frames, slots and cards is built, which is most of the cost of reading a file. Without it,
    // they have only their attributes.
    using IsWanted = std::function<bool(const DescribedType &type)>;

    // Reads a file; "-" is standard input. state() and fault() return the result. Its name() is `shown`,
    // if that is not empty.
    static std::unique_ptr<DescriptionFile> open(const std::string &name, IsWanted isWanted = {},
                                                 const std::string &shown = "");
    // What cannot be read for another reason.
    static std::unique_ptr<DescriptionFile> unreadable(std::string name, std::string fault);
    // The same for a text in memory.
    static std::unique_ptr<DescriptionFile> parse(std::string name, std::string text, IsWanted isWanted = {});
    ~DescriptionFile();
    DescriptionFile(const DescriptionFile &) = delete;
    DescriptionFile &operator=(const DescriptionFile &) = delete;

    const std::string &name() const { return name_; }
    State state() const { return state_; }
    const std::string &fault() const { return fault_; } // why it was not parsed
    Span faultSpan() const { return faultSpan_; }

    // Frees the tree, which is most of the memory. The text and places in it are still there.
    void dropTree();

    Node root() const { return root_; } // nullptr unless parsed
    bool isDevice() const;
    bool isVm() const;
    // Every frame, slot and card in document order, or the port list.
    std::vector<DescribedType> types() const;

    // Decodes a type as its query does, into a record that is cleared first. A card gets only its own names. Messages
    // are kept from number `firstMessage` on.
    Outcome decode(const DescribedType &type, DcmFrameInfo &info, size_t firstMessage = 0) const;
    Outcome decode(const DescribedType &type, DcmSlotInfo &info, size_t firstMessage = 0) const;
    Outcome decode(const DescribedType &type, DcmCardInfo &info, size_t firstMessage = 0) const;
    Outcome decode(const DescribedType &type, DcmVmPortInfo &info, size_t firstMessage = 0) const;

    // Positions in the text. The content of an entity has the position of the reference to it; what the text does not
    // contain, such as a default attribute, has that of its element.
    Span tagSpan(Node element) const;                              // the start tag
    Span nameSpan(Node element) const;                             // the name in the start tag
    Span attributeSpan(Node element, const char *attribute) const; // the name of an attribute
    Span valueSpan(Node element, const char *attribute) const;     // the attribute's value between the quotes
    Span contentSpan(Node element) const;                          // the text, without blanks around it
    Place place(size_t offset) const;
    // Only the line number, for callers that need few.
    size_t lineOf(size_t offset) const;
    // A line without its line end; empty if the file has no such line.
    std::string_view line(size_t number) const;
    const std::string &text() const { return text_; }
    // The encoding of a file whose text() differs from its bytes; empty for UTF-8 and ASCII.
    const std::string &foreignEncoding() const { return foreignEncoding_; }

    // The comments that contain directives for the tool.
    struct Comment {
        Node node;
        Span span;
    };
    const std::vector<Comment> &comments() const { return comments_; }

private:
    DescriptionFile() = default;
    void fail(State state, std::string fault, Span span = {});
    void parseText();
    void convertToUtf8();
    Span attributePart(Node element, const char *attribute, bool isValue) const;
    template <class Record, class Clear, class Decode>
    Outcome decodeWith(const char *query, size_t firstMessage, Record &info, const Clear &clear,
                       const Decode &decode) const;
    friend struct ParserEvents;

    std::string name_;
    std::string text_;
    State state_ = State::unreadable;
    std::string fault_;
    Span faultSpan_;
    IsWanted isWanted_;
    ::_xmlDoc *document_ = nullptr;
    ::_xmlParserCtxt *parser_ = nullptr; // during parsing
    struct Parsing;
    Parsing *parsing_ = nullptr; // the state of the parsing in progress
    Node root_ = nullptr;
    std::string foreignEncoding_;
    bool isConverted_ = false;
    std::vector<Comment> comments_;
    void indexLines() const;
    size_t charactersBefore(size_t offset) const;

    // Built at the first use: the offsets of lines, and the number of characters before every kStride-th byte.
    static constexpr size_t kStride = 1024;
    mutable std::vector<size_t> lineStarts_;
    mutable std::vector<size_t> characters_;
};

} // namespace dcmtool

#endif
