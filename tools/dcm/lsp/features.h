// The answers to requests about a document.
#ifndef DCM_TOOLS_LSP_FEATURES_H
#define DCM_TOOLS_LSP_FEATURES_H

#include "tools/dcm/lsp/help.h"
#include "tools/dcm/lsp/open_document.h"
#include "tools/dcm/lsp/protocol.h"

#include <optional>
#include <string>
#include <vector>

namespace dcmlsp {

// What the client can do with answers.
struct Client {
    Units units = Units::utf16;
    TextKind hover = TextKind::plain;
    TextKind documentation = TextKind::plain; // of what is completed
    bool hasSnippets = false;
    bool hasRelatedInformation = false;
    bool hasCodeDescription = false;
    bool hasDocumentChanges = false;
    bool hasNestedSymbols = false;
};

Json rangeOf(const OpenDocument &document, dcmtool::Span span);

// What `dcm check` finds. The addresses of the pages of rules begin with `pages`; empty where there are none.
Json diagnosticsOf(const OpenDocument &document, const Client &client, const std::string &pages);
// The fixes of what is found in a range.
Json quickFixesIn(const OpenDocument &document, dcmtool::Span range, const Client &client, const std::string &pages);

// Each is null where there is nothing to say.
Json hoverAt(const OpenDocument &document, size_t offset, const Help &help, const Client &client);
// `isByItself`: for a letter that has been typed, not since the user wants it.
Json completionsAt(const OpenDocument &document, size_t offset, bool isByItself, const Help &help,
                   const Client &client);

// What the value at a place names, and where what it names, or the element at a place, is named.
Json definitionsAt(const OpenDocument &document, size_t offset);
Json referencesAt(const OpenDocument &document, size_t offset, bool withDeclarations);

Json symbolsIn(const OpenDocument &document, const Help &help, const Client &client);

// Throws where the text cannot be laid out.
Json formattingEdits(const OpenDocument &document);

// What the references at a place of the last tree name.
std::vector<dcmtool::Node> targetsAt(const dcmtool::DescriptionFile &file, size_t offset);

} // namespace dcmlsp

#endif
