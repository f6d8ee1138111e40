#include "tools/dcm/description/parse_events.h"

#include "tools/dcm/description/markup.h"
#include "tools/dcm/description/parse_limits.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <memory>

namespace dcmtool {

namespace {

std::string_view viewOf(const xmlChar *text)
{
    return text != nullptr ? reinterpret_cast<const char *>(text) : "";
}

class Recorder {
public:
    explicit Recorder(Comments comments) : comments_(comments) {}

    std::string take() { return std::move(events_); }

    static void watch(xmlSAXHandler &sax)
    {
        sax.startElementNs = startElement;
        sax.endElementNs = endElement;
        sax.characters = characters;
        sax.ignorableWhitespace = characters;
        sax.cdataBlock = cdataBlock;
        sax.comment = comment;
        sax.processingInstruction = processingInstruction;
        sax.reference = reference;
    }

private:
    static Recorder &of(void *parser)
    {
        return *static_cast<Recorder *>(static_cast<xmlParserCtxt *>(parser)->_private);
    }

    // An event is its name and its parts, each with its length, so that different lists have different texts.
    void add(char what, std::string_view text = {})
    {
        events_.append(1, what).append(std::to_string(text.size())).append(":").append(text);
    }

    // A text may arrive in pieces, and is complete at the next event.
    void endText(bool isAtEndTag)
    {
        const bool isOnlyContent = isAfterStartTag_ && isAtEndTag;
        const bool isLayout = isBlank(text_) && !position_.isInValue() && (position_.isInContainer() || !isOnlyContent);
        if (!isLayout)
            add('t', text_);
        text_.clear();
        isAfterStartTag_ = false;
    }

    static void startElement(void *parser, const xmlChar *name, const xmlChar *prefix, const xmlChar *,
                             int namespaceCount, const xmlChar **namespaces, int attributeCount, int,
                             const xmlChar **attributes)
    {
        Recorder &recorder = of(parser);
        recorder.endText(false);
        recorder.add('<', viewOf(prefix));
        recorder.add(':', viewOf(name));
        for (int i = 0; i < 2 * namespaceCount; i++)
            recorder.add('n', viewOf(namespaces[i]));
        // Five pointers each: name, prefix, namespace, and where the value begins and ends.
        for (int i = 0; i < 5 * attributeCount; i += 5) {
            recorder.add('p', viewOf(attributes[i + 1]));
            recorder.add('a', viewOf(attributes[i]));
            recorder.add('=', {reinterpret_cast<const char *>(attributes[i + 3]),
                               static_cast<size_t>(attributes[i + 4] - attributes[i + 3])});
        }
        recorder.position_.enter(reinterpret_cast<const char *>(name));
        recorder.isAfterStartTag_ = true;
    }

    static void endElement(void *parser, const xmlChar *, const xmlChar *, const xmlChar *)
    {
        Recorder &recorder = of(parser);
        recorder.endText(true);
        recorder.position_.leave();
        recorder.add('>');
    }

    static void characters(void *parser, const xmlChar *text, int length)
    {
        of(parser).text_.append(reinterpret_cast<const char *>(text), static_cast<size_t>(length));
    }

    static void cdataBlock(void *parser, const xmlChar *text, int length)
    {
        Recorder &recorder = of(parser);
        recorder.endText(false);
        recorder.add('c', {reinterpret_cast<const char *>(text), static_cast<size_t>(length)});
    }

    static void comment(void *parser, const xmlChar *text)
    {
        Recorder &recorder = of(parser);
        if (recorder.comments_ == Comments::dropped)
            return;
        recorder.endText(false);
        recorder.add('!', viewOf(text));
    }

    static void processingInstruction(void *parser, const xmlChar *target, const xmlChar *data)
    {
        Recorder &recorder = of(parser);
        recorder.endText(false);
        recorder.add('?', viewOf(target));
        recorder.add('d', viewOf(data));
    }

    static void reference(void *parser, const xmlChar *name)
    {
        Recorder &recorder = of(parser);
        recorder.endText(false);
        recorder.add('&', viewOf(name));
    }

    Comments comments_;
    FormatPosition position_;
    std::string events_;
    std::string text_; // since the last event
    bool isAfterStartTag_ = false;
};

} // namespace

std::string parseEvents(const std::string &text, Comments comments)
{
    const std::unique_ptr<xmlParserCtxt, void (*)(xmlParserCtxt *)> context(
        xmlCreateMemoryParserCtxt(text.data(), static_cast<int>(text.size())), xmlFreeParserCtxt);
    if (context == nullptr)
        return "";
    Recorder recorder(comments);
    context->_private = &recorder;
    Recorder::watch(*context->sax);
    xmlParseDocument(context.get());
    // The document contains the declarations of a document type.
    xmlFreeDoc(context->myDoc);
    context->myDoc = nullptr;
    return context->wellFormed != 0 ? recorder.take() : "";
}

} // namespace dcmtool
