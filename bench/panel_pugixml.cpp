#include "bench/panel_readers.h"

#include <pugixml.hpp>

#include <cstring>

namespace dcmbench {

namespace {

bool readPort(const pugi::xml_node &node, DcmPanelIfInfo &port)
{
    for (const pugi::xml_node child : node.children()) {
        const PortElement *element = findPortElement(child.name());
        if (element == nullptr)
            continue;
        if (!element->isList) {
            if (!element->store(port, child.child_value()))
                return false;
            continue;
        }
        for (const pugi::xml_node cap : child.children("cap"))
            if (!element->store(port, cap.child_value()))
                return false;
    }
    return true;
}

} // namespace

bool readWithPugixml(const char *file, uint32_t typeId, Panel &panel)
{
    clear(panel);
    pugi::xml_document document;
    if (!document.load_file(file))
        return false;
    for (const pugi::xml_node card : document.child("device").children("card")) {
        if (card.attribute("typeid").as_uint() != typeId || card.attribute("mode").as_uint() != 1)
            continue;
        for (const pugi::xml_node node : card.child("panel-port").children("port")) {
            DcmPanelIfInfo *port = claimPort(panel, node.attribute("id").value());
            if (port == nullptr || !readPort(node, *port))
                return false;
        }
        return true;
    }
    return false;
}

} // namespace dcmbench
