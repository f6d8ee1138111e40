// The old and the new picture of a frame or card whose parts differ: slots, ports, LEDs, fans and supplies.
#ifndef DCM_TOOLS_DIFF_PICTURES_H
#define DCM_TOOLS_DIFF_PICTURES_H

#include "tools/dcm/diff/comparison.h"
#include "tools/dcm/draw/described_cards.h"
#include "tools/dcm/draw/layout.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace dcmtool {

// A difference at parts of the pictures.
struct PartDifference {
    std::vector<std::string> oldParts; // "panelIf.3", "slot.4"
    std::vector<std::string> newParts;
    MarkKind kind = MarkKind::changed;
    bool isLayout = false; // a part is added, gone or another one, and not only a setting of it
    std::string text;
    std::string row; // the id of its row in the table
};
// Without text and row.
PartDifference partsOf(RecordKind kind, const Difference &difference);

struct PicturePair {
    std::string html;                         // empty if no difference touches the layout
    std::map<std::string, std::string> marks; // the id of the first mark of each row
    bool isLeftOut = false;                   // for lack of room
};

class Pictures {
public:
    // `room`: the maximum size of all pictures in bytes.
    Pictures(const Comparison &comparison, size_t room) : comparison_(comparison), room_(room) {}

    // `prefix`: of the ids, which must be unique in the page.
    PicturePair draw(const QueryGroup &group, const std::vector<PartDifference> &differences,
                     const std::string &prefix);

private:
    const DescribedCards &cardsOf(const Side &side);
    Picture draw(const Side &side, size_t index, uint32_t typeId, const Answer &answer);

    const Comparison &comparison_;
    size_t room_;
    bool isFull_ = false;
    std::map<const Side *, std::unique_ptr<DescribedCards>> cards_; // names, for frames
};

} // namespace dcmtool

#endif
