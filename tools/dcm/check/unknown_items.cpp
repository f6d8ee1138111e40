#include "tools/dcm/check/unknown_items.h"

#include "common/paths.h"
#include "tools/dcm/description/format_lookup.h"

#include <libxml/tree.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace dcmtool {

namespace {

// The places where the format has a name: the elements that may contain it.
using KnownPlaces = std::map<std::string, std::set<std::string>>;

struct Names {
    KnownPlaces elements;
    KnownPlaces attributes;

    Names()
    {
        for (const dcm::NamedElement &child : deviceChildren())
            elements[child.name].insert(dcm::kDeviceName);
        for (const RecordKind kind : {RecordKind::frame, RecordKind::slot, RecordKind::card, RecordKind::vm})
            add(rowOf(kind));
    }

private:
    void add(const dcm::NamedElement &row)
    {
        for (size_t i = 0; i < row.element->attributeCount; i++)
            attributes[row.element->attributes[i].name].insert(row.name);
        for (size_t i = 0; i < row.element->childCount; i++) {
            elements[row.element->children[i].name].insert(row.name);
            add(row.element->children[i]);
        }
    }
};

const KnownPlaces &placesOf(const UnknownItem &item)
{
    static const Names names;
    return item.isAttribute ? names.attributes : names.elements;
}

std::vector<std::string> namesIn(const dcm::Element &format, bool areAttributes)
{
    return areAttributes ? attributeNames(format) : childNames(format);
}

// Whether an attribute is an element of the same parent, or an element one of its attributes.
bool isOfOtherSort(const UnknownItem &item)
{
    const dcm::Element &format = *item.parent.format;
    return item.isAttribute ? findRow(format, item.name) < format.childCount
                            : findAttribute(format, item.name) != nullptr;
}

Finding &report(const UnknownItem &item, const std::string &text, Findings &findings)
{
    return item.isAttribute ? findings.atAttribute(item.node, item.name, text) : findings.atName(item.node, text);
}

} // namespace

bool isKnownElsewhere(const UnknownItem &item)
{
    return placesOf(item).count(item.name) != 0 || isOfOtherSort(item);
}

bool isForeign(const UnknownItem &item)
{
    // An element is in the namespace of its parent unless it says otherwise.
    if (!item.isAttribute)
        return item.node->ns != nullptr && item.node->ns != item.parent.node->ns;
    const xmlAttr *attribute = xmlHasProp(item.node, reinterpret_cast<const xmlChar *>(item.name));
    return attribute != nullptr && attribute->type == XML_ATTRIBUTE_NODE && attribute->ns != nullptr;
}

namespace {

// Of many names, the few that are nearest.
std::vector<std::string> nearestOf(const std::string &written, const std::vector<std::string> &names)
{
    constexpr size_t kShown = 3;
    std::vector<std::string> nearest = nearestFirst(written, names);
    nearest.resize(std::min(nearest.size(), kShown));
    return nearest;
}

} // namespace

void reportUnknown(const UnknownItem &item, Findings &findings)
{
    if (findings.isForeign(item.name) || findings.counts(item.node))
        return;
    const std::vector<std::string> known = namesIn(*item.parent.format, item.isAttribute);
    const std::string around = quotedName(item.parent.name);
    std::string expected = "; " + around + (item.isAttribute ? " has no attributes" : " contains no elements");
    if (!known.empty() && known.size() <= 12)
        expected = "; expected " + listedNames(nearestFirst(item.name, known));
    else if (!known.empty())
        expected = "; expected a name such as " + listedNames(nearestOf(item.name, known));
    report(item, quotedName(item.name) + " is not known and is ignored" + expected, findings)
        .meaning(nearest(item.name, known));
}

void reportMisplaced(const UnknownItem &item, Findings &findings)
{
    if (findings.counts(item.node))
        return;
    if (isOfOtherSort(item)) {
        const std::string name = shortened(item.name);
        report(item,
               quotedName(name) + (item.isAttribute ? " is an element of " : " is an attribute of ") +
                   quotedName(item.parent.name) + (item.isAttribute ? ", not an attribute" : ", not an element") +
                   ", and is ignored; expected " +
                   (item.isAttribute ? "<" + name + ">...</" + name + ">" : name + "=\"...\""),
               findings);
        return;
    }
    const std::set<std::string> &places = placesOf(item).at(item.name);
    const std::vector<std::string> known = namesIn(*item.parent.format, item.isAttribute);
    report(item,
           quotedName(item.name) + " has no meaning in " + quotedName(item.parent.name) + " and is ignored; it " +
               (item.isAttribute ? "is an attribute of " : "belongs in ") + listedNames({places.begin(), places.end()}),
           findings)
        .meaning(nearest(item.name, known));
}

} // namespace dcmtool
