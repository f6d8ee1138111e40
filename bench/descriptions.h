// Descriptions for measurements. They are generated, so that every run measures the same bytes.
#ifndef DCM_BENCH_DESCRIPTIONS_H
#define DCM_BENCH_DESCRIPTIONS_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace dcmbench {

// People indent descriptions, programs need not. Without blanks a file is cheaper to parse, and the decoding costs the
// same.
enum class Layout { indented, compact };

// The type id of the only element of a kind, and of the first of several cards; the others have the next ids.
constexpr uint32_t kTypeId = 0x1000;

// One card with everything that a card can have: 64 panel ports, each with every element and every capability.
std::string largeCard(Layout layout);
// One frame of 32 slots with everything that a frame can have.
std::string largeFrame();
// One slot with all its inner and switch-fabric ports, each in an element of its own.
std::string largeSlot();
// The port list of a virtual machine with the highest number of ports.
std::string largeVm();
// `count` ordinary line cards of 8 ports.
std::string ordinaryCards(size_t count);

} // namespace dcmbench

#endif
