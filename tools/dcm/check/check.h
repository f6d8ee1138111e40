// A check is one function and one registration: its name is its option, its tag in the output, its place in the
// documentation and the name of its test. To add one, write the function in a file of tools/dcm/check/ and its row in
// that file's list of checks; the list stands in registry.cpp.
//
// A check looks at the file as a whole, at an element that the format knows and that has attributes or holds elements,
// at a value that the format describes, or at what the format does not know. The frame, slot, card or port list in
// which it stands has been decoded by then.
#ifndef DCM_TOOLS_CHECK_CHECK_H
#define DCM_TOOLS_CHECK_CHECK_H

#include "common/format.h"
#include "common/xml.h"
#include "tools/dcm/check/declarations.h"
#include "tools/dcm/check/finding.h"
#include "tools/dcm/description/description_file.h"
#include "tools/words.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace dcmtool {

// A frame, slot, card or port list that is being checked. Of the records only that of its kind is there. Where the
// query fails, its record is that of a copy without what makes it fail; none when there is no such copy.
struct CheckedType {
    const DescriptionFile &file;
    const Declarations &declarations; // of the whole file
    const DescribedType &described;
    const DcmFrameInfo *frame = nullptr;
    const DcmSlotInfo *slot = nullptr;
    const DcmCardInfo *card = nullptr;
    const DcmVmPortInfo *vm = nullptr;
};

// A child element that the format knows: `row` is its place in the children of its parent's format.
struct KnownChild {
    Node node;
    size_t row;
};

// An element that the format knows, and its way up to the frame, slot, card or port list.
struct Spot {
    const CheckedType &type;
    const Spot *parent; // nullptr for the frame, slot, card or port list itself
    Node node;
    const char *name;
    const dcm::Element *format;
    const std::vector<KnownChild> &known; // the children that the format knows, in document order
    mutable std::optional<std::vector<uint32_t>> readIds = std::nullopt;

    const dcm::NamedElement &rowOf(const KnownChild &child) const { return format->children[child.row]; }
    // What its id or list of ids says, read once for all of its children.
    const std::vector<uint32_t> &ids() const;
    // Its attribute as the format describes it; nullptr when the format knows none of this name.
    const dcm::Attribute *attribute(const char *attributeName) const;
    dcm::Text text(const char *attributeName) const { return dcm::Text::attribute(node, attributeName, {"dcm"}); }
    dcm::Text content() const { return dcm::Text::content(node, {"dcm"}); }
};

// A value that the format describes: that of an attribute, or the content of the element.
struct Value {
    const Spot &spot;
    const dcm::Attribute *attribute; // nullptr: the content
    const dcm::Content &content;
    const char *text;

    // What people call it: the name of the attribute or of the element.
    std::string name() const { return attribute != nullptr ? attribute->name : spot.name; }
};

// An element or attribute that the format does not know where it stands.
struct Stranger {
    const Spot &parent; // of the element, or the owner of the attribute
    Node node;          // the element; the owner of the attribute
    const char *name;   // of the element or attribute
    bool isAttribute;
};

class Findings;

using FileCheck = void (*)(const DescriptionFile &file, const std::vector<DescribedType> &types, Findings &findings);
using SpotCheck = void (*)(const Spot &spot, Findings &findings);
using ValueCheck = void (*)(const Value &value, Findings &findings);
using StrangerCheck = void (*)(const Stranger &stranger, Findings &findings);

// The kinds of content that a check of values looks at.
using Kinds = uint32_t;
template <class... Some> constexpr Kinds kindsOf(Some... kinds)
{
    return ((Kinds{1} << static_cast<unsigned>(kinds)) | ...);
}

// What a check looks at, and the function that does.
struct Look {
    FileCheck file = nullptr;
    SpotCheck spot = nullptr;
    ValueCheck value = nullptr;
    StrangerCheck stranger = nullptr;
    Kinds kinds = 0;
    bool isOfIgnoredFaults = false; // says nothing where the query fails for the very fault
};
constexpr Look fileBy(FileCheck function)
{
    return {function};
}
constexpr Look spotsBy(SpotCheck function)
{
    return {nullptr, function};
}
constexpr Look valuesBy(ValueCheck function, Kinds kinds)
{
    return {nullptr, nullptr, function, nullptr, kinds};
}
// As valuesBy(), of faults that only some decoders pass over.
constexpr Look ignoredFaultsBy(ValueCheck function, Kinds kinds)
{
    return {nullptr, nullptr, function, nullptr, kinds, true};
}
constexpr Look ignoredFaultsBy(SpotCheck function)
{
    return {nullptr, function, nullptr, nullptr, 0, true};
}
constexpr Look strangersBy(StrangerCheck function)
{
    return {nullptr, nullptr, nullptr, function};
}

struct Check {
    const char *name;
    Severity severity;
    const char *summary;     // one line
    const char *explanation; // why it matters on the network element; paragraphs of Markdown
    const char *bad;         // a whole file that triggers this check and no other
    const char *good;        // its correct twin
    Look look;
};

// Takes what checks find. The path of the element is added, and the check that is running. Of each check the first
// findings are kept, and the others counted: their places are not even looked up, so that a file of nothing but faults
// costs no more than another.
class Findings {
public:
    static constexpr size_t kMostOfCheck = 100;

    explicit Findings(const DescriptionFile &file) : file_(file) {}

    Finding &at(const Value &value, const std::string &text);                           // under the value
    Finding &atName(Node element, const std::string &text);                             // under the element's name
    Finding &atAttribute(Node element, const char *attribute, const std::string &text); // under an attribute's name
    Finding &atValue(Node element, const char *attribute, const std::string &text);     // under an attribute's value
    Finding &atContent(Node element, const std::string &text);                          // under the content
    Finding &at(Node element, Span span, const std::string &text);                      // anywhere

    // True when what the running check finds at an element is only counted, which is then done: for checks whose texts
    // cost much to make.
    bool counts(Node element);

    // For those who run checks.
    void run(const Check &check) { running_ = &check; }
    const DescriptionFile &file() const { return file_; }
    // Keeps what a check finds at an element apart, so that it can be taken out.
    void setApart(const Check &check, Node element);
    // Takes it out; false when nothing was found there.
    bool takeOut(const Check &check, Node element);
    // Notes that the running check has not looked for all that there is.
    void endSearch() { ended_.insert(running_); }
    // All that is kept, in the order of the file.
    std::vector<Finding> take();

private:
    // What a check found, in the whole file or at one element.
    struct Found {
        std::vector<Finding> kept;
        size_t count = 0;
    };
    using Key = std::pair<const Check *, Node>;
    struct Hash {
        size_t operator()(const Key &key) const
        {
            return std::hash<const void *>()(key.first) * 31 + std::hash<const void *>()(key.second);
        }
    };

    Found &foundAt(Node element);
    bool isToldAt(Node element) const;
    template <class SpanOf> Finding &add(Node element, const SpanOf &spanOf, const std::string &text);

    const DescriptionFile &file_;
    const Check *running_ = nullptr;
    std::unordered_map<const Check *, Found> found_;
    std::unordered_map<Key, Found, Hash> apart_;
    std::set<std::pair<Node, size_t>> told_; // places of what makes a query fail
    std::set<const Check *> ended_;
    size_t order_ = 0;
    Finding counted_; // takes what is said of one that is not kept
};

// Where an element stands in the device's terms: "card 0x21/panel-port/port-group 1-4".
std::string pathOf(Node element);

// A text of the file as messages show it: cut behind a character, with "...", where it is long.
constexpr size_t kMostShown = 80;
std::string shortened(std::string_view text, size_t most = kMostShown);
// Such a text in quotes.
std::string quoted(std::string_view text);

// The nearest of some words to what was written; empty when none is near.
std::string nearest(const std::string &written, const std::vector<std::string> &words);
// A list of words as texts show it: "'yes', 'no'".
std::string listed(const std::vector<std::string> &words);
// The row of a word that descriptions may write; `count` of the vocabulary when there is none.
size_t rowOf(const dcm::Vocabulary &vocabulary, const char *word);
inline bool isWord(const char *word, const dcm::Vocabulary &vocabulary)
{
    return rowOf(vocabulary, word) != vocabulary.count;
}

// A list of checks, as each file of checks has one.
struct Checks {
    const Check *first;
    size_t count;
    const Check *begin() const { return first; }
    const Check *end() const { return first + count; }
};

// Every check, by its list.
const std::vector<Checks> &allChecks();
// By its name; nullptr when there is none.
const Check *findCheck(const std::string &name);

} // namespace dcmtool

#endif
