#include "tools/dcm/check/allowances.h"

#include "tools/dcm/check/registry.h"
#include "tools/dcm/description/texts.h"

#include <libxml/tree.h>

#include <string>
#include <vector>

namespace dcmtool {

namespace {

// Removes `word` from the beginning of a text.
bool takeWord(std::string &text, const std::string &word)
{
    if (text.compare(0, word.size(), word) != 0)
        return false;
    text = trimmed(text.substr(word.size()));
    return true;
}

Allowance allowanceIn(const DescriptionFile::Comment &comment)
{
    std::string text = trimmed(reinterpret_cast<const char *>(comment.node->content));
    if (!takeWord(text, "dcm-check:") || !takeWord(text, "allow "))
        return {nullptr, "expected 'dcm-check: allow NAME: REASON'", ""};
    const size_t colon = text.find(':');
    const std::string name = trimmed(text.substr(0, colon));
    const Rule *rule = findRule(name);
    if (rule == nullptr)
        return {nullptr, "there is no check " + inQuotes(name), name};
    if (!rule->canBeSilenced())
        return {nullptr, inQuotes(name) + " cannot be allowed: the query still fails", ""};
    const std::string reason = colon == std::string::npos ? "" : trimmed(text.substr(colon + 1));
    if (reason.empty())
        return {nullptr, "a reason is missing: expected 'dcm-check: allow " + name + ": REASON'", ""};
    return {rule, "", "", reason};
}

// The element that contains a comment; nullptr for a comment outside the root.
Node elementAround(const xmlNode *comment)
{
    const Node around = comment->parent;
    return around != nullptr && around->type == XML_ELEMENT_NODE ? around : nullptr;
}

// The element after each comment, or nullptr. Consecutive comments are each visited only once.
std::vector<Node> elementsAfter(const std::vector<DescriptionFile::Comment> &comments)
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
    const std::vector<Node> after = elementsAfter(comments);
    for (size_t i = 0; i < comments.size(); i++)
        if (const Rule *rule = allowanceIn(comments[i]).rule)
            for (const Node element : {after[i], elementAround(comments[i].node)})
                if (element != nullptr)
                    findings.setApart(*rule, element);
}

void applyAllowances(Findings &findings)
{
    const std::vector<DescriptionFile::Comment> &comments = findings.file().comments();
    const std::vector<Node> after = elementsAfter(comments);
    for (size_t i = 0; i < comments.size(); i++) {
        const Allowance allowance = allowanceIn(comments[i]);
        const Node element = elementAround(comments[i].node);
        if (allowance.rule == nullptr)
            reportFaulty(comments[i], allowance, element, findings);
        else if (!findings.takeOut(*allowance.rule, after[i], allowance.reason) &&
                 !findings.takeOut(*allowance.rule, element, allowance.reason))
            reportUnused(comments[i], allowance, element, findings);
    }
}

} // namespace dcmtool
