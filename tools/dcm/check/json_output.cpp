#include "tools/dcm/check/output.h"
#include "tools/dcm/check/pages.h"
#include "tools/dcm/check/registry.h"
#include "tools/dcm/records/json_text.h"
#include "tools/dcm/uri.h"

#include <cinttypes>
#include <cstdio>
#include <map>

namespace dcmtool {

namespace {

// The end is the column after the last character.
Json regionOf(const DescriptionFile &file, Span span, const char *line, const char *column, const char *endLine,
              const char *endColumn)
{
    const Place begin = file.place(span.begin);
    const Place end = file.place(span.end);
    return {{line, begin.line}, {column, begin.column}, {endLine, end.line}, {endColumn, end.column}};
}

// ---- JSON -----------------------------------------------------------------------------------------------------------

constexpr unsigned kVersion = 1;

Json jsonPlace(const DescriptionFile &file, Span span)
{
    return regionOf(file, span, "line", "column", "endLine", "endColumn");
}

// Byte offsets are for programs that edit the file, lines and columns for those that show it.
Json fixOf(const DescriptionFile &file, const Fix &fix)
{
    Json edits = Json::array();
    for (const Edit &edit : fix.edits)
        edits.push_back({{"place", jsonPlace(file, edit.span)},
                         {"begin", edit.span.begin},
                         {"end", edit.span.end},
                         {"text", edit.text}});
    return {{"title", fix.title}, {"certain", fix.confidence == Confidence::certain}, {"edits", edits}};
}

Json findingOf(const DescriptionFile &file, const Finding &finding)
{
    Json json = {{"check", finding.rule->name}, {"severity", nameOf(finding.severity)}};
    if (isPlaced(finding))
        json["place"] = jsonPlace(file, finding.span);
    if (!finding.path.empty())
        json["path"] = finding.path;
    json["text"] = finding.text;
    if (!finding.meant.empty())
        json["meant"] = finding.meant;
    if (finding.more != 0)
        json["count"] = 1 + finding.more;
    for (const Fix &fix : finding.fixes)
        json["fixes"].push_back(fixOf(file, fix));
    for (const Note &note : finding.notes)
        json["notes"].push_back({{"place", jsonPlace(file, note.span)}, {"text", note.text}});
    return json;
}

const char *statusOf(const DescriptionFile &file)
{
    switch (file.state()) {
    case DescriptionFile::State::unreadable:
        return "unreadable";
    case DescriptionFile::State::notXml:
        return "not-xml";
    case DescriptionFile::State::parsed:
        break;
    }
    return "checked";
}

// ---- SARIF ----------------------------------------------------------------------------------------------------------

const char *levelOf(Severity severity)
{
    return severity == Severity::info ? "note" : nameOf(severity);
}

Json locationOf(const DescriptionFile &file, Span span, bool isPlaced)
{
    Json physical = {{"artifactLocation", {{"uri", uriOf(file.name())}}}};
    if (isPlaced)
        physical["region"] = regionOf(file, span, "startLine", "startColumn", "endLine", "endColumn");
    return {{"physicalLocation", physical}};
}

Json fixForSarif(const DescriptionFile &file, const Fix &fix)
{
    Json replacements = Json::array();
    for (const Edit &edit : fix.edits)
        replacements.push_back(
            {{"deletedRegion", regionOf(file, edit.span, "startLine", "startColumn", "endLine", "endColumn")},
             {"insertedContent", {{"text", edit.text}}}});
    const Json change = {{"artifactLocation", {{"uri", uriOf(file.name())}}}, {"replacements", replacements}};
    return {{"description", {{"text", fix.title}}}, {"artifactChanges", Json::array({change})}};
}

// A fingerprint that does not depend on the line: FNV-1a of the finding's texts.
std::string fingerprintOf(const Finding &finding)
{
    constexpr uint64_t kBasis = 0xcbf29ce484222325;
    constexpr uint64_t kPrime = 0x100000001b3;
    uint64_t hash = kBasis;
    for (const std::string &part : {std::string(finding.rule->name), finding.path, finding.text})
        for (const char character : part + '\n')
            hash = (hash ^ static_cast<unsigned char>(character)) * kPrime;
    char text[17];
    std::snprintf(text, sizeof text, "%016" PRIx64, hash);
    return text;
}

Json resultOf(const DescriptionFile &file, const Finding &finding, size_t rule)
{
    Json location = locationOf(file, finding.span, isPlaced(finding));
    if (!finding.path.empty())
        location["logicalLocations"] = Json::array({{{"fullyQualifiedName", finding.path}}});
    Json result = {
        {"ruleId", finding.rule->name},         {"ruleIndex", rule},
        {"level", levelOf(finding.severity)},   {"message", {{"text", messageOf(finding)}}},
        {"locations", Json::array({location})}, {"partialFingerprints", {{"dcmFinding/v1", fingerprintOf(finding)}}}};
    if (finding.more != 0)
        result["occurrenceCount"] = 1 + finding.more;
    for (const Note &note : finding.notes) {
        Json related = locationOf(file, note.span, true);
        related["message"] = {{"text", note.text}};
        result["relatedLocations"].push_back(related);
    }
    for (const Fix &fix : finding.fixes)
        result["fixes"].push_back(fixForSarif(file, fix));
    // Where a result of a run has them, all have.
    result["suppressions"] = Json::array();
    if (!finding.reason.empty())
        result["suppressions"].push_back({{"kind", "inSource"}, {"justification", finding.reason}});
    return result;
}

Json ruleOf(const Rule &rule, const std::string &pages)
{
    Json described = {{"id", rule.name},
                      {"shortDescription", {{"text", summaryOf(rule)}}},
                      {"fullDescription", {{"text", explanationOf(rule)}}},
                      {"help", {{"text", pageAsText(rule)}, {"markdown", pageOf(rule)}}},
                      {"defaultConfiguration", {{"level", levelOf(rule.severity)}}}};
    if (!pages.empty())
        described["helpUri"] = pages + rule.name + ".md";
    return described;
}

} // namespace

std::string asJson(const std::vector<FileReport> &reports)
{
    Json files = Json::array();
    Totals totals;
    for (const FileReport &report : reports) {
        Json findings = Json::array();
        for (const Finding &finding : report.findings)
            findings.push_back(findingOf(*report.file, finding));
        files.push_back({{"file", report.file->name()}, {"status", statusOf(*report.file)}, {"findings", findings}});
        totals.add(report);
    }
    return jsonText({{"format", "dcm-check"},
                     {"version", kVersion},
                     {"files", files},
                     {"errors", totals.errors},
                     {"warnings", totals.warnings},
                     {"infos", totals.infos}});
}

std::string asSarif(const std::vector<FileReport> &reports, const std::string &pages)
{
    // Rules have their whole pages: only those that have found something.
    std::map<const Rule *, size_t> indices;
    Json rules = Json::array();
    Json results = Json::array();
    for (const FileReport &report : reports)
        for (const std::vector<Finding> *findings : {&report.findings, &report.allowed})
            for (const Finding &finding : *findings) {
                const auto [index, isNew] = indices.try_emplace(finding.rule, rules.size());
                if (isNew)
                    rules.push_back(ruleOf(*finding.rule, pages));
                results.push_back(resultOf(*report.file, finding, index->second));
            }
    const Json driver = {{"name", "dcm check"}, {"semanticVersion", DCM_VERSION}, {"rules", rules}};
    const Json run = {{"tool", {{"driver", driver}}}, {"columnKind", "unicodeCodePoints"}, {"results", results}};
    return jsonText({{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                     {"version", "2.1.0"},
                     {"runs", Json::array({run})}});
}

} // namespace dcmtool
