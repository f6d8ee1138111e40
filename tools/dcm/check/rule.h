// A rule is one function and, directly below it, its registration: its name is its option, its tag in the output, and
// the name of its source (rules/NAME.cpp), of its page (docs/checks/NAME.md) and of its test.
//
// A rule checks the file as a whole, a known element that has attributes or children, a value that the format
// describes, or an unknown element or attribute. The frame, slot, card or port list that contains it has been decoded
// before.
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
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace dcmtool {

using dcm::Kind;
using dcm::Role;

// The frame, slot, card or port list that is being checked. Only the record of its kind is present. If the query fails,
// it is the record of a copy without the faults; absent if there is no such copy.
struct CheckedType {
    const DescriptionFile &file;
    const Declarations &declarations; // of the whole file
    const DescribedType &described;
    const DcmFrameInfo *frame = nullptr;
    const DcmSlotInfo *slot = nullptr;
    const DcmCardInfo *card = nullptr;
    const DcmVmPortInfo *vm = nullptr;
};

// A child that the format knows: `row` is its index in the children of its parent's format.
struct KnownChild {
    Node node;
    size_t row;
};

// An element that the format knows, and its ancestors up to the frame, slot, card or port list.
struct Context {
    const CheckedType &type;
    const Context *parent; // nullptr for the frame, slot, card or port list itself
    Node node;
    const char *name;
    const dcm::Element *format;
    Role role;
    const std::vector<KnownChild> &children; // the known children, in document order
    mutable std::optional<std::vector<uint32_t>> readIds = std::nullopt;

    const dcm::NamedElement &rowOf(const KnownChild &child) const { return format->children[child.row]; }
    Role roleOf(const KnownChild &child) const { return rowOf(child).role(); }
    // The role of the parent; none for the frame, slot, card or port list itself.
    Role parentRole() const { return parent != nullptr ? parent->role : Role::none; }
    // The ids in its id or list of ids, read once for all children.
    const std::vector<uint32_t> &ids() const;
    // The format of an attribute; nullptr if the format does not have it.
    const dcm::Attribute *attribute(const char *attributeName) const;
    // The last child of a role, which is the one that counts; nullptr if there is none.
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

    // The relation that it expresses; nullptr if there is none.
    const Relation *relation() const { return relationOf(context.role, attribute); }
    // The name of the attribute or of the element.
    std::string name() const { return attribute != nullptr ? attribute->name : context.name; }
};

// An element or attribute that the format does not have at this place.
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

// The kinds of content that a rule for values checks.
using Kinds = uint32_t;
template <class... Some> constexpr Kinds kindsOf(Some... kinds)
{
    return ((Kinds{1} << static_cast<unsigned>(kinds)) | ...);
}
constexpr Kinds kNumberKinds = kindsOf(Kind::number, Kind::count, Kind::id, Kind::typeIds);

// The roles of elements that a rule checks; none: all.
struct Roles {
    uint64_t bits[2] = {};

    constexpr void add(Role role) { bits[index(role)] |= mask(role); }
    constexpr bool has(Role role) const { return (bits[index(role)] & mask(role)) != 0; }
    constexpr bool isEmpty() const { return bits[0] == 0 && bits[1] == 0; }

private:
    static constexpr size_t index(Role role) { return static_cast<size_t>(role) / 64; }
    static constexpr uint64_t mask(Role role) { return uint64_t{1} << static_cast<unsigned>(role) % 64; }
};
static_assert(static_cast<size_t>(Role::count) <= 64 * std::size(Roles().bits));
template <class... Some> constexpr Roles rolesOf(Some... roles)
{
    Roles some;
    (some.add(roles), ...);
    return some;
}

// The things that a rule checks, and its functions for them.
struct RuleKind {
    FileFunction file = nullptr;
    ElementFunction element = nullptr;
    Roles roles = {};
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
    // For faults that only some decoders ignore: nothing is reported if a query fails because of the same value.
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
// Without roles, all elements.
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
// For rules whose findings come from the tool itself: about failing queries and comments.
constexpr RuleKind byTheEngine()
{
    return {};
}

// Under the content of the first of some children that exists, or else under the id of the element.
Finding &atChildOrId(const Context &context, std::initializer_list<Role> roles, const std::string &text,
                     Findings &findings);

struct Rule {
    const char *name;
    Severity severity;
    RuleKind kind;

    // A finding about a failing query is always shown, regardless of options and comments.
    constexpr bool canBeSilenced() const { return severity != Severity::error; }
};

} // namespace dcmtool

#endif
