#include "tests/support/dcm_test.h"

#include "host/host.h"

#include <cstring>
#include <regex>
#include <string>

using namespace dcmtest;

namespace {

const std::string doubleRule(60, '=');
const std::string rule(60, '-');

// During its lifetime, every physical entity has the logical index 42.
class EntityMapping {
public:
    EntityMapping()
    {
        hostSetEttMapping([](const DcmEttInfo *, uint32_t *logicalIndex) {
            *logicalIndex = 42;
            return 0;
        });
    }
    ~EntityMapping() { hostSetEttMapping(nullptr); }
    EntityMapping(const EntityMapping &) = delete;
    EntityMapping &operator=(const EntityMapping &) = delete;
};

// The report of a record of the test.
std::string reportOf(const DcmFrameInfo &info)
{
    int result = -1;
    const std::string report = outputOf([&] { result = dcmFrameInfoPrint(&info); });
    EXPECT_GE(result, 0);
    return report;
}

// A cleared record.
std::unique_ptr<DcmFrameInfo> clearedFrame()
{
    auto info = std::make_unique<DcmFrameInfo>();
    std::memset(static_cast<void *>(info.get()), 0, sizeof *info);
    return info;
}

// The report of a cleared record after its slot map.
const std::string &endOfEmptyReport()
{
    static const std::string end =
        lines(rule, "fanctrl Info:", rule, "power Info:", rule, "led Info:", "num:0", "led Map:", "num:0", "");
    return end;
}

// The lines that a Show function prints before the record.
std::string heading(const std::string &file)
{
    return lines("", "file: " + file + ": ");
}

std::string withSourceLinesMasked(const std::string &output)
{
    return std::regex_replace(output, std::regex(R"(\[([A-Za-z_]+):[0-9]+\]: )"), "[$1:#]: ");
}

} // namespace

TEST(FrameReport, PrintsAWholeFrame)
{
    const EntityMapping mapping;
    const TemporaryFile file(R"(
        <device><frame typeid='0x101'>
          <maxslotnum>14</maxslotnum>
          <slotmap>
            <mpu>1-2</mpu> <lpu>3-8,10</lpu> <sfu>9</sfu> <fan>11-12</fan> <power>13,14</power>
          </slotmap>
          <cardtypecaps><cap>7</cap></cardtypecaps>
          <slotinfo>
            <slotid id='1'>
              <supportcrossslot>1</supportcrossslot> <crossslotbit>2</crossslotbit>
              <supportcardtype>100,101</supportcardtype> <maxcardnum>4</maxcardnum> <startcardid>1</startcardid>
            </slotid>
          </slotinfo>
          <fanctrl-entity num='2'>
            <fanctrl id='1'>
              <fannum>6</fannum> <workmode>1</workmode> <speedlevel>3</speedlevel> <speedlevelmax>9</speedlevelmax>
              <speedlevelmin>2</speedlevelmin> <speed>4000</speed>
              <speedhighthreadhold>9000</speedhighthreadhold> <speedlowthreadhold>1500</speedlowthreadhold>
              <speedhighthreadholdmax>9500</speedhighthreadholdmax>
              <speedhighthreadholdmin>8500</speedhighthreadholdmin>
              <speedlowthreadholdmax>2000</speedlowthreadholdmax>
              <speedlowthreadholdmin>1000</speedlowthreadholdmin>
              <speedlevelforce>5</speedlevelforce>
            </fanctrl>
          </fanctrl-entity>
          <fanmodule-entity num='2'>
            <fanmodule id='1'>
              <fannum>3</fannum> <slot>11</slot>
              <fan id='1'/> <fan id='2'><fanctrl>4</fanctrl></fan>
              <led-entity num='1'>
                <led id='1' type='fan'>
                  <state type='present' pri='3'><color>green</color><freq>on</freq></state>
                  <state type='alarm' pri='1'><color>red</color><freq>fast-blink</freq></state>
                  <state type='default'><color>yellow</color><freq>off</freq></state>
                </led>
              </led-entity>
              <temperature-entity num='1'><temperature id='1'><description>inlet air</description></temperature>
              </temperature-entity>
            </fanmodule>
          </fanmodule-entity>
          <power-entity num='1'>
            <power id='1'>
              <led-map num='1'><led-name>led-power-1@power#/#</led-name></led-map>
              <modelname>PS-650</modelname>
            </power>
          </power-entity>
          <led-entity num='2'>
            <led id='1' type='system'><state type='running'><color>green</color><freq>slow-blink</freq></state></led>
            <led id='2' type='com'/>
          </led-entity>
          <led-map num='2'>
            <led-name src='src-3/1'>led-system-1@slot3/1</led-name>
            <source led-name='led-alarm-2@sys0/0' type='fan'>
              <state type='stop'>critical</state> <state type='alarm'>major</state>
            </source>
          </led-map>
          <fanctrl-map><fan-ctrl id='1'><card>1-8</card></fan-ctrl></fanctrl-map>
        </frame></device>)");
    int result = -1;
    const std::string output = outputOf([&] { result = dcmFrameInfoShowFilename(file.c_str(), 0x101); });
    EXPECT_GE(result, 0);

    // clang-format off
    const std::string frame = lines(
        doubleRule,
        "type: 257",
        "maxSlotId: 14",
        "slotmap: ",
        "  mpu: 1-2",
        "  lpu: 3-8,10",
        "  fan: 11-12", // the switch fabrics are not printed
        "  lcd: ",
        "  power: 13-14");
    const std::string fanCtrls = lines(
        rule,
        "fanctrl Info:",
        "",
        "fanctrl[0] {",
        "    id=1",
        "    fanNum=6",
        "    speedLevel=3",
        "    speedLevelMax=9",
        "    speedLevelMin=2",
        "    speed=4000",
        "    speedHighThreshold=9000",
        "    speedHighThresholdMin=8500",
        "    speedHighThresholdMax=9500",
        "    speedLowThreshold=1500",
        "    speedLowThresholdMin=1000",
        "    speedLowThresholdMax=2000",
        "}",
        "",
        "fanctrl[1] {", // counted, but not described
        "    id=0",
        "    fanNum=0",
        "    speedLevel=0",
        "    speedLevelMax=0",
        "    speedLevelMin=0",
        "    speed=0",
        "    speedHighThreshold=0",
        "    speedHighThresholdMin=0",
        "    speedHighThresholdMax=0",
        "    speedLowThreshold=0",
        "    speedLowThresholdMin=0",
        "    speedLowThresholdMax=0",
        "}");
    const std::string fanModules = lines(
        "",
        "fanmodule[0] {",
        "    id=1",
        "    fanNum=3",
        "    slot=11",
        "    ledNum=1",
        "    fan id=1",
        "        fanCtrlId=1",
        "    fan id=2",
        "        fanCtrlId=4",
        "    fan id=0", // counted, but not described
        "        fanCtrlId=0",
        "led Info:",
        "num:1",
        "",
        "led[0] {",
        "    srcType=fan",
        "    ledType=fan",
        "    id=1",
        "    attach=fan",
        "    attachSlot=255",
        "    attachCard=0",
        "    {",
        "        state=alarm",
        "        color=red",
        "        freq=fast-blink",
        "        pri=1",
        "    }",
        "    {",
        "        state=present",
        "        color=green",
        "        freq=on",
        "        pri=3",
        "    }",
        "    {",
        "        state=default",
        "        color=yellow",
        "        freq=off",
        "        pri=12",
        "    }",
        "}",
        "led Map:",
        "num:0",
        "}",
        "",
        "fanmodule[1] {", // counted, but not described
        "    id=0",
        "    fanNum=0",
        "    slot=0",
        "    ledNum=0",
        "led Info:",
        "num:0",
        "led Map:",
        "num:0",
        "}");
    const std::string powers = lines(
        rule,
        "power Info:",
        "",
        "power[0] {",
        "    id=1",
        "led Info:",
        "num:0",
        "led Map:",
        "num:1",
        "",
        "ledMap[0] {", // a map entry is never closed
        "    srcType=power",
        "    ledType=power",
        "    id=1",
        "    attach=power",
        "    attachSlot=255",
        "    attachCard=255",
        "}");
    const std::string leds = lines(
        rule,
        "led Info:",
        "num:2",
        "",
        "led[0] {",
        "    srcType=system",
        "    ledType=system",
        "    id=1",
        "    attach=sys",
        "    attachSlot=0",
        "    attachCard=0",
        "    {",
        "        state=running",
        "        color=green",
        "        freq=slow-blink",
        "        pri=1",
        "    }",
        "}",
        "",
        "led[1] {",
        "    srcType=com",
        "    ledType=com",
        "    id=2",
        "    attach=sys",
        "    attachSlot=0",
        "    attachCard=0",
        "}",
        "led Map:",
        "num:2",
        "",
        "ledMap[0] {",
        "src ettIndex[42]",
        "    srcType=system",
        "    ledType=system",
        "    id=1",
        "    attach=slot",
        "    attachSlot=3",
        "    attachCard=1",
        "",
        "ledMap[1] {",
        "    srcType=fan",
        "    ledType=alarm",
        "    id=2",
        "    attach=sys",
        "    attachSlot=0",
        "    attachCard=0",
        "    statMap Info:",
        "      srcState[stop(1)]->ledState[critical(1)]",
        "      srcState[alarm(2)]->ledState[major(2)]",
        "");
    // clang-format on
    EXPECT_EQ(output, heading(file.path()) + frame + fanCtrls + fanModules + powers + leds);
}

TEST(FrameReport, PrintsAnEmptyFrame)
{
    const auto info = clearedFrame();
    EXPECT_EQ(reportOf(*info), lines(doubleRule, "type: 0", "maxSlotId: 0",
                                     "slotmap: ", "  mpu: ", "  lpu: ", "  fan: ", "  lcd: ", "  power: ") +
                                   endOfEmptyReport());
}

TEST(FrameReport, PrintsTheLongestSlotLists)
{
    const auto info = clearedFrame();
    info->type = 65535;
    info->maxSlotId = 255;
    std::memset(info->slotmap.mpu, 0xFF, 4);
    std::memset(info->slotmap.lpu, 0xAA, 4);
    std::memset(info->slotmap.fan, 0x55, 4);
    info->slotmap.lcd[0] = 0x80;
    info->slotmap.power[3] = 0x01;
    EXPECT_EQ(reportOf(*info), lines(doubleRule, "type: 65535", "maxSlotId: 255", "slotmap: ", "  mpu: 1-32",
                                     "  lpu: 1,3,5,7,9,11,13,15,17,19,21,23,25,27,29,31",
                                     "  fan: 2,4,6,8,10,12,14,16,18,20,22,24,26,28,30,32", "  lcd: 1", "  power: 32") +
                                   endOfEmptyReport());
}

TEST(FrameReport, LeavesOutWhatIsNotForIt)
{
    const auto info = clearedFrame();
    const std::string empty = reportOf(*info);
    std::memset(info->slotmap.sfu, 0xFF, sizeof info->slotmap.sfu);
    std::memset(info->crossSlotBit, 0xFF, sizeof info->crossSlotBit);
    std::memset(info->cardTypeCaps, 0xFF, sizeof info->cardTypeCaps);
    std::memset(info->supportCardType, 0xFF, sizeof info->supportCardType);
    std::memset(info->maxCardNum, 0xFF, sizeof info->maxCardNum);
    std::memset(info->startCardId, 0xFF, sizeof info->startCardId);
    std::memset(info->supportCrossSlot, 0xFF, sizeof info->supportCrossSlot);
    std::memset(info->fanCtrlMap, 0xFF, sizeof info->fanCtrlMap);
    std::memset(info->tail, 0xFF, sizeof info->tail);
    // Entries beyond the counts.
    std::memset(static_cast<void *>(info->fanCtrlInfo), 0xFF, sizeof info->fanCtrlInfo);
    std::memset(static_cast<void *>(info->fanModuleInfo), 0xFF, sizeof info->fanModuleInfo);
    std::memset(static_cast<void *>(info->powerInfo), 0xFF, sizeof info->powerInfo);
    std::memset(static_cast<void *>(info->ledInfo), 0xFF, sizeof info->ledInfo);
    EXPECT_EQ(reportOf(*info), empty);
}

TEST(FrameReport, NumbersEntriesByTheirPosition)
{
    const auto info = clearedFrame();
    info->fanCtrlNum = 4;
    info->fanModuleNum = 3;
    info->powerNum = 2;
    const std::string report = reportOf(*info);
    std::vector<std::string> headings;
    const std::regex heading(R"((fanctrl|fanmodule|power)\[[0-9]+\] \{)");
    for (std::sregex_iterator at(report.begin(), report.end(), heading), end; at != end; ++at)
        headings.push_back(at->str());
    EXPECT_EQ(headings, (std::vector<std::string>{"fanctrl[0] {", "fanctrl[1] {", "fanctrl[2] {", "fanctrl[3] {",
                                                  "fanmodule[0] {", "fanmodule[1] {", "fanmodule[2] {", "power[0] {",
                                                  "power[1] {"}));
}

TEST(FrameReport, PrintsFourFansOfAModuleThatClaimsMore)
{
    const auto info = clearedFrame();
    info->fanModuleNum = 1;
    DcmFanModuleInfo &module = info->fanModuleInfo[0];
    module.id = 1;
    module.fanNum = 255;
    module.slot = 9;
    for (uint8_t i = 0; i < 4; ++i)
        module.fan[i].id = static_cast<uint8_t>(i + 1);
    EXPECT_THAT(reportOf(*info),
                testing::HasSubstr(lines("fanmodule[0] {", "    id=1", "    fanNum=255", "    slot=9", "    ledNum=0",
                                         "    fan id=1", "        fanCtrlId=0", "    fan id=2", "        fanCtrlId=0",
                                         "    fan id=3", "        fanCtrlId=0", "    fan id=4", "        fanCtrlId=0",
                                         "led Info:")));
}

TEST(FrameReport, NamesTheDefaultFileWhenNoneIsGiven)
{
    const Zorconf zorconf;
    zorconf.write("device.xml", "<device><frame typeid='5'><maxslotnum>6</maxslotnum></frame></device>");
    const std::string expected = heading("/etc/zorconf/device/device.xml") +
                                 lines(doubleRule, "type: 5", "maxSlotId: 6",
                                       "slotmap: ", "  mpu: ", "  lpu: ", "  fan: ", "  lcd: ", "  power: ") +
                                 endOfEmptyReport();
    int result = -1;
    EXPECT_EQ(outputOf([&] { result = dcmFrameInfoShowFilename(nullptr, 5); }), expected);
    EXPECT_GE(result, 0);
    result = -1;
    EXPECT_EQ(outputOf([&] { result = dcmFrameInfoShow(5); }), expected);
    EXPECT_GE(result, 0);
}

TEST(FrameReport, PrintsOneLineBehindTheMessagesOfAFailedQuery)
{
    const TemporaryFile file("<device><frame typeid='1'><slotmap><sfu>x</sfu></slotmap></frame></device>");
    int result = 0;
    const Effects effects =
        effectsOf([&] { result = dcmFrameInfoShowFilename(file.c_str(), 1); }, file.path(), Output::alsoPrints);
    EXPECT_EQ(result, -1);
    EXPECT_EQ(effects.messages, (Messages{"[_dcmDecodeSlotmap:#]: decode slotmap failed.",
                                          "[dcmFrameInfoGet:#]: xmlfile(FILE) frame deocde slotmap-lpu failed."}));
    EXPECT_EQ(withSourceLinesMasked(effects.output),
              lines("[_dcmDecodeSlotmap:#]: decode slotmap failed.",
                    "[dcmFrameInfoGet:#]: xmlfile(" + file.path() + ") frame deocde slotmap-lpu failed.", "",
                    "!!Failed to get frame info."));
}

TEST(FrameReport, ReportsThatTheDefaultFileCouldNotBeRead)
{
    const Zorconf zorconf;
    int result = 0;
    const std::string output = outputOf([&] { result = dcmFrameInfoShow(1); });
    EXPECT_EQ(result, -1);
    EXPECT_EQ(
        withSourceLinesMasked(output),
        lines(
            "[dcmFrameInfoGet:#]: xmlfile(/etc/zorconf/device/device.xml) parse failed(err#2, No such file or directory)",
            "", "!!Failed to get frame info."));
}
