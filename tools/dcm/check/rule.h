// A rule is one function and, directly below it, its registration: its name is its option, its tag in the output, and
// the name of its source (rules/NAME.cpp), of its page (docs/checks/NAME.md) and of its test.
//
// A rule looks at the file as a whole, at an element that the format knows and that has attributes or holds elements,
// at a value that the format describes, or at what the format does not know. The frame, slot, card or port list that
// contains it has been decoded by then.
#ifndef DCM_TOOLS_CHECK_RULE_H
#define DCM_TOOLS_CHECK_RULE_H

#include "common/format.h"
#include "common/xml.h"
#include "tools/dcm/check/declarations.h"
#include "tools/dcm/check/findings.h"
#include "tools/dcm/description/description_file.h"
#include "tools/dcm/description/texts.h"
#include "tools/words.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace dcmtool {

using dcm::Kind;
using dcm::Role;

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
struct Context {
    const CheckedType &type;
    const Context *parent; // nullptr for the frame, slot, card or port list itself
    Node node;
    const char *name;
    const dcm::Element *format;
    Role role;
    const std::vector<KnownChild> &children; // the children that the format knows, in document order
    mutable std::optional<std::vector<uint32_t>> readIds = std::nullopt;

    const dcm::NamedElement &rowOf(const KnownChild &child) const { return format->children[child.row]; }
    Role roleOf(const KnownChild &child) const { return rowOf(child).role(); }
    // The role of the parent, which the frame, slot, card or port list itself has not.
    Role parentRole() const { return parent != nullptr ? parent->role : Role::none; }
    // What its id or list of ids says, read once for all of its children.
    const std::vector<uint32_t> &ids() const;
    // Its attribute as the format describes it; nullptr when the format knows none of this name.
    const dcm::Attribute *attribute(const char *attributeName) const;
    // The last child of a role, which is the one that counts; nullptr when there is none.
    const KnownChild *lastChild(Role childRole) const;
    dcm::Text text(const char *attributeName) const { return dcm::Text::attribute(node, attributeName, {"dcm"}); }
    dcm::Text content() const { return dcm::Text::content(node, {"dcm"}); }
};

// A value that the format describes: that of an attribute, or the content of the element.
struct Value {
    const Context &context;
    const dcm::Attribute *attribute; // nullptr: the content
    const dcm::Content &content;
    const char *text;

    // How it refers to other elements; nullptr when it does not.
    const Relation *relation() const { return relationOf(context.role, attribute); }
    // What people call it: the name of the attribute or of the element.
    std::string name() const { return attribute != nullptr ? attribute->name : context.name; }
};

// An element or attribute that the format does not know where it stands.
struct UnknownItem {
    const Context &parent; // of the element, or the owner of the attribute
    Node node;             // the element; the owner of the attribute
    const char *name;      // of the element or attribute
    bool isAttribute;
};

using FileFunction = void (*)(const DescriptionFile &file, const std::vector<DescribedType> &types, Findings &findings);
using ElementFunction = void (*)(const Context &element, Findings &findings);
using ValueFunction = void (*)(const Value &value, Findings &findings);
using UnknownItemFunction = void (*)(const UnknownItem &item, Findings &findings);

// The kinds of content that a rule for values looks at.
using Kinds = uint32_t;
template <class... Some> constexpr Kinds kindsOf(Some... kinds)
{
    return ((Kinds{1} << static_cast<unsigned>(kinds)) | ...);
}
constexpr Kinds kNumberKinds = kindsOf(Kind::number, Kind::count, Kind::id, Kind::typeIds);

// The roles of elements that a rule looks at; 0 is all.
using Roles = uint64_t;
static_assert(static_cast<unsigned>(Role::count) <= 64);
template <class... Some> constexpr Roles rolesOf(Some... roles)
{
    return (Roles{0} | ... | (Roles{1} << static_cast<unsigned>(roles)));
}

// What a rule looks at, and the functions that do.
struct RuleKind {
    FileFunction file = nullptr;
    ElementFunction element = nullptr;
    Roles roles = 0;
    ValueFunction value = nullptr;
    Kinds kinds = 0;
    UnknownItemFunction unknownItem = nullptr;
    bool isSilentWhereQueryFails = false;
    bool isSilentWhereFaulty = false;
    bool isSilentWhereFaultyInside = false;

    constexpr RuleKind andValues(ValueFunction function, Kinds valueKinds) const
    {
        RuleKind both = *this;
        both.value = function;
        both.kinds = valueKinds;
        return both;
    }
    // For faults that only some decoders ignore: nothing is said where a query fails for the very same value.
    constexpr RuleKind unlessQueryFails() const
    {
        RuleKind silent = *this;
        silent.isSilentWhereQueryFails = true;
        return silent;
    }
    // For what follows from values: nothing is said where another rule finds a fault in one of them, be it at the place
    // of the finding or at that of a note.
    constexpr RuleKind unlessFaulty() const
    {
        RuleKind silent = *this;
        silent.isSilentWhereFaulty = true;
        return silent;
    }
    // The same where another rule finds a fault anywhere in the element.
    constexpr RuleKind unlessFaultyInside() const
    {
        RuleKind silent = unlessFaulty();
        silent.isSilentWhereFaultyInside = true;
        return silent;
    }
};
constexpr RuleKind onFile(FileFunction function)
{
    RuleKind kind;
    kind.file = function;
    return kind;
}
// Without roles, elements of all.
template <class... Some> constexpr RuleKind onElements(ElementFunction function, Some... roles)
{
    RuleKind kind;
    kind.element = function;
    kind.roles = rolesOf(roles...);
    return kind;
}
constexpr RuleKind onValues(ValueFunction function, Kinds kinds)
{
    return RuleKind().andValues(function, kinds);
}
constexpr RuleKind onUnknownItems(UnknownItemFunction function)
{
    RuleKind kind;
    kind.unknownItem = function;
    return kind;
}
// For rules whose findings are part of how the tool works: of failing queries and of comments.
constexpr RuleKind byTheEngine()
{
    return {};
}

// Under the content of the first of some children that is there, else under the id of the element.
Finding &atChildOrId(const Context &context, std::initializer_list<Role> roles, const std::string &text,
                     Findings &findings);

struct Rule {
    const char *name;
    Severity severity;
    RuleKind kind;

    // What makes a query fail is always shown, whatever options and comments say.
    constexpr bool canBeSilenced() const { return severity != Severity::error; }
};

} // namespace dcmtool

#endif
