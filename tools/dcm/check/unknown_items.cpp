#include "tools/dcm/check/unknown_items.h"

#include "common/paths.h"
#include "tools/dcm/description/format_lookup.h"

#include <libxml/tree.h>
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
    std::vector<std::string> names;
    for (size_t i = 0; i < (areAttributes ? format.attributeCount : format.childCount); i++)
        names.emplace_back(areAttributes ? format.attributes[i].name : format.children[i].name);
    return names;
}

Finding &report(const UnknownItem &item, const std::string &text, Findings &findings)
{
    return item.isAttribute ? findings.atAttribute(item.node, item.name, text) : findings.atName(item.node, text);
}

} // namespace

bool isKnownElsewhere(const UnknownItem &item)
{
    return placesOf(item).count(item.name) != 0;
}

bool isForeign(const UnknownItem &item)
{
    if (!item.isAttribute)
        return false;
    const xmlAttr *attribute = xmlHasProp(item.node, reinterpret_cast<const xmlChar *>(item.name));
    return attribute != nullptr && attribute->type == XML_ATTRIBUTE_NODE && attribute->ns != nullptr;
}

void reportUnknown(const UnknownItem &item, Findings &findings)
{
    if (findings.isForeign(item.name) || findings.counts(item.node))
        return;
    const std::vector<std::string> known = namesIn(*item.parent.format, item.isAttribute);
    const std::string around = quotedName(item.parent.name);
    std::string expected = "; " + around + (item.isAttribute ? " has no attributes" : " holds no elements");
    if (!known.empty() && known.size() <= 12)
        expected = "; expected " + listedNames(known);
    else if (!known.empty())
        expected = "; " + around + " knows " + std::to_string(known.size()) + " others";
    report(item, quotedName(item.name) + " is not known and is passed over" + expected, findings)
        .meaning(nearest(item.name, known));
}

void reportMisplaced(const UnknownItem &item, Findings &findings)
{
    if (findings.counts(item.node))
        return;
    const std::set<std::string> &places = placesOf(item).at(item.name);
    const std::vector<std::string> known = namesIn(*item.parent.format, item.isAttribute);
    report(item,
           quotedName(item.name) + " means nothing in " + quotedName(item.parent.name) + " and is passed over; it " +
               (item.isAttribute ? "is an attribute of " : "belongs into ") +
               listedNames({places.begin(), places.end()}),
           findings)
        .meaning(nearest(item.name, known));
}

} // namespace dcmtool
