#include "common/document.h"
#include "common/input_file.h"
#include "common/memory_watch.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>

#include <cerrno>
#include <cstring>

namespace dcm {

namespace {

// Without its identifiers an external entity cannot be found, also in a process that lets libxml2 load entities: no
// catalog is consulted, and the file of the entity is not opened.
void declareEntity(void *context, const xmlChar *name, int type, const xmlChar *, const xmlChar *, xmlChar *content)
{
    xmlSAX2EntityDecl(context, name, type, nullptr, nullptr, content);
}

// The document in an open file; nullptr if it is not well-formed. The path is for libxml2's own messages.
xmlDocPtr documentIn(InputFile &file, const char *path, Selection *selection)
{
    xmlInitParser();
    const xmlParserCtxtPtr context = xmlNewParserCtxt();
    if (context == nullptr)
        return nullptr;
    context->sax->externalSubset = nullptr;
    context->sax->entityDecl = declareEntity;
    if (selection != nullptr)
        selection->attach(context);
    // A new context has the options that the process has set as libxml2's defaults.
    const xmlDocPtr document =
        xmlCtxtReadIO(context, InputFile::readNext, nullptr, &file, path, nullptr, context->options);
    xmlFreeParserCtxt(context);
    return document;
}

// The document in a file; nullptr on failure, with errno set if the file cannot be read.
xmlDocPtr parseFile(const char *path, Selection *selection)
{
    InputFile file(path);
    xmlDocPtr document = file.error() == 0 ? documentIn(file, path, selection) : nullptr;
    if (file.error() != 0) {
        // A file that could not be read to its end may look complete.
        xmlFreeDoc(document);
        document = nullptr;
        errno = file.error();
    }
    return document;
}

// The same with the tree of the wanted element only, if possible.
xmlDocPtr parseWanted(const QueryReporter &reporter, const Wanted &wanted)
{
    Selection selection(wanted, reporter);
    const xmlDocPtr document = parseFile(reporter.file, &selection);
    if (!selection.hasGivenUp())
        return document;
    xmlFreeDoc(document);
    return parseFile(reporter.file, nullptr);
}

} // namespace

Document::~Document()
{
    if (document_ != nullptr)
        xmlFreeDoc(document_);
}

Result Document::parse(const QueryReporter &reporter, const Wanted *wanted)
{
    bool isCut = false;
    {
        const MemoryWatch watch;
        document_ = wanted != nullptr ? parseWanted(reporter, *wanted) : parseFile(reporter.file, nullptr);
        isCut = watch.sawMemoryRunOut();
    }
    if (document_ == nullptr) {
        const int error = errnoGet();
        return DCM_REPORT(reporter.function, "xmlfile(%s) parse failed(err#%d, %s)", reporter.file, error,
                          std::strerror(error));
    }
    if (isCut)
        return reporter.reportOutOfMemory();
    return rootOf(document_, root_, reporter);
}

Result Document::parseDevice(const QueryReporter &reporter, const char *name, Wanted::Compare compare,
                             const void *query)
{
    const Wanted wanted = {name, compare, query};
    if (const Result parsed = parse(reporter, &wanted); parsed != Result::ok)
        return parsed;
    return isNamed(root_, kDeviceName) ? Result::ok
                                       : reporter.report(DCM_MESSAGE_FILE("xmlfile(%s) first tag is not device."));
}

} // namespace dcm
