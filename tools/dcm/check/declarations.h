// What the frames, slots and cards of a file are and have, for rules about what refers to them. Each is looked at once,
// however many refer to it.
#ifndef DCM_TOOLS_CHECK_DECLARATIONS_H
#define DCM_TOOLS_CHECK_DECLARATIONS_H

#include "common/format.h"
#include "tools/dcm/description/description_file.h"

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <vector>

namespace dcmtool {

// The LEDs of one or of many: for each type, the numbers.
class LedSet {
public:
    // Adds those that a frame, card or unit declares in its own "led-entity".
    void add(Node holder);
    bool has(const char *type, uint32_t id) const;

private:
    static constexpr size_t kNumbers = 256;
    std::vector<std::bitset<kNumbers>> numbers_;
};

// By their ids.
using FanControllers = std::bitset<DCM_FAN_CTRL_MAX + 1>;

class Declarations {
public:
    explicit Declarations(const std::vector<DescribedType> &types) : types_(types) {}

    // The type ids of the cards.
    const std::set<uint32_t> &cards() const;
    bool has(RecordKind kind) const;
    // The LEDs of all that is of a kind.
    const LedSet &leds(RecordKind kind) const;
    // Those of one holder, of which mostly many are asked for in a row.
    const LedSet &ledsOf(Node holder) const;
    // The fan controllers of all frames and slots, for cards, which fit into any, and those of one frame.
    const FanControllers &fanControllers() const;
    const FanControllers &fanControllersOf(Node frame) const;

private:
    const std::vector<DescribedType> &types_;
    mutable std::optional<std::set<uint32_t>> cards_;
    mutable std::optional<LedSet> frameLeds_;
    mutable std::optional<LedSet> cardLeds_;
    mutable Node holder_ = nullptr;
    mutable LedSet holderLeds_;
    mutable std::optional<FanControllers> fanControllers_;
    mutable Node frame_ = nullptr;
    mutable FanControllers frameControllers_;
};

} // namespace dcmtool

#endif
