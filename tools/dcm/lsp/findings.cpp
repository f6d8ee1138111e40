// Diagnostics and quick fixes: findings and their edits.
#include "tools/dcm/check/output.h"
#include "tools/dcm/lsp/features.h"

#include <algorithm>

namespace dcmlsp {

using dcmtool::Finding;
using dcmtool::Fix;
using dcmtool::Severity;
using dcmtool::Span;

namespace {

int severityOf(Severity severity)
{
    return severity == Severity::error ? 1 : severity == Severity::warning ? 2 : 3;
}

Json diagnosticOf(const OpenDocument &document, const Finding &finding, const Client &client, const std::string &pages)
{
    Json diagnostic = {{"range", rangeOf(document, finding.span)},
                       {"severity", severityOf(finding.severity)},
                       {"source", "dcm"},
                       {"code", finding.rule->name},
                       {"message", dcmtool::messageOf(finding)}};
    if (client.hasCodeDescription && !pages.empty())
        diagnostic["codeDescription"] = {{"href", pages + finding.rule->name + ".md"}};
    if (client.hasRelatedInformation)
        for (const dcmtool::Note &note : finding.notes)
            diagnostic["relatedInformation"].push_back(
                {{"location", {{"uri", document.uri()}, {"range", rangeOf(document, note.span)}}},
                 {"message", note.text}});
    return diagnostic;
}

Json workspaceEditOf(const OpenDocument &document, const Fix &fix, const Client &client)
{
    Json edits = Json::array();
    for (const dcmtool::Edit &edit : fix.edits)
        edits.push_back({{"range", rangeOf(document, edit.span)}, {"newText", edit.text}});
    if (!client.hasDocumentChanges)
        return {{"changes", {{document.uri(), edits}}}};
    const Json version = document.version() ? Json(*document.version()) : Json();
    return {{"documentChanges",
             Json::array({{{"textDocument", {{"uri", document.uri()}, {"version", version}}}, {"edits", edits}}})}};
}

} // namespace

Json rangeOf(const OpenDocument &document, Span span)
{
    const auto json = [&](size_t offset) -> Json {
        const Position position = document.lines().positionOf(offset);
        return {{"line", position.line}, {"character", position.character}};
    };
    return {{"start", json(span.begin)}, {"end", json(span.end)}};
}

Json diagnosticsOf(const OpenDocument &document, const Client &client, const std::string &pages)
{
    Json diagnostics = Json::array();
    for (const Finding &finding : document.findings())
        diagnostics.push_back(diagnosticOf(document, finding, client, pages));
    return diagnostics;
}

Json quickFixesIn(const OpenDocument &document, Span range, const Client &client, const std::string &pages)
{
    Json actions = Json::array();
    for (const Finding &finding : document.findings()) {
        if (finding.span.begin > range.end || finding.span.end < range.begin)
            continue;
        for (const Fix &fix : finding.fixes) {
            Json action = {{"title", fix.title},
                           {"kind", "quickfix"},
                           {"diagnostics", Json::array({diagnosticOf(document, finding, client, pages)})},
                           {"edit", workspaceEditOf(document, fix, client)}};
            if (fix.confidence == dcmtool::Confidence::certain && &fix == &finding.fixes.front())
                action["isPreferred"] = true;
            actions.push_back(action);
        }
    }
    return actions;
}

} // namespace dcmlsp
