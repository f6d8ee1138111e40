// What the frames, slots and cards of a file are and have, for rules about what refers to them. Each is looked at once,
// however many refer to it.
#ifndef DCM_TOOLS_CHECK_DECLARATIONS_H
#define DCM_TOOLS_CHECK_DECLARATIONS_H

#include "common/format.h"
#include "tools/dcm/description/description_file.h"
#include "tools/dcm/relations/relations.h"

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
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

class Declarations {
public:
    explicit Declarations(const std::vector<DescribedType> &types) : types_(types), targets_(types) {}

    // What is named by references.
    const TargetIndex &targets() const { return targets_; }
    bool has(RecordKind kind) const;
    // The highest last slot of all frames; 0 without any.
    uint32_t lastSlot() const;
    // The LEDs of all that is of a kind.
    const LedSet &leds(RecordKind kind) const;
    // Those of one holder, of which mostly many are asked for in a row.
    const LedSet &ledsOf(Node holder) const;

private:
    const std::vector<DescribedType> &types_;
    TargetIndex targets_;
    mutable std::optional<uint32_t> lastSlot_;
    mutable std::optional<LedSet> frameLeds_;
    mutable std::optional<LedSet> cardLeds_;
    mutable Node holder_ = nullptr;
    mutable LedSet holderLeds_;
};

} // namespace dcmtool

#endif
