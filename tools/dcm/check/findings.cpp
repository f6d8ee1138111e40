#include "tools/dcm/check/findings.h"

#include "common/paths.h"
#include "tools/dcm/check/registry.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/description/format_lookup.h"

#include <libxml/tree.h>

#include <algorithm>
#include <iterator>
#include <unordered_set>

namespace dcmtool {

// ---- Paths ----------------------------------------------------------------------------------------------------------

namespace {

// An element is identified among its siblings by its first attribute.
std::string stepOf(Node element)
{
    std::string step = shortened(dcm::nameOf(element));
    const dcm::Element *format = formatOf(element);
    if (format == nullptr || format->most == 1 || format->attributeCount == 0)
        return step;
    const dcm::Text id = dcm::Text::attribute(element, format->attributes[0].name, {"dcm"});
    if (id && *id.c_str() != '\0')
        step.append(" ").append(shortened(id.c_str()));
    // A card has a second one.
    if (format->role == dcm::Role::card) {
        const dcm::Text mode = dcm::Text::attribute(element, format->attributes[1].name, {"dcm"});
        if (mode && mode.number() != 0)
            step.append(" ").append(format->attributes[1].name).append(" ").append(shortened(mode.c_str()));
    }
    return step;
}

} // namespace

std::string pathOf(Node element)
{
    const Node parent = element->parent;
    const bool isBelowRoot = parent != nullptr && parent->type == XML_ELEMENT_NODE;
    if (!isBelowRoot || (dcm::isNamed(parent, dcm::kDeviceName) && parent->parent->type != XML_ELEMENT_NODE))
        return stepOf(element);
    return pathOf(parent) + "/" + stepOf(element);
}

Span partOf(Span whole, bool isAttribute, const char *read, ValuePart part, const DescriptionFile &file)
{
    const std::string_view written = cut(file.text(), whole);
    const std::string_view all = read;
    // The span of a content is without the blanks around it.
    const size_t first = isAttribute ? 0 : std::min(all.find_first_not_of(kBlanks), all.size());
    if (part.begin < first || all.compare(first, written.size(), written) != 0 ||
        part.begin - first + part.size > written.size())
        return whole;
    const size_t begin = whole.begin + part.begin - first;
    return {begin, begin + part.size};
}

// ---- Findings -------------------------------------------------------------------------------------------------------

namespace {

constexpr size_t kLongestText = 1000; // of a finding, whose quoted parts are cut separately

bool isBefore(const Finding &one, const Finding &other)
{
    return std::pair(one.span.begin, one.order) < std::pair(other.span.begin, other.order);
}

} // namespace

Findings::Found &Findings::foundAt(Node element)
{
    if (!apart_.empty())
        if (const auto apart = apart_.find({running_, element}); apart != apart_.end())
            return apart->second;
    return found_[running_];
}

// Whether a rule whose finding would repeat the reason of a failing query may report at such a place.
bool Findings::isReportedAt(Node element) const
{
    if (!running_->kind.isSilentWhereQueryFails)
        return false;
    const auto next = reported_.lower_bound({element, 0});
    return next != reported_.end() && next->first == element;
}

bool Findings::counts(Node element)
{
    Found &found = foundAt(element);
    if (found.kept.size() < kMostOfRule || isReportedAt(element))
        return false;
    found.count++;
    return true;
}

template <class SpanOf> Finding &Findings::add(Node element, const SpanOf &spanOf, const std::string &text)
{
    counted_ = {};
    if (isReportedAt(element) && reported_.count({element, spanOf().begin}) != 0)
        return counted_;
    Found &found = foundAt(element);
    found.count++;
    if (running_ == &kQueryFails)
        reported_.emplace(element, spanOf().begin);
    if (found.kept.size() >= kMostOfRule)
        return counted_;
    Finding finding;
    finding.rule = running_;
    finding.severity = running_->severity;
    finding.element = element;
    finding.span = spanOf();
    finding.path = element != nullptr ? pathOf(element) : "";
    finding.text = shortened(text, kLongestText);
    finding.order = order_++;
    found.kept.push_back(std::move(finding));
    return found.kept.back();
}

Finding &Findings::at(Node element, Span span, const std::string &text)
{
    return add(
        element, [&] { return span; }, text);
}

Finding &Findings::at(const Value &value, const std::string &text)
{
    return value.attribute != nullptr ? atValue(value.context.node, value.attribute->name, text)
                                      : atContent(value.context.node, text);
}

Span Findings::spanOf(const Value &value) const
{
    return value.attribute != nullptr ? file_.valueSpan(value.context.node, value.attribute->name)
                                      : file_.contentSpan(value.context.node);
}

Finding &Findings::atName(Node element, const std::string &text)
{
    return add(
        element, [&] { return file_.nameSpan(element); }, text);
}

Finding &Findings::atAttribute(Node element, const char *attribute, const std::string &text)
{
    return add(
        element, [&] { return file_.attributeSpan(element, attribute); }, text);
}

Finding &Findings::atValue(Node element, const char *attribute, const std::string &text)
{
    return add(
        element, [&] { return file_.valueSpan(element, attribute); }, text);
}

Finding &Findings::atItem(const Value &value, ValuePart item, const std::string &text)
{
    return add(
        value.context.node, [&] { return partOf(spanOf(value), value.attribute != nullptr, value.text, item, file_); },
        text);
}

Finding &Findings::atContent(Node element, const std::string &text)
{
    return add(
        element, [&] { return file_.contentSpan(element); }, text);
}

template <class SpanOf> void Findings::addConsequence(Node cause, const SpanOf &spanOf, const std::string &what)
{
    Consequences &consequences = consequences_[cause];
    if (consequences.count++ == 0) {
        consequences.first = spanOf();
        consequences.what = what;
    }
}

void Findings::follow(Node cause, const Value &value, const std::string &what)
{
    addConsequence(
        cause, [&] { return spanOf(value); }, what);
}

void Findings::follow(Node cause, Node element, const std::string &what)
{
    addConsequence(
        cause, [&] { return file_.nameSpan(element); }, what);
}

void Findings::noteConsequences(std::vector<Finding> &all) const
{
    std::set<Node> noted;
    for (Finding &finding : all) {
        const auto found = consequences_.find(finding.element);
        if (found == consequences_.end() || finding.element == nullptr || !noted.insert(finding.element).second)
            continue;
        const Consequences &consequences = found->second;
        const std::string others = consequences.count == 1
                                       ? ""
                                       : ", and in " + std::to_string(consequences.count - 1) + " more " +
                                             (consequences.count == 2 ? "place" : "places");
        finding.noting(consequences.first, consequences.what + others);
    }
}

namespace {

// What is wrong by itself, from which other findings may follow.
struct Causes {
    std::set<size_t> places;
    std::unordered_set<Node> elements; // with those around them
};

Causes causesIn(const std::vector<Finding> &all)
{
    Causes causes;
    for (const Finding &finding : all) {
        if (finding.rule->kind.isSilentWhereFaulty || finding.rule->severity == Severity::info)
            continue;
        causes.places.insert(finding.span.begin);
        for (Node node = finding.element; node != nullptr && node->type == XML_ELEMENT_NODE; node = node->parent)
            if (!causes.elements.insert(node).second)
                break;
    }
    return causes;
}

bool isWithin(const std::set<size_t> &places, Span span)
{
    const auto next = places.lower_bound(span.begin);
    return next != places.end() && *next < std::max(span.end, span.begin + 1);
}

bool isConsequence(const Finding &finding, const Causes &causes)
{
    const RuleKind &kind = finding.rule->kind;
    if (!kind.isSilentWhereFaulty)
        return false;
    const Node scope = finding.scope != nullptr ? finding.scope : finding.element;
    if (kind.isSilentWhereFaultyInside && causes.elements.count(scope) != 0)
        return true;
    return isWithin(causes.places, finding.span) ||
           std::any_of(finding.notes.begin(), finding.notes.end(),
                       [&](const Note &note) { return isWithin(causes.places, note.span); });
}

} // namespace

void Findings::setApart(const Rule &rule, Node element)
{
    apart_.try_emplace({&rule, element});
}

bool Findings::takeOut(const Rule &rule, Node element, const std::string &reason)
{
    const auto apart = apart_.find({&rule, element});
    if (apart == apart_.end() || apart->second.count == 0)
        return false;
    Found &allowed = allowed_[&rule];
    allowed.count += apart->second.count;
    for (Finding &finding : apart->second.kept) {
        if (allowed.kept.size() == kMostOfRule)
            break;
        finding.reason = shortened(reason, kLongestText);
        allowed.kept.push_back(std::move(finding));
    }
    apart->second = {};
    return true;
}

std::vector<Finding> Findings::take()
{
    for (auto &[key, apart] : apart_) {
        Found &found = found_[key.first];
        found.count += apart.count;
        std::move(apart.kept.begin(), apart.kept.end(), std::back_inserter(found.kept));
    }
    apart_.clear();
    std::vector<Finding> all;
    for (auto &[rule, found] : found_) {
        std::sort(found.kept.begin(), found.kept.end(), isBefore);
        if (found.kept.size() > kMostOfRule)
            found.kept.resize(kMostOfRule);
        if (!found.kept.empty())
            found.kept.back().more = found.count - found.kept.size();
        // The finding that reports it may be one that is only counted.
        if (found.count > found.kept.size() && ended_.count(rule) != 0)
            found.kept.back().text += "; the search for others has ended because it takes too long";
        std::move(found.kept.begin(), found.kept.end(), std::back_inserter(all));
    }
    found_.clear();
    const Causes causes = causesIn(all);
    all.erase(
        std::remove_if(all.begin(), all.end(), [&](const Finding &finding) { return isConsequence(finding, causes); }),
        all.end());
    std::sort(all.begin(), all.end(), isBefore);
    noteConsequences(all);
    return all;
}

std::vector<Finding> Findings::takeAllowed()
{
    std::vector<Finding> all;
    for (auto &[rule, found] : allowed_) {
        found.kept.back().more = found.count - found.kept.size();
        std::move(found.kept.begin(), found.kept.end(), std::back_inserter(all));
    }
    allowed_.clear();
    std::sort(all.begin(), all.end(), isBefore);
    return all;
}

} // namespace dcmtool
