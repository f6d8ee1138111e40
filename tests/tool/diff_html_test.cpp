// The page of differences: which types have pictures, and which of their parts are marked.
#include "tools/dcm/diff/comparison.h"
#include "tools/dcm/diff/output.h"
#include "tools/dcm/diff/pictures.h"
#include "tools/dcm/own_output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <regex>
#include <string>
#include <vector>

using namespace dcmtool;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;

namespace {

std::unique_ptr<Side> sideOf(const std::string &name, const std::string &inside)
{
    return std::make_unique<Side>(name, Origin::file,
                                  DescriptionFile::parse("device.xml", "<device>" + inside + "</device>"));
}

// The page that compares two descriptions, given the content of their "device".
std::string pageOf(const std::string &before, const std::string &after, const std::string &name = "old.xml")
{
    const auto oldSide = sideOf(name, before);
    const auto newSide = sideOf("new.xml", after);
    testing::internal::CaptureStdout();
    {
        const OwnOutput output;
        EXPECT_TRUE(printAsHtml(Comparison(*oldSide, *newSide, FieldFilter()), output));
    }
    return testing::internal::GetCapturedStdout();
}

// All matches of the first group of an expression.
std::vector<std::string> matchesIn(const std::string &html, const char *expression)
{
    const std::regex wanted(expression);
    std::vector<std::string> found;
    for (std::sregex_iterator at(html.begin(), html.end(), wanted), end; at != end; ++at)
        found.push_back((*at)[1]);
    return found;
}

size_t picturesIn(const std::string &html)
{
    return matchesIn(html, "(<figure class=picture)").size();
}

// The marked parts of the first type: "old.panelIf.1" by "mark-removed".
std::map<std::string, std::string> marksIn(const std::string &html)
{
    const std::regex outline("<rect id=\"d1-([^\"]+)\"[^>]*class=\"outline ([^\"]+)\"");
    std::map<std::string, std::string> marks;
    for (std::sregex_iterator at(html.begin(), html.end(), outline), end; at != end; ++at)
        marks[(*at)[1]] = (*at)[2];
    return marks;
}

std::map<std::string, std::string> marks(const std::string &before, const std::string &after)
{
    return marksIn(pageOf(before, after));
}

std::string card(const std::string &inside, const std::string &name = "A")
{
    return "<card typeid=\"1\" abbrname=\"" + name + "\">" + inside + "</card>";
}

// A card with panel ports of these numbers.
std::string ports(const std::vector<unsigned> &numbers, const std::string &kind = "<phytype>ge</phytype>")
{
    const std::string count = std::to_string(numbers.size());
    std::string text = "<panel-port num=\"" + count + "\" startportid=\"1\" maxportid=\"9\">";
    for (size_t i = 0; i < numbers.size(); i++)
        text += "<port id=\"" + std::to_string(i + 1) + "\"><portid>" + std::to_string(numbers[i]) + "</portid>" +
                kind + "</port>";
    return card(text + "</panel-port>");
}

std::string led(const std::string &type, const std::string &id = "1")
{
    return "<led id=\"" + id + "\" type=\"" + type +
           "\"><state type=\"default\"><color>red</color><freq>on</freq></state></led>";
}

std::string leds(unsigned count, const std::string &inside)
{
    return "<led-entity num=\"" + std::to_string(count) + "\">" + inside + "</led-entity>";
}

std::string frame(const std::string &lpu, const std::string &inside, unsigned slots = 3)
{
    return "<frame typeid=\"1\"><maxslotnum>" + std::to_string(slots) + "</maxslotnum><slotmap><lpu>" + lpu +
           "</lpu></slotmap>" + inside + "</frame>";
}

std::string slotRules(const std::string &cards, const std::string &count = "2")
{
    return "<slotinfo><slotid id=\"1\"><supportcardtype>" + cards + "</supportcardtype><maxcardnum>" + count +
           "</maxcardnum></slotid></slotinfo>";
}

std::string units(unsigned count, const std::string &fans = "1")
{
    const std::string number = std::to_string(count);
    return "<fanmodule-entity num=\"" + number + "\"><fanmodule id=\"1-" + number + "\"><fannum>" + fans +
           "</fannum><fan id=\"1-" + fans + "\"><fanctrl>1</fanctrl></fan></fanmodule></fanmodule-entity>";
}

// A fan module with a sensor that has these fan controllers.
std::string sensor(const std::string &controllers)
{
    return "<fanmodule-entity num=\"1\"><fanmodule id=\"1\"><fannum>1</fannum><temperature-entity num=\"1\">"
           "<temperature id=\"1\"><fanctrlbits>" +
           controllers + "</fanctrlbits></temperature></temperature-entity></fanmodule></fanmodule-entity>";
}

// ---- Which types have pictures --------------------------------------------------------------------------------------

struct PictureCase {
    const char *what;
    std::string before;
    std::string after;
    size_t pictures;
};

class DiffPictures : public testing::TestWithParam<PictureCase> {};

TEST_P(DiffPictures, AreThereWhereTheLayoutDiffers)
{
    const PictureCase &one = GetParam();
    EXPECT_EQ(picturesIn(pageOf(one.before, one.after)), one.pictures);
}

INSTANTIATE_TEST_SUITE_P(
    Changes, DiffPictures,
    testing::Values(
        PictureCase{"AddedPort", ports({1, 2}), ports({1, 2, 3}), 2},
        PictureCase{"RemovedPort", ports({1, 2}), ports({2}), 2},
        PictureCase{"RenumberedPort", ports({1, 2}), ports({1, 7}), 2},
        PictureCase{"KindOfPort", ports({1}), ports({1}, "<phytype>10ge</phytype>"), 2},
        PictureCase{"OrderOfPorts", ports({1, 2}), ports({2, 1}), 0},
        PictureCase{"SettingOfPort", ports({1}, "<workmode>bridge</workmode>"),
                    ports({1}, "<workmode>route</workmode>"), 0},
        PictureCase{"Name", card("", "A"), card("", "B"), 0},
        PictureCase{"AddedLed", card(leds(1, led("fan"))), card(leds(2, led("fan") + led("alarm"))), 2},
        PictureCase{
            "AddedLedState", card(leds(1, led("fan"))),
            card(leds(1, "<led id=\"1\" type=\"fan\"><state type=\"default\"><color>red</color><freq>on</freq>"
                         "</state><state type=\"stop\" pri=\"1\"><color>red</color><freq>on</freq></state></led>")),
            0},
        PictureCase{"AddedSensor", card(""),
                    card("<temperature-entity num=\"1\"><temperature id=\"1\"><highthreshold>1</highthreshold>"
                         "</temperature></temperature-entity>"),
                    0},
        PictureCase{"AcceptedCards", frame("1", slotRules("1,2")), frame("1", slotRules("1")), 2},
        PictureCase{"CardsOfSlot", frame("1", slotRules("1")), frame("1", slotRules("1", "1")), 2},
        PictureCase{"KindOfSlot", frame("1", ""), frame("1-2", ""), 2},
        PictureCase{"NumberOfSlots", frame("1", ""), frame("1", "", 4), 2},
        PictureCase{"FanModule", frame("1", units(2)), frame("1", units(3)), 2},
        PictureCase{"Fan", frame("1", units(2)), frame("1", units(2, "2")), 2},
        PictureCase{"NewCard", "", ports({1}), 0}, PictureCase{"CardThatIsGone", ports({1}), "", 0},
        PictureCase{"FanControllersOfSensor", frame("1", sensor("1")), frame("1", sensor("1-2")), 2},
        PictureCase{"Slot", "<slot typeid=\"1\"/>", "<slot typeid=\"1\"><fanctrl-entity num=\"1\"/></slot>", 0}),
    [](const auto &one) { return one.param.what; });

// ---- Marks ----------------------------------------------------------------------------------------------------------

TEST(DiffMarks, AreOnThePortThatIsNewOrGone)
{
    EXPECT_THAT(marks(ports({1, 4}), ports({1, 3, 4})), ElementsAre(Pair("new.panelIf.1", "mark-added")));
    EXPECT_THAT(marks(ports({1, 3, 4}), ports({1, 4})), ElementsAre(Pair("old.panelIf.1", "mark-removed")));
}

TEST(DiffMarks, AreOnThePortThatIsRenumberedInBothPictures)
{
    EXPECT_THAT(marks(ports({1, 3}), ports({1, 4})),
                ElementsAre(Pair("new.panelIf.1", "mark-changed"), Pair("old.panelIf.1", "mark-changed")));
}

TEST(DiffMarks, FollowAPortToItsOtherPosition)
{
    const std::string slow = ports({1, 2});
    const std::string fast = "<phytype>10ge</phytype>";
    EXPECT_THAT(marks(slow, ports({2}, fast)),
                ElementsAre(Pair("new.panelIf.0", "mark-changed"), Pair("old.panelIf.0", "mark-removed"),
                            Pair("old.panelIf.1", "mark-changed")));
}

TEST(DiffMarks, AreOnLedsAndOnThoseOfPorts)
{
    EXPECT_THAT(marks(card(leds(2, led("fan") + led("alarm"))), card(leds(1, led("fan")))),
                ElementsAre(Pair("old.led.1", "mark-removed")));
    const std::string portLeds =
        "<portled-entity><port-led name-prefix=\"p\" start-id=\"1\" end-id=\"2\" type=\"link\">"
        "<state type=\"default\"><color>red</color><freq>on</freq></state></port-led>"
        "</portled-entity>";
    EXPECT_THAT(marks(card(""), card(portLeds)),
                ElementsAre(Pair("new.portLed.0.1", "mark-added"), Pair("new.portLed.0.2", "mark-added")));
}

TEST(DiffMarks, AreOnWhatElseDiffersWhereAPictureIsShown)
{
    const std::string red = led("fan");
    const std::string green = std::regex_replace(red, std::regex("red"), "green");
    EXPECT_THAT(marks(card(leds(1, red)), card(leds(2, green + led("alarm")))),
                ElementsAre(Pair("new.led.0", "mark-changed"), Pair("new.led.1", "mark-added"),
                            Pair("old.led.0", "mark-changed")));
}

TEST(DiffMarks, AreOnTheSlotsThatAListDescribes)
{
    EXPECT_THAT(marks(frame("1-2", ""), frame("2-3", "")),
                ElementsAre(Pair("new.slot.1", "mark-changed"), Pair("new.slot.3", "mark-changed"),
                            Pair("old.slot.1", "mark-changed"), Pair("old.slot.3", "mark-changed")));
    EXPECT_THAT(marks(frame("1", slotRules("1,2")), frame("1", slotRules("1"))),
                ElementsAre(Pair("new.slot.1", "mark-changed"), Pair("old.slot.1", "mark-changed")));
}

TEST(DiffMarks, AreOnASlotThatOnlyOnePictureHas)
{
    EXPECT_THAT(marks(frame("1", "", 3), frame("1", "", 4)), ElementsAre(Pair("new.slot.4", "mark-added")));
    EXPECT_THAT(marks(frame("1,9", "", 3), frame("1", "", 3)), ElementsAre(Pair("old.slot.9", "mark-removed")));
}

TEST(DiffMarks, AreOnFansAndTheirModules)
{
    EXPECT_THAT(marks(frame("1", units(1)), frame("1", units(1, "2"))),
                ElementsAre(Pair("new.fanModuleInfo.0.fan.1", "mark-added")));
    EXPECT_THAT(marks(frame("1", units(2)), frame("1", units(1))),
                ElementsAre(Pair("old.fanModuleInfo.1", "mark-removed")));
}

TEST(DiffMarks, AreNotOnASlotForTheNumberOfAController)
{
    EXPECT_THAT(marks(frame("1", sensor("1")), frame("1", sensor("1-2"))),
                ElementsAre(Pair("new.fanModuleInfo.0.temperature.0", "mark-changed"),
                            Pair("old.fanModuleInfo.0.temperature.0", "mark-changed")));
}

// ---- The page -------------------------------------------------------------------------------------------------------

TEST(DiffPage, LinksEachMarkWithTheRowOfItsDifferenceAndBack)
{
    const std::string html = pageOf(ports({1, 2, 3}) + "<card typeid=\"2\"/>",
                                    ports({2, 3}, "<phytype>10ge</phytype>") + "<card typeid=\"2\" name=\"x\"/>");
    // Both ports are one row.
    EXPECT_THAT(matchesIn(html, "<tr id=\"(d1-[^\"]*)\""), ElementsAre("d1-1", "d1-2"));
    EXPECT_THAT(matchesIn(html, "<a href=\"#([^\"]*)\" class=\"mark"),
                ElementsAre("d1-2", "d1-1", "d1-1", "d1-1", "d1-1"));
    EXPECT_THAT(matchesIn(html, "<a href=\"#([^\"]*)\"><code>"), ElementsAre("d1-new.panelIf.0", "d1-old.panelIf.0"));
}

TEST(DiffPage, SaysOnAMarkWhatDiffers)
{
    EXPECT_THAT(pageOf(ports({1}), ports({1}, "<phytype>10ge</phytype>")),
                HasSubstr("class=\"mark-changed\"><title>ge → 10ge (what the port is)</title>"));
}

TEST(DiffPage, SaysWhereAPartIsDescribedInItsOwnFile)
{
    const std::string html = pageOf(ports({1}), "\n" + ports({1, 2}), "before/old.xml");
    EXPECT_THAT(html, HasSubstr("<title>port 1: ge · old.xml:1</title>"));
    EXPECT_THAT(html, HasSubstr("<title>port 1: ge · new.xml:2</title>"));
}

TEST(DiffPage, KeepsTextOfTheFilesFromBecomingMarkup)
{
    const std::string model = "<phytype>ge</phytype><modelname>&lt;i>&amp;&quot;</modelname>";
    const std::string html = pageOf(card(leds(1, led("fan")), "&lt;/svg>&lt;b>"),
                                    card("", "&lt;/style>&#x202e;") + ports({1}, model), "<script>&\"'\x1b");
    EXPECT_EQ(picturesIn(html), 2U);
    // NOLINTNEXTLINE(misc-misleading-bidirectional): the subject of the test
    for (const char *markup : {"<i>", "<b>", "<script", "\u202e", "\x1b", "&\""})
        EXPECT_THAT(html, Not(HasSubstr(markup)));
    EXPECT_EQ(matchesIn(html, "(</style>)").size(), 2U);
}

TEST(DiffPage, HasNoPicturesWhereThereIsNoRoom)
{
    const auto oldSide = sideOf("old.xml", ports({1}));
    const auto newSide = sideOf("new.xml", ports({1, 2}));
    const OwnOutput silence;
    const Comparison comparison(*oldSide, *newSide, FieldFilter());
    std::vector<PartDifference> differences;
    comparison.visitDifferences(comparison.groups()[0], [&](const Difference &difference) {
        differences.push_back(partsOf(RecordKind::card, difference));
    });
    const auto draw = [&](size_t room) {
        return Pictures(comparison, room).draw(comparison.groups()[0], differences, "d1");
    };
    const size_t size = draw(1'000'000).html.size();
    EXPECT_FALSE(draw(size).isLeftOut);
    EXPECT_TRUE(draw(size - 1).isLeftOut);
    EXPECT_THAT(draw(size - 1).html, IsEmpty());
}

} // namespace
