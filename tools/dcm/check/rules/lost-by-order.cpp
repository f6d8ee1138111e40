#include "card/card.h"
#include "common/vocabularies.h"
#include "tools/dcm/check/rule.h"

#include <cstring>

namespace dcmtool {

namespace {

// "no" to a laser is "no" to a change of its medium, whatever has been said before.
void lostByOrder(const Context &context, Findings &findings)
{
    const KnownChild *medium = nullptr;
    for (const KnownChild &child : context.children) {
        const char *name = context.rowOf(child).name;
        if (std::strcmp(name, dcm::kSupportMediaChgName) == 0)
            medium = &child;
        if (medium == nullptr || std::strcmp(name, dcm::kSupportLaserName) != 0)
            continue;
        uint32_t isLaser = 1;
        uint32_t isChangeable = 0;
        const dcm::Text laserText = dcm::Text::content(child.node, {"dcm"});
        const dcm::Text mediumText = dcm::Text::content(medium->node, {"dcm"});
        static_cast<void>(dcm::readWord(dcm::kYesNoWords, laserText.word(), isLaser));
        static_cast<void>(dcm::readWord(dcm::kYesNoWords, mediumText.word(), isChangeable));
        if (isLaser == 0 && isChangeable != 0)
            findings
                .atName(medium->node, quotedName(dcm::kSupportMediaChgName) + " stands before " +
                                          quotedName(dcm::kSupportLaserName) + ", whose '" + laserText.c_str() +
                                          "' takes it back; expected behind it")
                .noting(findings.file().contentSpan(child.node), "takes it back");
    }
}

} // namespace

extern const Rule kLostByOrder = {"lost-by-order", Severity::warning, onElements(lostByOrder)};

} // namespace dcmtool
