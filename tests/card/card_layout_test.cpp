// The offsets of the fields of a card record, which compiled callers use.
#include "tests/support/dcm_test.h"

#include <cstddef>

using namespace dcmtest;

namespace {

static_assert(sizeof(DcmLedStateInfo) == 4);
static_assert(sizeof(DcmLedHead) == 31);
static_assert(sizeof(DcmLedInfo) == 79);
static_assert(offsetof(DcmLedInfo, states) == 31);

static_assert(offsetof(DcmPortLedInfo, ledType) == 0);
static_assert(offsetof(DcmPortLedInfo, startId) == 1);
static_assert(offsetof(DcmPortLedInfo, endId) == 2);
static_assert(offsetof(DcmPortLedInfo, namePrefix) == 3);
static_assert(offsetof(DcmPortLedInfo, states) == 35);
static_assert(sizeof(DcmPortLedInfo) == 83);

static_assert(offsetof(DcmLedMapInfo, num) == 0);
static_assert(offsetof(DcmLedMapInfo, srcEttIndex) == 4);
static_assert(offsetof(DcmLedMapInfo, mapEntries) == 52);
static_assert(sizeof(DcmLedMapInfo) == 424);

static_assert(sizeof(DcmTemperatureInfo) == 44);

static_assert(offsetof(DcmMethIfInfo, slotId) == 0);
static_assert(offsetof(DcmMethIfInfo, cardId) == 1);
static_assert(offsetof(DcmMethIfInfo, portId) == 2);
static_assert(offsetof(DcmMethIfInfo, phyType) == 4);
static_assert(offsetof(DcmMethIfInfo, ondType) == 6);
static_assert(offsetof(DcmMethIfInfo, workmode) == 7);
static_assert(offsetof(DcmMethIfInfo, drvType) == 8);
static_assert(offsetof(DcmMethIfInfo, ifName) == 10); // after a byte of flags
static_assert(offsetof(DcmMethIfInfo, transceiverCaps) == 26);
static_assert(sizeof(DcmMethIfInfo) == 30);

static_assert(offsetof(DcmPanelIfInfo, slotId) == 0);
static_assert(offsetof(DcmPanelIfInfo, cardId) == 1);
static_assert(offsetof(DcmPanelIfInfo, portId) == 2);
static_assert(offsetof(DcmPanelIfInfo, phyType) == 4);
static_assert(offsetof(DcmPanelIfInfo, ondType) == 6);
static_assert(offsetof(DcmPanelIfInfo, workmode) == 7);
static_assert(offsetof(DcmPanelIfInfo, portType) == 8);
static_assert(offsetof(DcmPanelIfInfo, drvType) == 9);
static_assert(offsetof(DcmPanelIfInfo, hidden) == 10);
static_assert(offsetof(DcmPanelIfInfo, connectorType) == 11);
static_assert(offsetof(DcmPanelIfInfo, groupId) == 12);
static_assert(offsetof(DcmPanelIfInfo, layerProtoCaps) == 16);
static_assert(offsetof(DcmPanelIfInfo, opticalChnCaps) == 20);
static_assert(offsetof(DcmPanelIfInfo, wavelength) == 24);
static_assert(offsetof(DcmPanelIfInfo, bpPort) == 26);
static_assert(offsetof(DcmPanelIfInfo, gccBitOrder) == 27);
static_assert(offsetof(DcmPanelIfInfo, poeStandardCaps) == 30); // after a word of flags
static_assert(offsetof(DcmPanelIfInfo, poeInrushCaps) == 31);
static_assert(offsetof(DcmPanelIfInfo, portIdOffset) == 32);
static_assert(offsetof(DcmPanelIfInfo, transceiverCaps) == 33);
static_assert(offsetof(DcmPanelIfInfo, modelNameLen) == 37);
static_assert(offsetof(DcmPanelIfInfo, modelName) == 38);
static_assert(sizeof(DcmPanelIfInfo) == 104);

static_assert(offsetof(DcmGccIfInfo, slotId) == 0);
static_assert(offsetof(DcmGccIfInfo, cardId) == 1);
static_assert(offsetof(DcmGccIfInfo, portId) == 2);
static_assert(offsetof(DcmGccIfInfo, phyType) == 4);
static_assert(offsetof(DcmGccIfInfo, ondType) == 6);
static_assert(sizeof(DcmGccIfInfo) == 8);

static_assert(offsetof(DcmEthpppIfInfo, portId) == 0);
static_assert(sizeof(DcmEthpppIfInfo) == 2);

static_assert(offsetof(DcmCpuInfo, id) == 0);
static_assert(offsetof(DcmCpuInfo, coreNum) == 1);
static_assert(offsetof(DcmCpuInfo, highThreshold) == 2);
static_assert(offsetof(DcmCpuInfo, lowThreshold) == 3);
static_assert(offsetof(DcmCpuInfo, freq) == 4);
static_assert(offsetof(DcmCpuInfo, modelNameLen) == 8);
static_assert(offsetof(DcmCpuInfo, modelName) == 9);
static_assert(sizeof(DcmCpuInfo) == 76);

static_assert(offsetof(DcmMemoryInfo, id) == 0);
static_assert(offsetof(DcmMemoryInfo, type) == 1);
static_assert(offsetof(DcmMemoryInfo, highThreshold) == 2);
static_assert(offsetof(DcmMemoryInfo, lowThreshold) == 3);
static_assert(offsetof(DcmMemoryInfo, modelNameLen) == 4);
static_assert(offsetof(DcmMemoryInfo, modelName) == 5);
static_assert(sizeof(DcmMemoryInfo) == 69);

static_assert(offsetof(DcmVoltageInfo, id) == 0);
static_assert(offsetof(DcmVoltageInfo, highThreshold) == 2);
static_assert(offsetof(DcmVoltageInfo, lowThreshold) == 4);
static_assert(offsetof(DcmVoltageInfo, modelNameLen) == 6);
static_assert(offsetof(DcmVoltageInfo, description) == 8);
static_assert(offsetof(DcmVoltageInfo, modelName) == 24);
static_assert(sizeof(DcmVoltageInfo) == 88);

static_assert(offsetof(DcmChipInfo, modelNameLen) == 0);
static_assert(offsetof(DcmChipInfo, modelName) == 2);
static_assert(sizeof(DcmChipInfo) == 66);

static_assert(offsetof(DcmComponentInfo, entityClass) == 0);
static_assert(offsetof(DcmComponentInfo, subType) == 1);
static_assert(offsetof(DcmComponentInfo, num) == 2);
static_assert(offsetof(DcmComponentInfo, descriptionLen) == 3);
static_assert(offsetof(DcmComponentInfo, description) == 4);
static_assert(sizeof(DcmComponentInfo) == 68);

static_assert(offsetof(DcmCardInfo, type) == 0);
static_assert(offsetof(DcmCardInfo, mode) == 2);
static_assert(offsetof(DcmCardInfo, panneIfStartPortId) == 4);
static_assert(offsetof(DcmCardInfo, panelIfMaxPortId) == 6);
static_assert(offsetof(DcmCardInfo, isTmuxCtrl) == 8);
static_assert(offsetof(DcmCardInfo, isMuxCtrl) == 9);
static_assert(offsetof(DcmCardInfo, methIfNum) == 10);
static_assert(offsetof(DcmCardInfo, pannelIfNum) == 11);
static_assert(offsetof(DcmCardInfo, hideIfNum) == 12);
static_assert(offsetof(DcmCardInfo, pannelLineIfNum) == 13);
static_assert(offsetof(DcmCardInfo, panneClientIfNum) == 14);
static_assert(offsetof(DcmCardInfo, gccIfNum) == 15);
static_assert(offsetof(DcmCardInfo, ethpppIfNum) == 16);
static_assert(offsetof(DcmCardInfo, cpuNum) == 17);
static_assert(offsetof(DcmCardInfo, memoryNum) == 18);
static_assert(offsetof(DcmCardInfo, temperatureNum) == 19);
static_assert(offsetof(DcmCardInfo, voltageNum) == 20);
static_assert(offsetof(DcmCardInfo, occupySlotNum) == 21);
static_assert(offsetof(DcmCardInfo, ledNum) == 22);
static_assert(offsetof(DcmCardInfo, switchChipNum) == 23);
static_assert(offsetof(DcmCardInfo, clockChipNum) == 24);
static_assert(offsetof(DcmCardInfo, componentNum) == 25);
static_assert(offsetof(DcmCardInfo, crosslinkSlot) == 26);
static_assert(offsetof(DcmCardInfo, name) == 27);
static_assert(offsetof(DcmCardInfo, abbrName) == 91);
static_assert(offsetof(DcmCardInfo, nameLen) == 123);
static_assert(offsetof(DcmCardInfo, abbrNameLen) == 124);
static_assert(offsetof(DcmCardInfo, methIf) == 126);
static_assert(offsetof(DcmCardInfo, panelIf) == 248);
static_assert(offsetof(DcmCardInfo, gccIf) == 6904);
static_assert(offsetof(DcmCardInfo, ethpppIf) == 6920);
static_assert(offsetof(DcmCardInfo, cpu) == 6928);
static_assert(offsetof(DcmCardInfo, memory) == 7004);
static_assert(offsetof(DcmCardInfo, temperature) == 7142);
static_assert(offsetof(DcmCardInfo, voltage) == 7406);
static_assert(offsetof(DcmCardInfo, led) == 8286);
static_assert(offsetof(DcmCardInfo, portLed) == 9550);
static_assert(offsetof(DcmCardInfo, ledMap) == 9800);
static_assert(offsetof(DcmCardInfo, portTypeCaps) == 10224);
static_assert(offsetof(DcmCardInfo, supportFuncs) == 10225);
static_assert(offsetof(DcmCardInfo, switchChip) == 10226);
static_assert(offsetof(DcmCardInfo, clockChip) == 10292);
static_assert(offsetof(DcmCardInfo, component) == 10358);
static_assert(sizeof(DcmCardInfo) == 11176);

// The flags are before these fields.
unsigned flagsOf(const DcmMethIfInfo &port)
{
    unsigned char flags;
    std::memcpy(&flags, reinterpret_cast<const unsigned char *>(&port) + offsetof(DcmMethIfInfo, ifName) - 1, 1);
    return flags;
}

unsigned flagsOf(const DcmPanelIfInfo &port)
{
    uint16_t flags;
    std::memcpy(&flags, reinterpret_cast<const unsigned char *>(&port) + offsetof(DcmPanelIfInfo, poeStandardCaps) - 2,
                2);
    return flags;
}

} // namespace

TEST(CardLayout, CountsManagementPortFlagsFromTheTopOfTheirByte)
{
    struct {
        const char *children;
        unsigned flags;
    } const cases[] = {
        {"", 0x10},
        {"<supportmediachg>no</supportmediachg>", 0x00},
        {"<supportlaser>yes</supportlaser>", 0x50},
        {"<supportlaser>yes</supportlaser><supportmediachg>no</supportmediachg>", 0x40},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.children);
        const auto card =
            cardWith(std::string("<mgt-port num='1'><port id='1'>") + row.children + "</port></mgt-port>");
        EXPECT_EQ(flagsOf(card.info->methIf[0]), row.flags);
        EXPECT_EQ(flagsOf(card.info->methIf[1]), 0x00u);
    }

    DcmMethIfInfo port = {};
    port.supportLaser = 3;
    EXPECT_EQ(flagsOf(port), 0xC0u);
    port.supportLaser = 0;
    port.supportMediaChg = 3;
    EXPECT_EQ(flagsOf(port), 0x30u);
}

TEST(CardLayout, CountsPanelPortFlagsFromTheTopOfTheirWord)
{
    struct {
        const char *children;
        unsigned flags;
    } const cases[] = {
        {"", 0x0400},
        {"<supportmediachg>no</supportmediachg>", 0x0000},
        {"<supportlaser>yes</supportlaser>", 0x4400},
        {"<supportpoe>yes</supportpoe>", 0x1400},
        {"<supportphychg>yes</supportphychg>", 0x0410},
        {"<supportsplit>yes</supportsplit>", 0x0401},
        {"<supportlaser>yes</supportlaser><supportpoe>yes</supportpoe><supportphychg>yes</supportphychg>"
         "<supportsplit>yes</supportsplit>",
         0x5411},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.children);
        const auto single = cardWith(std::string("<panel-port num='1' startportid='1' maxportid='1'><port id='1'>") +
                                     row.children + "</port></panel-port>");
        EXPECT_EQ(flagsOf(single.info->panelIf[0]), row.flags);
        EXPECT_EQ(flagsOf(single.info->panelIf[1]), 0x0000u);
        const auto group =
            cardWith(std::string("<panel-port num='1' startportid='1' maxportid='1'><port-group id='64'>") +
                     row.children + "</port-group></panel-port>");
        EXPECT_EQ(flagsOf(group.info->panelIf[63]), row.flags);
    }

    DcmPanelIfInfo port = {};
    port.supportLaser = 3;
    EXPECT_EQ(flagsOf(port), 0xC000u);
    port.supportLaser = 0;
    port.supportPoe = 3;
    EXPECT_EQ(flagsOf(port), 0x3000u);
    port.supportPoe = 0;
    port.supportMediaChg = 3;
    EXPECT_EQ(flagsOf(port), 0x0C00u);
    port.supportMediaChg = 0;
    port.supportPhyChg = 15;
    EXPECT_EQ(flagsOf(port), 0x00F0u);
    port.supportPhyChg = 0;
    port.supportSplit = 15;
    EXPECT_EQ(flagsOf(port), 0x000Fu);
}

TEST(CardLayout, BeginsWithTypeModeAndPanelPortIds)
{
    const auto card = queryCard(0x0102, 0x0304,
                                "<device><card typeid='0x0102' mode='0x0304'>"
                                "<panel-port num='0' startportid='0x0506' maxportid='0x0708'/></card></device>");
    uint16_t words[4];
    std::memcpy(words, &*card.info, sizeof words);
    EXPECT_EQ(words[0], 0x0102);
    EXPECT_EQ(words[1], 0x0304);
    EXPECT_EQ(words[2], 0x0506);
    EXPECT_EQ(words[3], 0x0708);
}
