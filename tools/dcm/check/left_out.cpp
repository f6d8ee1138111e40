#include "tools/dcm/check/left_out.h"

#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/description/texts.h"

#include <libxml/tree.h>

#include <string>

namespace dcmtool {

namespace {

constexpr size_t kMostNamesCompared = 100; // unknown names of an element with those of the format

bool hasAttribute(Node element, const char *name)
{
    for (const xmlAttr *attribute = element->properties; attribute != nullptr; attribute = attribute->next)
        if (reinterpret_cast<const char *>(attribute->name) == std::string_view(name))
            return true;
    return false;
}

} // namespace

Node childCalled(Node element, const char *name)
{
    for (const Node child : dcm::children(element))
        if (dcm::isNamed(child, name))
            return child;
    return nullptr;
}

bool lacksChild(Node element, const dcm::Element &format, const char *name)
{
    const std::vector<std::string> known = childNames(format);
    size_t compared = 0;
    for (const Node child : dcm::children(element)) {
        const char *written = dcm::nameOf(child);
        if (written == std::string_view(name))
            return false;
        if (findRow(format, written) == format.childCount && compared++ < kMostNamesCompared &&
            nearest(written, known) == name)
            return false;
    }
    return !hasAttribute(element, name);
}

bool lacksAttribute(Node element, const dcm::Element &format, const char *name)
{
    const std::vector<std::string> known = attributeNames(format);
    size_t unknown = 0;
    for (const xmlAttr *attribute = element->properties; attribute != nullptr; attribute = attribute->next) {
        const char *written = reinterpret_cast<const char *>(attribute->name);
        if (written == std::string_view(name))
            return false;
        if (findAttribute(format, written) == nullptr && attribute->ns == nullptr && unknown++ < kMostNamesCompared &&
            nearest(written, known) == name)
            return false;
    }
    // The only attribute that the format does not have is one written for the id.
    const bool isId = findAttribute(format, name) == idAttribute(format);
    return !(isId && unknown == 1) && childCalled(element, name) == nullptr;
}

} // namespace dcmtool
