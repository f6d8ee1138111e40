// The "port" children of a card's "gcc-port" and "ethppp-port" elements.
#include "tests/support/dcm_test.h"

using namespace dcmtest;

namespace {

Answer<DcmCardInfo> cardWithGccPorts(const std::string &ports)
{
    return cardWith("<gcc-port num='2'>" + ports + "</gcc-port>");
}

Answer<DcmCardInfo> cardWithEthpppPorts(const std::string &ports)
{
    return cardWith("<ethppp-port num='3'>" + ports + "</ethppp-port>");
}

} // namespace

TEST(GccPort, FillsTheEntryOfItsId)
{
    const auto card = cardWithGccPorts(
        "<port id='2'><slotid>3</slotid><cardid>4</cardid><portid>500</portid><phytype>otu2</phytype></port>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->gccIf[1].slotId, 3);
    EXPECT_EQ(card.info->gccIf[1].cardId, 4);
    EXPECT_EQ(card.info->gccIf[1].portId, 500);
    EXPECT_EQ(card.info->gccIf[1].phyType, 181);
    EXPECT_EQ(card.info->gccIf[1].ondType, 41);
    EXPECT_EQ(bytesOf(card.info->gccIf[0]), bytesOf(cardWith("").info->gccIf[0]));
}

TEST(GccPort, WithoutChildrenStaysNotGiven)
{
    const auto card = cardWithGccPorts("<port id='1'/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->gccIf[0].slotId, 255);
    EXPECT_EQ(card.info->gccIf[0].cardId, 255);
    EXPECT_EQ(card.info->gccIf[0].portId, 65535);
    EXPECT_EQ(card.info->gccIf[0].phyType, 0);
    EXPECT_EQ(card.info->gccIf[0].ondType, 0);
}

TEST(GccPort, KeepsTheLowBitsOfNumbersInAnyBase)
{
    const auto card = cardWithGccPorts("<port id='0x1'><slotid>0x103</slotid><cardid>260</cardid><portid>65541</portid>"
                                       "</port><port id='02'><slotid>010</slotid><portid>five</portid></port>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.info->gccIf[0].slotId, 3);
    EXPECT_EQ(card.info->gccIf[0].cardId, 4);
    EXPECT_EQ(card.info->gccIf[0].portId, 5);
    EXPECT_EQ(card.info->gccIf[1].slotId, 8);
    EXPECT_EQ(card.info->gccIf[1].portId, 0);
}

TEST(GccPort, RequiresAnId)
{
    const auto card = cardWithGccPorts("<port><portid>1</portid></port>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{"[_dcmDecodeGccPort:#]: decode gcc-port failed, no id prop.",
                                       "[dcmCardInfoGet:#]: xmlfile(FILE) card decode gcc-port failed."}));
}

TEST(GccPort, RejectsAnIdOutsideTheAnnouncedPorts)
{
    struct {
        const char *id;
        const char *message;
    } const cases[] = {
        {"0", "[_dcmDecodeGccPort:#]: decode gcc-port failed, invalid id(0)."},
        {"3", "[_dcmDecodeGccPort:#]: decode gcc-port failed, invalid id(3)."},
        {"257", "[_dcmDecodeGccPort:#]: decode gcc-port failed, invalid id(257)."},
        {"-1", "[_dcmDecodeGccPort:#]: decode gcc-port failed, invalid id(4294967295)."},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.id);
        const auto card = cardWithGccPorts(std::string("<port id='") + row.id + "'><portid>7</portid></port>");
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages,
                  (Messages{row.message, "[dcmCardInfoGet:#]: xmlfile(FILE) card decode gcc-port failed."}));
        EXPECT_EQ(bytesOf(card.info->gccIf), bytesOf(cardWith("").info->gccIf));
    }
}

TEST(GccPort, WithAPhyTypeTakesItsEntry)
{
    const auto card = cardWithGccPorts("<port id='1'><portid>5</portid><phytype>ge</phytype></port>"
                                       "<port id='1'><portid>6</portid></port>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{"[_dcmDecodeGccPort:#]: decode gcc-port failed, duplicate id(1).",
                                       "[dcmCardInfoGet:#]: xmlfile(FILE) card decode gcc-port failed."}));
    EXPECT_EQ(card.info->gccIf[0].portId, 5);
}

TEST(GccPort, WithoutAPhyTypeIsMergedWithTheNextOfItsId)
{
    const auto card = cardWithGccPorts("<port id='1'><slotid>2</slotid><portid>5</portid></port>"
                                       "<port id='1'><portid>6</portid><phytype>ge</phytype></port>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->gccIf[0].slotId, 2);
    EXPECT_EQ(card.info->gccIf[0].portId, 6);
    EXPECT_EQ(card.info->gccIf[0].phyType, 2);
    EXPECT_EQ(card.info->gccIf[0].ondType, 1);
}

TEST(GccPort, ReportsABadPhyTypeAndKeepsWhatCameBefore)
{
    const auto card = cardWithGccPorts("<port id='1'><portid>5</portid><phytype>GE</phytype><slotid>2</slotid></port>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages,
              (Messages{"[dcmPhyTypeStr2Val:#]: invalid phytype(GE).", "[_dcmDecodeGccPort:#]: decode gcc-port failed.",
                        "[dcmCardInfoGet:#]: xmlfile(FILE) card decode gcc-port failed."}));
    EXPECT_EQ(card.info->gccIf[0].portId, 5);
    EXPECT_EQ(card.info->gccIf[0].slotId, 255);
    EXPECT_EQ(card.info->gccIf[0].phyType, 0);
}

TEST(GccPort, SkipsOtherChildren)
{
    const auto plain = cardWithGccPorts("<port id='1'><portid>5</portid></port>");
    const auto card = cardWithGccPorts("<port id='1'>text<!-- note --><?phytype none?><driver>none</driver>"
                                       "<PhyType>none</PhyType><portid>5</portid><tail/></port>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(bytesOf(card.info->gccIf), bytesOf(plain.info->gccIf));
}

TEST(EthpppPort, FillsTheEntryOfItsId)
{
    const auto card = cardWithEthpppPorts("<port id='3'><portid>31</portid></port>"
                                          "<port id='1'><portid>0x1000b</portid></port>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->ethpppIf[0].portId, 11);
    EXPECT_EQ(card.info->ethpppIf[1].portId, 0);
    EXPECT_EQ(card.info->ethpppIf[2].portId, 31);
    EXPECT_EQ(card.info->ethpppIf[3].portId, 0);
}

TEST(EthpppPort, WithoutAPortIdStaysZero)
{
    const auto card = cardWithEthpppPorts("<port id='2'/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->ethpppIf[1].portId, 0);
}

TEST(EthpppPort, OverwritesAnEarlierOneOfItsId)
{
    const auto card = cardWithEthpppPorts("<port id='2'><portid>21</portid></port>"
                                          "<port id='2'><portid>22</portid></port><port id='2'/>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->ethpppIf[1].portId, 22);
}

TEST(EthpppPort, RequiresAnId)
{
    const auto card = cardWithEthpppPorts("<port/>");
    EXPECT_EQ(card.result, -1);
    EXPECT_EQ(card.messages, (Messages{"[_dcmDecodeEthpppPort:#]: decode ethppp-port failed, no id prop.",
                                       "[dcmCardInfoGet:#]: xmlfile(FILE) card decode ethppp-port failed."}));
}

TEST(EthpppPort, RejectsAnIdOutsideTheAnnouncedPorts)
{
    struct {
        const char *num;
        const char *id;
        const char *message;
    } const cases[] = {
        {"0", "1", "[_dcmDecodeEthpppPort:#]: decode ethppp-port failed, invalid id(1)."},
        {"0", "0", "[_dcmDecodeEthpppPort:#]: decode ethppp-port failed, invalid id(0)."},
        {"4", "0", "[_dcmDecodeEthpppPort:#]: decode ethppp-port failed, invalid id(0)."},
        {"4", "5", "[_dcmDecodeEthpppPort:#]: decode ethppp-port failed, invalid id(5)."},
        {"4", "0x101", "[_dcmDecodeEthpppPort:#]: decode ethppp-port failed, invalid id(257)."},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE(row.message);
        const auto card = cardWith(std::string("<ethppp-port num='") + row.num + "'><port id='" + row.id +
                                   "'><portid>7</portid></port></ethppp-port>");
        EXPECT_EQ(card.result, -1);
        EXPECT_EQ(card.messages,
                  (Messages{row.message, "[dcmCardInfoGet:#]: xmlfile(FILE) card decode ethppp-port failed."}));
        EXPECT_TRUE(isAllZero(card.info->ethpppIf));
    }
}

TEST(EthpppPort, SkipsOtherChildren)
{
    const auto card = cardWithEthpppPorts("<port id='1'>7<!-- 8 --><?portid 9?><phytype>none</phytype>"
                                          "<slotid>3</slotid><PortId>6</PortId><portid>5</portid></port>");
    EXPECT_EQ(card.result, 0);
    EXPECT_EQ(card.messages, Messages{});
    EXPECT_EQ(card.info->ethpppIf[0].portId, 5);
    EXPECT_EQ(bytesOf(card.info->gccIf), bytesOf(cardWith("").info->gccIf));
}
