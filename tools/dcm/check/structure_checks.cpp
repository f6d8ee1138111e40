// Elements and attributes: what the format knows where, how often, how many and in which order.
#include "card/card.h"
#include "card/card_format.h"
#include "frame/frame.h"
#include "frame/frame_format.h"
#include "slot/slot_format.h"
#include "tools/dcm/check/checks.h"
#include "tools/dcm/check/format_lookup.h"
#include "vm/vm_format.h"

#include <libxml/tree.h>

#include <array>
#include <bitset>
#include <cstring>
#include <map>
#include <set>
#include <string_view>

namespace dcmtool {

namespace {

// A name in the quotes of names: those of values are others.
std::string named(const std::string &name)
{
    return "\"" + shortened(name) + "\"";
}

// ---- What the format does not know ----------------------------------------------------------------------------------

// Where the format knows a name: the elements that it may stand in, or that may have it.
using Homes = std::map<std::string, std::set<std::string>>;

struct Names {
    Homes elements;
    Homes attributes;

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

const Homes &homesOf(const Stranger &stranger)
{
    static const Names names;
    return stranger.isAttribute ? names.attributes : names.elements;
}

bool isKnownElsewhere(const Stranger &stranger)
{
    return homesOf(stranger).count(stranger.name) != 0;
}

std::vector<std::string> namesIn(const dcm::Element &format, bool areAttributes)
{
    std::vector<std::string> names;
    for (size_t i = 0; i < (areAttributes ? format.attributeCount : format.childCount); i++)
        names.emplace_back(areAttributes ? format.attributes[i].name : format.children[i].name);
    return names;
}

std::string listedNames(const std::vector<std::string> &names)
{
    std::string list;
    for (size_t i = 0; i < names.size(); i++)
        list += (i == 0 ? "" : i + 1 == names.size() ? " or " : ", ") + named(names[i]);
    return list;
}

// What other programs put into a description for themselves.
bool isForeign(const Stranger &stranger)
{
    if (!stranger.isAttribute)
        return false;
    const xmlAttr *attribute = xmlHasProp(stranger.node, reinterpret_cast<const xmlChar *>(stranger.name));
    return attribute != nullptr && attribute->type == XML_ATTRIBUTE_NODE && attribute->ns != nullptr;
}

Finding &tell(const Stranger &stranger, const std::string &text, Findings &findings)
{
    return stranger.isAttribute ? findings.atAttribute(stranger.node, stranger.name, text)
                                : findings.atName(stranger.node, text);
}

void unknown(const Stranger &stranger, Findings &findings)
{
    if (findings.counts(stranger.node))
        return;
    const std::vector<std::string> known = namesIn(*stranger.parent.format, stranger.isAttribute);
    const std::string around = named(stranger.parent.name);
    std::string expected = "; " + around + (stranger.isAttribute ? " has no attributes" : " holds no elements");
    if (!known.empty() && known.size() <= 12)
        expected = "; expected " + listedNames(known);
    else if (!known.empty())
        expected = "; " + around + " knows " + std::to_string(known.size()) + " others";
    tell(stranger, named(stranger.name) + " is not known and is passed over" + expected, findings)
        .meaning(nearest(stranger.name, known));
}

void misplaced(const Stranger &stranger, Findings &findings)
{
    if (findings.counts(stranger.node))
        return;
    const std::set<std::string> &homes = homesOf(stranger).at(stranger.name);
    const std::vector<std::string> known = namesIn(*stranger.parent.format, stranger.isAttribute);
    tell(stranger,
         named(stranger.name) + " means nothing in " + named(stranger.parent.name) + " and is passed over; it " +
             (stranger.isAttribute ? "is an attribute of " : "belongs into ") +
             listedNames({homes.begin(), homes.end()}),
         findings)
        .meaning(nearest(stranger.name, known));
}

void unknownElement(const Stranger &stranger, Findings &findings)
{
    if (!stranger.isAttribute && !isKnownElsewhere(stranger))
        unknown(stranger, findings);
}

void misplacedElement(const Stranger &stranger, Findings &findings)
{
    if (!stranger.isAttribute && isKnownElsewhere(stranger))
        misplaced(stranger, findings);
}

void unknownAttribute(const Stranger &stranger, Findings &findings)
{
    if (stranger.isAttribute && !isKnownElsewhere(stranger) && !isForeign(stranger))
        unknown(stranger, findings);
}

void misplacedAttribute(const Stranger &stranger, Findings &findings)
{
    if (stranger.isAttribute && isKnownElsewhere(stranger) && !isForeign(stranger))
        misplaced(stranger, findings);
}

// Text where only elements mean something.
constexpr size_t kMostOfStrayText = 32;

void strayText(const Spot &spot, Findings &findings)
{
    if (spot.format->content.kind != dcm::Kind::none)
        return;
    for (const xmlNode *child = spot.node->children; child != nullptr; child = child->next) {
        if (child->type == XML_ENTITY_REF_NODE) {
            findings.atName(spot.node, "what the entity \"&" + shortened(reinterpret_cast<const char *>(child->name)) +
                                           ";\" brings is passed over: elements count only where they are written");
            continue;
        }
        if ((child->type != XML_TEXT_NODE && child->type != XML_CDATA_SECTION_NODE) || child->content == nullptr)
            continue;
        const char *start = reinterpret_cast<const char *>(child->content);
        start += std::strspn(start, " \t\r\n");
        if (*start == '\0')
            continue;
        const std::string_view text = start;
        // Its place is known only where it comes first.
        const auto add = child == spot.node->children ? &Findings::atContent : &Findings::atName;
        (findings.*add)(spot.node,
                        "the text '" +
                            shortened(text.substr(0, text.find_last_not_of(" \t\r\n") + 1), kMostOfStrayText) +
                            "' in " + named(spot.name) + " is passed over: only elements count there");
        return;
    }
}

std::string effectOfMissing(const Spot &spot, const dcm::Attribute &attribute)
{
    if (spot.format == &dcm::kSlotElement)
        return "the slot is never found";
    switch (attribute.content.kind) {
    case dcm::Kind::number:
    case dcm::Kind::keyword:
        return "it counts as 0";
    case dcm::Kind::ledName:
        return "it counts as an empty name";
    default:
        return "the element is passed over";
    }
}

void missingAttribute(const Spot &spot, Findings &findings)
{
    for (size_t i = 0; i < spot.format->attributeCount; i++) {
        const dcm::Attribute &attribute = spot.format->attributes[i];
        // A frame or card may do without its type; what it describes is then type 0.
        const bool isIdentity = spot.parent == nullptr && i == 0;
        if ((attribute.need != dcm::Need::required && !isIdentity) || spot.text(attribute.name))
            continue;
        findings.atName(spot.node, named(attribute.name) + " is missing: " + effectOfMissing(spot, attribute));
    }
}

// ---- How often ------------------------------------------------------------------------------------------------------

void repeatedElement(const Spot &spot, Findings &findings)
{
    std::array<Node, 64> first = {};
    for (const KnownChild &child : spot.known) {
        const dcm::NamedElement &row = spot.rowOf(child);
        if (row.element->most == 1 && first[child.row] != nullptr) {
            const bool isFirstKept = spot.format == &dcm::kChipElement;
            findings
                .atName(child.node, named(row.name) + " stands in " + named(spot.name) + " a second time: " +
                                        (isFirstKept ? "the first one holds"
                                                     : "it takes the place of the first or is mixed with it"))
                .noting(findings.file().nameSpan(first[child.row]), "the first one");
        } else {
            first[child.row] = child.node;
        }
    }
}

void tooMany(const Spot &spot, Findings &findings)
{
    for (size_t row = 0; row < spot.format->childCount; row++) {
        const size_t most = spot.format->children[row].element->most;
        if (most == 1 || most >= spot.known.size())
            continue;
        size_t count = 0;
        for (const KnownChild &child : spot.known) {
            if (child.row != row || ++count != most + 1)
                continue;
            findings.atName(child.node, "the record has room for " + std::to_string(most) + " of " +
                                            named(spot.format->children[row].name) +
                                            (spot.format == &dcm::kVmElement
                                                 ? ": from here on they take the places of the first ones"
                                                 : ": from here on they are passed over"));
        }
    }
}

// ---- How many -------------------------------------------------------------------------------------------------------

const dcm::Attribute *countOf(const Spot &spot)
{
    if (spot.format == &dcm::kVmElement)
        return &spot.format->attributes[0];
    return findAttribute(*spot.format, dcm::Kind::count);
}

// Counts entries, which go by their ids, and by their types where each type counts for itself.
class Entries {
public:
    void add(Node node, const dcm::Element &format)
    {
        const dcm::Attribute *id = idAttribute(format);
        if (id == nullptr || !dcm::Text::attribute(node, id->name, {"dcm"})) {
            withoutId_++;
            return;
        }
        const dcm::Attribute *type = findAttribute(format, dcm::Kind::keyword);
        const dcm::Text typeText = dcm::Text::attribute(node, type != nullptr ? type->name : "", {"dcm"});
        Ids &ids = typed_[typeText ? typeText.c_str() : ""];
        for (const uint32_t number : idsOf(node, format)) {
            if (number < ids.small.size())
                ids.small[number] = true;
            else
                ids.large.insert(number);
        }
    }
    size_t count() const
    {
        size_t count = withoutId_;
        for (const auto &[type, ids] : typed_)
            count += ids.small.count() + ids.large.size();
        return count;
    }

private:
    struct Ids {
        std::bitset<DCM_PANEL_IF_MAX + 1> small;
        std::set<uint32_t> large;
    };
    std::map<std::string, Ids> typed_;
    size_t withoutId_ = 0;
};

void countDiffers(const Spot &spot, Findings &findings)
{
    const dcm::Attribute *num = countOf(spot);
    if (num == nullptr)
        return;
    const dcm::Text text = dcm::Text::attribute(spot.node, num->name, {"dcm"});
    if (!text)
        return;
    Entries entries;
    for (const KnownChild &child : spot.known)
        entries.add(child.node, *spot.rowOf(child).element);
    const size_t count = entries.count();
    const uint32_t announced = text.number();
    if (count == announced)
        return;
    findings.atValue(spot.node, num->name,
                     std::to_string(announced) + (announced == 1 ? " entry is" : " entries are") + " announced, but " +
                         std::to_string(count) + (count == 1 ? " is" : " are") + " described: " +
                         (count < announced ? "the others stay empty and count all the same"
                                            : "what is not announced is passed over or not looked at"));
}

// ---- Order ----------------------------------------------------------------------------------------------------------

void slotGap(const Spot &spot, Findings &findings)
{
    if (spot.format != &dcm::kSlotInfoElement)
        return;
    uint32_t next = 1;
    uint32_t passed = 0; // the id of the last one that was passed over
    for (const KnownChild &child : spot.known) {
        const char *name = spot.rowOf(child).element->attributes[0].name;
        const dcm::Text text = dcm::Text::attribute(child.node, name, {"dcm"});
        const uint32_t id = text ? text.number() : 0;
        if (!text || id == next) {
            next += text ? 1 : 0;
            continue;
        }
        // Those that follow in order are lost with it.
        if (passed == 0 || id != passed + 1)
            findings.atValue(child.node, name,
                             "slot " + std::to_string(id) + " stands where slot " + std::to_string(next) +
                                 " is expected, and is passed over: slots are listed 1, 2, 3, ... without a gap" +
                                 (id > next ? "; none behind it counts until then" : ""));
        passed = id;
    }
}

// "no" to a laser is "no" to a change of its medium, whatever has been said before.
void lostByOrder(const Spot &spot, Findings &findings)
{
    const KnownChild *medium = nullptr;
    for (const KnownChild &child : spot.known) {
        const char *name = spot.rowOf(child).name;
        if (std::strcmp(name, dcm::kSupportMediaChgName) == 0)
            medium = &child;
        if (medium == nullptr || std::strcmp(name, dcm::kSupportLaserName) != 0)
            continue;
        uint32_t isLaser = 1;
        uint32_t isChangeable = 0;
        const dcm::Text laserText = dcm::Text::content(child.node, {"dcm"});
        const dcm::Text mediumText = dcm::Text::content(medium->node, {"dcm"});
        static_cast<void>(dcm::readWord(dcm::kYesNoWords, laserText.word(), isLaser));
        static_cast<void>(dcm::readWord(dcm::kYesNoWords, mediumText.word(), isChangeable));
        if (isLaser == 0 && isChangeable != 0)
            findings
                .atName(medium->node, named(dcm::kSupportMediaChgName) + " stands before " +
                                          named(dcm::kSupportLaserName) + ", whose '" + laserText.c_str() +
                                          "' takes it back; expected behind it")
                .noting(findings.file().contentSpan(child.node), "takes it back");
    }
}

// ---- The checks -----------------------------------------------------------------------------------------------------

constexpr Check kChecks[] = {
    {"unknown-element", Severity::warning, "An element that no place of the format knows",
     "Decoders pass over elements that they do not know. A misspelled element leaves its field at 0, and the network "
     "element works with that: the fan that is not there, the port without a driver.",
     R"(<device>
  <card typeid="1">
    <occupyslotsnum>2</occupyslotsnum>
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <occupyslotnum>2</occupyslotnum>
  </card>
</device>
)",
     strangersBy(unknownElement)},
    {"misplaced-element", Severity::warning, "An element that means nothing where it stands",
     "The format knows the element, but not in this place, where it is passed over like an unknown one: a \"workmode\" "
     "in a group of inner ports, a \"speedlevelforce\" of a slot's fan controller.",
     R"(<device>
  <slot typeid="1">
    <occupyslotnum>2</occupyslotnum>
  </slot>
</device>
)",
     R"(<device>
  <card typeid="1">
    <occupyslotnum>2</occupyslotnum>
  </card>
</device>
)",
     strangersBy(misplacedElement)},
    {"unknown-attribute", Severity::warning, "An attribute that no place of the format knows",
     "Attributes that no decoder asks for are passed over, and what they were to say counts as not given. Attributes "
     "of "
     "a namespace of their own are other programs' and no mistake.",
     R"(<device>
  <card typeid="1" abrname="LC"/>
</device>
)",
     R"(<device>
  <card typeid="1" abbrname="LC"/>
</device>
)",
     strangersBy(unknownAttribute)},
    {"misplaced-attribute", Severity::warning, "An attribute that means nothing where it stands",
     "The format knows the attribute, but of other elements. A frame has no \"mode\": of two frames with one type, the "
     "second is never found.",
     R"(<device>
  <frame typeid="1" mode="1"/>
</device>
)",
     R"(<device>
  <frame typeid="1"/>
</device>
)",
     strangersBy(misplacedAttribute)},
    {"stray-text", Severity::warning, "Text or an entity where only elements count",
     "A container holds elements. Text between them is passed over; so is all that an entity brings, for elements "
     "count "
     "only where they are written.",
     R"(<device>
  <card typeid="1">
    2
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <occupyslotnum>2</occupyslotnum>
  </card>
</device>
)",
     spotsBy(strayText)},
    {"missing-attribute", Severity::warning, "A required attribute is missing, and no query fails for it",
     "Most attributes that are missing make a query fail. Others leave the element without effect: a slot without "
     "\"typeid\" is never found, a component without \"num\" is there 0 times.",
     R"(<device>
  <slot>
    <maxcardnum>1</maxcardnum>
  </slot>
</device>
)",
     R"(<device>
  <slot typeid="1">
    <maxcardnum>1</maxcardnum>
  </slot>
</device>
)",
     ignoredFaultsBy(missingAttribute)},
    {"repeated-element", Severity::warning, "An element stands twice where one counts",
     "Of two settings the last one holds, of two sets both count, and of two containers the second announces anew how "
     "many entries there are. Whoever reads or changes the first one is misled.",
     R"(<device>
  <frame typeid="1">
    <maxslotnum>8</maxslotnum>
    <maxslotnum>16</maxslotnum>
  </frame>
</device>
)",
     R"(<device>
  <frame typeid="1">
    <maxslotnum>16</maxslotnum>
  </frame>
</device>
)",
     spotsBy(repeatedElement)},
    {"too-many", Severity::warning, "More elements than the record has room for",
     "Records have a fixed size. Elements beyond it are passed over without a word; in the port list of a VM they take "
     "the places of the first ones.",
     R"(<device>
  <frame typeid="1">
    <cardtypecaps>
      <cap>1</cap> <cap>2</cap> <cap>3</cap> <cap>4</cap>
      <cap>5</cap> <cap>6</cap> <cap>7</cap> <cap>8</cap>
      <cap>9</cap>
    </cardtypecaps>
  </frame>
</device>
)",
     R"(<device>
  <frame typeid="1">
    <cardtypecaps>
      <cap>1</cap> <cap>2</cap> <cap>3</cap> <cap>4</cap>
      <cap>5</cap> <cap>6</cap> <cap>7</cap> <cap>8</cap>
    </cardtypecaps>
  </frame>
</device>
)",
     spotsBy(tooMany)},
    {"count-differs", Severity::warning, "Not as many entries are described as announced",
     "Processes loop up to the announced number. Entries that are announced but not described are there all the same, "
     "empty: a port without a number, a CPU with 0 cores. Those that are described but not announced are not looked "
     "at.",
     R"(<device>
  <card typeid="1">
    <memory-entity num="2">
      <memory id="1"/>
    </memory-entity>
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <memory-entity num="1">
      <memory id="1"/>
    </memory-entity>
  </card>
</device>
)",
     spotsBy(countDiffers)},
    {"slot-gap", Severity::warning, "The slots of a frame are not listed 1, 2, 3, ...",
     "The rules of slots are read in their order. A slot that is not the next one is passed over, and so are all "
     "behind "
     "it: after a gap no slot takes any card.",
     R"(<device>
  <frame typeid="1">
    <slotinfo>
      <slotid id="1"/>
      <slotid id="3"/>
    </slotinfo>
  </frame>
</device>
)",
     R"(<device>
  <frame typeid="1">
    <slotinfo>
      <slotid id="1"/>
      <slotid id="2"/>
    </slotinfo>
  </frame>
</device>
)",
     spotsBy(slotGap)},
    {"lost-by-order", Severity::warning, "An element is taken back by one behind it",
     "A port whose laser cannot be controlled has a medium that does not change, unless the description says otherwise "
     "behind that. Said before, it is taken back.",
     R"(<device>
  <card typeid="1">
    <mgt-port num="1">
      <port id="1">
        <supportmediachg>yes</supportmediachg>
        <supportlaser>no</supportlaser>
      </port>
    </mgt-port>
  </card>
</device>
)",
     R"(<device>
  <card typeid="1">
    <mgt-port num="1">
      <port id="1">
        <supportlaser>no</supportlaser>
        <supportmediachg>yes</supportmediachg>
      </port>
    </mgt-port>
  </card>
</device>
)",
     spotsBy(lostByOrder)},
};

} // namespace

Checks structureChecks()
{
    return {kChecks, std::size(kChecks)};
}

} // namespace dcmtool
