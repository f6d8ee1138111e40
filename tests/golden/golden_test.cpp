// The complete reports of the examples. Each golden file was compared line by line with the example before it was
// committed; if a report changes on purpose, compare the new one in the same way.
#include "tests/support/dcm_test.h"

#include "host/host.h"

#include <fstream>
#include <iterator>

using namespace dcmtest;

namespace {

struct GoldenReport {
    const char *name; // of the test
    const char *file;
    std::string (*print)(uint32_t type, uint32_t mode);
    uint32_t type;
    uint32_t mode;
};

// Runs `query`, which must succeed without a report, on a record, and then `print`.
template <class Record, class Query, class Print> std::string reportOf(const Query &query, const Print &print)
{
    Guarded<Record> info;
    int result = -1;
    const Effects effects = effectsOf([&] { result = query(info.get()); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(effects.messages, Messages());
    return outputOf([&] { print(info.get()); });
}

std::string frameReport(uint32_t type, uint32_t)
{
    const std::string file = example("device.xml");
    return reportOf<DcmFrameInfo>([&](DcmFrameInfo *info) { return dcmFrameInfoGet(file.c_str(), type, info); },
                                  dcmFrameInfoPrint);
}

std::string slotReport(uint32_t type, uint32_t)
{
    const std::string file = example("device.xml");
    return reportOf<DcmSlotInfo>([&](DcmSlotInfo *info) { return dcmSlotInfoGet(file.c_str(), type, info); },
                                 dcmSlotInfoPrint);
}

std::string cardReport(uint32_t type, uint32_t mode)
{
    const std::string file = example("device.xml");
    return reportOf<DcmCardInfo>([&](DcmCardInfo *info) { return dcmCardInfoGet(file.c_str(), type, mode, info); },
                                 dcmCardInfoPrint);
}

std::string vmReport(uint32_t vmId, uint32_t)
{
    const std::string name = "vm-" + std::to_string(vmId) + ".xml";
    std::ifstream file(example(name), std::ios::binary);
    EXPECT_TRUE(file) << name;
    const Zorconf zorconf;
    zorconf.write(name, {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()});
    const std::string shown = "/etc/zorconf/device/" + name;
    return reportOf<DcmVmPortInfo>(
        [&](DcmVmPortInfo *info) { return dcmVmPortInfoGet(static_cast<uint8_t>(vmId), info); },
        [&](const DcmVmPortInfo *info) { return dcmVmPortInfoShow(shown.c_str(), info); });
}

constexpr GoldenReport reports[] = {
    {"Frame1", "frame-1.txt", frameReport, 1, 0},
    {"Frame2", "frame-2.txt", frameReport, 2, 0},

    {"ControlSlotOfFrame1", "slot-1.txt", slotReport, 1, 0},
    {"LeftLineSlotOfFrame1", "slot-2.txt", slotReport, 2, 0},
    {"RightLineSlotOfFrame1", "slot-0x12.txt", slotReport, 0x12, 0},
    {"SwitchFabricSlotOfFrame1", "slot-3.txt", slotReport, 3, 0},
    {"FanSlotOfFrame1", "slot-4.txt", slotReport, 4, 0},
    {"PowerSlotOfFrame1", "slot-5.txt", slotReport, 5, 0},
    {"DisplaySlotOfFrame1", "slot-6.txt", slotReport, 6, 0},
    {"ControlSlotOfFrame2", "slot-0x21.txt", slotReport, 0x21, 0},
    {"LineSlotOfFrame2", "slot-0x22.txt", slotReport, 0x22, 0},
    {"FanSlotOfFrame2", "slot-0x24.txt", slotReport, 0x24, 0},
    {"PowerSlotOfFrame2", "slot-0x25.txt", slotReport, 0x25, 0},

    {"ControlCardOfFrame1", "card-0x0101-0.txt", cardReport, 0x0101, 0},
    {"ControlCardOfFrame2", "card-0x0102-0.txt", cardReport, 0x0102, 0},
    {"SwitchFabricCard", "card-0x0201-0.txt", cardReport, 0x0201, 0},
    {"EthernetCardOfMixedRates", "card-0x0301-0.txt", cardReport, 0x0301, 0},
    {"EthernetCardWithPoe", "card-0x0302-0.txt", cardReport, 0x0302, 0},
    {"TdmCard", "card-0x0303-0.txt", cardReport, 0x0303, 0},
    {"OtnCard", "card-0x0401-0.txt", cardReport, 0x0401, 0},
    {"TransponderThatMultiplexes", "card-0x0402-0.txt", cardReport, 0x0402, 0},
    {"TransponderThatDoesNot", "card-0x0402-1.txt", cardReport, 0x0402, 1},
    {"OpticalMultiplexer", "card-0x0403-0.txt", cardReport, 0x0403, 0},
    {"PonCard", "card-0x0501-0.txt", cardReport, 0x0501, 0},
    {"DisplayCard", "card-0x0701-0.txt", cardReport, 0x0701, 0},

    {"PortsOfVm3", "vm-3.txt", vmReport, 3, 0},
};

std::ostream &operator<<(std::ostream &out, const GoldenReport &report)
{
    return out << report.file;
}

std::string nameOf(const testing::TestParamInfo<GoldenReport> &info)
{
    return info.param.name;
}

class ExampleReport : public testing::TestWithParam<GoldenReport> {};

INSTANTIATE_TEST_SUITE_P(, ExampleReport, testing::ValuesIn(reports), nameOf);

} // namespace

TEST_P(ExampleReport, IsTheGoldenOne)
{
    // Logical indexes of LED sources are those of the default mapping of the stub platform.
    hostSetEttMapping(nullptr);
    const GoldenReport &report = GetParam();
    EXPECT_EQ(report.print(report.type, report.mode), golden(report.file));
}
