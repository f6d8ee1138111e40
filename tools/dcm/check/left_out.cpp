#include "tools/dcm/check/left_out.h"

#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/description/texts.h"

#include <libxml/tree.h>

#include <string>

namespace dcmtool {

bool lacksChild(Node element, const dcm::Element &format, const char *name)
{
    const std::vector<std::string> known = childNames(format);
    for (const Node child : dcm::children(element)) {
        const char *written = dcm::nameOf(child);
        if (written == std::string_view(name))
            return false;
        if (findRow(format, written) == format.childCount && nearest(written, known) == name)
            return false;
    }
    return true;
}

bool lacksAttribute(Node element, const dcm::Element &format, const char *name)
{
    const std::vector<std::string> known = attributeNames(format);
    for (const xmlAttr *attribute = element->properties; attribute != nullptr; attribute = attribute->next) {
        const char *written = reinterpret_cast<const char *>(attribute->name);
        if (written == std::string_view(name))
            return false;
        if (findAttribute(format, written) == nullptr && nearest(written, known) == name)
            return false;
    }
    return true;
}

} // namespace dcmtool
