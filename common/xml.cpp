#include "common/xml.h"
#include "common/memory_watch.h"

#include <libxml/tree.h>

#include <cstring>

namespace dcm {

namespace {

const xmlChar *xmlText(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

const char *nodeText(const xmlNode *node)
{
    return reinterpret_cast<const char *>(node->content);
}

const xmlAttr *attributeNamed(Node element, const char *name)
{
    for (const xmlAttr *attribute = element->properties; attribute != nullptr; attribute = attribute->next)
        if (attribute->name != nullptr && std::strcmp(reinterpret_cast<const char *>(attribute->name), name) == 0)
            return attribute;
    // Only a document type adds default attributes. The tree of the caller of an exported decoder may have no document.
    return element->doc != nullptr && element->doc->intSubset != nullptr ? xmlHasProp(element, xmlText(name)) : nullptr;
}

// Bounds for the expansion of entities in one text and in a whole description, and for the nesting of texts: a short
// description can have entities that expand to gigabytes, or are nested deeper than the stack allows.
constexpr size_t kTextExpansionMax = size_t{1} << 20;
constexpr size_t kDocumentExpansionMax = size_t{16} << 20;
constexpr unsigned kDepthMax = 320;

// Subtracts the size of the entities that `first` and its siblings refer to from `room`; false once that is used up or
// they are nested too deeply. Each node in an entity counts as one byte more, so that entities without text are
// bounded, too.
bool expandsWithin(size_t &room, const xmlNode *first, bool isInEntity, unsigned depth)
{
    for (const xmlNode *node = first; node != nullptr; node = node->next) {
        const bool isText = node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE;
        if (isInEntity) {
            const size_t length = 1 + (isText && node->content != nullptr ? std::strlen(nodeText(node)) : 0);
            if (length > room)
                return false;
            room -= length;
        }
        if (isText)
            continue;
        if (depth == 0)
            return false;
        if (node->type == XML_ELEMENT_NODE)
            for (const xmlAttr *attribute = node->properties; attribute != nullptr; attribute = attribute->next)
                if (!expandsWithin(room, attribute->children, isInEntity, depth - 1))
                    return false;
        // The child of a reference is the declaration of the entity, and its children are the content.
        const bool isReference = node->type == XML_ENTITY_REF_NODE;
        const xmlNode *below = isReference && node->children != nullptr ? node->children->children : node->children;
        if (!expandsWithin(room, below, isInEntity || isReference, depth - 1))
            return false;
    }
    return true;
}

bool isExpandable(const xmlNode *first, size_t room)
{
    return expandsWithin(room, first, false, kDepthMax);
}

} // namespace

Text Text::attribute(Node element, const char *name, const Reporter &reporter)
{
    const xmlAttr *attribute = attributeNamed(element, name);
    if (attribute == nullptr)
        return Text(nullptr);
    // A default from the document type is a declaration node, not an attribute.
    if (attribute->type == XML_ATTRIBUTE_NODE) {
        if (const xmlChar *text = soleText(attribute->children))
            return Text(text);
    }
    const MemoryWatch watch;
    unsigned char *copy =
        isExpandable(attribute->children, kTextExpansionMax) ? xmlGetProp(element, xmlText(name)) : nullptr;
    return owned(copy, watch.sawMemoryRunOut(), reporter);
}

bool Text::borrowsAttributes(Node element)
{
    for (const xmlAttr *attribute = element->properties; attribute != nullptr; attribute = attribute->next)
        if (soleText(attribute->children) == nullptr)
            return false;
    return true;
}

Text Text::copyContent(Node element, const Reporter &reporter)
{
    const MemoryWatch watch;
    unsigned char *copy = isExpandable(element->children, kTextExpansionMax) ? xmlNodeGetContent(element) : nullptr;
    return owned(copy, watch.sawMemoryRunOut(), reporter);
}

Text Text::owned(unsigned char *copy, bool isCut, const Reporter &reporter)
{
    Text text(copy);
    text.copy_ = copy;
    if (copy == nullptr || isCut) {
        text.text_ = nullptr;
        text.outOfMemory_ = true;
        static_cast<void>(reporter.reportOutOfMemory());
    }
    return text;
}

Text::Text(Text &&other) noexcept : text_(other.text_), copy_(other.copy_), outOfMemory_(other.outOfMemory_)
{
    other.copy_ = nullptr;
}

Result rootOf(::_xmlDoc *document, Node &root, const QueryReporter &reporter)
{
    root = xmlDocGetRootElement(document);
    // Only a description with a document type can have entities of its own.
    if (document->intSubset != nullptr && !isExpandable(root, kDocumentExpansionMax))
        return reporter.reportOutOfMemory();
    return root != nullptr ? Result::ok : reporter.report(DCM_MESSAGE_FILE("xmlfile(%s) get root elem failed."));
}

} // namespace dcm
