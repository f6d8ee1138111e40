// Output formats for differences: text and HTML for people, JSON for programs.
#ifndef DCM_TOOLS_DIFF_OUTPUT_H
#define DCM_TOOLS_DIFF_OUTPUT_H

#include "tools/dcm/diff/comparison.h"
#include "tools/dcm/own_output.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace dcmtool {

// They end at the output limit for the larger file, and report on standard error how much is left out.
// False when standard output cannot be written.
bool printAsText(const Comparison &comparison, const OwnOutput &output);
bool printAsJson(const Comparison &comparison, const OwnOutput &output);
bool printAsHtml(const Comparison &comparison, const OwnOutput &output);

// ---- Shared by the formats ------------------------------------------------------------------------------------------

size_t mostOutputOf(const Comparison &comparison);
void reportLeftOut(size_t differences);

// "card 0x402/1", "slot 0x2,0x12", "vm"; both names for a group that has been renumbered.
std::string nameOf(const QueryGroup &group);
// "panelIf[2].phyType"; empty for the record or query as a whole.
std::string pathOf(const Difference &difference);
// The old and the new value: "100ge", "'GE port'", "portId 9"; empty if there is none.
std::string oldText(const Difference &difference);
std::string newText(const Difference &difference);
// "100ge → 10ge", "added: portId 9", "removed"; with the reason.
std::string textOf(const Difference &difference);

// "1 breaking, 2 behaviour; 1 type is written differently, ..."; empty if nothing differs.
std::string summaryOf(const Comparison &comparison);

// The place in each file; nothing if the side does not have it.
std::optional<Place> oldPlace(const Comparison &comparison, const QueryGroup &group, const Difference &difference);
std::optional<Place> newPlace(const Comparison &comparison, const QueryGroup &group, const Difference &difference);

// Differences that are equal for several entries of an array, such as the ports of a group.
struct FoldedDifference {
    ChangeClass changeClass;
    std::string path; // "panelIf[0-23].phyType"
    std::string oldText;
    std::string newText;
    std::string message; // the reason for its class
    std::string text;
    // Of the first one.
    std::optional<Place> oldPlace = {};
    std::optional<Place> newPlace = {};
    size_t count = 0;
};
// In the order of the differences. Calls `visit` for each difference, with the index of the one that it belongs to.
using FoldVisitor = std::function<void(const Difference &difference, size_t folded)>;
std::vector<FoldedDifference> foldedDifferences(const Comparison &comparison, const QueryGroup &group,
                                                const FoldVisitor &visit = {});

} // namespace dcmtool

#endif
