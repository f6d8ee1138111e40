// Descriptions to measure with. They are made by rule, so that every run measures the same bytes.
#ifndef DCM_BENCH_DESCRIPTIONS_H
#define DCM_BENCH_DESCRIPTIONS_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace dcmbench {

// People indent their descriptions; programs need not. Without the blanks a file has less to parse and as much to
// decode.
enum class Layout { indented, compact };

// The type id of the one element of a kind, and of the first of several cards, which count up from it.
constexpr uint32_t kTypeId = 0x1000;

// One card that has everything a card can have: 64 panel ports, each with every element and every capability.
std::string largeCard(Layout layout);
// One frame of 32 slots that has everything a frame can have.
std::string largeFrame();
// One slot with all its inner and switch-fabric ports, each described by itself.
std::string largeSlot();
// The list of a virtual machine that has as many ports as a list may have.
std::string largeVm();
// `count` ordinary line cards of 8 ports.
std::string ordinaryCards(size_t count);

} // namespace dcmbench

#endif
