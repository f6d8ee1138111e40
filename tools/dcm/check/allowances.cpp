#include "tools/dcm/check/allowances.h"

#include "tools/dcm/check/checks.h"

#include <libxml/tree.h>

#include <algorithm>

namespace dcmtool {

namespace {

constexpr Check kChecks[] = {
    {"faulty-allowance",
     Severity::warning,
     "A comment that allows a finding has a fault",
     "A comment allows one finding at one place and says why: `<!-- dcm-check: allow NAME: REASON -->` before the "
     "element or in it. One that cannot be read, names no check or gives no reason allows nothing.",
     R"(<device>
  <!-- dcm-check: allow octal-numbers: as in the manual -->
  <card typeid="1"/>
</device>
)",
     R"(<device>
  <!-- dcm-check: allow octal-number: as in the manual -->
  <card typeid="010"/>
</device>
)",
     {}},
    {"unused-allowance",
     Severity::warning,
     "A comment allows a finding that is not there",
     "What the comment allowed has been mended, or stands elsewhere. Left in place, it would hide the next mistake.",
     R"(<device>
  <!-- dcm-check: allow octal-number: as in the manual -->
  <card typeid="10"/>
</device>
)",
     R"(<device>
  <!-- dcm-check: allow octal-number: as in the manual -->
  <card typeid="010"/>
</device>
)",
     {}},
};
constexpr const Check &kFaulty = kChecks[0];
constexpr const Check &kUnused = kChecks[1];

std::string trimmed(const std::string &text)
{
    const size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos)
        return "";
    return text.substr(first, text.find_last_not_of(" \t\r\n") + 1 - first);
}

// Takes `word` off the front of a text.
bool takeWord(std::string &text, const std::string &word)
{
    if (text.compare(0, word.size(), word) != 0)
        return false;
    text = trimmed(text.substr(word.size()));
    return true;
}

// The check that a comment names; nullptr when it allows nothing, and `fault` says why.
const Check *checkOf(const std::string &comment, std::string &fault, std::string &meant)
{
    std::string text = trimmed(comment);
    if (!takeWord(text, "dcm-check:") || !takeWord(text, "allow ")) {
        fault = "expected 'dcm-check: allow NAME: REASON'";
        return nullptr;
    }
    const size_t colon = text.find(':');
    const std::string name = trimmed(text.substr(0, colon));
    const Check *check = findCheck(name);
    if (check == nullptr) {
        std::vector<std::string> names;
        for (const Checks &checks : allChecks())
            for (const Check &other : checks)
                names.emplace_back(other.name);
        fault = "there is no check '" + name + "'";
        meant = nearest(name, names);
    } else if (colon == std::string::npos || trimmed(text.substr(colon + 1)).empty()) {
        fault = "a reason is missing: expected 'dcm-check: allow " + name + ": REASON'";
        return nullptr;
    }
    return check;
}

Node elementBehind(const xmlNode *comment)
{
    Node next = comment->next;
    while (next != nullptr && next->type != XML_ELEMENT_NODE)
        next = next->next;
    return next;
}

// Takes out the findings of a check at an element; false when there are none.
bool takeOut(std::vector<Finding> &all, const Check *check, Node element)
{
    const auto rest = std::remove_if(all.begin(), all.end(), [&](const Finding &finding) {
        return finding.check == check && finding.element == element;
    });
    const bool isAny = element != nullptr && rest != all.end();
    if (isAny)
        all.erase(rest, all.end());
    return isAny;
}

} // namespace

void applyAllowances(Findings &findings)
{
    for (const DescriptionFile::Comment &comment : findings.file().comments()) {
        std::string fault;
        std::string meant;
        const Check *check = checkOf(reinterpret_cast<const char *>(comment.node->content), fault, meant);
        const Node around = comment.node->parent;
        const Node element = around != nullptr && around->type == XML_ELEMENT_NODE ? around : nullptr;
        if (check == nullptr) {
            findings.run(kFaulty);
            findings.at(element, comment.span, "the comment allows nothing: " + fault).meaning(meant);
        } else if (!takeOut(findings.all(), check, elementBehind(comment.node)) &&
                   !takeOut(findings.all(), check, element)) {
            findings.run(kUnused);
            findings.at(element, comment.span,
                        "the comment allows '" + std::string(check->name) + "', which is not found here");
        }
    }
}

Checks allowanceChecks()
{
    return {kChecks, std::size(kChecks)};
}

} // namespace dcmtool
