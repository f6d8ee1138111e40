#include "common/vocabularies.h"
#include "tools/dcm/check/rule.h"

#include <algorithm>

namespace dcmtool {

namespace {

// "no" to a laser is "no" to a change of its medium, whatever has been said before.
void lostByOrder(const Context &context, Findings &findings)
{
    const auto count = [&](Role role) {
        return std::count_if(context.children.begin(), context.children.end(),
                             [&](const KnownChild &child) { return context.roleOf(child) == role; });
    };
    // What is there twice is reported as such.
    if (count(Role::mediumChange) != 1 || count(Role::laser) != 1)
        return;
    const KnownChild *medium = nullptr;
    for (const KnownChild &child : context.children) {
        if (context.roleOf(child) == Role::mediumChange)
            medium = &child;
        if (medium == nullptr || context.roleOf(child) != Role::laser)
            continue;
        uint32_t isLaser = 1;
        uint32_t isChangeable = 0;
        const dcm::Text laserText = dcm::Text::content(child.node, {"dcm"});
        const dcm::Text mediumText = dcm::Text::content(medium->node, {"dcm"});
        static_cast<void>(dcm::readWord(dcm::kYesNoWords, laserText.word(), isLaser));
        static_cast<void>(dcm::readWord(dcm::kYesNoWords, mediumText.word(), isChangeable));
        if (isLaser == 0 && isChangeable != 0)
            findings
                .atName(medium->node, quotedName(dcm::nameOf(medium->node)) + " stands before " +
                                          quotedName(dcm::nameOf(child.node)) + ", whose " +
                                          inQuotes(laserText.c_str()) + " takes it back; expected behind it")
                .noting(findings.file().contentSpan(child.node), "takes it back");
    }
}

} // namespace

extern constexpr Rule kLostByOrder = {"lost-by-order", Severity::warning, onElements(lostByOrder)};

} // namespace dcmtool
