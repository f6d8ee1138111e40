#include "common/selection.h"

#include <cstring>

namespace dcm {

namespace {

// Below the limits of all versions of libxml2: 256 open elements, and 10,000,000 bytes in a text.
constexpr unsigned kDepthMax = 200;
constexpr size_t kTextMax = 8'000'000;

} // namespace

// What libxml2 calls; the context is its parser.
struct Selection::Handlers {
    template <class... Rest> static void startRoot(void *context, Rest... rest)
    {
        const auto parser = static_cast<xmlParserCtxtPtr>(context);
        of(parser).libxml2s_.startElementNs(context, rest...);
        of(parser).startRoot(parser);
    }

    template <class... Rest>
    static void start(void *context, const xmlChar *name, const xmlChar *prefix, const xmlChar *uri, Rest... rest)
    {
        const auto parser = static_cast<xmlParserCtxtPtr>(context);
        Selection &selection = of(parser);
        // Without its namespace a prefix is a part of the name.
        if ((prefix != nullptr && uri == nullptr) ||
            !selection.isCandidate(parser, reinterpret_cast<const char *>(name))) {
            selection.skipStart(parser);
            return;
        }
        selection.libxml2s_.startElementNs(context, name, prefix, uri, rest...);
        selection.startCandidate(parser);
    }

    static void end(void *context, const xmlChar *name, const xmlChar *prefix, const xmlChar *uri)
    {
        const auto parser = static_cast<xmlParserCtxtPtr>(context);
        Selection &selection = of(parser);
        selection.textSize_ = 0;
        if (selection.depth_ > 0) {
            selection.depth_--;
            return;
        }
        const Node ended = parser->node;
        selection.libxml2s_.endElementNs(context, name, prefix, uri);
        if (parser->node == nullptr) {
            // What follows the root is built as what precedes it.
            *parser->sax = selection.libxml2s_;
        } else if (ended != parser->node) {
            // The search has passed it.
            xmlUnlinkNode(ended);
            xmlFreeNode(ended);
        }
    }

    static void endBuilt(void *context, const xmlChar *name, const xmlChar *prefix, const xmlChar *uri)
    {
        const auto parser = static_cast<xmlParserCtxtPtr>(context);
        Selection &selection = of(parser);
        const bool isFound = parser->node == selection.found_;
        selection.libxml2s_.endElementNs(context, name, prefix, uri);
        if (!isFound)
            return;
        selection.root_ = nullptr;
        selection.skipNodes(*parser->sax);
    }

    static void text(void *context, const xmlChar *, int size)
    {
        const auto parser = static_cast<xmlParserCtxtPtr>(context);
        Selection &selection = of(parser);
        selection.textSize_ += static_cast<size_t>(size);
        if (selection.textSize_ > kTextMax)
            selection.giveUp(parser);
    }

    // Without a handler libxml2 does not apply its limit of size.
    static void comment(void *, const xmlChar *) {}
    static void instruction(void *, const xmlChar *, const xmlChar *) {}
};

void Selection::attach(xmlParserCtxtPtr parser)
{
    parser->_private = this;
    libxml2s_ = *parser->sax;
    parser->sax->startElementNs = Handlers::startRoot;
}

void Selection::skipNodes(xmlSAXHandler &handler) const
{
    handler = libxml2s_;
    handler.startElementNs = Handlers::start;
    handler.endElementNs = Handlers::end;
    handler.characters = Handlers::text;
    handler.ignorableWhitespace = Handlers::text;
    handler.cdataBlock = Handlers::text;
    handler.comment = Handlers::comment;
    handler.processingInstruction = Handlers::instruction;
}

void Selection::buildNodes(xmlSAXHandler &handler) const
{
    handler = libxml2s_;
    handler.endElementNs = Handlers::endBuilt;
}

void Selection::startRoot(xmlParserCtxtPtr parser)
{
    // libxml2 looks at its nodes to know which blanks to drop, and a document type may give elements more than they
    // have.
    if (parser->myDoc->intSubset != nullptr || libxml2s_.ignorableWhitespace != libxml2s_.characters) {
        *parser->sax = libxml2s_;
        return;
    }
    if (parser->node != nullptr && isNamed(parser->node, kDeviceName))
        root_ = parser->node;
    skipNodes(*parser->sax);
}

bool Selection::isCandidate(xmlParserCtxtPtr parser, const char *name) const
{
    return depth_ == 0 && root_ != nullptr && parser->node == root_ && std::strcmp(name, wanted_.name) == 0;
}

void Selection::startCandidate(xmlParserCtxtPtr parser)
{
    // Without memory there is no node.
    if (parser->node == root_) {
        depth_++;
        return;
    }
    bool isWanted = false;
    // A copy of an attribute could fail, which is for the search to report.
    if (!Text::borrowsAttributes(parser->node) ||
        wanted_.compare(parser->node, wanted_.query, isWanted, reporter_) != Result::ok)
        giveUp(parser);
    if (isWanted) {
        found_ = parser->node;
        buildNodes(*parser->sax);
    }
}

void Selection::skipStart(xmlParserCtxtPtr parser)
{
    textSize_ = 0;
    if (++depth_ > kDepthMax)
        giveUp(parser);
}

void Selection::giveUp(xmlParserCtxtPtr parser)
{
    hasGivenUp_ = true;
    xmlStopParser(parser);
}

} // namespace dcm
