// The exported decoders on trees that their callers have built: such a tree need not belong to a document, and may have
// nodes that no parser creates.
#include "tests/support/dcm_test.h"

#include <array>
#include <random>

using namespace dcmtest;

namespace {

const xmlChar *xmlText(const std::string &text)
{
    return reinterpret_cast<const xmlChar *>(text.c_str());
}

struct FreeNode {
    void operator()(xmlNode *node) const { xmlFreeNode(node); }
};
using Tree = std::unique_ptr<xmlNode, FreeNode>;

Tree element(const std::string &name)
{
    return Tree(xmlNewNode(nullptr, xmlText(name)));
}

xmlNodePtr append(xmlNodePtr parent, const std::string &name, const std::string &content = "")
{
    return xmlNewChild(parent, nullptr, xmlText(name), content.empty() ? nullptr : xmlText(content));
}

void set(xmlNodePtr node, const std::string &attribute, const std::string &value)
{
    xmlNewProp(node, xmlText(attribute), xmlText(value));
}

// The outputs of the exported decoders.
struct Records {
    DcmLedInfo leds[DCM_LED_MAX];
    DcmPortLedInfo portLeds[DCM_PORT_LED_MAX];
    DcmLedMapInfo map;
    DcmLedHead head;
    DcmTemperatureInfo sensors[2];
    uint8_t ledCount;
    uint8_t sensorCount;
};

using Decode = int (*)(xmlNodePtr node, Records &records);

struct Decoder {
    const char *name;
    const char *element;
    Decode decode;
};

const Decoder kDecoders[] = {
    {"dcmLedDecodeEntity", "led-entity",
     [](xmlNodePtr node, Records &records) {
         return dcmLedDecodeEntity(node, records.leds, DCM_LED_MAX, 2, 255, &records.ledCount);
     }},
    {"dcmLedDecodePortEntity", "portled-entity",
     [](xmlNodePtr node, Records &records) { return dcmLedDecodePortEntity(node, records.portLeds); }},
    {"dcmLedDecodeMap", "led-map",
     [](xmlNodePtr node, Records &records) { return dcmLedDecodeMap(node, &records.map); }},
    {"_dcmLedDecodeStateMap", "source",
     [](xmlNodePtr node, Records &records) { return _dcmLedDecodeStateMap(node, &records.head); }},
    {"dcmDecodeTemperatureEntity", "temperature",
     [](xmlNodePtr node, Records &records) {
         return dcmDecodeTemperatureEntity(node, records.sensors, &records.sensorCount);
     }},
};

struct Answered {
    int result = 0;
    Effects effects;
    std::unique_ptr<Records> records = std::make_unique<Records>();
};

Answered decode(const Decoder &decoder, xmlNodePtr node)
{
    Answered answered;
    std::memset(answered.records.get(), 0, sizeof(Records));
    answered.effects = effectsOf([&] { answered.result = decoder.decode(node, *answered.records); });
    return answered;
}

// Names and values for random elements: valid ones, and a few invalid ones.
constexpr std::array kNames = {"led",  "state", "port-led", "led-name",    "source", "color",
                               "freq", "type",  "num",      "fanctrlbits", "other"};
constexpr std::array kAttributes = {"id",     "type",        "num", "pri",      "start-id",
                                    "end-id", "name-prefix", "src", "led-name", "other"};
constexpr std::array kValues = {
    "1",       "2",     "1-3", "fan", "power", "stop", "alarm", "red", "", "yes", "-1", "led-x-", "led-fan-1@sys1/1",
    "src-1/2", "1,2,99"};

template <class Values> std::string anyOf(const Values &values, std::mt19937 &random)
{
    return values[random() % values.size()];
}

void grow(xmlNodePtr node, std::mt19937 &random, int depth)
{
    for (auto i = random() % 4; i > 0; i--)
        xmlSetProp(node, xmlText(anyOf(kAttributes, random)), xmlText(anyOf(kValues, random)));
    if (random() % 8 == 0)
        xmlNewProp(node, xmlText(anyOf(kAttributes, random)), nullptr);
    for (auto i = random() % 5; i > 0; i--) {
        const std::string value = anyOf(kValues, random);
        switch (random() % 7) {
        case 0:
            xmlAddChild(node, xmlNewText(xmlText(value)));
            break;
        case 1:
            xmlAddChild(node, xmlNewComment(xmlText(value)));
            break;
        case 2:
            xmlAddChild(node, xmlNewCDataBlock(nullptr, xmlText(value), static_cast<int>(value.size())));
            break;
        case 3:
            xmlAddChild(node, xmlNewPI(xmlText("led"), xmlText(value)));
            break;
        default:
            if (depth > 0)
                grow(append(node, anyOf(kNames, random), random() % 2 == 0 ? value : ""), random, depth - 1);
        }
    }
}

} // namespace

TEST(ForeignTree, MayLackAttributesThatAreOptional)
{
    const Tree leds = element("led-entity");
    set(leds.get(), "num", "1");
    const xmlNodePtr led = append(leds.get(), "led");
    set(led, "id", "1");
    set(led, "type", "fan");
    set(append(led, "state"), "type", "stop"); // without "pri"
    const Answered entity = decode(kDecoders[0], leds.get());
    EXPECT_EQ(entity.result, 0);
    EXPECT_EQ(entity.records->ledCount, 1);
    EXPECT_EQ(entity.records->leds[0].states[0].pri, 1);

    const Tree map = element("led-map");
    set(map.get(), "num", "1");
    append(map.get(), "led-name", "led-fan-2@sys1/1"); // without "src"
    const Answered ledMap = decode(kDecoders[2], map.get());
    EXPECT_EQ(ledMap.result, 0);
    EXPECT_EQ(ledMap.records->map.num, 1U);
    EXPECT_EQ(ledMap.records->map.mapEntries[0].id, 2);
}

TEST(ForeignTree, MayLackEverything)
{
    for (const Decoder &decoder : kDecoders) {
        SCOPED_TRACE(decoder.name);
        const Tree empty = element(decoder.element);
        const Answered answered = decode(decoder, empty.get());
        const bool needsNothing = decoder.decode == kDecoders[1].decode || decoder.decode == kDecoders[3].decode;
        EXPECT_EQ(answered.result, needsNothing ? 0 : -1);
    }
}

TEST(ForeignTree, DecodesAsTheSameTreeInADocument)
{
    unsigned succeeded = 0;
    std::mt19937 random(20); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same trees in every run
    for (int i = 0; i < 3000; i++) {
        const Decoder &decoder = kDecoders[random() % std::size(kDecoders)];
        SCOPED_TRACE(std::string(decoder.name) + " on tree " + std::to_string(i));
        Tree tree = element(decoder.element);
        grow(tree.get(), random, 3);
        const Answered alone = decode(decoder, tree.get());

        const std::unique_ptr<xmlDoc, void (*)(xmlDoc *)> document(xmlNewDoc(nullptr), xmlFreeDoc);
        xmlDocSetRootElement(document.get(), tree.release());
        const Answered within = decode(decoder, xmlDocGetRootElement(document.get()));
        ASSERT_EQ(alone.result, within.result);
        ASSERT_EQ(alone.effects.messages, within.effects.messages);
        ASSERT_EQ(bytesOf(*alone.records), bytesOf(*within.records));
        succeeded += alone.result == 0;
    }
    EXPECT_GT(succeeded, 500U);
}
