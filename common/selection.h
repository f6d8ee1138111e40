// The part of a device description that a query needs: libxml2 parses all of it, but builds the tree of this part only.
//
//     <device>                              a node
//         <frame typeid="1">...</frame>     nothing: not the wanted name
//         <card typeid="1">                 a node with its attributes, until its end tag: compared, not wanted
//             <panel-port>...               nothing
//         </card>
//         <card typeid="2">...</card>       everything: the wanted element
//         <card typeid="3">...</card>       nothing: after the wanted element
//     </device>
//
// libxml2's own handlers create the nodes and attributes. The tree does not affect whether a document is well-formed,
// except for limits of depth and size; well below these the selection gives up, and the file is parsed again with its
// whole tree. A description with a document type, or in a process that drops blanks, also gets its whole tree.
#ifndef DCM_COMMON_SELECTION_H
#define DCM_COMMON_SELECTION_H

#include "common/xml.h"

#include <libxml/parser.h>

#include <cstddef>

namespace dcm {

// The wanted element: the first child of the root that has this name and that `compare` accepts.
struct Wanted {
    // Sets whether `child`, which may have only its attributes, is the wanted element. Fails only without memory. Its
    // side effects must be the same when it is called twice for the same children in the same order.
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

    // Lets a new context build the selected part. The object must outlive the parsing.
    void attach(xmlParserCtxtPtr parser);
    // Whether the tree is incomplete, so that the file must be parsed again.
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
    Node root_ = nullptr;  // until the wanted element is found
    Node found_ = nullptr; // the wanted element, until its end tag
    unsigned depth_ = 0;   // open elements without a node
    size_t textSize_ = 0;  // bytes of skipped text since the last tag
    bool hasGivenUp_ = false;
};

} // namespace dcm

#endif
