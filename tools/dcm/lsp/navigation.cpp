// Definitions and references: the relations between elements, from both sides.
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/lsp/features.h"
#include "tools/dcm/relations/relations.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace dcmlsp {

using dcmtool::DescriptionFile;
using dcmtool::Node;
using dcmtool::Reference;
using dcmtool::Span;

namespace {

bool isIn(Span span, size_t offset)
{
    return span.begin <= offset && offset <= span.end;
}

// The item of a list at a place: a number, or a range of numbers. A value that is not a list is one item.
Span itemAt(std::string_view text, Span value, size_t offset)
{
    const auto isOfItem = [&](size_t at) {
        return std::isalnum(static_cast<unsigned char>(text[at])) != 0 || text[at] == '-';
    };
    Span item = {offset, offset};
    while (item.begin > value.begin && isOfItem(item.begin - 1))
        item.begin--;
    while (item.end < value.end && isOfItem(item.end))
        item.end++;
    return item;
}

const dcm::Content *contentOf(const Reference &reference)
{
    if (reference.attribute != nullptr)
        return &reference.attribute->content;
    const dcm::Element *format = dcmtool::formatOf(reference.element);
    return format != nullptr ? &format->content : nullptr;
}

// Whether a reference is one of the item at the place, and not only of its value.
bool isNamedAt(const DescriptionFile &file, const Reference &reference, size_t offset)
{
    const Span item = itemAt(file.text(), reference.span, offset);
    const dcm::Content *content = contentOf(reference);
    const bool isWhole = item.begin == reference.span.begin && item.end == reference.span.end;
    const bool isList =
        content != nullptr && (content->kind == dcm::Kind::bitList || content->kind == dcm::Kind::numberList);
    if (!isList || (isWhole && content->kind != dcm::Kind::bitList))
        return true;
    const std::string written(dcmtool::cut(file.text(), item));
    const std::vector<uint32_t> numbers = dcmtool::numbersNamed(written.c_str(), *content);
    return std::any_of(numbers.begin(), numbers.end(),
                       [&](uint32_t number) { return std::to_string(number) == reference.key; });
}

void addOnce(std::vector<Node> &nodes, const std::vector<Node> &more)
{
    for (const Node node : more)
        if (std::find(nodes.begin(), nodes.end(), node) == nodes.end())
            nodes.push_back(node);
}

std::vector<Node> targetsIn(const DescriptionFile &file, const std::vector<Reference> &references, size_t offset)
{
    std::vector<Node> targets;
    for (const Reference &reference : references)
        if (isIn(reference.span, offset) && isNamedAt(file, reference, offset))
            addOnce(targets, reference.targets);
    return targets;
}

// The targets whose start tag is at a place.
std::vector<Node> declaredAt(const DescriptionFile &file, const std::vector<Reference> &references, size_t offset)
{
    std::vector<Node> declared;
    std::set<Node> seen;
    for (const Reference &reference : references)
        for (const Node target : reference.targets)
            if (seen.insert(target).second && isIn(file.tagSpan(target), offset))
                declared.push_back(target);
    return declared;
}

// A request at a place, and what is in the last tree there.
struct Query {
    Query(const OpenDocument &openDocument, size_t offset) : document(openDocument), last(document.lastTree())
    {
        then = last ? last->then(offset) : std::nullopt;
        if (then)
            references = dcmtool::referencesIn(last->file());
    }

    std::vector<Node> targets() const
    {
        return then ? targetsIn(last->file(), references, *then) : std::vector<Node>();
    }

    // Adds a place of the last tree that is still there.
    void addLocation(Json &locations, Span span) const
    {
        if (const auto now = last->now(span))
            locations.push_back({{"uri", document.uri()}, {"range", rangeOf(document, *now)}});
    }

    const OpenDocument &document;
    std::optional<LastTree> last;
    std::optional<size_t> then;
    std::vector<Reference> references;
};

Json orNull(const Json &locations)
{
    return locations.empty() ? Json() : locations;
}

} // namespace

std::vector<Node> targetsAt(const DescriptionFile &file, size_t offset)
{
    return targetsIn(file, dcmtool::referencesIn(file), offset);
}

Json definitionsAt(const OpenDocument &document, size_t offset)
{
    const Query query(document, offset);
    Json locations = Json::array();
    for (const Node target : query.targets())
        query.addLocation(locations, query.last->file().nameSpan(target));
    return orNull(locations);
}

Json referencesAt(const OpenDocument &document, size_t offset, bool withDeclarations)
{
    const Query query(document, offset);
    if (!query.then)
        return nullptr;
    std::vector<Node> targets = query.targets();
    if (targets.empty())
        targets = declaredAt(query.last->file(), query.references, *query.then);
    Json locations = Json::array();
    if (withDeclarations)
        for (const Node target : targets)
            query.addLocation(locations, query.last->file().nameSpan(target));
    std::set<size_t> added;
    for (const Reference &reference : query.references) {
        const bool isOne = std::any_of(reference.targets.begin(), reference.targets.end(), [&](Node target) {
            return std::find(targets.begin(), targets.end(), target) != targets.end();
        });
        if (isOne && added.insert(reference.span.begin).second)
            query.addLocation(locations, reference.span);
    }
    return orNull(locations);
}

} // namespace dcmlsp
