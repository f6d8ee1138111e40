#include "tools/dcm/check/allowances.h"

#include "tools/dcm/check/checks.h"

#include <libxml/tree.h>

#include <string>
#include <vector>

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

// What a comment allows. Without a check it has a fault, and allows nothing.
struct Allowance {
    const Check *check;
    std::string name; // of a check that there is not
    const char *fault;
};

Allowance allowanceIn(const DescriptionFile::Comment &comment)
{
    std::string text = trimmed(reinterpret_cast<const char *>(comment.node->content));
    if (!takeWord(text, "dcm-check:") || !takeWord(text, "allow "))
        return {nullptr, "", "expected 'dcm-check: allow NAME: REASON'"};
    const size_t colon = text.find(':');
    const std::string name = trimmed(text.substr(0, colon));
    const Check *check = findCheck(name);
    if (check == nullptr)
        return {nullptr, name, "there is no check "};
    if (colon == std::string::npos || trimmed(text.substr(colon + 1)).empty())
        return {nullptr, check->name, "a reason is missing: expected "};
    return {check, "", nullptr};
}

void tellFault(const DescriptionFile::Comment &comment, const Allowance &allowance, Node element, Findings &findings)
{
    findings.run(kFaulty);
    if (findings.counts(element))
        return;
    const std::string start = "the comment allows nothing: " + std::string(allowance.fault);
    if (allowance.name.empty()) {
        findings.at(element, comment.span, start);
    } else if (findCheck(allowance.name) != nullptr) {
        findings.at(element, comment.span, start + "'dcm-check: allow " + allowance.name + ": REASON'");
    } else {
        std::vector<std::string> names;
        for (const Checks &checks : allChecks())
            for (const Check &other : checks)
                names.emplace_back(other.name);
        findings.at(element, comment.span, start + quoted(allowance.name)).meaning(nearest(allowance.name, names));
    }
}

// The element in which a comment stands; nullptr behind or before the root.
Node elementAround(const xmlNode *comment)
{
    const Node around = comment->parent;
    return around != nullptr && around->type == XML_ELEMENT_NODE ? around : nullptr;
}

// The element behind each comment, or nullptr. Of comments in a row, each is passed only once.
std::vector<Node> elementsBehind(const std::vector<DescriptionFile::Comment> &comments)
{
    std::vector<Node> elements(comments.size());
    for (size_t i = comments.size(); i-- > 0;) {
        const Node following = i + 1 < comments.size() ? comments[i + 1].node : nullptr;
        Node next = comments[i].node->next;
        while (next != nullptr && next->type != XML_ELEMENT_NODE && next != following)
            next = next->next;
        elements[i] = next != nullptr && next == following ? elements[i + 1] : next;
    }
    return elements;
}

} // namespace

void setAllowedApart(Findings &findings)
{
    const std::vector<DescriptionFile::Comment> &comments = findings.file().comments();
    const std::vector<Node> behind = elementsBehind(comments);
    for (size_t i = 0; i < comments.size(); i++)
        if (const Check *check = allowanceIn(comments[i]).check)
            for (const Node element : {behind[i], elementAround(comments[i].node)})
                if (element != nullptr)
                    findings.setApart(*check, element);
}

void applyAllowances(Findings &findings)
{
    const std::vector<DescriptionFile::Comment> &comments = findings.file().comments();
    const std::vector<Node> behind = elementsBehind(comments);
    for (size_t i = 0; i < comments.size(); i++) {
        const Allowance allowance = allowanceIn(comments[i]);
        const Node element = elementAround(comments[i].node);
        if (allowance.check == nullptr) {
            tellFault(comments[i], allowance, element, findings);
        } else if (!findings.takeOut(*allowance.check, behind[i]) && !findings.takeOut(*allowance.check, element)) {
            findings.run(kUnused);
            findings.at(element, comments[i].span,
                        "the comment allows '" + std::string(allowance.check->name) + "', which is not found here");
        }
    }
}

Checks allowanceChecks()
{
    return {kChecks, std::size(kChecks)};
}

} // namespace dcmtool
