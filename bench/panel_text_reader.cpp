#include "bench/panel_readers.h"

#include <libxml/xmlreader.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace dcmbench {

namespace {

struct Free {
    void operator()(xmlTextReaderPtr reader) const { xmlFreeTextReader(reader); }
    void operator()(xmlChar *text) const { xmlFree(text); }
};
using Reader = std::unique_ptr<xmlTextReader, Free>;
using String = std::unique_ptr<xmlChar, Free>;

const char *nameOf(xmlTextReaderPtr reader)
{
    return reinterpret_cast<const char *>(xmlTextReaderConstLocalName(reader));
}

// Moves to the next element below the depth `parent`; false if there is none. `skip` skips the content of the current
// element.
bool nextElement(xmlTextReaderPtr reader, int parent, bool skip = false)
{
    int moved = skip ? xmlTextReaderNext(reader) : xmlTextReaderRead(reader);
    while (moved == 1 && xmlTextReaderDepth(reader) > parent) {
        if (xmlTextReaderNodeType(reader) == XML_READER_TYPE_ELEMENT)
            return true;
        moved = xmlTextReaderRead(reader);
    }
    return false;
}

uint32_t numberIn(xmlTextReaderPtr reader, const char *attribute)
{
    const String text(xmlTextReaderGetAttribute(reader, reinterpret_cast<const xmlChar *>(attribute)));
    return text != nullptr ? static_cast<uint32_t>(std::strtoul(reinterpret_cast<const char *>(text.get()), nullptr, 0))
                           : 0;
}

// Stores the text after the current start tag.
bool storeText(xmlTextReaderPtr reader, const PortElement &element, DcmPanelIfInfo &port)
{
    if (xmlTextReaderIsEmptyElement(reader) != 0)
        return element.store(port, "");
    if (xmlTextReaderRead(reader) != 1)
        return false;
    if (xmlTextReaderNodeType(reader) != XML_READER_TYPE_TEXT)
        return element.store(port, "");
    return element.store(port, reinterpret_cast<const char *>(xmlTextReaderConstValue(reader)));
}

bool readPort(xmlTextReaderPtr reader, DcmPanelIfInfo &port)
{
    const int depth = xmlTextReaderDepth(reader);
    const PortElement *list = nullptr;
    while (nextElement(reader, depth)) {
        // A "cap" is one level below its list.
        if (xmlTextReaderDepth(reader) == depth + 2) {
            if (list != nullptr && std::strcmp(nameOf(reader), "cap") == 0 && !storeText(reader, *list, port))
                return false;
            continue;
        }
        const PortElement *element = findPortElement(nameOf(reader));
        list = element != nullptr && element->isList ? element : nullptr;
        if (element != nullptr && !element->isList && !storeText(reader, *element, port))
            return false;
    }
    return true;
}

bool readCard(xmlTextReaderPtr reader, Panel &panel)
{
    bool skip = false;
    while (nextElement(reader, 1, skip)) {
        const bool isPanel = xmlTextReaderDepth(reader) == 2 && std::strcmp(nameOf(reader), "panel-port") == 0;
        skip = !isPanel;
        if (!isPanel)
            continue;
        while (nextElement(reader, 2)) {
            const String id(xmlTextReaderGetAttribute(reader, reinterpret_cast<const xmlChar *>("id")));
            DcmPanelIfInfo *port = id != nullptr ? claimPort(panel, reinterpret_cast<const char *>(id.get())) : nullptr;
            if (port == nullptr || !readPort(reader, *port))
                return false;
        }
        return true;
    }
    return false;
}

} // namespace

bool readWithTextReader(const char *file, uint32_t typeId, Panel &panel)
{
    clear(panel);
    const Reader reader(xmlReaderForFile(file, nullptr, 0));
    if (reader == nullptr || !nextElement(reader.get(), -1))
        return false;
    bool skip = false;
    while (nextElement(reader.get(), 0, skip)) {
        const bool isWanted = std::strcmp(nameOf(reader.get()), "card") == 0 &&
                              numberIn(reader.get(), "typeid") == typeId && numberIn(reader.get(), "mode") == 1;
        if (isWanted)
            return readCard(reader.get(), panel);
        skip = true;
    }
    return false;
}

} // namespace dcmbench
