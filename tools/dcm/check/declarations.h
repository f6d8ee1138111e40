// The types that a file describes and their parts, for rules about references to them. Each is read once, however many
// references there are.
#ifndef DCM_TOOLS_CHECK_DECLARATIONS_H
#define DCM_TOOLS_CHECK_DECLARATIONS_H

#include "common/format.h"
#include "tools/dcm/description/description_file.h"
#include "tools/dcm/relations/relations.h"

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <vector>

namespace dcmtool {

// The LEDs of one or several owners: the numbers for each type.
class LedSet {
public:
    // Adds the LEDs that a frame, card or unit declares in its own "led-entity".
    void add(Node holder);
    bool has(const char *type, uint32_t id) const;

private:
    static constexpr size_t kNumbers = 256;
    std::vector<std::bitset<kNumbers>> numbers_;
};

class Declarations {
public:
    explicit Declarations(const std::vector<DescribedType> &types);

    // The targets of references.
    const TargetIndex &targets() const { return targets_; }
    bool has(RecordKind kind) const { return kinds_.count(kind) != 0; }
    // The highest last slot of all frames; 0 without any.
    uint32_t lastSlot() const;
    // The LEDs of all owners of a kind.
    const LedSet &leds(RecordKind kind) const;
    // The LEDs of one owner, which is usually queried many times in a row.
    const LedSet &ledsOf(Node holder) const;

private:
    const std::vector<DescribedType> &types_;
    std::set<RecordKind> kinds_;
    TargetIndex targets_;
    mutable std::optional<uint32_t> lastSlot_;
    mutable std::optional<LedSet> frameLeds_;
    mutable std::optional<LedSet> cardLeds_;
    mutable Node holder_ = nullptr;
    mutable LedSet holderLeds_;
};

} // namespace dcmtool

#endif
