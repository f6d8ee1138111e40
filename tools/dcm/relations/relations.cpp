#include "tools/dcm/relations/relations.h"

#include "common/vocabularies.h"
#include "led/led.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/description/led_names.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace dcmtool {

using dcm::Kind;
using dcm::Role;

const std::vector<Relation> &allRelations()
{
    static const std::vector<Relation> relations = {
        {Role::slotsOfKind, Kind::none, Target::slot, Scope::sameType, "slot"},
        {Role::fanSlots, Kind::none, Target::slot, Scope::sameType, "slot"},
        {Role::powerSlots, Kind::none, Target::slot, Scope::sameType, "slot"},
        {Role::crossSlots, Kind::none, Target::slot, Scope::sameType, "slot"},
        {Role::cooledCards, Kind::none, Target::slot, Scope::sameType, "slot"},
        {Role::moduleSlot, Kind::none, Target::slot, Scope::sameType, "slot"},
        {Role::moduleSlotOffset, Kind::none, Target::slot, Scope::sameType, "slot", Role::moduleSlot},
        {Role::innerPort, Kind::id, Target::slot, Scope::anyFrameOrSlot, "slot"},
        {Role::innerPortGroup, Kind::bitList, Target::slot, Scope::anyFrameOrSlot, "slot"},
        {Role::crossLinkSlot, Kind::none, Target::slot, Scope::anyFrameOrSlot, "slot"},
        {Role::ledMapName, Kind::source, Target::slot, Scope::anyFrameOrSlot, "slot"},
        {Role::slotCardTypes, Kind::none, Target::cardType, Scope::anyCard, "card type"},
        {Role::controllerOfFan, Kind::none, Target::fanController, Scope::sameType, "fan controller"},
        {Role::controllerOffsetOfFan, Kind::none, Target::fanController, Scope::sameType, "fan controller",
         Role::controllerOfFan},
        {Role::sensorControllers, Kind::none, Target::fanController, Scope::anyFrameOrSlot, "fan controller"},
        {Role::coolingEntry, Kind::bitList, Target::fanController, Scope::sameType, "fan controller"},
        {Role::cooledFanModules, Kind::none, Target::fanModule, Scope::sameType, "fan module"},
        {Role::cooledPowerSupplies, Kind::none, Target::powerSupply, Scope::sameType, "power supply"},
        {Role::ledMapName, Kind::none, Target::led, Scope::whereLedIsAttached, "LED"},
        {Role::ledMapSource, Kind::ledName, Target::led, Scope::whereLedIsAttached, "LED"},
    };
    return relations;
}

const Relation *relationOf(Role holder, const dcm::Attribute *attribute)
{
    const Kind kind = attribute != nullptr ? attribute->content.kind : Kind::none;
    for (const Relation &relation : allRelations())
        if (relation.holder == holder && relation.attribute == kind)
            return &relation;
    return nullptr;
}

namespace {

// Of "src-3/1", the 3; 0 where it cannot be read.
uint32_t slotOfSource(const char *text)
{
    constexpr std::string_view start = "src-";
    return std::string_view(text).substr(0, start.size()) == start ? dcm::readNumber(text + start.size()) : 0;
}

// Whether the last sibling of a role has a number other than 0.
bool hasNumberBeside(Node element, Role role)
{
    uint32_t number = 0;
    for (const Node sibling : dcm::children(element->parent))
        if (roleOf(sibling) == role)
            if (const dcm::Text text = dcm::Text::content(sibling, {"dcm"}))
                number = text.number();
    return number != 0;
}

} // namespace

std::vector<uint32_t> numbersNamed(const char *text, const dcm::Content &content)
{
    if (content.kind == Kind::bitList)
        return numbersOf(text, content);
    if (content.kind == Kind::number || content.kind == Kind::id || content.kind == Kind::source) {
        const uint32_t number = content.kind == Kind::source ? slotOfSource(text) : dcm::readNumber(text);
        return number != 0 ? std::vector<uint32_t>{number} : std::vector<uint32_t>();
    }
    if (content.kind != Kind::numberList)
        return {};
    // No list has more numbers than characters; it ends at the first 0.
    std::vector<uint32_t> numbers(std::strlen(text) + 1);
    const auto size = static_cast<int32_t>(std::min<size_t>(numbers.size() * sizeof(uint32_t), INT32_MAX));
    static_cast<void>(dcmStr2Array(text, numbers.data(), size));
    numbers.resize(std::min(numbers.size(), content.limit));
    numbers.erase(std::find(numbers.begin(), numbers.end(), 0U), numbers.end());
    return numbers;
}

std::vector<uint32_t> numbersNamed(Node element, const Relation &relation, const char *text,
                                   const dcm::Content &content)
{
    if (relation.unless == Role::none)
        return numbersNamed(text, content);
    if (hasNumberBeside(element, relation.unless))
        return {};
    std::vector<uint32_t> numbers;
    // The fields have 8 bits.
    for (const uint32_t id : idsOf(element->parent, *formatOf(element->parent)))
        numbers.push_back((id + dcm::readNumber(text)) & UINT8_MAX);
    return numbers;
}

// ---- What is described ----------------------------------------------------------------------------------------------

namespace {

constexpr uint32_t kLedIds = 256;
constexpr size_t kMostTargets = 16; // of a number: a file may describe it again and again

// LEDs of a type and number have one key.
uint32_t ledKey(const char *type, uint32_t id)
{
    return static_cast<uint32_t>(rowOf(dcm::kLedTypeWords, type)) * kLedIds + id;
}

} // namespace

class TargetIndex::Builder {
public:
    Builder(Entries &entries, const DescribedType &type) : entries_(entries), type_(type)
    {
        if (type.kind == RecordKind::card)
            add(Target::cardType, nullptr, type.typeIds.front(), type.element);
        visit(type.element, rowOf(type.kind));
    }

private:
    void add(Target target, Node scope, uint32_t key, Node element)
    {
        std::vector<Node> &elements = entries_[{target, scope, key}];
        if (elements.size() < kMostTargets)
            elements.push_back(element);
    }

    void addIds(Target target, Node element, const dcm::NamedElement &row)
    {
        for (const uint32_t id : idsOf(element, *row.element)) {
            add(target, type_.element, id, element);
            if (target == Target::fanController || target == Target::slot)
                add(target, nullptr, id, element);
        }
    }

    // An LED is one of its holder, and one of all frames or cards.
    void addLed(Node led, const dcm::NamedElement &row)
    {
        const dcm::Attribute *type = findAttribute(*row.element, Kind::keyword);
        const dcm::Text text = dcm::Text::attribute(led, type->name, {"dcm"});
        if (!text || !isWord(text.c_str(), dcm::kLedTypeWords))
            return;
        const Node holder = led->parent->parent;
        for (const uint32_t id : idsOf(led, *row.element)) {
            add(Target::led, holder, ledKey(text.c_str(), id), led);
            if (holder == type_.element)
                add(Target::led, nullptr, anywhereKey(type_.kind, ledKey(text.c_str(), id)), led);
        }
    }

    void visit(Node element, const dcm::NamedElement &row)
    {
        switch (row.role()) {
        case Role::slotRules:
            addIds(Target::slot, element, row);
            break;
        case Role::fanController:
            addIds(Target::fanController, element, row);
            break;
        case Role::fanModule:
            addIds(Target::fanModule, element, row);
            break;
        case Role::powerSupply:
            addIds(Target::powerSupply, element, row);
            break;
        case Role::led:
            addLed(element, row);
            break;
        default:
            break;
        }
        if (row.element->childCount == 0)
            return;
        for (const Node child : dcm::children(element)) {
            const size_t i = findRow(*row.element, dcm::nameOf(child));
            if (i < row.element->childCount)
                visit(child, row.element->children[i]);
        }
    }

    Entries &entries_;
    const DescribedType &type_;

public:
    static uint32_t anywhereKey(RecordKind kind, uint32_t key) { return key << 2U | static_cast<uint32_t>(kind); }
};

const std::vector<Node> &TargetIndex::elementsOf(const Key &key) const
{
    static const std::vector<Node> none;
    if (!isBuilt_) {
        isBuilt_ = true;
        for (const DescribedType &type : types_)
            Builder(entries_, type);
    }
    const auto found = entries_.find(key);
    return found != entries_.end() ? found->second : none;
}

namespace {

// The element in which a number is looked for; nullptr: anywhere.
Node scopeOf(const Relation &relation, const DescribedType &type)
{
    const bool isAnywhere =
        relation.scope == Scope::anyCard || (relation.scope == Scope::anyFrameOrSlot && type.kind != RecordKind::frame);
    return isAnywhere ? nullptr : type.element;
}

} // namespace

const std::vector<Node> &TargetIndex::find(const Relation &relation, const DescribedType &type, uint32_t number) const
{
    return elementsOf({relation.target, scopeOf(relation, type), number});
}

bool TargetIndex::has(const Relation &relation, const DescribedType &type, uint32_t number) const
{
    return !find(relation, type, number).empty();
}

std::vector<Node> TargetIndex::findLeds(const char *name, Node holder) const
{
    const LedName led = splitName(name);
    if (!isLedName(led))
        return {};
    const uint32_t key = ledKey(led.type.c_str(), smallNumber(led.id));
    std::vector<Node> leds = elementsOf({Target::led, holder, key});
    const bool isOfSystem = led.attach == gDcmEttAttachStrs[dcm::kAttachSys];
    const bool isOfCard = led.attach == gDcmEttAttachStrs[dcm::kAttachCard];
    // Without the number of another slot, it is one of the holder.
    if (!leds.empty() || !isSmallNumber(led.slot) || (!isOfSystem && !isOfCard))
        return leds;
    const RecordKind kind = isOfSystem ? RecordKind::frame : RecordKind::card;
    return elementsOf({Target::led, nullptr, Builder::anywhereKey(kind, key)});
}

// ---- References -----------------------------------------------------------------------------------------------------

namespace {

// Collects the references in a frame, slot or card.
class Collector {
public:
    Collector(const DescriptionFile &file, const DescribedType &type, const TargetIndex &index,
              std::vector<Reference> &references)
        : file_(file), type_(type), index_(index), references_(references)
    {
    }

    void visit(Node element, const dcm::NamedElement &row)
    {
        for (size_t i = 0; i < row.element->attributeCount; i++) {
            const dcm::Attribute &attribute = row.element->attributes[i];
            if (const Relation *relation = relationOf(row.role(), &attribute))
                if (const dcm::Text text = dcm::Text::attribute(element, attribute.name, {"dcm"}))
                    add({relation, element, &attribute, file_.valueSpan(element, attribute.name), "", {}},
                        attribute.content, text.c_str());
        }
        if (const Relation *relation = relationOf(row.role(), nullptr))
            if (const dcm::Text text = dcm::Text::content(element, {"dcm"}))
                add({relation, element, nullptr, file_.contentSpan(element), "", {}}, row.element->content,
                    text.c_str());
        for (const Node child : dcm::children(element)) {
            const size_t i = findRow(*row.element, dcm::nameOf(child));
            if (i < row.element->childCount)
                visit(child, row.element->children[i]);
        }
    }

private:
    void add(Reference reference, const dcm::Content &content, const char *text)
    {
        if (content.kind == Kind::ledName) {
            reference.key = text;
            reference.targets = index_.findLeds(text, reference.element->parent->parent);
            references_.push_back(reference);
        }
        for (const uint32_t number : numbersNamed(reference.element, *reference.relation, text, content)) {
            reference.key = std::to_string(number);
            reference.targets = index_.find(*reference.relation, type_, number);
            references_.push_back(reference);
        }
    }

    const DescriptionFile &file_;
    const DescribedType &type_;
    const TargetIndex &index_;
    std::vector<Reference> &references_;
};

} // namespace

std::vector<Reference> referencesIn(const DescriptionFile &file)
{
    const std::vector<DescribedType> types = file.types();
    const TargetIndex index(types);
    std::vector<Reference> references;
    for (const DescribedType &type : types)
        Collector(file, type, index, references).visit(type.element, rowOf(type.kind));
    return references;
}

} // namespace dcmtool
