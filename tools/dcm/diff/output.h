// How differences are shown: as text for people, as JSON for programs.
#ifndef DCM_TOOLS_DIFF_OUTPUT_H
#define DCM_TOOLS_DIFF_OUTPUT_H

#include "tools/dcm/diff/comparison.h"
#include "tools/dcm/own_output.h"

#include <optional>
#include <string>

namespace dcmtool {

// They end after so many bytes as a command may print of the larger file, and say on standard error what is left out.
// False when standard output takes no more.
bool printAsText(const Comparison &comparison, const OwnOutput &output);
bool printAsJson(const Comparison &comparison, const OwnOutput &output);
bool printAsHtml(const Comparison &comparison, const OwnOutput &output);

// ---- What the formats share -----------------------------------------------------------------------------------------

size_t mostOutputOf(const Comparison &comparison);
void sayLeftOut(size_t differences);

// "card 0x402/1", "slot 0x2,0x12", "vm"; of a group that has been renumbered with both names.
std::string nameOf(const QueryGroup &group);
// "panelIf[2].phyType"; empty for the record or query as a whole.
std::string pathOf(const Difference &difference);
// What it was and is: "100ge", "'GE port'", "portId 9"; empty where there is nothing.
std::string oldText(const Difference &difference);
std::string newText(const Difference &difference);
// "100ge → 10ge", "added: portId 9", "it is gone"; with the reason.
std::string textOf(const Difference &difference);

// Where it is written on either side; nothing where the side has nothing of it.
std::optional<Place> oldPlace(const Comparison &comparison, const QueryGroup &group, const Difference &difference);
std::optional<Place> newPlace(const Comparison &comparison, const QueryGroup &group, const Difference &difference);

} // namespace dcmtool

#endif
