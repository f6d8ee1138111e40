// The differences between two descriptions, one fact at a time.
#include "tools/dcm/diff/comparison.h"
#include "tools/dcm/diff/output.h"
#include "tools/dcm/diff/places.h"
#include "tools/dcm/own_output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <stdexcept>
#include <string>
#include <vector>

using namespace dcmtool;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSubsetOf;
using testing::SizeIs;

namespace {

std::unique_ptr<Side> sideOf(const std::string &text)
{
    return std::make_unique<Side>("device.xml", Origin::file, DescriptionFile::parse("device.xml", text));
}

std::unique_ptr<Side> deviceOf(const std::string &inside)
{
    return sideOf("<device>" + inside + "</device>");
}

// "breaking card 0x1/0 panelIf[0].phyType: ge → 10ge (what the port is)"
std::vector<std::string> linesOf(const Comparison &comparison)
{
    std::vector<std::string> lines;
    for (const QueryGroup &group : comparison.groups())
        comparison.visitDifferences(group, [&](const Difference &difference) {
            const std::string path = pathOf(difference);
            lines.push_back(nameOf(difference.changeClass) + (" " + nameOf(group)) + (path.empty() ? "" : " " + path) +
                            ": " + textOf(difference));
        });
    return lines;
}

// The changes between two descriptions, given the content of their "device".
std::vector<std::string> changes(const std::string &before, const std::string &after, const FieldFilter &filter = {})
{
    const OwnOutput output; // the library's own output is discarded
    const auto oldSide = deviceOf(before);
    const auto newSide = deviceOf(after);
    return linesOf(Comparison(*oldSide, *newSide, filter));
}

std::string card(const std::string &inside, const std::string &attributes = "typeid=\"1\"")
{
    return "<card " + attributes + ">" + inside + "</card>";
}

// A card with this number of panel ports.
std::string panel(size_t count, const std::string &inside)
{
    return card("<panel-port num=\"" + std::to_string(count) + "\" startportid=\"1\" maxportid=\"9\">" + inside +
                "</panel-port>");
}

// Equal panel ports with these numbers.
std::string ports(const std::vector<unsigned> &numbers, const std::string &kind = "ge")
{
    std::string text;
    for (size_t i = 0; i < numbers.size(); i++)
        text += "<port id=\"" + std::to_string(i + 1) + "\"><portid>" + std::to_string(numbers[i]) +
                "</portid><phytype>" + kind + "</phytype><driver>cdl</driver></port>";
    return panel(numbers.size(), text);
}

std::string slotRules(const std::string &cardTypes)
{
    return "<frame typeid=\"1\"><maxslotnum>1</maxslotnum><slotinfo><slotid id=\"1\"><supportcardtype>" + cardTypes +
           "</supportcardtype></slotid></slotinfo></frame>";
}

TEST(Diff, CallsAnInsertedPortOneAddition)
{
    EXPECT_THAT(changes(ports({1, 2, 3, 4}), ports({1, 9, 2, 3, 4})),
                ElementsAre("addition card 0x1/0 panelIf[1]: added: portId 9 (the panel ports)"));
}

TEST(Diff, CallsAPortThatIsGoneBreaking)
{
    EXPECT_THAT(changes(ports({1, 2, 3}), ports({1, 3})),
                ElementsAre("breaking card 0x1/0 panelIf[1]: removed: portId 2 (the panel ports)"));
}

TEST(Diff, RecognisesAPortByAllButItsNumber)
{
    EXPECT_THAT(changes(ports({1, 7}), ports({1, 9})),
                ElementsAre("breaking card 0x1/0 panelIf[1].portId: was 7, is now 9 (it identifies the port)"));
}

TEST(Diff, ComparesEachPortWithTheOneOfItsNumber)
{
    EXPECT_THAT(changes(ports({1, 2}), ports({2}, "10ge")),
                ElementsAre("breaking card 0x1/0 panelIf[0].phyType: ge → 10ge (what the port is)",
                            "breaking card 0x1/0 panelIf[0]: removed: portId 1 (the panel ports)"));
}

TEST(Diff, CallsAnotherOrderBehaviour)
{
    EXPECT_THAT(changes(ports({1, 2, 3}), ports({3, 1, 2})),
                ElementsAre("behaviour card 0x1/0 panelIf: the entries have another order"));
}

TEST(Diff, SeesThatAPortMovesWhereNothingElseChanges)
{
    const auto at = [](const char *id) {
        return panel(2, "<port id=\"" + std::string(id) + "\"><portid>1</portid><driver>cdl</driver></port>");
    };
    EXPECT_THAT(changes(at("1"), at("2")), ElementsAre("behaviour card 0x1/0 panelIf: the entries have another order"));
}

TEST(Diff, FindsTheOneInsertedAmongPortsWithoutNumbers)
{
    const auto kinds = [](const std::vector<std::string> &words) {
        std::string text;
        for (size_t i = 0; i < words.size(); i++)
            text += "<port id=\"" + std::to_string(i + 1) + "\"><phytype>" + words[i] + "</phytype></port>";
        return panel(words.size(), text);
    };
    EXPECT_THAT(changes(kinds({"fe", "ge", "10ge"}), kinds({"fe", "100ge", "ge", "10ge"})),
                ElementsAre("addition card 0x1/0 panelIf[1]: added (the panel ports)"));
}

TEST(Diff, CountsAnnouncedEntriesThatAreNotThere)
{
    EXPECT_THAT(changes(panel(2, ""), panel(3, "")),
                ElementsAre("addition card 0x1/0 pannelIfNum: 2 → 3 (how many there are)"));
    EXPECT_THAT(changes(panel(3, ""), panel(2, "")),
                ElementsAre("breaking card 0x1/0 pannelIfNum: 3 → 2 (how many there are)"));
}

TEST(Diff, CallsAnAnnouncedPortThatIsNowDescribedAnAddition)
{
    EXPECT_THAT(changes(panel(1, ""), ports({4})),
                ElementsAre("addition card 0x1/0 panelIf[0]: added: portId 4 (the panel ports)"));
}

struct FieldCase {
    const char *before;
    const char *after;
    const char *line;
};

class DiffOfFields : public testing::TestWithParam<FieldCase> {};

TEST_P(DiffOfFields, HasTheClassOfTheField)
{
    EXPECT_THAT(changes(GetParam().before, GetParam().after), ElementsAre(GetParam().line));
}

INSTANTIATE_TEST_SUITE_P(
    Each, DiffOfFields,
    testing::Values(
        FieldCase{"<card typeid='1'><temperature-entity num='1'><temperature id='1'><highthreshold>65</highthreshold>"
                  "</temperature></temperature-entity></card>",
                  "<card typeid='1'><temperature-entity num='1'><temperature id='1'><highthreshold>70</highthreshold>"
                  "</temperature></temperature-entity></card>",
                  "behaviour card 0x1/0 temperature[0].highThreshold: 65 °C → 70 °C (a threshold)"},
        FieldCase{"<card typeid='1' name='a'/>", "<card typeid='1' name='bc'/>",
                  "behaviour card 0x1/0 name: 'a' → 'bc' (a name)"},
        FieldCase{"<frame typeid='1'><maxslotnum>8</maxslotnum></frame>",
                  "<frame typeid='1'><maxslotnum>10</maxslotnum></frame>",
                  "addition frame 0x1 maxSlotId: 8 → 10 (how many slots there are)"},
        FieldCase{"<frame typeid='1'><maxslotnum>8</maxslotnum></frame>",
                  "<frame typeid='1'><maxslotnum>6</maxslotnum></frame>",
                  "breaking frame 0x1 maxSlotId: 8 → 6 (how many slots there are)"},
        FieldCase{"<slot typeid='1'><supportpoe>no</supportpoe></slot>",
                  "<slot typeid='1'><supportpoe>yes</supportpoe></slot>",
                  "addition slot 0x1 supportPoe: no → yes (what the slot can be used for)"},
        FieldCase{"<slot typeid='1'><supportpoe>yes</supportpoe></slot>", "<slot typeid='1'/>",
                  "breaking slot 0x1 supportPoe: yes → no (what the slot can be used for)"},
        FieldCase{"<card typeid='1'><porttypecap><portcap>eth</portcap></porttypecap></card>",
                  "<card typeid='1'><porttypecap><portcap>eth</portcap><portcap>none</portcap></porttypecap></card>",
                  "addition card 0x1/0 portTypeCaps: eth → eth,none (what the card does; with none)"},
        FieldCase{"<card typeid='1'><porttypecap><portcap>eth</portcap></porttypecap></card>", "<card typeid='1'/>",
                  "breaking card 0x1/0 portTypeCaps: eth → (none) (what the card does; without eth)"},
        FieldCase{"<slot typeid='1'><inner-port><port commslot='2'><portid>7</portid>"
                  "<driver>cdl</driver></port></inner-port></slot>",
                  "<slot typeid='1'><inner-port><port commslot='2'><portid>8</portid>"
                  "<driver>cdl</driver></port></inner-port></slot>",
                  "breaking slot 0x1 syncIf[1].portId: 7 → 8 (it identifies the port)"}));

TEST(Diff, ReadsAnAcceptanceListAsASet)
{
    const auto from = [](const char *types) { return changes(slotRules("1,2"), slotRules(types)); };
    EXPECT_THAT(from("2,1,3"), ElementsAre("addition frame 0x1 supportCardType[0]: 0x0001,0x0002 → "
                                           "0x0002,0x0001,0x0003 (which cards fit; with 0x0003)"));
    EXPECT_THAT(from("1,3"), ElementsAre("breaking frame 0x1 supportCardType[0]: 0x0001,0x0002 → 0x0001,0x0003 "
                                         "(which cards fit; without 0x0002; with 0x0003)"));
    EXPECT_THAT(from("2,1"),
                ElementsAre("behaviour frame 0x1 supportCardType[0]: 0x0001,0x0002 → 0x0002,0x0001 (which cards fit)"));
}

// The texts for people, in which equal differences of several entries are one.
std::vector<std::string> foldedChanges(const std::string &before, const std::string &after)
{
    const OwnOutput output;
    const auto oldSide = deviceOf(before);
    const auto newSide = deviceOf(after);
    const Comparison comparison(*oldSide, *newSide, FieldFilter());
    std::vector<std::string> texts;
    for (const QueryGroup &group : comparison.groups())
        for (const FoldedDifference &folded : foldedDifferences(comparison, group))
            texts.push_back(folded.path + ": " + folded.text);
    return texts;
}

TEST(Diff, NamesThePortsAndSlotsOfADifferenceByTheirNumbers)
{
    EXPECT_THAT(foldedChanges(ports({7, 8, 12}), ports({7, 8, 12}, "10ge")),
                ElementsAre("panelIf[0-2].phyType: ge → 10ge (what the port is; ports 7-8,12)"));
    EXPECT_THAT(foldedChanges(slotRules("1"), slotRules("1,2")),
                ElementsAre("supportCardType[0]: 0x0001 → 0x0001,0x0002 (which cards fit; with 0x0002; slot 1)"));
}

TEST(Diff, MatchesTheDisplaysOfAnLedByTheirState)
{
    const auto led = [](const std::string &states) {
        return card("<led-entity num=\"1\"><led type=\"fan\" id=\"1\">" + states + "</led></led-entity>");
    };
    EXPECT_THAT(changes(led("<state type=\"stop\" pri=\"1\"/><state type=\"alarm\" pri=\"2\"/>"),
                        led("<state type=\"alarm\" pri=\"1\"/>")),
                ElementsAre("breaking card 0x1/0 led[0].states[0]: removed: state stop (which states the LED shows)",
                            "behaviour card 0x1/0 led[0].states[0].pri: 2 → 1 (orders the displays)"));
}

TEST(Diff, CallsATypeThatIsGoneBreakingAndANewOneAnAddition)
{
    EXPECT_THAT(changes(card(""), ""), ElementsAre("breaking card 0x1/0: it is gone"));
    EXPECT_THAT(changes("", card("")), ElementsAre("addition card 0x1/0: it is new"));
    EXPECT_THAT(changes(card(""), card("") + card("", "typeid=\"1\" mode=\"1\"")),
                ElementsAre("addition card 0x1/1: it is new"));
}

TEST(Diff, RecognisesACardByAllButItsType)
{
    EXPECT_THAT(changes(card("", "typeid=\"0x402\" name=\"x\""), card("", "typeid=\"0x403\" name=\"x\"")),
                ElementsAre("breaking card 0x402/0 → 0x403/0: its id has changed"));
}

TEST(Diff, ShowsASlotOnceForAllItsTypes)
{
    EXPECT_THAT(changes("<slot typeid=\"2,0x12\"/>", "<slot typeid=\"2,0x12\"><maxcardnum>1</maxcardnum></slot>"),
                ElementsAre("addition slot 0x2,0x12 maxCardNum: 0 → 1 (how many cards fit)"));
}

TEST(Diff, FindsTheTypesOfASlotWhereverTheyAre)
{
    EXPECT_THAT(changes("<slot typeid=\"2,3\"/>", "<slot typeid=\"3\"/><slot typeid=\"2\"/>"), IsEmpty());
}

TEST(Diff, ComparesOnlyTheElementThatAQueryFinds)
{
    EXPECT_THAT(changes(card("") + card("<tmuxctrl>yes</tmuxctrl>"), card("")), IsEmpty());
}

TEST(Diff, SeesTheNameThatACardHasFromOneBeforeIt)
{
    EXPECT_THAT(changes(card("", "typeid=\"1\" name=\"a\"") + card("", "typeid=\"2\""),
                        card("", "typeid=\"2\"") + card("", "typeid=\"1\" name=\"a\"")),
                ElementsAre("behaviour card 0x2/0 name: 'a' → '' (a name)"));
}

TEST(Diff, SeesNothingInWhatIsBehindTheEndOfANameFromACardBefore)
{
    EXPECT_THAT(changes(card("", "typeid=\"1\" name=\"abc\"") + card("", "typeid=\"2\" name=\"x\""),
                        card("", "typeid=\"2\" name=\"x\"") + card("", "typeid=\"1\" name=\"abc\"")),
                IsEmpty());
}

TEST(Diff, CallsAQueryThatFailsBreaking)
{
    const std::string faulty = card("<tmuxctrl>maybe</tmuxctrl>");
    EXPECT_THAT(changes(card(""), faulty),
                ElementsAre("breaking card 0x1/0: the query fails: \"invalid YesOrNo(maybe).\""));
    EXPECT_THAT(changes(faulty, card("")),
                ElementsAre("addition card 0x1/0: the query no longer fails: \"invalid YesOrNo(maybe).\""));
    EXPECT_THAT(changes(faulty, card("<tmuxctrl>perhaps</tmuxctrl>")),
                ElementsAre("behaviour card 0x1/0: the query fails in another way: \"invalid YesOrNo(perhaps).\""));
    EXPECT_THAT(changes(faulty, "<!-- the same -->" + faulty), IsEmpty());
}

TEST(Diff, SeesAFaultThatAQueryAcceptsAndReports)
{
    const auto sensor = [](const char *type) {
        return card("<temperature-entity num=\"1\"><temperature id=\"1\"><type>" + std::string(type) +
                    "</type></temperature></temperature-entity>");
    };
    EXPECT_THAT(changes(sensor("x"), sensor("y")),
                ElementsAre(testing::StartsWith("behaviour card 0x1/0: the query succeeds, but reports other faults")));
}

TEST(Diff, ComparesPortListsOfVms)
{
    const OwnOutput output;
    const auto listOf = [](const char *indexes) { return sideOf("<panel-port num=\"2\">" + std::string(indexes)); };
    const auto before = listOf("<ifindex>1</ifindex><ifindex>2</ifindex></panel-port>");
    const auto after = listOf("<ifindex>1</ifindex><ifindex>3</ifindex></panel-port>");
    EXPECT_THAT(linesOf(Comparison(*before, *after, {})),
                ElementsAre("breaking vm ifindex[1]: removed: 2 (which ports the VM has)",
                            "addition vm ifindex[1]: added: 3 (which ports the VM has)"));
}

TEST(Diff, IsCosmeticWhereEveryAnswerIsTheSame)
{
    const OwnOutput output;
    const auto before = deviceOf("<slot typeid=\"1\"/>" + card("<maxcardnum>2</maxcardnum>"));
    const auto after = deviceOf("<!-- new --><slot typeid=\"0x1\"/>" + card("<maxcardnum>2</maxcardnum>"));
    const Comparison comparison(*before, *after, {});
    EXPECT_EQ(comparison.worst(), ChangeClass::cosmetic);
    EXPECT_EQ(comparison.rewritten(), 1);
}

TEST(Diff, CallsATypeRewrittenOnlyWhereItsOwnTextDiffers)
{
    const auto rewritten = [](const std::string &after) {
        const OwnOutput output;
        const auto oldSide = deviceOf(card("<hidden/>") + "<slot typeid=\"1\"/>");
        const auto newSide = deviceOf(after);
        return Comparison(*oldSide, *newSide, {}).rewritten();
    };
    EXPECT_EQ(rewritten(card("<hidden/>") + "<!-- </card> --><slot typeid=\"2\"/> <slot typeid=\"1\"/>"), 0);
    EXPECT_EQ(rewritten(card("<hidden/> ") + "<slot typeid=\"1\"></slot>"), 2);
}

TEST(Diff, ComparesTheFirstModeOfACardWithTheOthers)
{
    const OwnOutput output;
    const auto side = deviceOf(card("") + card("<tmuxctrl>yes</tmuxctrl>", "typeid=\"1\" mode=\"2\"") +
                               card("", "typeid=\"1\" mode=\"1\""));
    EXPECT_THAT(linesOf(Comparison(*side, 1, {})),
                ElementsAre("addition card 0x1/0 → 0x1/2 isTmuxCtrl: no → yes (what the card does)"));
}

// ---- Fields that a process reads ------------------------------------------------------------------------------------

TEST(DiffForFields, LeavesOutWhatIsNotAskedFor)
{
    const std::string before = card("<tmuxctrl>no</tmuxctrl>", "typeid=\"1\" name=\"a\"");
    const std::string after = card("<tmuxctrl>yes</tmuxctrl>", "typeid=\"1\" name=\"b\"");
    EXPECT_THAT(changes(before, after, FieldFilter({"name"})), SizeIs(1));
    EXPECT_THAT(changes(before, after, FieldFilter({"name", "isTmuxCtrl"})), SizeIs(2));
    EXPECT_THAT(changes(before, after, FieldFilter({"panelIf"})), IsEmpty());
}

TEST(DiffForFields, KeepsEntriesThatHaveTheField)
{
    EXPECT_THAT(changes(ports({1}), ports({1, 2}), FieldFilter({"phyType"})), SizeIs(1));
    EXPECT_THAT(changes(ports({1}), ports({1, 2}), FieldFilter({"panelIf.phyType"})), SizeIs(1));
    EXPECT_THAT(changes(ports({1}), ports({1, 2}), FieldFilter({"methIf.phyType"})), IsEmpty());
}

TEST(DiffForFields, ShowsTheNumberOfEntriesWhereOnlyThatIsAskedFor)
{
    EXPECT_THAT(changes(ports({1}), ports({1, 2}), FieldFilter({"pannelIfNum"})),
                ElementsAre("addition card 0x1/0 pannelIfNum: 1 → 2 (how many there are)"));
}

TEST(DiffForFields, RefusesAFieldThatNoRecordHas)
{
    EXPECT_THROW(FieldFilter({"phyType", "phytype"}), std::invalid_argument);
    EXPECT_THROW(FieldFilter({""}), std::invalid_argument);
}

// ---- Places ---------------------------------------------------------------------------------------------------------

std::vector<std::string> placesOf(const std::string &before, const std::string &after)
{
    const OwnOutput output;
    const auto oldSide = sideOf(before);
    const auto newSide = sideOf(after);
    const Comparison comparison(*oldSide, *newSide, {});
    const auto shown = [](const std::optional<Place> &place) {
        return place ? std::to_string(place->line) + ":" + std::to_string(place->column) : "none";
    };
    std::vector<std::string> places;
    for (const QueryGroup &group : comparison.groups())
        comparison.visitDifferences(group, [&](const Difference &difference) {
            places.push_back(shown(oldPlace(comparison, group, difference)) + " " +
                             shown(newPlace(comparison, group, difference)));
        });
    return places;
}

TEST(DiffPlaces, AreThoseOfTheElementOfTheEntry)
{
    EXPECT_THAT(
        placesOf(
            "<device>\n<card typeid='1'>\n<panel-port num='2' startportid='1' maxportid='2'>\n<port id='1'><phytype>ge</phytype></port>\n"
            "<port id='2'><portid>2</portid><phytype>ge</phytype></port>\n</panel-port></card></device>",
            "<device>\n<card typeid='1'>\n<panel-port num='2' startportid='1' maxportid='2'>\n"
            "<port id='2'><portid>2</portid><phytype>fe</phytype></port>\n"
            "<port id='1'><phytype>ge</phytype></port>\n</panel-port></card></device>"),
        ElementsAre("5:41 4:41"));
}

TEST(DiffPlaces, AreThoseOfTheAttribute)
{
    EXPECT_THAT(
        placesOf("<device><card typeid='1' name='ab'/></device>", "<device>\n<card name='c' typeid='1'/></device>"),
        ElementsAre("1:32 2:13"));
    EXPECT_THAT(
        placesOf("<device><card typeid='1'><panel-port num='2' startportid='1' maxportid='2'/></card></device>",
                 "<device><card typeid='1'>\n<panel-port maxportid='3' startportid='1' num='2'/></card></device>"),
        ElementsAre("1:73 2:24"));
}

TEST(DiffPlaces, AreTheContainerWhereAnEntryIsMissing)
{
    EXPECT_THAT(
        placesOf(
            "<device><card typeid='1'><panel-port num='1' startportid='1' maxportid='1'/></card></device>",
            "<device><card typeid='1'>\n<panel-port num='1' startportid='1' maxportid='1'>\n<port id='1'><portid>1</portid></port>"
            "</panel-port></card></device>"),
        ElementsAre("1:27 3:2"));
}

TEST(DiffPlaces, AreThoseOfTheInnerPortToTheSlot)
{
    const auto slot = [](const char *number) {
        return "<device><slot typeid='1'><inner-port>\n<port commslot='0'><portid>" + std::string(number) +
               "</portid></port>\n<port-group commslot='2-3'><portid>" + number +
               "</portid></port-group></inner-port></slot></device>";
    };
    // Both ports of the group also get a name, which the text does not contain.
    EXPECT_THAT(placesOf(slot("1"), slot("2")),
                ElementsAre("2:28 2:28", "3:36 3:36", "3:36 3:36", "3:2 3:2", "3:2 3:2"));
}

TEST(DiffPlaces, AreThoseOfTheSlotInAFrame)
{
    const auto frame = [](const char *number) {
        return "<device>\n<frame typeid='1'>\n<slotinfo>\n<slotid id='1'><maxcardnum>1</maxcardnum></slotid>\n<slotid "
               "id='2'><maxcardnum>" +
               std::string(number) + "</maxcardnum></slotid>\n</slotinfo></frame></device>";
    };
    EXPECT_THAT(placesOf(frame("1"), frame("2")), ElementsAre("5:28 5:28"));
}

TEST(DiffPlaces, AreNoneWhereTheSideHasNoSuchType)
{
    EXPECT_THAT(placesOf("<device/>", "<device><card typeid='1'/></device>"), ElementsAre("none 1:10"));
}

// Calls `visit` for every value of a record that is not a default and that something in a description fills.
template <class Visit> void visitGiven(const Record &record, Path &path, const Visit &visit)
{
    for (const Field &field : record)
        for (const FieldValue value : record.valuesOf(field)) {
            path.push_back(field.entries != 0 ? Step{&field, value.entry(), 0} : Step{&field});
            if (field.kind == FieldKind::record)
                visitGiven(value.record(), path, visit);
            else if (value.isGiven() && field.source != nullptr)
                visit(value);
            path.pop_back();
        }
}

// The name of the element or attribute whose text contains a place.
std::string nameAt(const std::string &text, size_t at)
{
    const size_t tag = text.rfind('<', at);
    const size_t end = text.find('>', tag);
    if (at < end && at != tag + 1) {
        const size_t equals = text.rfind('=', at);
        const size_t name = text.find_last_of(" \n", equals) + 1;
        return text.substr(name, equals - name);
    }
    const size_t nameEnd = text.find_first_of(" />", tag);
    return text.substr(tag + 1, nameEnd - tag - 1);
}

TEST(DiffPlaces, AreThoseOfWhatFillsTheFieldsOfTheExample)
{
    const std::string name = DCM_SOURCE_DIR "/examples/device.xml";
    Side side("device.xml", Origin::file, DescriptionFile::open(name));
    std::set<std::string> elsewhere;
    size_t count = 0;
    for (const Query &query : side.queries()) {
        const auto answer = side.answer(query.index);
        Path path;
        visitGiven(answer->record(), path, [&](const FieldValue &value) {
            const Span span = spanOf(*side.file(), side.types()[query.index].element, answer->record(), path);
            const std::string found = nameAt(side.file()->text(), span.begin);
            count++;
            if (found != value.field().source && found != "num")
                elsewhere.insert(std::string(value.field().name) + " at " + found);
        });
    }
    EXPECT_GT(count, 1000);
    // These values follow from the position, from an offset, or from an omitted element.
    EXPECT_THAT(elsewhere,
                IsSubsetOf({"cardTypeCaps at cap", "fanCtrlId at fan", "ifName at port-group", "portId at port-group",
                            "pri at state", "slot at fanmodule", "srcType at led-name", "srcType at source",
                            "supportMediaChg at port", "supportMediaChg at port-group", "sysId at inner-port",
                            "sysId at sfu-port", "sysId at slot"}));
}

// ---- Large descriptions ---------------------------------------------------------------------------------------------

TEST(DiffOfLarge, ComparesASlotOfManyTypesOnce)
{
    std::string ids;
    for (unsigned id = 1; id <= 65536; id++)
        ids += (id == 1 ? "" : ",") + std::to_string(id);
    const OwnOutput output;
    const auto before = deviceOf("<slot typeid=\"" + ids + "\"/>");
    const auto after = deviceOf("<slot typeid=\"" + ids + "\"><maxcardnum>1</maxcardnum></slot>");
    const Comparison comparison(*before, *after, {});
    ASSERT_THAT(comparison.groups(), SizeIs(1));
    EXPECT_THAT(comparison.groups().front().newIds, SizeIs(65536));
}

TEST(DiffOfLarge, MatchesManyCardsInAnyOrder)
{
    std::string forwards;
    std::string backwards;
    for (unsigned id = 1; id <= 4000; id++) {
        const std::string one = card("", "typeid=\"" + std::to_string(id) + "\" name=\"" + std::to_string(id) + "\"");
        forwards += one;
        backwards.insert(0, one);
    }
    EXPECT_THAT(changes(forwards, backwards), IsEmpty());
}

} // namespace
