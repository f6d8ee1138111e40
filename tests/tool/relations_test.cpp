// References between elements, and their targets.
#include "tools/dcm/relations/relations.h"

#include <gmock/gmock.h>

using namespace dcmtool;

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// "WHAT KEY -> LINE LINE", with the lines of the targets.
std::vector<std::string> referencesOf(const char *text)
{
    const auto file = DescriptionFile::parse("device.xml", text);
    std::vector<std::string> lines;
    for (const Reference &reference : referencesIn(*file)) {
        std::string line = std::string(reference.relation->what) + " " + reference.key + " ->";
        for (const Node target : reference.targets)
            line += " " + std::to_string(file->place(file->nameSpan(target).begin).line);
        lines.push_back(line);
    }
    return lines;
}

TEST(References, LeadFromTheCardTypesOfASlotToCards)
{
    EXPECT_THAT(referencesOf(R"(<device>
<frame typeid="1"><slotinfo><slotid id="1"><supportcardtype>0x21,7</supportcardtype></slotid></slotinfo></frame>
<card typeid="33"/>
<card typeid="33" mode="1"/>
</device>)"),
                ElementsAre("card type 33 -> 3 4", "card type 7 ->"));
}

TEST(References, LeadFromListsOfSlotsToTheRulesOfSlots)
{
    EXPECT_THAT(referencesOf(R"(<device><frame typeid="1">
<slotmap><lpu>1-2</lpu></slotmap>
<slotinfo>
<slotid id="1"><crossslotbit>2</crossslotbit></slotid>
<slotid id="2"/>
</slotinfo></frame></device>)"),
                ElementsAre("slot 1 -> 4", "slot 2 -> 5", "slot 2 -> 5"));
}

TEST(References, LeadFromWhatAControllerCoolsToTheUnits)
{
    EXPECT_THAT(referencesOf(R"(<device><frame typeid="1">
<fanctrl-entity num="2"><fanctrl-group id="1-2"/></fanctrl-entity>
<fanmodule-entity num="1"><fanmodule id="1"/></fanmodule-entity>
<power-entity num="1">
<power id="1"/>
</power-entity>
<fanctrl-map><fan-ctrl id="2"><power>1-2</power><fan-moudule>1</fan-moudule></fan-ctrl></fanctrl-map>
</frame></device>)"),
                ElementsAre("fan controller 2 -> 2", "power supply 1 -> 5", "power supply 2 ->", "fan module 1 -> 3"));
}

TEST(References, LeadFromTheSensorOfAFrameToControllersOfThatFrameAlone)
{
    EXPECT_THAT(referencesOf(R"(<device>
<frame typeid="1"><power-entity num="1"><power id="1"><temperature-entity num="1"><temperature id="1">
<fanctrlbits>1</fanctrlbits></temperature></temperature-entity></power></power-entity></frame>
<frame typeid="2"><fanctrl-entity num="1"><fanctrl id="1"/></fanctrl-entity></frame>
</device>)"),
                ElementsAre("fan controller 1 ->"));
}

TEST(References, LeadFromTheSensorOfACardToControllersOfEveryFrameAndSlot)
{
    EXPECT_THAT(referencesOf(R"(<device>
<frame typeid="1"><fanctrl-entity num="1"><fanctrl id="1"/></fanctrl-entity></frame>
<slot typeid="1"><fanctrl-entity num="1"><fanctrl id="1"/></fanctrl-entity></slot>
<card typeid="1"><temperature-entity num="1"><temperature id="1"><fanctrlbits>1</fanctrlbits></temperature>
</temperature-entity></card></device>)"),
                ElementsAre("fan controller 1 -> 2 3"));
}

TEST(References, LeadFromAnLedMapToTheLedBesideIt)
{
    EXPECT_THAT(referencesOf(R"(<device><card typeid="1">
<led-entity num="1">
<led id="1-2" type="alarm"/>
</led-entity>
<led-map num="1"><led-name>led-alarm-2@card#/#</led-name></led-map></card></device>)"),
                ElementsAre("LED led-alarm-2@card#/# -> 3"));
}

TEST(References, LeadFromAnLedMapToAnLedOfTheSystemInAnyFrame)
{
    EXPECT_THAT(referencesOf(R"(<device><card typeid="1">
<led-map num="1"><source led-name="led-alarm-1@sys0/0"/></led-map></card>
<frame typeid="1"><led-entity num="1">
<led id="1" type="alarm"/></led-entity></frame></device>)"),
                ElementsAre("LED led-alarm-1@sys0/0 -> 4"));
}

TEST(References, LeadFromAnOffsetToTheSumsWithTheIdsOfItsParent)
{
    EXPECT_THAT(referencesOf(R"(<device><frame typeid="1">
<slotinfo><slotid id="1"/>
<slotid id="2"/></slotinfo>
<fanmodule-entity num="2"><fanmodule id="1-2"><fannum>1</fannum><slot-offset>-1</slot-offset>
<fan id="1"><fanctrl-offset>1</fanctrl-offset></fan></fanmodule></fanmodule-entity>
<fanctrl-entity num="2"><fanctrl id="1"/>
<fanctrl id="2"/></fanctrl-entity>
</frame></device>)"),
                ElementsAre("slot 0 ->", "slot 1 -> 2", "fan controller 2 -> 7"));
}

TEST(References, AreNotInAnOffsetBesideTheNumberItself)
{
    EXPECT_THAT(referencesOf(R"(<device><frame typeid="1">
<fanmodule-entity num="1"><fanmodule id="1"><slot-offset>4</slot-offset><slot>2</slot></fanmodule></fanmodule-entity>
</frame></device>)"),
                ElementsAre("slot 2 ->"));
}

TEST(References, LeadFromInnerPortsAndCrossLinksToTheSlotsOfEveryFrame)
{
    EXPECT_THAT(referencesOf(R"(<device>
<frame typeid="1"><slotinfo><slotid id="1"/></slotinfo></frame>
<frame typeid="2"><slotinfo><slotid id="1"/></slotinfo></frame>
<slot typeid="1"><inner-port><port commslot="0"/><port commslot="1"/><port-group commslot="1-2"/></inner-port></slot>
<card typeid="1"><crosslinkslot>1</crosslinkslot></card></device>)"),
                ElementsAre("slot 1 -> 2 3", "slot 1 -> 2 3", "slot 2 ->", "slot 1 -> 2 3"));
}

TEST(References, LeadFromTheSourceOfAnLedToItsSlot)
{
    EXPECT_THAT(referencesOf(R"(<device><frame typeid="1"><slotinfo><slotid id="1"/></slotinfo>
<led-entity num="1"><led id="1" type="mcu"/></led-entity>
<led-map num="1"><led-name src="src-1/1">led-mcu-1@sys0/0</led-name></led-map></frame></device>)"),
                ElementsAre("slot 1 -> 1", "LED led-mcu-1@sys0/0 -> 2"));
}

TEST(References, AreNotInAListThatNamesNothing)
{
    EXPECT_THAT(referencesOf(R"(<device><frame typeid="1"><slotmap><lpu/></slotmap></frame></device>)"), IsEmpty());
}

TEST(References, HaveThePlaceOfTheirValue)
{
    const auto file = DescriptionFile::parse("device.xml", R"(<device><frame typeid="1">
<slotmap><lpu>1-2</lpu></slotmap></frame></device>)");
    const std::vector<Reference> references = referencesIn(*file);
    ASSERT_EQ(references.size(), 2U);
    EXPECT_EQ(file->text().substr(references[1].span.begin, references[1].span.end - references[1].span.begin), "1-2");
}

} // namespace
