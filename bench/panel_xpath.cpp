#include "bench/panel_readers.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xpath.h>

#include <cstdio>
#include <memory>

namespace dcmbench {

namespace {

struct Free {
    void operator()(xmlDocPtr document) const { xmlFreeDoc(document); }
    void operator()(xmlXPathContextPtr context) const { xmlXPathFreeContext(context); }
    void operator()(xmlXPathObjectPtr object) const { xmlXPathFreeObject(object); }
    void operator()(xmlChar *text) const { xmlFree(text); }
};
using Document = std::unique_ptr<xmlDoc, Free>;
using Context = std::unique_ptr<xmlXPathContext, Free>;
using Object = std::unique_ptr<xmlXPathObject, Free>;
using String = std::unique_ptr<xmlChar, Free>;

const xmlChar *xmlText(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

int count(const Object &object)
{
    return object != nullptr && object->nodesetval != nullptr ? object->nodesetval->nodeNr : 0;
}

// Stores the contents of the nodes that `path` finds below `port`.
bool store(xmlXPathContextPtr context, xmlNodePtr node, const char *path, const PortElement &element,
           DcmPanelIfInfo &port)
{
    const Object found(xmlXPathNodeEval(node, xmlText(path), context));
    for (int i = 0; i < count(found); i++) {
        const String text(xmlNodeGetContent(found->nodesetval->nodeTab[i]));
        if (text == nullptr || !element.store(port, reinterpret_cast<const char *>(text.get())))
            return false;
    }
    return true;
}

} // namespace

bool readWithXPath(const char *file, uint32_t typeId, Panel &panel)
{
    clear(panel);
    const Document document(xmlParseFile(file));
    if (document == nullptr)
        return false;
    const Context context(xmlXPathNewContext(document.get()));
    char path[96];
    // All type ids in the measured files have the same format.
    std::snprintf(path, sizeof path, "/device/card[@typeid='0x%x' and @mode='1'][1]/panel-port/port", typeId);
    const Object ports(xmlXPathEvalExpression(xmlText(path), context.get()));
    for (int i = 0; i < count(ports); i++) {
        const xmlNodePtr node = ports->nodesetval->nodeTab[i];
        const String id(xmlGetProp(node, xmlText("id")));
        DcmPanelIfInfo *port = id != nullptr ? claimPort(panel, reinterpret_cast<const char *>(id.get())) : nullptr;
        if (port == nullptr)
            return false;
        for (const PortElement &element : kPortElements) {
            std::snprintf(path, sizeof path, element.isList ? "%s/cap" : "%s", element.name);
            if (!store(context.get(), node, path, element, *port))
                return false;
        }
    }
    return count(ports) > 0;
}

} // namespace dcmbench
