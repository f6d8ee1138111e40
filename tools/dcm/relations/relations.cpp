#include "tools/dcm/relations/relations.h"

#include "common/vocabularies.h"
#include "led/led.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/description/led_names.h"
#include "tools/dcm/description/texts.h"

#include <libxml/tree.h>

#include <algorithm>
#include <cstring>
#include <optional>
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

// The attribute of an element, or the one that is probably a misspelling of it.
dcm::Text probableAttribute(Node element, const dcm::Element &format, const char *name, size_t &left,
                            bool &isMisspelled)
{
    dcm::Text text = dcm::Text::attribute(element, name, {"dcm"});
    if (text)
        return text;
    for (const xmlAttr *attribute = element->properties; attribute != nullptr; attribute = attribute->next) {
        const char *written = reinterpret_cast<const char *>(attribute->name);
        if (findAttribute(format, written) != nullptr || left == 0)
            continue;
        left--;
        if (nearest(written, attributeNames(format)) != name)
            continue;
        isMisspelled = true;
        return dcm::Text::attribute(element, written, {"dcm"});
    }
    return text;
}

// Whether an id says what it seems to say.
bool isReadable(const char *text, const dcm::Content &content)
{
    if (content.kind == Kind::bitList) {
        uint8_t bits[DCM_PANEL_IF_MAX / 8] = {};
        return dcmStr2BitList(text, 1, static_cast<uint32_t>(content.limit), bits, sizeof bits) == 0;
    }
    const char *end = nullptr;
    const uint32_t number = dcm::readNumber(text, &end);
    const bool isOctal = text[0] == '0' && text[1] >= '0' && text[1] <= '7';
    return *end == '\0' && end != text && !isOctal && (content.limit == 0 || number <= content.limit);
}

} // namespace

class TargetIndex::Builder {
public:
    Builder(Entries &entries, const DescribedType &type) : entries_(entries), type_(type) {}

    // `faulty` is the element around that the format does not know; nullptr when there is none.
    void add(Node faulty)
    {
        const dcm::NamedElement &row = rowOf(type_.kind);
        if (type_.kind == RecordKind::card)
            addCard(row, faulty);
        visit(type_.element, row, faulty);
    }

private:
    void add(Target target, Node scope, uint32_t key, Node element, Node faulty)
    {
        if (faulty != nullptr) {
            entries_.misspelled.emplace(Key(target, scope, key), faulty);
            return;
        }
        std::vector<Node> &elements = entries_.described[{target, scope, key}];
        if (elements.size() < kMostTargets)
            elements.push_back(element);
    }

    void addUnreadable(Target target, Node scope, Node faulty)
    {
        entries_.unreadable.emplace(std::pair(target, scope), faulty);
    }

    void addCard(const dcm::NamedElement &row, Node faulty)
    {
        bool isMisspelled = false;
        const dcm::Text text = probableAttribute(type_.element, *row.element, row.element->attributes[0].name,
                                                 entries_.comparisonsLeft, isMisspelled);
        if (!text || !isReadable(text.c_str(), row.element->attributes[0].content))
            addUnreadable(Target::cardType, nullptr, faulty != nullptr ? faulty : type_.element);
        else if (faulty != nullptr || isMisspelled)
            add(Target::cardType, nullptr, dcm::readNumber(text.c_str()), type_.element,
                faulty != nullptr ? faulty : type_.element);
        if (faulty != nullptr)
            return;
        // Of two with one type and mode, either was meant to have another.
        const char *mode = row.element->attributes[1].name;
        for (const Node other : entries_.described[{Target::cardType, nullptr, type_.typeIds.front()}]) {
            const dcm::Text otherMode = dcm::Text::attribute(other, mode, {"dcm"});
            if ((otherMode ? otherMode.number() : 0) == type_.mode)
                addUnreadable(Target::cardType, nullptr, type_.element);
        }
        add(Target::cardType, nullptr, type_.typeIds.front(), type_.element, nullptr);
    }

    void addIds(Target target, Node element, const dcm::NamedElement &row, Node faulty)
    {
        const dcm::Attribute *id = idAttribute(*row.element);
        bool isMisspelled = false;
        const dcm::Text text =
            probableAttribute(element, *row.element, id->name, entries_.comparisonsLeft, isMisspelled);
        const Node cause = faulty != nullptr ? faulty : isMisspelled ? element : nullptr;
        const bool isEverywhere = target == Target::fanController || target == Target::slot;
        bool isFaulty = !text || !isReadable(text.c_str(), id->content);
        for (const uint32_t number : text ? idsOf(text.c_str(), id->content) : std::vector<uint32_t>()) {
            isFaulty = isFaulty || entries_.described.count({target, type_.element, number}) != 0;
            add(target, type_.element, number, element, cause);
            if (isEverywhere)
                add(target, nullptr, number, element, cause);
        }
        // Of two with one id, either was meant to have another.
        if (!isFaulty)
            return;
        addUnreadable(target, type_.element, cause != nullptr ? cause : element);
        if (isEverywhere)
            addUnreadable(target, nullptr, cause != nullptr ? cause : element);
    }

    // An LED is one of its holder, and one of all frames or cards.
    void addLed(Node led, const dcm::NamedElement &row, Node faulty)
    {
        const dcm::Attribute *type = findAttribute(*row.element, Kind::keyword);
        const dcm::Attribute *id = idAttribute(*row.element);
        bool isMisspelled = false;
        const dcm::Text typeText =
            probableAttribute(led, *row.element, type->name, entries_.comparisonsLeft, isMisspelled);
        const dcm::Text idText = probableAttribute(led, *row.element, id->name, entries_.comparisonsLeft, isMisspelled);
        const Node holder = led->parent->parent;
        const bool isKnown = typeText && isWord(typeText.c_str(), dcm::kLedTypeWords);
        if (!isKnown || !idText || !isReadable(idText.c_str(), id->content)) {
            addUnreadable(Target::led, holder, faulty != nullptr ? faulty : led);
            addUnreadable(Target::led, nullptr, faulty != nullptr ? faulty : led);
        }
        if (!isKnown || !idText)
            return;
        const Node cause = faulty != nullptr ? faulty : isMisspelled ? led : nullptr;
        for (const uint32_t number : idsOf(idText.c_str(), id->content)) {
            const uint32_t key = ledKey(typeText.c_str(), number);
            add(Target::led, holder, key, led, cause);
            if (holder == type_.element)
                add(Target::led, nullptr, anywhereKey(type_.kind, key), led, cause);
        }
    }

    // Of entries that are announced and not there, one may have any number.
    void addLeftOut(Node container, const dcm::Element &format)
    {
        const dcm::Attribute *num = findAttribute(format, Kind::count);
        const dcm::Text text = dcm::Text::attribute(container, num != nullptr ? num->name : "", {"dcm"});
        if (num == nullptr || !text)
            return;
        const std::optional<Target> target = targetOf(format.children[0].role());
        size_t described = 0;
        for (const Node child : dcm::children(container))
            if (const size_t i = findRow(format, dcm::nameOf(child)); i < format.childCount)
                described += idsOf(child, *format.children[i].element).size();
        if (!target || described >= text.number())
            return;
        addUnreadable(*target, target == Target::led ? container->parent : type_.element, container);
        if (target == Target::led || target == Target::fanController)
            addUnreadable(*target, nullptr, container);
    }

    static std::optional<Target> targetOf(Role role)
    {
        switch (role) {
        case Role::fanController:
            return Target::fanController;
        case Role::fanModule:
            return Target::fanModule;
        case Role::powerSupply:
            return Target::powerSupply;
        case Role::led:
            return Target::led;
        default:
            return std::nullopt;
        }
    }

    void visit(Node element, const dcm::NamedElement &row, Node faulty)
    {
        switch (row.role()) {
        case Role::slotRules:
            addIds(Target::slot, element, row, faulty);
            break;
        case Role::fanController:
            addIds(Target::fanController, element, row, faulty);
            break;
        case Role::fanModule:
            addIds(Target::fanModule, element, row, faulty);
            break;
        case Role::powerSupply:
            addIds(Target::powerSupply, element, row, faulty);
            break;
        case Role::led:
            addLed(element, row, faulty);
            break;
        default:
            break;
        }
        if (row.element->childCount == 0)
            return;
        for (const Node child : dcm::children(element)) {
            size_t i = findRow(*row.element, dcm::nameOf(child));
            const bool isKnown = i < row.element->childCount;
            if (!isKnown && entries_.comparisonsLeft > 0) {
                entries_.comparisonsLeft--;
                i = findRow(*row.element, nearest(dcm::nameOf(child), childNames(*row.element)).c_str());
            }
            if (i < row.element->childCount)
                visit(child, row.element->children[i], faulty != nullptr || isKnown ? faulty : child);
        }
        addLeftOut(element, *row.element);
    }

    Entries &entries_;
    const DescribedType &type_;

public:
    static uint32_t anywhereKey(RecordKind kind, uint32_t key) { return key << 2U | static_cast<uint32_t>(kind); }
};

namespace {

// Frames, slots and cards whose names are misspelled.
std::vector<DescribedType> misspelledTypes(Node root, size_t &left)
{
    std::vector<DescribedType> types;
    std::vector<std::string> names;
    for (const dcm::NamedElement &child : deviceChildren())
        names.emplace_back(child.name);
    for (const Node child : dcm::children(root)) {
        if (formatRowOf(child) != nullptr || left == 0)
            continue;
        left--;
        const auto found = std::find(names.begin(), names.end(), nearest(dcm::nameOf(child), names));
        if (found != names.end())
            types.push_back({static_cast<RecordKind>(found - names.begin()), child, {}, 0});
    }
    return types;
}

} // namespace

const TargetIndex::Entries &TargetIndex::entries() const
{
    if (isBuilt_)
        return entries_;
    isBuilt_ = true;
    for (const DescribedType &type : types_)
        Builder(entries_, type).add(nullptr);
    const Node root = types_.empty() ? nullptr : types_.front().element->parent;
    if (root != nullptr && root->type == XML_ELEMENT_NODE)
        for (const DescribedType &type : misspelledTypes(root, entries_.comparisonsLeft))
            Builder(entries_, type).add(type.element);
    return entries_;
}

const std::vector<Node> &TargetIndex::elementsOf(const Key &key) const
{
    static const std::vector<Node> none;
    const auto found = entries().described.find(key);
    return found != entries().described.end() ? found->second : none;
}

Node TargetIndex::faultyAt(const Key &key) const
{
    const auto misspelled = entries().misspelled.find(key);
    if (misspelled != entries().misspelled.end())
        return misspelled->second;
    const auto unreadable = entries().unreadable.find({std::get<Target>(key), std::get<Node>(key)});
    return unreadable != entries().unreadable.end() ? unreadable->second : nullptr;
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

Node TargetIndex::findFaulty(const Relation &relation, const DescribedType &type, uint32_t number) const
{
    return faultyAt({relation.target, scopeOf(relation, type), number});
}

bool TargetIndex::has(const Relation &relation, const DescribedType &type, uint32_t number) const
{
    return !find(relation, type, number).empty();
}

namespace {

// The frames or cards that may have the LED; none when it is one of the holder.
std::optional<RecordKind> kindOfOthers(const LedName &led)
{
    if (!isSmallNumber(led.slot))
        return std::nullopt;
    if (led.attach == gDcmEttAttachStrs[dcm::kAttachSys])
        return RecordKind::frame;
    if (led.attach == gDcmEttAttachStrs[dcm::kAttachCard])
        return RecordKind::card;
    return std::nullopt;
}

} // namespace

std::vector<Node> TargetIndex::findLeds(const char *name, Node holder) const
{
    const LedName led = splitName(name);
    if (!isLedName(led))
        return {};
    const uint32_t key = ledKey(led.type.c_str(), smallNumber(led.id));
    std::vector<Node> leds = elementsOf({Target::led, holder, key});
    const std::optional<RecordKind> others = kindOfOthers(led);
    return leds.empty() && others ? elementsOf({Target::led, nullptr, Builder::anywhereKey(*others, key)}) : leds;
}

Node TargetIndex::findFaultyLed(const char *name, Node holder) const
{
    const LedName led = splitName(name);
    if (!isLedName(led))
        return nullptr;
    const uint32_t key = ledKey(led.type.c_str(), smallNumber(led.id));
    const Node faulty = faultyAt({Target::led, holder, key});
    const std::optional<RecordKind> others = kindOfOthers(led);
    return faulty == nullptr && others ? faultyAt({Target::led, nullptr, Builder::anywhereKey(*others, key)}) : faulty;
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
