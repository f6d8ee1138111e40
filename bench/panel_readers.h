// The panel ports of a card, read in the ways that one would write for oneself, to compare the library with. Each
// searches the file for the card, fills the same 64 records by the library's own converters, and knows no port groups.
// False when it could not.
#ifndef DCM_BENCH_PANEL_READERS_H
#define DCM_BENCH_PANEL_READERS_H

#include <dcm.h>

#include <cstdint>

namespace dcmbench {

struct Panel {
    DcmPanelIfInfo ports[DCM_PANEL_IF_MAX];
};

// libxml2's tree, asked with XPath expressions.
bool readWithXPath(const char *file, uint32_t typeId, Panel &panel);
// libxml2's streaming reader, left as soon as the card has been read: what follows in the file is not looked at.
bool readWithTextReader(const char *file, uint32_t typeId, Panel &panel);
// pugixml.
bool readWithPugixml(const char *file, uint32_t typeId, Panel &panel);

// ---- What they share ------------------------------------------------------------------------------------------------

// A record of which nothing is known.
void clear(Panel &panel);
// The port with an id; nullptr when there is none.
DcmPanelIfInfo *claimPort(Panel &panel, const char *id);

// An element of a port: what to do with its text. A list's is that of each "cap" below it.
struct PortElement {
    const char *name;
    bool isList;
    bool (*store)(DcmPanelIfInfo &port, const char *text);
};
extern const PortElement kPortElements[23];

// The row of an element; nullptr when there is none.
const PortElement *findPortElement(const char *name);

} // namespace dcmbench

#endif
