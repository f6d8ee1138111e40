#include "common/decoder.h"
#include "led/led.h"

#include <cstdio>

namespace dcm {

namespace {

constexpr uint32_t kCardClass = 9; // the platform's class number of "card"

// The slot or card of an LED name: "#" is that of its holder, an empty text leaves the field unchanged.
void takePlace(const char *text, uint8_t &place)
{
    if (text[0] == '#')
        place = DCM_ID_UNSPEC;
    else if (text[0] != '\0')
        place = static_cast<uint8_t>(readNumber(text));
}

// Splits an LED name, as in "led-fan-2@slot3/#".
Result _dcmLedName2EttInfo(const char *name, DcmLedHead &led)
{
    char type[16] = "";
    char id[4] = "";
    char attachText[16] = "";
    char slot[4] = "";
    char card[4] = "";
    std::sscanf(name, "led-%15[^-]-%3[^@]@%15[a-z]%3[^/]/%3s", type, id, attachText, slot, card);

    uint32_t ledType = 0;
    if (dcmLedTypeStr2Val(reinterpret_cast<unsigned char *>(type), &ledType) != 0)
        return DCM_REPORT(__func__, "led type[%s] is invalid.", type);
    led.ledType = static_cast<uint8_t>(ledType);
    led.srcType = led.ledType;
    led.id = static_cast<uint8_t>(readNumber(id));
    uint32_t attach = 0;
    if (dcmEttAttachStr2Val(reinterpret_cast<unsigned char *>(attachText), &attach) != 0)
        return DCM_REPORT(__func__, "led attach type[%s] is invalid.", attachText);
    led.attach = static_cast<uint8_t>(attach);
    takePlace(slot, led.attachSlot);
    takePlace(card, led.attachCard);
    return Result::ok;
}

// Maps a source position, as in "src-3/1", to a logical entity index through the platform, and returns its status.
int _dcmLedSrc2EttIndex(const char *source, uint32_t *ettIndex)
{
    int first = 0;
    int second = 0;
    std::sscanf(source, "src-%d/%d", &first, &second);
    const DcmEttInfo physical = {kCardClass,
                                 static_cast<uint32_t>(second),
                                 0, // attached to "sys"
                                 2,
                                 zorSelfSysIndex(),
                                 {static_cast<uint32_t>(first), 0, 0}};
    return hwalEttPhy2Logical(&physical, ettIndex);
}

// ---- State pairs ----------------------------------------------------------------------------------------------------

struct StatePairs {
    DcmLedHead &led;
    uint32_t count = 0;
};

struct StatePair : Table {
    static constexpr Role role = Role::statePair;
    static constexpr Attribute source = {"type", {Kind::ledState}, Need::required};
    static constexpr Attribute attributes[] = {source};
    static constexpr Content content = {Kind::ledState};
};
constexpr Element kStatePairElement = repeated(elementOf<StatePair>, DCM_LED_STATE_MAX);

// One "state": the state that the LED shows for a state of the source. Pairs that do not fit in the LED are ignored.
Result takeStatePair(Node element, StatePairs &pairs, const Reporter &reporter)
{
    if (pairs.count == DCM_LED_STATE_MAX)
        return Result::ok;
    DcmLedHead &led = pairs.led;
    const Text source = attributeText(element, StatePair::source, reporter);
    if (!source)
        return source.reportMissing(reporter, DCM_MESSAGE("decode led-state-map failed, no type prop."));
    uint32_t state = 0;
    if (dcmLedStateStr2Val(led.srcType, source.word(), &state) != 0)
        return DCM_REPORT(reporter.function, "state(%s) is invalid for src-type(%s).", source.c_str(),
                          dcmLedTypeVal2Str(led.srcType));
    led.srcState[pairs.count] = static_cast<uint8_t>(state);

    const Text shown = Text::content(element, reporter);
    if (!shown)
        return Result::outOfMemory;
    if (dcmLedStateStr2Val(led.ledType, shown.word(), &state) != 0)
        return DCM_REPORT(reporter.function, "state(%s) is invalid for led-type(%s).", shown.c_str(),
                          dcmLedTypeVal2Str(led.ledType));
    led.ledState[pairs.count] = static_cast<uint8_t>(state);
    pairs.count++;
    return Result::ok;
}

struct StatePairTable : Table {
    static constexpr Child<StatePairs> children[] = {
        {"state", call<takeStatePair>, kStatePairElement},
    };
};

Result decodeStateMap(Node element, DcmLedHead &led, const Reporter &reporter)
{
    StatePairs pairs = {led};
    const Result taken = walk<StatePairTable>(element, pairs, reporter);
    if (taken == Result::ok)
        led.statMapNum = static_cast<uint8_t>(pairs.count);
    return taken;
}

// ---- Map entries ----------------------------------------------------------------------------------------------------

// The state of decoding an LED map.
struct LedMap {
    DcmLedMapInfo &map;
    uint32_t num;
    uint32_t count = 0;

    bool isFull() const { return count >= num; }
    Result reportFull(const Reporter &reporter) const
    {
        return DCM_REPORT(reporter.function, "decode led-map failed, led-name node count(%u) is out of range(%u).",
                          count + 1, num);
    }
};

struct LedName : Table {
    static constexpr Role role = Role::ledMapName;
    static constexpr Attribute source = {"src", {Kind::source}};
    static constexpr Attribute attributes[] = {source};
    static constexpr Content content = {Kind::ledName};
};
constexpr Element kLedNameElement = repeated(elementOf<LedName>);

// kept: a faulty name, source or state pair is reported, and the entry is kept.
Result takeLedName(Node element, LedMap &ledMap, const Reporter &reporter)
{
    if (ledMap.isFull())
        return ledMap.reportFull(reporter);
    DcmLedHead &led = ledMap.map.mapEntries[ledMap.count];
    const Text source = attributeText(element, LedName::source, reporter);
    if (source)
        static_cast<void>(_dcmLedSrc2EttIndex(source.c_str(), &ledMap.map.srcEttIndex[ledMap.count]));
    const Text name = Text::content(element, reporter);
    if (source.isOutOfMemory() || !name)
        return Result::outOfMemory;
    static_cast<void>(_dcmLedName2EttInfo(name.c_str(), led));
    led.statMapNum = 0;
    ledMap.count++;
    return Result::ok;
}

struct Source : StatePairTable {
    static constexpr Role role = Role::ledMapSource;
    static constexpr Attribute ledName = {"led-name", {Kind::ledName}, Need::required};
    static constexpr Attribute type = {"type", wordOf(&kLedTypeWords)};
    static constexpr Attribute attributes[] = {ledName, type};
};
constexpr Element kSourceElement = repeated(elementOf<Source>);

// A separate function, so that its texts are off the stack when the state pairs are read.
[[gnu::noinline]] Result takeSourceAttributes(Node element, DcmLedHead &led, const Reporter &reporter)
{
    const Text name = attributeText(element, Source::ledName, reporter);
    if (name.isOutOfMemory())
        return Result::outOfMemory;
    static_cast<void>(_dcmLedName2EttInfo(name ? name.c_str() : "", led));

    const Text type = attributeText(element, Source::type, reporter);
    if (!type)
        return type.isOutOfMemory() ? Result::outOfMemory : Result::ok;
    uint32_t srcType = 0;
    if (dcmLedTypeStr2Val(type.word(), &srcType) != 0)
        return DCM_REPORT(reporter.function, "type(%s) is invalid .", type.c_str()); // kept: the blank
    led.srcType = static_cast<uint8_t>(srcType);
    return Result::ok;
}

Result takeSource(Node element, LedMap &ledMap, const Reporter &reporter)
{
    if (ledMap.isFull())
        return ledMap.reportFull(reporter);
    DcmLedHead &led = ledMap.map.mapEntries[ledMap.count];
    if (const Result taken = takeSourceAttributes(element, led, reporter); taken != Result::ok)
        return taken;
    ledMap.count++;
    return unlessOutOfMemory(decodeStateMap(element, led, Reporter{"_dcmLedDecodeStateMap"}));
}

struct LedMapTable : Table {
    static constexpr Role role = Role::ledMap;
    static constexpr Attribute num = numOf(DCM_LED_MAP_MAX);
    static constexpr Attribute attributes[] = {num};
    static constexpr Child<LedMap> children[] = {
        {"led-name", call<takeLedName>, kLedNameElement},
        {"source", call<takeSource>, kSourceElement},
    };
};

Result decodeMap(Node element, DcmLedMapInfo &map, const Reporter &reporter)
{
    uint32_t num = 0;
    if (const Result read =
            readRequired(element, LedMapTable::num, num, DCM_MESSAGE("decode led-map failed, no num prop."), reporter);
        read != Result::ok)
        return read;
    LedMap ledMap = {map, static_cast<uint8_t>(num)}; // kept: only the low 8 bits count
    if (ledMap.num > DCM_LED_MAP_MAX)
        return DCM_REPORT(reporter.function, "decode led-map failed, led map count(%u) is out of range(%u).",
                          ledMap.num, static_cast<uint32_t>(DCM_LED_MAP_MAX));
    const Result taken = walk<LedMapTable>(element, ledMap, reporter);
    if (taken == Result::ok)
        map.num = ledMap.count;
    return taken;
}

} // namespace

const Element kLedMapElement = elementOf<LedMapTable>;

} // namespace dcm

int _dcmLedDecodeStateMap(struct _xmlNode *node, DcmLedHead *led)
{
    return status(dcm::decodeStateMap(node, *led, dcm::Reporter{__func__}));
}

int dcmLedDecodeMap(struct _xmlNode *node, DcmLedMapInfo *map)
{
    return status(dcm::decodeMap(node, *map, dcm::Reporter{__func__}));
}
