// The formats of editors, GitHub Actions and build servers.
#include "tools/dcm/check/output.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/draw/back_ends.h"
#include "tools/dcm/printable.h"

namespace dcmtool {

namespace {

bool isShown(const Finding &finding, const TextStyle &style)
{
    return finding.severity != Severity::info || style.hasInfos;
}

// Each line has a place, also that of a file that cannot be read.
Place placeOf(const FileReport &report, const Finding &finding)
{
    return isPlaced(finding) ? report.file->place(finding.span.begin) : Place();
}

// "line=2,col=7", with the marks and the separator of the format.
std::string placeIn(const FileReport &report, const Finding &finding, const char *line, const char *column,
                    const char *end)
{
    const Place place = placeOf(report, finding);
    return line + std::to_string(place.line) + column + std::to_string(place.column) + end;
}

// The values of properties have two more characters that mean something.
std::string escapedForGithub(const std::string &text, bool isProperty)
{
    std::string escaped;
    for (const char character : text) {
        if (character == '%')
            escaped += "%25";
        else if (character == '\r')
            escaped += "%0D";
        else if (character == '\n')
            escaped += "%0A";
        else if (isProperty && character == ':')
            escaped += "%3A";
        else if (isProperty && character == ',')
            escaped += "%2C";
        else
            escaped += character;
    }
    return printable(escaped);
}

const char *commandFor(Severity severity)
{
    return severity == Severity::info ? "notice" : nameOf(severity);
}

std::string xmlText(const std::string &text)
{
    std::string xml = escapedXml(printable(text));
    // Names of files may hold the two characters beside control characters that no document may.
    for (const auto &[character, escape] : {std::pair("\xEF\xBF\xBE", "\\ufffe"), std::pair("\xEF\xBF\xBF", "\\uffff")})
        for (size_t at = xml.find(character); at != std::string::npos; at = xml.find(character, at))
            xml.replace(at, 3, escape);
    return xml;
}

} // namespace

std::string asGcc(const FileReport &report, const TextStyle &style)
{
    std::string lines;
    for (const Finding &finding : report.findings)
        if (isShown(finding, style))
            lines += printable(report.file->name()) + placeIn(report, finding, ":", ":", ": ") +
                     (finding.severity == Severity::info ? "note" : nameOf(finding.severity)) + ": " +
                     printable(messageOf(finding)) + " [" + finding.rule->name + "]\n";
    return lines;
}

std::string asGithub(const FileReport &report, const TextStyle &style)
{
    std::string lines;
    for (const Finding &finding : report.findings)
        if (isShown(finding, style))
            lines += std::string("::") + commandFor(finding.severity) +
                     " file=" + escapedForGithub(report.file->name(), true) +
                     placeIn(report, finding, ",line=", ",col=", ",title=") + finding.rule->name +
                     "::" + escapedForGithub(messageOf(finding), false) + "\n";
    return lines;
}

std::string asCheckstyle(const std::vector<FileReport> &reports, const TextStyle &style)
{
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<checkstyle version=\"8.0\">\n";
    for (const FileReport &report : reports) {
        xml += "  <file name=\"" + xmlText(report.file->name()) + "\">\n";
        for (const Finding &finding : report.findings)
            if (isShown(finding, style))
                xml += "    <error" + placeIn(report, finding, " line=\"", "\" column=\"", "\" severity=\"") +
                       nameOf(finding.severity) + "\" message=\"" + xmlText(messageOf(finding)) + "\" source=\"dcm." +
                       finding.rule->name + "\"/>\n";
        xml += "  </file>\n";
    }
    return xml + "</checkstyle>\n";
}

} // namespace dcmtool
