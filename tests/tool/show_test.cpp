#include "tools/dcm/description/described.h"
#include "tools/dcm/records/record.h"
#include "tools/dcm/show/pages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <random>
#include <regex>
#include <sstream>
#include <type_traits>

using namespace dcmtool;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

template <class Info> std::string shown(const Info &info, const PageFormat &format = {})
{
    PageContext context;
    context.place = "test.xml:1";
    return layOut(pageOf(info, context), format);
}

template <class Info> Info decoded(const std::string &text)
{
    const auto file = DescriptionFile::parse("test.xml", "<device>" + text + "</device>");
    Info info;
    EXPECT_TRUE(file->decode(file->types().at(0), info).isDecoded) << text;
    return info;
}

std::string shownCard(const std::string &content, const PageFormat &format = {})
{
    return shown(decoded<DcmCardInfo>("<card typeid='1'>" + content + "</card>"), format);
}

std::string shownPanel(const std::string &ports)
{
    return shownCard("<panel-port num='64' startportid='1' maxportid='64'>" + ports + "</panel-port>");
}

std::vector<std::string> linesOf(const std::string &text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

size_t widthOf(const std::string &line)
{
    return static_cast<size_t>(
        std::count_if(line.begin(), line.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

// ---- No fact is missing ---------------------------------------------------------------------------------------------

// Fields whose values a page need not distinguish, and why.
const std::map<std::string, const char *> kUnshown = {
    {"ondType", "comes with the PHY type"},        {"nameLen", "shows in the name"},
    {"abbrNameLen", "shows in the abbreviation"},  {"modelNameLen", "of a text that is shown"},
    {"descriptionLen", "of a text that is shown"},
};

// Each value of a record is changed in turn, and the page must change.
template <class Info> class Facts {
public:
    explicit Facts(const Info &info) : info_(info), page_(shown(info)) {}

    size_t expectShown()
    {
        visit(recordOf(info_), "");
        return count_;
    }

private:
    // FieldValues of this address are inside `info_`.
    void visit(const Record &record, const std::string &prefix)
    {
        for (const Field &field : record)
            for (const FieldValue value : record.valuesOf(field)) {
                const std::string path = prefix + field.name + "[" + std::to_string(value.entry()) + "]";
                if (field.kind == FieldKind::record && (value.entry() < 2 || value.entry() % 7 == 0)) // some of many
                    visit(value.record(), path + ".");
                else if (field.kind == FieldKind::record)
                    continue;
                else if (field.source != nullptr && kUnshown.count(field.name) == 0 && !isOfSlotSupply(path))
                    change(value, field.bits != 0 ? record.table().size : field.stride, mostOf(record, field), path);
            }
    }

    // Only the ids of a slot's power entities are ever filled.
    static bool isOfSlotSupply(const std::string &path)
    {
        return std::is_same_v<Info, DcmSlotInfo> && path.rfind("powerInfo", 0) == 0 &&
               path.find(".id[") == std::string::npos;
    }

    // The maximum of a number: the counts of a successful query fit into the record, except for fans.
    static int64_t mostOf(const Record &record, const Field &field)
    {
        int64_t most = INT64_MAX;
        for (const Field &other : record)
            if (other.extent == Extent::counted && other.extentOf.offset == field.offset &&
                std::strcmp(field.name, "fanNum") != 0)
                most = static_cast<int64_t>(other.entries);
        return most;
    }

    // Whether a query can produce a value: words have the numbers of their vocabulary.
    static bool canBe(const FieldValue &value, int64_t most)
    {
        if (value.field().kind == FieldKind::word)
            return !value.isGiven() || value.wordFor(static_cast<uint32_t>(value.number())) != nullptr;
        return value.field().kind != FieldKind::number || value.number() <= most;
    }

    // Every third bit of a number, and one of each byte of a longer value. A bit-field may be anywhere in its record.
    void change(const FieldValue &value, size_t size, int64_t most, const std::string &path)
    {
        auto *bytes = const_cast<uint8_t *>(value.bytes());
        const std::string before = value.words();
        for (size_t bit = 0; bit < size * 8; bit++) {
            if (value.field().bits == 0 && bit % (size > sizeof(uint32_t) ? 8 : 3) != 0)
                continue;
            const auto mask = static_cast<uint8_t>(1U << (bit % 8));
            bytes[bit / 8] = static_cast<uint8_t>(bytes[bit / 8] ^ mask);
            if (value.words() != before && canBe(value, most)) {
                count_++;
                EXPECT_FALSE(shown(info_) == page_) << path << ": " << before << " -> " << value.words();
            }
            bytes[bit / 8] = static_cast<uint8_t>(bytes[bit / 8] ^ mask);
        }
    }

    Info info_;
    std::string page_;
    size_t count_ = 0;
};

template <class Info> void expectFactsOf(const DescriptionFile &file, RecordKind kind, size_t least)
{
    for (const DescribedType &type : file.types()) {
        if (type.kind != kind)
            continue;
        SCOPED_TRACE(file.lineOf(file.nameSpan(type.element).begin));
        Info info;
        ASSERT_TRUE(file.decode(type, info).isDecoded);
        EXPECT_GE(Facts<Info>(info).expectShown(), least);
    }
}

TEST(Show, HasEveryFactOfTheExamplesRecords)
{
    const auto file = DescriptionFile::open(DCM_SOURCE_DIR "/examples/device.xml");
    ASSERT_EQ(file->state(), DescriptionFile::State::parsed);
    expectFactsOf<DcmFrameInfo>(*file, RecordKind::frame, 1000);
    expectFactsOf<DcmSlotInfo>(*file, RecordKind::slot, 200);
    expectFactsOf<DcmCardInfo>(*file, RecordKind::card, 100);
}

// ---- Contents and form ----------------------------------------------------------------------------------------------

TEST(Show, FoldsPortsThatDifferInNothingButTheirNumber)
{
    const std::string page = shownPanel(
        "<port-group id='1-3'><phytype>10ge</phytype><driver>cdl</driver></port-group>"
        "<port-group id='4'><phytype>10ge</phytype><driver>cdl</driver><connector>fiber</connector></port-group>");
    EXPECT_THAT(page, HasSubstr("\n  1-3          3×  10ge  "));
    EXPECT_THAT(page, HasSubstr("\n  4            1×  10ge  fiber"));
}

TEST(Show, NamesChannelsInTheOrderOfTheirPorts)
{
    const auto port = [](int id, int wavelength) {
        const std::string number = std::to_string(id);
        return "<port id='" + number + "'><portid>" + number + "</portid><phytype>otu4</phytype><driver>cdl</driver>" +
               "<wavelength>" + std::to_string(wavelength) + "</wavelength></port>";
    };
    EXPECT_THAT(shownPanel(port(1, 21) + port(2, 22)), HasSubstr("channel 21-22"));
    EXPECT_THAT(shownPanel(port(1, 22) + port(2, 21)), HasSubstr("channel 22,21"));
    EXPECT_THAT(shownPanel(port(1, 22) + port(2, 22)), HasSubstr("channel 22\n"));
}

TEST(Show, TellsPortsThatAreAnnouncedAndNotDescribed)
{
    EXPECT_THAT(shownPanel(""), HasSubstr("\n  –     1-64  64×  –     none"));
    EXPECT_THAT(shownCard("<cpu-entity num='1'/>"), HasSubstr("(no model)  cpu  not described"));
}

TEST(Show, ShowsWordsAsDescriptionsWriteThem)
{
    const std::string page = shownPanel("<port-group id='1'><phytype>100ge</phytype><driver>ineth</driver>"
                                        "<transceiver-caps><cap>400gbaset</cap></transceiver-caps></port-group>");
    EXPECT_THAT(page, HasSubstr(" 100ge"));
    EXPECT_THAT(page, HasSubstr("\n  transceivers  1  400gbaset\n"));
}

TEST(Show, ShowsThresholdsWithTheirUnitAndLimits)
{
    const std::string page = shownCard(
        "<temperature-entity num='1'><temperature id='1'><description>inlet air</description><lowthreshold>-5"
        "</lowthreshold><highthreshold>65</highthreshold><actionhighthreshold>60</actionhighthreshold>"
        "<actionhighthresholdmin>45</actionhighthresholdmin><actionhighthresholdmax>75</actionhighthresholdmax>"
        "</temperature></temperature-entity>");
    EXPECT_THAT(page, HasSubstr("\n  sensor     alarm       act above\n  inlet air  -5 … 65 °C  60 °C 45–75\n"));
}

TEST(Show, CutsTheTableOfSensorsBeforeItsActionsAndRepeatsWhoseTheyAre)
{
    const auto module = [](const char *id, const char *action) {
        return std::string("<fanmodule id='") + id +
               "'><temperature-entity num='1'><temperature id='1'><description>outlet</description>"
               "<lowthreshold>-5</lowthreshold><highthreshold>65</highthreshold><workthreshold>50</workthreshold>"
               "<actionhighthreshold>" +
               action + "</actionhighthreshold></temperature></temperature-entity></fanmodule>";
    };
    const auto frame = decoded<DcmFrameInfo>("<frame typeid='1'><fanmodule-entity num='2'>" + module("1", "60") +
                                             module("2", "70") + "</fanmodule-entity></frame>");
    EXPECT_THAT(shown(frame, {50, false, false}), HasSubstr("\n  sensor  of        alarm       work\n"
                                                            "  outlet  module 1  -5 … 65 °C  50 °C res 0\n"
                                                            "  outlet  module 2  -5 … 65 °C  50 °C res 0\n"
                                                            "  sensor  of        act above\n"
                                                            "  outlet  module 1  60 °C\n"
                                                            "  outlet  module 2  70 °C\n"));
}

constexpr char kLed[] = "<led-entity num='1'><led id='1' type='fan'>"
                        "<state type='stop' pri='1'><color>red</color><freq>fast-blink</freq></state>"
                        "<state type='present' pri='3'><color>green</color><freq>on</freq></state>"
                        "<state type='default'><color>green</color><freq>none</freq></state></led></led-entity>";

TEST(Show, ShowsTheStatesOfAnLedInWordsAndSigns)
{
    EXPECT_THAT(shownCard(kLed), HasSubstr("\n  fan  ◉ stop red fast-blink        ● present green on priority 3  "
                                           "◌ default green none\n"));
    EXPECT_THAT(shownCard(kLed, {100, true, false}), HasSubstr("\x1b[38;5;196m◉\x1b[0m stop\x1b[38;5;245m red"));
}

TEST(Show, FoldsLedsWithTheSameStatesAndNamesEach)
{
    const char *states = "<state type='abnormal' pri='1'><color>red</color><freq>on</freq></state>"
                         "<state type='default'><color>green</color><freq>off</freq></state>";
    EXPECT_THAT(shownCard(std::string("<led-entity num='3'><led id='1-2' type='mcu'>") + states +
                          "</led><led id='3' type='sfu'>" + states + "</led></led-entity>"),
                HasSubstr("\n  mcu 1-2,  ● abnormal red on            ○ default green off\n  sfu 3\n"));
}

TEST(Show, TranslatesTheStatesOfAnLedMap)
{
    const std::string page =
        shownCard("<led-map num='2'><led-name>led-fan-1@card#/#</led-name><source led-name='led-alarm-2@slot3/#' "
                  "type='fan'><state type='stop'>critical</state></source></led-map>");
    EXPECT_THAT(page, HasSubstr("\n  fan 1            itself\n  alarm 2@slot3/#  a fan               stop→critical\n"));
}

TEST(Show, NamesTheCardsThatASlotAccepts)
{
    const auto frame = decoded<DcmFrameInfo>(
        "<frame typeid='1'><maxslotnum>3</maxslotnum><slotmap><lpu>1-2</lpu></slotmap><slotinfo>"
        "<slotid id='1'><supportcrossslot>1</supportcrossslot><crossslotbit>1-2</crossslotbit>"
        "<supportcardtype>3,4</supportcardtype><maxcardnum>1</maxcardnum></slotid>"
        "<slotid id='2'><supportcrossslot>1</supportcrossslot><crossslotbit>1-2</crossslotbit>"
        "<supportcardtype>3,4</supportcardtype><maxcardnum>1</maxcardnum></slotid></slotinfo></frame>");
    PageContext context;
    context.cardName = [](uint32_t type) { return type == 3 ? "ETH" : "0x0004 (not described)"; };
    const std::string page = layOut(pageOf(frame, context), {});
    EXPECT_THAT(page, HasSubstr("\n  1-2   line      1  1-2       ETH  0x0004 (not described)\n"));
    EXPECT_THAT(page, HasSubstr("\n  3               –            no rules described\n"));
}

// ---- Any content of a file ------------------------------------------------------------------------------------------

// The page without colours.
std::string uncoloured(const std::string &page)
{
    return std::regex_replace(page, std::regex("\x1b\\[[0-9;]+m"), "");
}

bool isAscii(const std::string &text)
{
    return std::all_of(text.begin(), text.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

TEST(Show, EscapesWhatMustNotReachATerminal)
{
    DcmCardInfo card = {};
    const char name[] = "a\x1b[31m\xe2\x80\xae\xff\n";
    std::memcpy(card.name, name, sizeof name - 1);
    card.nameLen = sizeof name - 1;
    EXPECT_THAT(shown(card), HasSubstr("a\\x1b[31m\\u202e\\xff\\n"));
}

TEST(Show, SaysTheSameWithoutColours)
{
    const std::string page = shownCard(kLed, {100, true, false});
    EXPECT_THAT(page, HasSubstr("\x1b["));
    EXPECT_EQ(uncoloured(page), shownCard(kLed));
}

TEST(Show, NeedsNothingButAsciiWhereItIsAsked)
{
    const std::string page =
        shownCard(std::string(kLed) + "<voltage-entity num='1'><voltage id='1'><description>1V8 \xc3\xa9"
                                      "</description></voltage></voltage-entity>",
                  {100, false, true});
    EXPECT_TRUE(isAscii(page)) << page;
    EXPECT_THAT(page, HasSubstr("@ stop red fast-blink"));
    EXPECT_THAT(page, HasSubstr("1V8 \\u00e9"));
}

TEST(Show, NamesSomeOfVeryManyTypesOfASlot)
{
    PageContext context;
    context.types.assign(100000, 7);
    const std::string page = layOut(pageOf(DcmSlotInfo(), context), {200, false, false});
    EXPECT_THAT(page, StartsWith("Slot type 0x0, 0x7, 0x7, 0x7"));
    EXPECT_THAT(page, HasSubstr("0x7, ... (100000)  0 cards\n"));
}

TEST(Show, StaysInItsWidthAndSizeWhateverARecordHolds)
{
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp,cert-msc32-c): each run is the same
    const auto expectBounded = [&](auto info) {
        auto *bytes = reinterpret_cast<uint8_t *>(&info);
        for (size_t i = 0; i < sizeof info; i++)
            bytes[i] = static_cast<uint8_t>(random());
        for (const size_t width : {size_t{40}, size_t{80}, size_t{120}})
            for (const bool isAsciiOnly : {false, true}) {
                const std::string page = shown(info, {width, false, isAsciiOnly});
                EXPECT_LT(page.size(), size_t{600} << 10);
                for (const std::string &line : linesOf(page))
                    ASSERT_LE(widthOf(line), width) << line;
            }
    };
    for (int i = 0; i < 10; i++) {
        expectBounded(DcmFrameInfo());
        expectBounded(DcmSlotInfo());
        expectBounded(DcmCardInfo());
        expectBounded(DcmVmPortInfo());
    }
}

} // namespace
