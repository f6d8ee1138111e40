#include "tools/dcm/draw/findings.h"

#include "tools/dcm/check/engine.h"
#include "tools/dcm/check/rule.h"
#include "tools/dcm/printable.h"

namespace dcmtool {

std::vector<Marked> markedIn(const DescriptionFile &file, const std::vector<Finding> &findings, const Places &places,
                             const std::string &id)
{
    std::vector<Marked> marked;
    const std::string name = file.name().substr(file.name().find_last_of('/') + 1);
    for (const Finding &finding : findings) {
        const std::vector<std::string> paths = places.pathsAt(finding.element);
        if (paths.empty())
            continue;
        const bool isError = finding.severity == Severity::error;
        std::string text = name + ":";
        text += std::to_string(file.place(finding.span.begin).line);
        text += isError ? ": error: " : ": warning: ";
        text += finding.text;
        text += " [";
        text += finding.rule->name;
        text += "]";
        for (const std::string &path : paths) {
            std::string place = id;
            if (!path.empty())
                place.append(".").append(path);
            marked.push_back({place, printable(text), isError ? MarkKind::error : MarkKind::warning});
        }
    }
    return marked;
}

} // namespace dcmtool
