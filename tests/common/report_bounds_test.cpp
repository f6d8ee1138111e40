// Reports of records whose counts exceed their arrays.
#include "tests/support/dcm_test.h"

#include <cstring>

using namespace dcmtest;

namespace {

struct Case {
    const char *name;  // of the test
    const char *entry; // the beginning of each entry in the report
    size_t room;
    void (*report)();
};

std::ostream &operator<<(std::ostream &out, const Case &example)
{
    return out << example.name;
}

std::string nameOf(const testing::TestParamInfo<Case> &info)
{
    return info.param.name;
}

size_t occurrences(const std::string &text, const std::string &part)
{
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
        count++;
    return count;
}

// The report of a record that is cleared except for a count.
template <class Record, auto Count, auto Print> void reportOf()
{
    const auto record = std::make_unique<Record>();
    (*record).*Count = 255;
    Print(record.get());
}

const Case cases[] = {
    {"FanControllersOfAFrame", "fanctrl[", DCM_FAN_CTRL_MAX,
     reportOf<DcmFrameInfo, &DcmFrameInfo::fanCtrlNum, dcmFrameInfoPrint>},
    {"FanModulesOfAFrame", "fanmodule[", DCM_FAN_MODULE_MAX,
     reportOf<DcmFrameInfo, &DcmFrameInfo::fanModuleNum, dcmFrameInfoPrint>},
    {"PowerSuppliesOfAFrame", "power[", DCM_POWER_MAX,
     reportOf<DcmFrameInfo, &DcmFrameInfo::powerNum, dcmFrameInfoPrint>},
    {"FanControllersOfASlot", "fanctrl[", DCM_FAN_CTRL_MAX,
     reportOf<DcmSlotInfo, &DcmSlotInfo::fanCtrlNum, dcmSlotInfoPrint>},
    {"PowerEntitiesOfASlot", "power[", DCM_POWER_MAX, reportOf<DcmSlotInfo, &DcmSlotInfo::powerNum, dcmSlotInfoPrint>},
    {"ManagementPortsOfACard", "methIf[", DCM_METH_IF_MAX,
     reportOf<DcmCardInfo, &DcmCardInfo::methIfNum, dcmCardInfoPrint>},
    {"VoltageSensorsOfACard", "voltage[", DCM_VOLTAGE_MAX,
     reportOf<DcmCardInfo, &DcmCardInfo::voltageNum, dcmCardInfoPrint>},
    {"LedsOfACard", "led[", DCM_LED_MAX, reportOf<DcmCardInfo, &DcmCardInfo::ledNum, dcmLedCardInfoPrint>},
    {"EntriesOfAnLedMap", "ledMap[", DCM_LED_MAP_MAX, reportOf<DcmLedMapInfo, &DcmLedMapInfo::num, dcmLedMapPrint>},
    {"StatePairsOfAnLed", "srcState[", DCM_LED_STATE_MAX,
     reportOf<DcmLedHead, &DcmLedHead::statMapNum, _dcmLedInfoPrint>},
};

class ReportOfARecordThatClaimsMore : public testing::TestWithParam<Case> {};

INSTANTIATE_TEST_SUITE_P(, ReportOfARecordThatClaimsMore, testing::ValuesIn(cases), nameOf);

} // namespace

TEST_P(ReportOfARecordThatClaimsMore, EndsWithTheRecord)
{
    const std::string report = outputOf(GetParam().report);
    EXPECT_EQ(occurrences(report, GetParam().entry), GetParam().room);
}
