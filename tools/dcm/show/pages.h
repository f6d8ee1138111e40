// The pages of frames, slots, cards and port lists: all fields of a record, in the words of descriptions. Values that a
// description leaves out, or that follow from others, are left out.
#ifndef DCM_TOOLS_PAGES_H
#define DCM_TOOLS_PAGES_H

#include "tools/dcm/show/page.h"

#include <dcm.h>

#include <functional>
#include <string>
#include <vector>

namespace dcmtool {

// Information of a page beside its record.
struct PageContext {
    std::string place;                                       // "device.xml:22"
    std::vector<uint32_t> types;                             // of a slot: all its type ids
    std::vector<std::string> fits;                           // of a card: the slots that accept it
    std::function<std::string(uint32_t type)> cardName = {}; // in the lists of a frame; by default its type id
    // The source of an LED map's entry ("ledMap.0") as it is written; by default its index on the element.
    std::function<std::string(const std::string &path)> sourceOf = {};
};

Page pageOf(const DcmFrameInfo &frame, const PageContext &context);
Page pageOf(const DcmSlotInfo &slot, const PageContext &context);
Page pageOf(const DcmCardInfo &card, const PageContext &context);
Page pageOf(const DcmVmPortInfo &vm, const PageContext &context);

// "0x0302"
std::string cardTypeName(uint32_t type);

} // namespace dcmtool

#endif
