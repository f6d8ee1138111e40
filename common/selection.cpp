#include "common/selection.h"

#include <libxml/SAX2.h>

#include <cerrno>
#include <cstring>

namespace dcm {

namespace {

// Below the limits of all versions of libxml2: 256 open elements, and 10,000,000 bytes in a text.
constexpr unsigned kDepthMax = 200;
constexpr size_t kTextMax = 8'000'000;

} // namespace

// libxml2's callbacks; the context is its parser.
struct Selection::Handlers {
    template <class... Rest> static void startRoot(void *context, Rest... rest)
    {
        const auto parser = static_cast<xmlParserCtxtPtr>(context);
        xmlSAX2StartElementNs(context, rest...);
        of(parser).startRoot(parser);
    }

    template <class... Rest>
    static void start(void *context, const xmlChar *name, const xmlChar *prefix, const xmlChar *uri, Rest... rest)
    {
        const auto parser = static_cast<xmlParserCtxtPtr>(context);
        Selection &selection = of(parser);
        // Without a namespace the prefix is part of the name.
        if ((prefix != nullptr && uri == nullptr) ||
            !selection.isCandidate(parser, reinterpret_cast<const char *>(name))) {
            selection.skipStart(parser);
            return;
        }
        xmlSAX2StartElementNs(context, name, prefix, uri, rest...);
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
        xmlSAX2EndElementNs(context, name, prefix, uri);
        if (parser->node == nullptr) {
            // Nodes after the root are built, like those before it.
            buildNodes(*parser->sax);
        } else if (ended != parser->node) {
            // It is not the wanted element.
            xmlUnlinkNode(ended);
            xmlFreeNode(ended);
        }
    }

    static void endBuilt(void *context, const xmlChar *name, const xmlChar *prefix, const xmlChar *uri)
    {
        const auto parser = static_cast<xmlParserCtxtPtr>(context);
        Selection &selection = of(parser);
        const bool isFound = parser->node == selection.found_;
        xmlSAX2EndElementNs(context, name, prefix, uri);
        if (!isFound)
            return;
        selection.root_ = nullptr;
        skipNodes(*parser->sax);
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
    parser->sax->startElementNs = Handlers::startRoot;
}

void Selection::skipNodes(xmlSAXHandler &handler)
{
    handler.startElementNs = Handlers::start;
    handler.endElementNs = Handlers::end;
    handler.characters = Handlers::text;
    handler.ignorableWhitespace = Handlers::text;
    handler.cdataBlock = Handlers::text;
    handler.comment = Handlers::comment;
    handler.processingInstruction = Handlers::instruction;
}

void Selection::buildNodes(xmlSAXHandler &handler)
{
    handler.startElementNs = xmlSAX2StartElementNs;
    handler.endElementNs = xmlSAX2EndElementNs;
    handler.characters = xmlSAX2Characters;
    handler.ignorableWhitespace = xmlSAX2Characters;
    handler.cdataBlock = xmlSAX2CDataBlock;
    handler.comment = xmlSAX2Comment;
    handler.processingInstruction = xmlSAX2ProcessingInstruction;
}

void Selection::startRoot(xmlParserCtxtPtr parser)
{
    xmlSAXHandler &handler = *parser->sax;
    // libxml2 decides from its nodes which blanks to drop, and a document type may add attributes and content.
    if (parser->myDoc->intSubset != nullptr || handler.ignorableWhitespace != handler.characters) {
        handler.startElementNs = xmlSAX2StartElementNs;
        return;
    }
    root_ = parser->node;
    skipNodes(handler);
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
    // A number that is too large sets errno, which must not appear in the report of a file that is not well-formed: on
    // a whole tree, the search follows the parsing.
    const int before = errno;
    // Copying an attribute could fail, and the search after the parsing reports that.
    if (!Text::borrowsAttributes(parser->node) ||
        wanted_.compare(parser->node, wanted_.query, isWanted, reporter_) != Result::ok)
        giveUp(parser);
    errno = before;
    if (isWanted) {
        found_ = parser->node;
        buildNodes(*parser->sax);
        parser->sax->endElementNs = Handlers::endBuilt;
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
