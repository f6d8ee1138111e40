// The part of a device description that a query needs: libxml2 parses all of it, but builds the tree of this part only.
//
//     <device>                              a node
//         <frame typeid="1">...</frame>     nothing: it has another name than what is wanted
//         <card typeid="1">                 a node with its attributes, until its end: the search passes it
//             <panel-port>...               nothing
//         </card>
//         <card typeid="2">...</card>       everything: it is wanted
//         <card typeid="3">...</card>       nothing: the search does not come here
//     </device>
//
// Nodes and attributes are libxml2's own, made by its own handlers. Nothing of a tree decides whether a document is
// well-formed, except limits of depth and of size; well before these, selecting gives up, and the file is parsed again
// with its whole tree. A description with a document type, or in a process that drops blanks, has its whole tree as
// well.
#ifndef DCM_COMMON_SELECTION_H
#define DCM_COMMON_SELECTION_H

#include "common/xml.h"

#include <libxml/parser.h>

#include <cstddef>

namespace dcm {

// What a query looks for: the first child of the root that has this name and compares equal.
struct Wanted {
    // Whether `child`, which may have no more than its attributes, is the one. Fails only without memory. What it does
    // besides must not change when it is done twice for the same children in the same order.
    using Compare = Result (*)(Node child, const void *query, bool &isWanted, const Reporter &reporter);

    const char *name;
    Compare compare;
    const void *query;
};

class Selection {
public:
    Selection(const Wanted &wanted, const Reporter &reporter) : wanted_(wanted), reporter_(reporter) {}
    Selection(const Selection &) = delete;
    Selection &operator=(const Selection &) = delete;

    // Lets a context that has parsed nothing build what is selected. The object outlives the parsing.
    void attach(xmlParserCtxtPtr parser);
    // Whether the tree lacks something that it should have.
    bool hasGivenUp() const { return hasGivenUp_; }

private:
    struct Handlers;

    static Selection &of(xmlParserCtxtPtr parser) { return *static_cast<Selection *>(parser->_private); }
    static void skipNodes(xmlSAXHandler &handler);
    static void buildNodes(xmlSAXHandler &handler);
    void startRoot(xmlParserCtxtPtr parser);
    bool isCandidate(xmlParserCtxtPtr parser, const char *name) const;
    void startCandidate(xmlParserCtxtPtr parser);
    void skipStart(xmlParserCtxtPtr parser);
    void giveUp(xmlParserCtxtPtr parser);

    const Wanted &wanted_;
    const Reporter &reporter_;
    Node root_ = nullptr;  // whose children are still of interest
    Node found_ = nullptr; // what is wanted, until its end
    unsigned depth_ = 0;   // open elements without a node
    size_t textSize_ = 0;  // bytes of skipped text since the last tag
    bool hasGivenUp_ = false;
};

} // namespace dcm

#endif
