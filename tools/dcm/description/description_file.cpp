#include "tools/dcm/description/description_file.h"

#include "card/card.h"
#include "frame/frame.h"
#include "slot/slot.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/description/input_file.h"
#include "tools/dcm/description/parse_limits.h"
#include "vm/vm.h"

#include <libxml/SAX2.h>
#include <libxml/encoding.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>

namespace dcmtool {

namespace {

constexpr int kLongestCharacter =
    4; // in bytes, of any encoding; fewer bytes at the end of a file are an incomplete character

// ---- Encodings ------------------------------------------------------------------------------------------------------

// The encoding that an XML declaration in ASCII names; empty if it names none.
std::string declaredEncoding(const std::string &text)
{
    const std::string_view head = std::string_view(text).substr(0, std::min(text.size(), text.find("?>")));
    if (head.substr(0, 5) != "<?xml")
        return "";
    const size_t name = head.find("encoding");
    if (name == std::string_view::npos)
        return "";
    const size_t open = head.find_first_of("\"'", name);
    if (open == std::string_view::npos)
        return "";
    const size_t close = head.find(head[open], open + 1);
    return close == std::string_view::npos ? "" : std::string(head.substr(open + 1, close - open - 1));
}

xmlCharEncoding detectedEncoding(const std::string &text)
{
    const auto *bytes = reinterpret_cast<const unsigned char *>(text.data());
    return xmlDetectCharEncoding(bytes, static_cast<int>(std::min<size_t>(text.size(), 4)));
}

// The encoding of a text that is not UTF-8; nullptr for UTF-8, and where the parser decides.
xmlCharEncodingHandler *foreignEncodingOf(const std::string &text)
{
    const xmlCharEncoding detected = detectedEncoding(text);
    if (detected != XML_CHAR_ENCODING_NONE && detected != XML_CHAR_ENCODING_UTF8)
        return xmlGetCharEncodingHandler(detected);
    const std::string declared = declaredEncoding(text);
    if (declared.empty() || xmlParseCharEncoding(declared.c_str()) == XML_CHAR_ENCODING_UTF8 ||
        xmlStrncasecmp(BAD_CAST declared.c_str(), BAD_CAST "UTF-16", 6) == 0 ||
        xmlStrncasecmp(BAD_CAST declared.c_str(), BAD_CAST "UTF16", 5) == 0)
        return nullptr;
    return xmlFindCharEncodingHandler(declared.c_str());
}

// The name of that encoding; empty if all bytes are ASCII.
std::string foreignNameOf(const std::string &text)
{
    std::string declared = declaredEncoding(text);
    if (declared.empty()) {
        const char *name = xmlGetCharEncodingName(detectedEncoding(text));
        return name != nullptr ? name : "one that is not UTF-8";
    }
    for (const char *ascii : {"US-ASCII", "ASCII"})
        if (xmlStrcasecmp(BAD_CAST declared.c_str(), BAD_CAST ascii) == 0)
            return "";
    return declared;
}

// ---- Places of elements ---------------------------------------------------------------------------------------------

// A node stores the offset of its start tag, or of the reference to its entity, plus 1; 0 means none.
void setOffset(xmlNode *node, size_t offset)
{
    node->_private = reinterpret_cast<void *>(offset + 1); // NOLINT(performance-no-int-to-ptr)
}

bool hasOffset(const xmlNode *node)
{
    return node->_private != nullptr;
}

size_t offsetOf(const xmlNode *node)
{
    return reinterpret_cast<size_t>(node->_private) - 1;
}

// ---- Types ----------------------------------------------------------------------------------------------------------

uint32_t numberOf(Node element, const dcm::Attribute &attribute)
{
    const dcm::Text text = dcm::Text::attribute(element, attribute.name, {"dcm"});
    return text ? text.number() : 0;
}

// The ids of a slot, read as the library reads them.
std::vector<uint32_t> typeIdsOf(Node slot, const dcm::Attribute &typeIds)
{
    std::vector<uint32_t> ids;
    const dcm::Text text = dcm::Text::attribute(slot, typeIds.name, {"dcm"});
    for (const char *list = text ? text.c_str() : nullptr; list != nullptr; list = std::strchr(list, ',')) {
        if (!ids.empty())
            list++;
        ids.push_back(dcm::readNumber(list));
    }
    return ids;
}

// The first attribute is the type; the second one, of a card, is the mode.
DescribedType describedType(RecordKind kind, Node element)
{
    const dcm::Attribute *attributes = rowOf(kind).element->attributes;
    if (kind == RecordKind::slot)
        return {kind, element, typeIdsOf(element, attributes[0]), 0};
    const uint32_t mode = kind == RecordKind::card ? numberOf(element, attributes[1]) : 0;
    return {kind, element, {numberOf(element, attributes[0])}, mode};
}

// False for an element that is not a frame, slot or card.
bool describe(Node child, DescribedType &type)
{
    for (const RecordKind kind : {RecordKind::frame, RecordKind::slot, RecordKind::card})
        if (dcm::isNamed(child, rowOf(kind).name)) {
            type = describedType(kind, child);
            return true;
        }
    return false;
}

} // namespace

#if LIBXML_VERSION >= 21200
using ParserFault = const xmlError;
#else
using ParserFault = xmlError;
#endif

struct DescriptionFile::Parsing {
    explicit Parsing(size_t fileSize) : limits(fileSize) {}

    ParseLimits limits;
    FormatPosition position;
    size_t skipped = 0; // the depth in content that is not built
    // The last mark of a kind before a place.
    struct LastMark {
        size_t at = 0;
        size_t found = std::string_view::npos;
    };
    LastMark lastTag;
    LastMark lastReference;
    LastMark lastComment;
};

// The parser's handlers.
struct ParserEvents {
    static DescriptionFile &fileOf(const xmlParserCtxt *context)
    {
        return *static_cast<DescriptionFile *>(context->_private);
    }

    // The offset of the parser in the file, also while it is inside an entity.
    static size_t offset(const DescriptionFile &file)
    {
        const xmlParserInput *input = file.parser_->inputNr > 0 ? file.parser_->inputTab[0] : nullptr;
        if (input == nullptr)
            return 0;
        return std::min(static_cast<size_t>(input->consumed) + static_cast<size_t>(input->cur - input->base),
                        file.text_.size());
    }

    // The last `mark` before the parser's offset; npos if there is none, as in a text that the parser converts.
    // A tag cannot contain '<', nor a reference '&'. Only the text after the previous call's offset is searched:
    // the mark may be far away, and inside an entity the offset is the same for all elements.
    static size_t offsetOfLast(const DescriptionFile &file, std::string_view mark,
                               DescriptionFile::Parsing::LastMark &last)
    {
        const std::string_view text = file.text_;
        const size_t at = offset(file);
        const size_t begin = at < last.at ? 0 : last.at;
        const size_t found = text.substr(begin, at - begin + mark.size()).rfind(mark);
        if (found != std::string_view::npos)
            last = {at, begin + found};
        else
            last = {at, begin == 0 ? found : last.found};
        return last.found;
    }

    // True when a limit has been reached: the parser then stops as soon as it can.
    static bool isRefused(xmlParserCtxt *context)
    {
        DescriptionFile &file = fileOf(context);
        const std::string &excess = file.parsing_->limits.excess();
        if (excess.empty())
            return false;
        if (file.fault_.empty()) {
            const size_t at = offset(file);
            file.fail(DescriptionFile::State::unreadable, excess, {at, at});
        }
        xmlStopParser(context);
        return true;
    }

    // Nothing is skipped inside an entity, because other references may need its content.
    static bool isSkipping(const xmlParserCtxt *context)
    {
        const DescriptionFile &file = fileOf(context);
        return context == file.parser_ && file.parsing_->skipped != 0;
    }

    static bool isWanted(const DescriptionFile &file, Node child)
    {
        DescribedType type;
        return !describe(child, type) || file.isWanted_(type);
    }

    static ParseLimits &limitsOf(void *parser) { return fileOf(static_cast<xmlParserCtxt *>(parser)).parsing_->limits; }

    static void startElement(void *parser, const xmlChar *name, const xmlChar *prefix, const xmlChar *uri,
                             int namespaceCount, const xmlChar **namespaces, int attributeCount, int defaultedCount,
                             const xmlChar **attributes)
    {
        auto *context = static_cast<xmlParserCtxt *>(parser);
        const DescriptionFile &file = fileOf(context);
        ParseLimits &limits = file.parsing_->limits;
        limits.takeNode();
        for (int i = 0; i < namespaceCount; i++)
            limits.takeNode();
        takeNames(context);
        // Each attribute has five pointers; the last two are the beginning and end of the value.
        for (int i = 0; i < attributeCount; i++) {
            const auto *value = reinterpret_cast<const char *>(attributes[5 * i + 3]);
            const auto *end = reinterpret_cast<const char *>(attributes[5 * i + 4]);
            limits.takeAttribute({value, static_cast<size_t>(end - value)}, context->myDoc);
        }
        if (isRefused(context))
            return;
        if (isSkipping(context)) {
            file.parsing_->skipped++;
            return;
        }
        if (context == file.parser_)
            file.parsing_->position.enter(reinterpret_cast<const char *>(name));
        xmlSAX2StartElementNs(parser, name, prefix, uri, namespaceCount, namespaces, attributeCount, defaultedCount,
                              attributes);
        if (context == file.parser_ && file.isWanted_ && context->nodeNr == 2)
            file.parsing_->skipped = isWanted(file, context->node) ? 0 : 1;
        if (context->node == nullptr || hasOffset(context->node))
            return;
        DescriptionFile::Parsing &parsing = *file.parsing_;
        const size_t begin = context == file.parser_ ? offsetOfLast(file, "<", parsing.lastTag)
                                                     : offsetOfLast(file, "&", parsing.lastReference);
        if (begin != std::string_view::npos)
            setOffset(context->node, begin);
    }

    static void endElement(void *parser, const xmlChar *name, const xmlChar *prefix, const xmlChar *uri)
    {
        const auto *context = static_cast<xmlParserCtxt *>(parser);
        const DescriptionFile &file = fileOf(context);
        // The element whose content is skipped is built itself.
        if (isSkipping(context) && --file.parsing_->skipped != 0)
            return;
        if (context == file.parser_)
            file.parsing_->position.leave();
        xmlSAX2EndElementNs(parser, name, prefix, uri);
    }

    // Blanks between the elements of a container take as much memory as elements, and are never used.
    static void characters(void *parser, const xmlChar *text, int length)
    {
        auto *context = static_cast<xmlParserCtxt *>(parser);
        const DescriptionFile &file = fileOf(context);
        const std::string_view characters(reinterpret_cast<const char *>(text), static_cast<size_t>(length));
        if (isSkipping(context))
            return;
        if (context == file.parser_ && file.parsing_->position.isInContainer() &&
            characters.find_first_not_of(kBlanks) == std::string_view::npos)
            return;
        // A text may arrive in pieces.
        const bool isMore =
            context->node != nullptr && context->node->last != nullptr && context->node->last->type == XML_TEXT_NODE;
        if (!isMore)
            file.parsing_->limits.takeNode(characters.size());
        if (!isRefused(context))
            xmlSAX2Characters(parser, text, length);
    }

    static void cdataBlock(void *parser, const xmlChar *text, int length)
    {
        limitsOf(parser).takeNode(static_cast<size_t>(length));
        auto *context = static_cast<xmlParserCtxt *>(parser);
        if (!isRefused(context) && !isSkipping(context))
            xmlSAX2CDataBlock(parser, text, length);
    }

    static void takeNames(xmlParserCtxt *context)
    {
        // A namespace takes two places, its prefix and its name.
        limitsOf(context).takeNames(static_cast<size_t>(xmlDictSize(context->dict)),
                                    static_cast<size_t>(context->nsNr) / 2);
    }

    // Processing instructions are never used.
    static void processingInstruction(void *parser, const xmlChar *, const xmlChar *)
    {
        auto *context = static_cast<xmlParserCtxt *>(parser);
        takeNames(context);
        static_cast<void>(isRefused(context));
    }

    static void reference(void *parser, const xmlChar *name)
    {
        auto *context = static_cast<xmlParserCtxt *>(parser);
        limitsOf(parser).takeReference(reinterpret_cast<const char *>(name), context->myDoc);
        if (!isRefused(context) && !isSkipping(context))
            xmlSAX2Reference(parser, name);
    }

    static void entityDeclaration(void *parser, const xmlChar *name, int type, const xmlChar *publicId,
                                  const xmlChar *systemId, xmlChar *content)
    {
        limitsOf(parser).takeDeclaration();
        if (content != nullptr)
            limitsOf(parser).scan(reinterpret_cast<const char *>(content));
        if (!isRefused(static_cast<xmlParserCtxt *>(parser)))
            xmlSAX2EntityDecl(parser, name, type, publicId, systemId, content);
    }

    static void attributeDeclaration(void *parser, const xmlChar *element, const xmlChar *name, int type, int kind,
                                     const xmlChar *value, xmlEnumeration *words)
    {
        limitsOf(parser).takeDeclaration();
        if (isRefused(static_cast<xmlParserCtxt *>(parser)))
            xmlFreeEnumeration(words);
        else
            xmlSAX2AttributeDecl(parser, element, name, type, kind, value, words);
    }

    static void elementDeclaration(void *parser, const xmlChar *name, int type, xmlElementContent *content)
    {
        limitsOf(parser).takeDeclaration();
        if (!isRefused(static_cast<xmlParserCtxt *>(parser)))
            xmlSAX2ElementDecl(parser, name, type, content);
    }

    static void notationDeclaration(void *parser, const xmlChar *name, const xmlChar *publicId, const xmlChar *systemId)
    {
        limitsOf(parser).takeDeclaration();
        if (!isRefused(static_cast<xmlParserCtxt *>(parser)))
            xmlSAX2NotationDecl(parser, name, publicId, systemId);
    }

    static void unparsedEntityDeclaration(void *parser, const xmlChar *name, const xmlChar *publicId,
                                          const xmlChar *systemId, const xmlChar *notation)
    {
        limitsOf(parser).takeDeclaration();
        if (!isRefused(static_cast<xmlParserCtxt *>(parser)))
            xmlSAX2UnparsedEntityDecl(parser, name, publicId, systemId, notation);
    }

    static xmlEntity *parameterEntity(void *parser, const xmlChar *name)
    {
        limitsOf(parser).takeDeclaration();
        return isRefused(static_cast<xmlParserCtxt *>(parser)) ? nullptr : xmlSAX2GetParameterEntity(parser, name);
    }

    static void watch(xmlSAXHandler &sax)
    {
        sax.startElementNs = startElement;
        sax.endElementNs = endElement;
        sax.characters = characters;
        sax.ignorableWhitespace = characters;
        sax.cdataBlock = cdataBlock;
        sax.processingInstruction = processingInstruction;
        sax.reference = reference;
        sax.entityDecl = entityDeclaration;
        sax.attributeDecl = attributeDeclaration;
        sax.elementDecl = elementDeclaration;
        sax.notationDecl = notationDeclaration;
        sax.unparsedEntityDecl = unparsedEntityDeclaration;
        sax.getParameterEntity = parameterEntity;
        sax.comment = comment;
        sax.serror = error;
    }

    // A comment of the linter or of the pictures.
    static bool speaksTo(const char *reader, const char *comment)
    {
        return std::strncmp(comment + std::strspn(comment, " \t\r\n"), reader, std::strlen(reader)) == 0;
    }

    static void comment(void *parser, const xmlChar *text)
    {
        auto *context = static_cast<xmlParserCtxt *>(parser);
        DescriptionFile &file = fileOf(context);
        // A comment in an entity has no effect.
        const char *characters = reinterpret_cast<const char *>(text);
        const bool allows = speaksTo("dcm-check", characters);
        if (context != file.parser_ || isSkipping(context) || !(allows || speaksTo("dcm-draw:", characters)))
            return;
        file.parsing_->limits.takeNode(std::strlen(characters));
        if (isRefused(context))
            return;
        xmlSAX2Comment(parser, text);
        xmlNode *node = context->node != nullptr ? context->node->last : context->myDoc->last;
        // Nor does one in a document type.
        if (!allows || node == nullptr || node->type != XML_COMMENT_NODE)
            return;
        const size_t begin = offsetOfLast(file, "<!--", file.parsing_->lastComment);
        if (begin != std::string_view::npos)
            file.comments_.push_back({node, {begin, offset(file)}});
    }

    static void error(void *, ParserFault *error)
    {
        const auto *context = static_cast<xmlParserCtxt *>(error->ctxt);
        if (context == nullptr || error->level != XML_ERR_FATAL)
            return;
        DescriptionFile &file = fileOf(context);
        // Later errors follow from the first one.
        if (!file.fault_.empty())
            return;
        std::string text = error->message != nullptr ? error->message : "not well-formed";
        text.resize(text.find_last_not_of(kBlanks) + 1);
        const size_t at = offset(file);
        file.fail(DescriptionFile::State::notXml, text, {at, at});
    }
};

std::unique_ptr<DescriptionFile> DescriptionFile::open(const std::string &name, IsWanted isWanted,
                                                       const std::string &shown)
{
    std::string text;
    std::string fault = readInput(name, text);
    std::string known = !shown.empty() ? shown : name == "-" ? "<stdin>" : name;
    if (fault.empty())
        return parse(std::move(known), std::move(text), std::move(isWanted));
    return unreadable(std::move(known), std::move(fault));
}

std::unique_ptr<DescriptionFile> DescriptionFile::unreadable(std::string name, std::string fault)
{
    std::unique_ptr<DescriptionFile> file(new DescriptionFile);
    file->name_ = std::move(name);
    file->fail(State::unreadable, std::move(fault));
    return file;
}

std::unique_ptr<DescriptionFile> DescriptionFile::parse(std::string name, std::string text, IsWanted isWanted)
{
    std::unique_ptr<DescriptionFile> file(new DescriptionFile);
    file->name_ = std::move(name);
    file->text_ = std::move(text);
    file->isWanted_ = std::move(isWanted);
    file->parseText();
    return file;
}

DescriptionFile::~DescriptionFile()
{
    dropTree();
}

void DescriptionFile::dropTree()
{
    if (document_ != nullptr)
        xmlFreeDoc(document_);
    document_ = nullptr;
    root_ = nullptr;
    comments_.clear();
}

void DescriptionFile::fail(State state, std::string fault, Span span)
{
    state_ = state;
    fault_ = std::move(fault);
    faultSpan_ = span;
}

// The parser's offsets are those of the text only if it converts nothing.
void DescriptionFile::convertToUtf8()
{
    xmlCharEncodingHandler *encoding = foreignEncodingOf(text_);
    if (encoding == nullptr)
        return;
    foreignEncoding_ = foreignNameOf(text_);
    const std::unique_ptr<xmlBuffer, void (*)(xmlBuffer *)> in(xmlBufferCreateStatic(text_.data(), text_.size()),
                                                               xmlBufferFree);
    const std::unique_ptr<xmlBuffer, void (*)(xmlBuffer *)> out(xmlBufferCreate(), xmlBufferFree);
    // A call ends early if its buffer is too small.
    for (int before = 0, left = xmlBufferLength(in.get()); left > 0 && left != before;
         left = xmlBufferLength(in.get())) {
        before = left;
        if (xmlCharEncInFunc(encoding, out.get(), in.get()) < 0)
            break;
    }
    xmlCharEncCloseFunc(encoding);
    if (xmlBufferLength(in.get()) >= kLongestCharacter)
        return;
    std::string converted(reinterpret_cast<const char *>(xmlBufferContent(out.get())),
                          static_cast<size_t>(xmlBufferLength(out.get())));
    // The parser reports a declaration that contradicts the bytes.
    const std::string declared =
        declaredEncoding(hasByteOrderMark(converted) ? converted.substr(kByteOrderMark.size()) : converted);
    if (!declared.empty() && declared != declaredEncoding(text_) &&
        xmlStrncasecmp(BAD_CAST declared.c_str(), BAD_CAST "UTF", 3) != 0)
        return;
    text_ = std::move(converted);
    isConverted_ = true;
}

// Parses like the library: nothing external is read, and entities remain references.
void DescriptionFile::parseText()
{
    xmlInitParser();
    convertToUtf8();
    if (text_.empty())
        return fail(State::notXml, "Document is empty");
    Parsing parsing(text_.size());
    parsing.limits.scan(text_);
    if (!parsing.limits.excess().empty())
        return fail(State::unreadable, parsing.limits.excess());
    const std::unique_ptr<xmlParserCtxt, void (*)(xmlParserCtxt *)> context(
        xmlCreateMemoryParserCtxt(text_.data(), static_cast<int>(text_.size())), xmlFreeParserCtxt);
    parser_ = context.get();
    parsing_ = &parsing;
    context->_private = this;
    // A short text is stored in its node.
    context->options |= XML_PARSE_COMPACT;
    if (isConverted_)
        context->options |= XML_PARSE_IGNORE_ENC;
    ParserEvents::watch(*context->sax);
    xmlParseDocument(context.get());
    parser_ = nullptr;
    parsing_ = nullptr;
    document_ = context->myDoc;
    context->myDoc = nullptr;
    if (!fault_.empty() || context->wellFormed == 0 || document_ == nullptr) {
        if (fault_.empty())
            fail(State::notXml, "not well-formed");
        return;
    }
    std::vector<Message> messages;
    const MessageCapture capture(messages);
    const dcm::Result found = dcm::rootOf(document_, root_, dcm::QueryReporter{{"dcm"}, name_.c_str()});
    if (found != dcm::Result::ok)
        return fail(State::notXml, found == dcm::Result::outOfMemory
                                       ? "entities expand to more text than the library reads"
                                       : messages.front().text);
    state_ = State::parsed;
}

// ---- Types ----------------------------------------------------------------------------------------------------------

bool DescriptionFile::isDevice() const
{
    return root_ != nullptr && dcm::isNamed(root_, dcm::kDeviceName);
}

bool DescriptionFile::isVm() const
{
    return root_ != nullptr && dcm::isNamed(root_, rowOf(RecordKind::vm).name);
}

std::vector<DescribedType> DescriptionFile::types() const
{
    std::vector<DescribedType> types;
    if (isVm())
        types.push_back({RecordKind::vm, root_, {}, 0});
    if (!isDevice())
        return types;
    size_t count = 0;
    for ([[maybe_unused]] const Node child : dcm::children(root_))
        count++;
    types.reserve(count);
    for (const Node child : dcm::children(root_))
        if (DescribedType type; describe(child, type))
            types.push_back(std::move(type));
    return types;
}

template <class Record, class Clear, class Decode>
Outcome DescriptionFile::decodeWith(const char *query, size_t firstMessage, Record &info, const Clear &clear,
                                    const Decode &decode) const
{
    Outcome outcome;
    const MessageCapture capture(outcome.messages, firstMessage);
    clear(info);
    outcome.isDecoded = decode(info, dcm::QueryReporter{{query}, name_.c_str()}) == dcm::Result::ok;
    outcome.messageCount = capture.count();
    return outcome;
}

Outcome DescriptionFile::decode(const DescribedType &type, DcmFrameInfo &info, size_t firstMessage) const
{
    return decodeWith(
        "dcmFrameInfoGet", firstMessage, info,
        [&](DcmFrameInfo &frame) { dcm::clearFrame(type.typeIds.front(), frame); },
        [&](DcmFrameInfo &frame, const dcm::QueryReporter &reporter) {
            return dcm::decodeFrame(type.element, frame, reporter);
        });
}

Outcome DescriptionFile::decode(const DescribedType &type, DcmSlotInfo &info, size_t firstMessage) const
{
    return decodeWith(
        "dcmSlotInfoGet", firstMessage, info,
        [&](DcmSlotInfo &slot) { dcm::clearSlot(type.typeIds.empty() ? 0 : type.typeIds.front(), slot); },
        [&](DcmSlotInfo &slot, const dcm::QueryReporter &reporter) {
            return dcm::decodeSlot(type.element, slot, reporter);
        });
}

Outcome DescriptionFile::decode(const DescribedType &type, DcmCardInfo &info, size_t firstMessage) const
{
    return decodeWith(
        "dcmCardInfoGet", firstMessage, info,
        [&](DcmCardInfo &card) { dcm::clearCard(type.typeIds.front(), type.mode, card); },
        [&](DcmCardInfo &card, const dcm::QueryReporter &reporter) {
            const dcm::Result named = dcm::takeCardNames(type.element, card, reporter);
            return named == dcm::Result::ok ? dcm::decodeCard(type.element, card, reporter) : named;
        });
}

Outcome DescriptionFile::decode(const DescribedType &type, DcmVmPortInfo &info, size_t firstMessage) const
{
    return decodeWith(
        "dcmVmPortInfoGet", firstMessage, info, [](DcmVmPortInfo &vm) { vm = {}; },
        [&](DcmVmPortInfo &vm, const dcm::QueryReporter &reporter) {
            return dcm::decodeVmPorts(type.element, vm, reporter);
        });
}

// ---- Places ---------------------------------------------------------------------------------------------------------

Span DescriptionFile::tagSpan(Node element) const
{
    if (!hasOffset(element))
        return {};
    const size_t begin = offsetOf(element);
    if (text_[begin] == '&')
        return {begin, endOf(";", text_, begin)};
    return {begin, tagEnd(text_, begin)};
}

Span DescriptionFile::nameSpan(Node element) const
{
    // The rest of the tag may be long.
    if (!hasOffset(element) || text_[offsetOf(element)] == '&')
        return tagSpan(element);
    const size_t begin = offsetOf(element) + 1;
    return {begin, nameEnd(text_, begin)};
}

Span DescriptionFile::attributePart(Node element, const char *attribute, bool isValue) const
{
    const Span name = nameSpan(element);
    if (name.end == 0 || text_[name.begin] == '&')
        return name;
    size_t at = name.end;
    WrittenAttribute written;
    const std::string_view wanted = attribute;
    while (nextAttribute(text_, at, written)) {
        std::string_view found =
            std::string_view(text_).substr(written.name.begin, written.name.end - written.name.begin);
        // The tree stores the local name of an attribute.
        if (found != wanted && found.find(':') != std::string_view::npos)
            found.remove_prefix(found.find(':') + 1);
        if (found == wanted)
            return isValue ? written.value : written.name;
    }
    return name;
}

Span DescriptionFile::attributeSpan(Node element, const char *attribute) const
{
    return attributePart(element, attribute, false);
}

Span DescriptionFile::valueSpan(Node element, const char *attribute) const
{
    const Span value = attributePart(element, attribute, true);
    return value.begin < value.end ? value : attributePart(element, attribute, false);
}

Span DescriptionFile::contentSpan(Node element) const
{
    const Span tag = tagSpan(element);
    if (tag.end < 2 || text_[tag.begin] == '&' || text_[tag.end - 2] == '/')
        return nameSpan(element);
    const size_t begin = skipBlanks(text_, tag.end);
    size_t end = std::min(text_.size(), text_.find('<', begin));
    while (end > begin && isBlank(text_[end - 1]))
        end--;
    if (end == begin && text_.compare(begin, 9, "<![CDATA[") == 0)
        end = endOf("]]>", text_, begin);
    return begin < end ? Span{begin, end} : nameSpan(element);
}

// A file may consist of one line, with all findings in it.
void DescriptionFile::indexLines() const
{
    if (!lineStarts_.empty())
        return;
    lineStarts_.reserve(static_cast<size_t>(std::count(text_.begin(), text_.end(), '\n')) + 1);
    // A byte order mark is not a column.
    lineStarts_.push_back(hasByteOrderMark(text_) ? kByteOrderMark.size() : 0);
    size_t characters = 0;
    for (size_t i = 0; i < text_.size(); i++) {
        if (i % kStride == 0)
            characters_.push_back(characters);
        characters += isCharacter(text_[i]) ? 1 : 0;
        if (text_[i] == '\n')
            lineStarts_.push_back(i + 1);
    }
    if (text_.size() % kStride == 0)
        characters_.push_back(characters);
}

size_t DescriptionFile::charactersBefore(size_t offset) const
{
    const size_t stride = offset / kStride;
    const auto rest = std::count_if(text_.begin() + static_cast<std::ptrdiff_t>(stride * kStride),
                                    text_.begin() + static_cast<std::ptrdiff_t>(offset), isCharacter);
    return characters_[stride] + static_cast<size_t>(rest);
}

Place DescriptionFile::place(size_t offset) const
{
    indexLines();
    // A byte order mark is part of the first character.
    offset = std::clamp(offset, lineStarts_.front(), text_.size());
    const auto next = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
    const size_t column = charactersBefore(offset) - charactersBefore(*(next - 1));
    return {static_cast<size_t>(next - lineStarts_.begin()), column + 1};
}

size_t DescriptionFile::lineOf(size_t offset) const
{
    size_t line = 1;
    for (size_t end = text_.find('\n'); end < offset; end = text_.find('\n', end + 1))
        line++;
    return line;
}

std::string_view DescriptionFile::line(size_t number) const
{
    indexLines();
    if (number < 1 || number > lineStarts_.size())
        return {};
    const size_t start = lineStarts_[number - 1];
    const size_t end = number < lineStarts_.size() ? lineStarts_[number] - 1 : text_.size();
    std::string_view line = std::string_view(text_).substr(start, end - start);
    if (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    return line;
}

} // namespace dcmtool
