#include "card/card.h"

namespace dcm {

namespace {

constexpr Child<DcmGccIfInfo> kGccPort[] = {
    {"slotid", number<&DcmGccIfInfo::slotId>},
    {"cardid", number<&DcmGccIfInfo::cardId>},
    {"portid", number<&DcmGccIfInfo::portId>},
    {"phytype", phyType<&DcmGccIfInfo::phyType, &DcmGccIfInfo::ondType>, DCM_SAYS("decode gcc-port failed.")},
};

constexpr Child<DcmEthpppIfInfo> kEthpppPort[] = {
    {"portid", number<&DcmEthpppIfInfo::portId>},
};

} // namespace

const Element kGccPortElement = repeated(kWithAttributes<kIdAttributes, kGccPort>);
const Element kEthpppPortElement = repeated(kWithAttributes<kIdAttributes, kEthpppPort>);

Result _dcmDecodeGccPort(Node element, DcmCardInfo &card, const Reporter &)
{
    static constexpr IdSays kSays = {DCM_SAYS("decode gcc-port failed, no id prop."),
                                     DCM_SAYS_ID("decode gcc-port failed, invalid id(%u).")};
    const Reporter here{__func__};
    uint32_t id = 0;
    if (const Result read = readId(element, card.gccIfNum, id, kSays, here); read != Result::ok)
        return read;
    DcmGccIfInfo &port = card.gccIf[id - 1];
    // A GCC port has no driver: its PHY type marks it as taken.
    if (port.phyType != 0)
        return DCM_REPORT(__func__, "decode gcc-port failed, duplicate id(%u).", id);
    return walk<kGccPort>(element, port, here);
}

// Nothing marks an ethppp port as taken: the last description of an id holds.
Result _dcmDecodeEthpppPort(Node element, DcmCardInfo &card, const Reporter &)
{
    static constexpr IdSays kSays = {DCM_SAYS("decode ethppp-port failed, no id prop."),
                                     DCM_SAYS_ID("decode ethppp-port failed, invalid id(%u).")};
    const Reporter here{__func__};
    uint32_t id = 0;
    if (const Result read = readId(element, card.ethpppIfNum, id, kSays, here); read != Result::ok)
        return read;
    return walk<kEthpppPort>(element, card.ethpppIf[id - 1], here);
}

} // namespace dcm
