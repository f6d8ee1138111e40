#include "card/card.h"

namespace dcm {

namespace {

struct GccPort : EntryTable {
    static constexpr Role role = Role::gccPort;
    static constexpr IdMessages messages = {
        DCM_MESSAGE("decode gcc-port failed, no id prop."),
        DCM_MESSAGE_ID("decode gcc-port failed, invalid id(%u)."),
        DCM_MESSAGE_ID("decode gcc-port failed, duplicate id(%u)."),
    };
    static constexpr Child<DcmGccIfInfo> children[] = {
        {"slotid", number<&DcmGccIfInfo::slotId>},
        {"cardid", number<&DcmGccIfInfo::cardId>},
        {{"portid", Role::portId}, number<&DcmGccIfInfo::portId>},
        {{"phytype", Role::phyType},
         phyType<&DcmGccIfInfo::phyType, &DcmGccIfInfo::ondType>,
         DCM_MESSAGE("decode gcc-port failed.")},
    };
    // A GCC port has no driver: its PHY type marks it as described.
    static bool isTaken(const DcmGccIfInfo &port) { return port.phyType != 0; }
    static void begin(DcmGccIfInfo &, uint32_t) {}
};

struct EthpppPort : EntryTable {
    static constexpr Role role = Role::ethpppPort;
    static constexpr IdMessages messages = {
        DCM_MESSAGE("decode ethppp-port failed, no id prop."),
        DCM_MESSAGE_ID("decode ethppp-port failed, invalid id(%u)."),
    };
    static constexpr Child<DcmEthpppIfInfo> children[] = {
        {{"portid", Role::portId}, number<&DcmEthpppIfInfo::portId>},
    };
    // Nothing marks an ethppp port as described: the last element with an id is used.
    static bool isTaken(const DcmEthpppIfInfo &) { return false; }
    static void begin(DcmEthpppIfInfo &, uint32_t) {}
};

} // namespace

const Element kGccPortElement = repeated(elementOf<GccPort>);
const Element kEthpppPortElement = repeated(elementOf<EthpppPort>);

Result _dcmDecodeGccPort(Node element, DcmCardInfo &card, const Reporter &)
{
    return takeEntry<GccPort>(element, card.gccIf, card.gccIfNum, __func__);
}

Result _dcmDecodeEthpppPort(Node element, DcmCardInfo &card, const Reporter &)
{
    return takeEntry<EthpppPort>(element, card.ethpppIf, card.ethpppIfNum, __func__);
}

} // namespace dcm
