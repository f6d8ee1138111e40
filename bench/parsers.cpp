#include "bench/parsers.h"

#include "common/input_file.h"

#include <expat.h>
#include <libxml/parser.h>

#include <memory>

namespace dcmbench {

namespace {

struct Free {
    void operator()(xmlParserCtxtPtr parser) const { xmlFreeParserCtxt(parser); }
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

void startElementNs(void *, const xmlChar *, const xmlChar *, const xmlChar *, int, const xmlChar **, int, int,
                    const xmlChar **)
{
}
void endElementNs(void *, const xmlChar *, const xmlChar *, const xmlChar *) {}
void characters(void *, const xmlChar *, int) {}

void startElement(void *, const XML_Char *, const XML_Char **) {}
void endElement(void *, const XML_Char *) {}
void characterData(void *, const XML_Char *, int) {}

} // namespace

bool parseWithSax(const char *file)
{
    dcm::InputFile input(file);
    const std::unique_ptr<xmlParserCtxt, Free> parser(xmlNewParserCtxt());
    if (input.error() != 0 || parser == nullptr)
        return false;
    *parser->sax = {};
    parser->sax->initialized = XML_SAX2_MAGIC;
    parser->sax->startElementNs = startElementNs;
    parser->sax->endElementNs = endElementNs;
    parser->sax->characters = characters;
    parser->sax->ignorableWhitespace = characters;
    // Without a handler for the start of a document none is created.
    xmlCtxtReadIO(parser.get(), dcm::InputFile::readNext, nullptr, &input, file, nullptr, 0);
    return parser->wellFormed != 0 && input.error() == 0;
}

bool parseWithExpat(const char *file)
{
    constexpr int kPiece = 1 << 16;
    dcm::InputFile input(file);
    const std::unique_ptr<XML_ParserStruct, Free> parser(XML_ParserCreate(nullptr));
    if (parser == nullptr)
        return false;
    XML_SetElementHandler(parser.get(), startElement, endElement);
    XML_SetCharacterDataHandler(parser.get(), characterData);
    int size = 0;
    do {
        void *piece = XML_GetBuffer(parser.get(), kPiece);
        size = piece != nullptr ? dcm::InputFile::readNext(&input, static_cast<char *>(piece), kPiece) : -1;
        if (size < 0 || XML_ParseBuffer(parser.get(), size, size == 0 ? XML_TRUE : XML_FALSE) != XML_STATUS_OK)
            return false;
    } while (size > 0);
    return true;
}

} // namespace dcmbench
