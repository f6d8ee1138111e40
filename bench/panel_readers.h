// Alternatives to the library for reading the panel ports of a card. Each searches the file for the card and fills the
// same 64 records with the library's converters; port groups are not supported. They return false on failure.
#ifndef DCM_BENCH_PANEL_READERS_H
#define DCM_BENCH_PANEL_READERS_H

#include <dcm.h>

#include <cstdint>

namespace dcmbench {

struct Panel {
    DcmPanelIfInfo ports[DCM_PANEL_IF_MAX];
};

// libxml2's tree with XPath expressions.
bool readWithXPath(const char *file, uint32_t typeId, Panel &panel);
// libxml2's streaming reader, which stops after the card: the rest of the file is not parsed.
bool readWithTextReader(const char *file, uint32_t typeId, Panel &panel);
// pugixml.
bool readWithPugixml(const char *file, uint32_t typeId, Panel &panel);

// ---- Common parts ---------------------------------------------------------------------------------------------------

// A record with its defaults.
void clear(Panel &panel);
// The port with an id; nullptr if there is none.
DcmPanelIfInfo *claimPort(Panel &panel, const char *id);

// An element of a port and the action for its text. For a list it is the text of each "cap".
struct PortElement {
    const char *name;
    bool isList;
    bool (*store)(DcmPanelIfInfo &port, const char *text);
};
extern const PortElement kPortElements[23];

// The row of an element; nullptr if there is none.
const PortElement *findPortElement(const char *name);

} // namespace dcmbench

#endif
