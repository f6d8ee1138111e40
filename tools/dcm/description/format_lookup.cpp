#include "tools/dcm/description/format_lookup.h"

#include "card/card.h"
#include "common/bits.h"
#include "common/paths.h"
#include "frame/frame.h"
#include "slot/slot.h"
#include "vm/vm.h"

#include <libxml/tree.h>

#include <cstring>

namespace dcmtool {

const std::vector<dcm::NamedElement> &deviceChildren()
{
    static const std::vector<dcm::NamedElement> children = {
        {dcm::kFrameName, &dcm::kFrameElement},
        {dcm::kSlotName, &dcm::kSlotElement},
        {dcm::kCardName, &dcm::kCardElement},
    };
    return children;
}

const dcm::NamedElement &rowOf(RecordKind kind)
{
    static const dcm::NamedElement vm = {dcm::kVmName, &dcm::kVmElement};
    return kind == RecordKind::vm ? vm : deviceChildren()[static_cast<size_t>(kind)];
}

size_t findRow(const dcm::Element &format, const char *name, size_t from)
{
    for (size_t i = 0; i < format.childCount; i++) {
        const size_t row = from + i < format.childCount ? from + i : from + i - format.childCount;
        if (std::strcmp(format.children[row].name, name) == 0)
            return row;
    }
    return format.childCount;
}

const dcm::Attribute *findAttribute(const dcm::Element &format, const char *name)
{
    for (size_t i = 0; i < format.attributeCount; i++)
        if (std::strcmp(format.attributes[i].name, name) == 0)
            return &format.attributes[i];
    return nullptr;
}

const dcm::Attribute *findAttribute(const dcm::Element &format, dcm::Kind kind)
{
    for (size_t i = 0; i < format.attributeCount; i++)
        if (format.attributes[i].content.kind == kind)
            return &format.attributes[i];
    return nullptr;
}

std::vector<std::string> childNames(const dcm::Element &format)
{
    std::vector<std::string> names;
    for (size_t i = 0; i < format.childCount; i++)
        names.emplace_back(format.children[i].name);
    return names;
}

std::vector<std::string> attributeNames(const dcm::Element &format)
{
    std::vector<std::string> names;
    for (size_t i = 0; i < format.attributeCount; i++)
        names.emplace_back(format.attributes[i].name);
    return names;
}

const dcm::Attribute *idAttribute(const dcm::Element &format)
{
    const dcm::Attribute *id = findAttribute(format, dcm::Kind::id);
    return id != nullptr ? id : findAttribute(format, dcm::Kind::bitList);
}

std::vector<uint32_t> idsOf(Node element, const dcm::Element &format)
{
    const dcm::Attribute *id = idAttribute(format);
    if (id == nullptr)
        return {};
    const dcm::Text text = dcm::Text::attribute(element, id->name, {"dcm"});
    return text ? idsOf(text.c_str(), id->content) : std::vector<uint32_t>();
}

std::vector<uint32_t> idsOf(const char *text, const dcm::Content &content)
{
    return content.kind == dcm::Kind::id ? std::vector<uint32_t>{dcm::readNumber(text)} : numbersOf(text, content);
}

std::vector<uint32_t> numbersOf(const char *list, const dcm::Content &content)
{
    uint8_t bits[DCM_PANEL_IF_MAX / 8] = {};
    static_cast<void>(dcmStr2BitList(list, 1, static_cast<uint32_t>(content.limit), bits, sizeof bits));
    std::vector<uint32_t> numbers;
    for (uint32_t bit = 0; bit < content.kept; bit++)
        if (dcm::_dcmBitTest(bits, bit) != 0)
            numbers.push_back(bit + 1);
    return numbers;
}

const dcm::NamedElement *formatRowOf(Node element)
{
    const Node parent = element->parent;
    const dcm::NamedElement &vm = rowOf(RecordKind::vm);
    if (parent == nullptr || parent->type != XML_ELEMENT_NODE)
        return dcm::isNamed(element, vm.name) ? &vm : nullptr;
    if (parent->parent == nullptr || parent->parent->type != XML_ELEMENT_NODE) {
        if (!dcm::isNamed(parent, vm.name)) {
            for (const dcm::NamedElement &child : deviceChildren())
                if (dcm::isNamed(element, child.name))
                    return &child;
            return nullptr;
        }
    }
    const dcm::Element *format = formatOf(parent);
    if (format == nullptr)
        return nullptr;
    const size_t row = findRow(*format, dcm::nameOf(element));
    return row < format->childCount ? &format->children[row] : nullptr;
}

const dcm::Element *formatOf(Node element)
{
    const dcm::NamedElement *row = formatRowOf(element);
    return row != nullptr ? row->element : nullptr;
}

dcm::Role roleOf(Node element)
{
    const dcm::NamedElement *row = formatRowOf(element);
    return row != nullptr ? row->role() : dcm::Role::none;
}

Node lastChild(Node element, dcm::Role role)
{
    Node last = nullptr;
    for (const Node child : dcm::children(element))
        if (roleOf(child) == role)
            last = child;
    return last;
}

} // namespace dcmtool
