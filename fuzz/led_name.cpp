// LED names and source positions in dcmLedDecodeMap: the first line of the input is a name, the rest a source position.
// The element is created in memory, so that the texts are exactly those of the input. The result is compared with a
// second implementation.
#include "fuzz/number_texts.h"
#include "fuzz/support.h"

#include "host/host.h"

#include <dcm.h>

#include <libxml/tree.h>

#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

constexpr size_t kLongestText = 4096;
constexpr uint8_t kPlaceBefore = 77; // slot and card of an entry before its name is read

const xmlChar *xmlText(const std::string &text)
{
    return reinterpret_cast<const xmlChar *>(text.c_str());
}

// A "led-map" with the same LED name twice: in a "led-name" with a source, and in a "source".
class Map {
public:
    Map(const std::string &name, const std::string &source)
    {
        xmlDocSetRootElement(document_, map_);
        xmlNewProp(map_, xmlText("num"), xmlText("2"));
        xmlNodePtr ledName = xmlNewChild(map_, nullptr, xmlText("led-name"), nullptr);
        xmlNodeAddContent(ledName, xmlText(name));
        xmlNewProp(ledName, xmlText("src"), xmlText(source));
        xmlNewProp(xmlNewChild(map_, nullptr, xmlText("source"), nullptr), xmlText("led-name"), xmlText(name));
    }
    ~Map() { xmlFreeDoc(document_); }
    Map(const Map &) = delete;
    Map &operator=(const Map &) = delete;
    xmlNodePtr element() const { return map_; }

private:
    xmlDocPtr document_ = xmlNewDoc(nullptr);
    xmlNodePtr map_ = xmlNewDocNode(document_, nullptr, xmlText("led-map"), nullptr);
};

template <size_t Size> bool isRow(const char (&table)[Size][DCM_KEYWORD_SIZE], const char *text, uint8_t &row)
{
    for (size_t i = 0; i < Size; i++)
        if (std::string(table[i]) == text) {
            row = static_cast<uint8_t>(i);
            return true;
        }
    return false;
}

void setPlace(const char *text, uint8_t &place)
{
    if (text[0] == '#')
        place = 255;
    else if (text[0] != '\0')
        place = static_cast<uint8_t>(dcmfuzz::numberAt(text));
}

// The LED of a name.
void split(const std::string &name, DcmLedHead &led)
{
    char type[16] = "";
    char id[4] = "";
    char attach[16] = "";
    char slot[4] = "";
    char card[4] = "";
    std::sscanf(name.c_str(), "led-%15[^-]-%3[^@]@%15[a-z]%3[^/]/%3s", type, id, attach, slot, card);
    if (!isRow(gDcmLedTypeStrs, type, led.ledType))
        return;
    led.srcType = led.ledType;
    led.id = static_cast<uint8_t>(dcmfuzz::numberAt(id));
    if (!isRow(gDcmEttAttachStrs, attach, led.attach))
        return;
    setPlace(slot, led.attachSlot);
    setPlace(card, led.attachCard);
}

constexpr uint32_t kSystem = 5;
constexpr uint32_t kLogicalIndex = 0x12345678;
DcmEttInfo asked;

int mapEntity(const DcmEttInfo *physical, uint32_t *logicalIndex)
{
    asked = *physical;
    *logicalIndex = kLogicalIndex;
    return 0;
}

} // namespace

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static dcmfuzz::GuardedRecord<DcmLedMapInfo> records;
    if (size > kLongestText)
        return 0;
    const std::string text = dcmfuzz::Input(data, size).text();
    const size_t lineEnd = text.find('\n');
    const std::string name = text.substr(0, lineEnd);
    const std::string source = lineEnd == std::string::npos ? "" : text.substr(lineEnd + 1);
    hostSetSystemIndex(kSystem);
    hostSetEttMapping(mapEntity);

    const Map element(name, source);
    DcmLedMapInfo *map = records.atEnd(0);
    DcmLedHead expected = {};
    expected.attachSlot = kPlaceBefore;
    expected.attachCard = kPlaceBefore;
    map->mapEntries[0] = expected;
    map->mapEntries[1] = expected;
    split(name, expected);
    DCM_FUZZ_CHECK(dcmLedDecodeMap(element.element(), map) == 0);
    DCM_FUZZ_CHECK(map->num == 2);
    DCM_FUZZ_CHECK(std::memcmp(&map->mapEntries[0], &expected, sizeof expected) == 0);
    DCM_FUZZ_CHECK(std::memcmp(&map->mapEntries[1], &expected, sizeof expected) == 0);

    int first = 0;
    int second = 0;
    std::sscanf(source.c_str(), "src-%d/%d", &first, &second);
    const DcmEttInfo physical = {9, static_cast<uint32_t>(second), 0, 2, kSystem, {static_cast<uint32_t>(first), 0, 0}};
    DCM_FUZZ_CHECK(std::memcmp(&asked, &physical, sizeof physical) == 0);
    DCM_FUZZ_CHECK(map->srcEttIndex[0] == kLogicalIndex && map->srcEttIndex[1] == 0);

    dcmfuzz::takeReportCount();
    dcmLedMapPrint(map);
    DCM_FUZZ_CHECK(dcmfuzz::takeReportCount() == 0);
    return 0;
}
