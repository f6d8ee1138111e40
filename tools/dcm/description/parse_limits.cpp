#include "tools/dcm/description/parse_limits.h"

#include "tools/dcm/description/format_lookup.h"

#include <libxml/entities.h>
#include <libxml/tree.h>

#include <algorithm>
#include <cstring>

namespace dcmtool {

namespace {

// Sizes of memory blocks on 64-bit machines.
constexpr size_t kNodeSize = 128;
constexpr size_t kAttributeSize = 112;
constexpr size_t kTextInNode = 15; // a short text is stored in its node
constexpr unsigned kDeepestEntity = 40;

size_t sizeOfText(size_t length)
{
    return length > kTextInNode ? length + 16 : 0;
}

} // namespace

ParseLimits::ParseLimits(size_t fileSize)
    : mostTree_(std::max(kMostTreeOfAny, kMostTreeOfByte * fileSize)), mostExpansion_(kMostExpansion + fileSize)
{
}

void ParseLimits::refuse(std::string excess)
{
    if (excess_.empty())
        excess_ = std::move(excess);
}

// Quotes in tags are not examined: each text after a '<' that looks like an attribute counts as one.
void ParseLimits::scanAttributes(std::string_view text)
{
    size_t count = 0;
    size_t seen = 0; // the bytes before it are counted
    for (size_t i = text.find('='); i != std::string_view::npos; i = text.find('=', seen)) {
        if (text.substr(seen, i - seen).find('<') != std::string_view::npos)
            count = 0;
        seen = i + 1;
        const size_t quote = text.find_first_not_of(std::string_view(" \t\r\n\0", 5), i + 1);
        if (quote == std::string_view::npos || (text[quote] != '"' && text[quote] != '\''))
            continue;
        if (++count > kMostAttributes)
            return refuse("an element has more than " + std::to_string(kMostAttributes) + " attributes");
    }
}

// Each text that looks like alternatives counts as such; no real text has nearly as many.
void ParseLimits::scanAlternatives(std::string_view text)
{
    // Only document types have alternatives, and they are rare.
    constexpr std::string_view kEnds = ")<>\"'";
    bool isInside = false;
    for (size_t i = text.find('|') != std::string_view::npos ? 0 : text.size(); i < text.size(); i++) {
        if (text[i] == '(')
            isInside = true;
        else if (text[i] == '|')
            alternatives_ += isInside ? 1 : 0;
        else if (kEnds.find(text[i]) != std::string_view::npos)
            isInside = false;
    }
    if (alternatives_ > kMostAlternatives)
        refuse("the document type has more than " + std::to_string(kMostAlternatives) + " alternatives");
}

void ParseLimits::scan(std::string_view text)
{
    scanAttributes(text);
    scanAlternatives(text);
}

void ParseLimits::takeNames(size_t names, size_t namespaces)
{
    if (names > kMostNames)
        refuse("more than " + std::to_string(kMostNames) + " different names");
    if (namespaces > kMostNamespaces)
        refuse("more than " + std::to_string(kMostNamespaces) + " namespaces at one place");
}

void ParseLimits::takeDeclaration()
{
    if (++declarations_ > kMostDeclarations)
        refuse("the document type has more than " + std::to_string(kMostDeclarations) +
               " declarations and references to them");
}

void ParseLimits::takeTree(size_t size)
{
    tree_ += size;
    if (tree_ > mostTree_)
        refuse("too many elements, attributes and texts for a file of this size: their tree takes more than " +
               std::to_string(mostTree_ / 1000) + " kB");
}

void ParseLimits::takeNode(size_t textLength)
{
    takeTree(kNodeSize + sizeOfText(textLength));
}

void ParseLimits::takeAttribute(std::string_view value, const ::_xmlDoc *document)
{
    takeTree(kAttributeSize + kNodeSize + sizeOfText(value.size()));
    if (document == nullptr || document->intSubset == nullptr)
        return;
    expansion_ += expandedSizeOfReferences(value, document, 0);
    if (expansion_ > mostExpansion_)
        refuse("entities expand to more than " + std::to_string(mostExpansion_ / 1000) + " kB");
}

void ParseLimits::takeReference(std::string_view name, const ::_xmlDoc *document)
{
    takeNode();
    expansion_ += expandedSize(name, document, 0);
    if (expansion_ > mostExpansion_)
        refuse("entities expand to more than " + std::to_string(mostExpansion_ / 1000) + " kB");
}

// Each reference counts, so that references to empty entities are bounded, too.
size_t ParseLimits::expandedSize(std::string_view name, const ::_xmlDoc *document, unsigned depth)
{
    const std::string key(name);
    const xmlEntity *entity = xmlGetDocEntity(document, reinterpret_cast<const xmlChar *>(key.c_str()));
    if (entity == nullptr || entity->content == nullptr || entity->etype == XML_INTERNAL_PREDEFINED_ENTITY)
        return 1;
    if (const auto known = sizes_.find(entity); known != sizes_.end())
        return known->second;
    if (depth > kDeepestEntity) {
        refuse("entities refer to one another more than " + std::to_string(kDeepestEntity) + " deep");
        return 1;
    }
    const std::string_view content = reinterpret_cast<const char *>(entity->content);
    const size_t size = 1 + content.size() + expandedSizeOfReferences(content, document, depth + 1);
    return sizes_[entity] = std::min(size, mostExpansion_ + 1);
}

size_t ParseLimits::expandedSizeOfReferences(std::string_view text, const ::_xmlDoc *document, unsigned depth)
{
    size_t size = 0;
    for (size_t at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1)) {
        const size_t end = text.find(';', at);
        if (end == std::string_view::npos)
            break;
        if (text[at + 1] != '#')
            size += expandedSize(text.substr(at + 1, end - at - 1), document, depth);
        if (size > mostExpansion_)
            break;
    }
    return size;
}

void FormatPosition::enter(const char *name)
{
    const size_t depth = formats_.size();
    const dcm::Element *format = nullptr;
    if (depth == 0) {
        isDevice_ = std::strcmp(name, dcm::kDeviceName) == 0;
        const dcm::NamedElement &vm = rowOf(RecordKind::vm);
        format = std::strcmp(name, vm.name) == 0 ? vm.element : nullptr;
    } else if (depth == 1 && isDevice_) {
        for (const dcm::NamedElement &child : deviceChildren())
            if (std::strcmp(name, child.name) == 0)
                format = child.element;
    } else if (const dcm::Element *around = formats_.back()) {
        const size_t row = findRow(*around, name);
        format = row < around->childCount ? around->children[row].element : nullptr;
    }
    formats_.push_back(format);
    if (valueDepth_ == 0 && format != nullptr && format->content.kind != dcm::Kind::none)
        valueDepth_ = formats_.size();
}

void FormatPosition::leave()
{
    if (formats_.size() == valueDepth_)
        valueDepth_ = 0;
    if (!formats_.empty())
        formats_.pop_back();
}

bool FormatPosition::isInContainer() const
{
    if (formats_.size() == 1 && isDevice_)
        return true;
    return !formats_.empty() && formats_.back() != nullptr && formats_.back()->content.kind == dcm::Kind::none;
}

} // namespace dcmtool
