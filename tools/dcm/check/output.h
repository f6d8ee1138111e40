// How findings are shown: as a compiler does, and in the formats of the programs that collect them.
#ifndef DCM_TOOLS_CHECK_OUTPUT_H
#define DCM_TOOLS_CHECK_OUTPUT_H

#include "tools/dcm/check/rule.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace dcmtool {

// A file and its findings.
struct FileReport {
    std::unique_ptr<DescriptionFile> file;
    std::vector<Finding> findings;
    std::vector<Finding> allowed; // by comments, which only SARIF has
    size_t fixed = 0;             // findings that are gone
};

struct Totals {
    size_t files = 0;
    size_t unread = 0; // of these, those that could not be read
    size_t fixed = 0;
    size_t errors = 0;
    size_t warnings = 0;
    size_t infos = 0;

    void add(const FileReport &report);
};

// The options of text; other formats have everything.
struct TextStyle {
    bool isColoured = false;
    bool hasInfos = false;    // or without findings of that severity
    bool areAllShown = false; // or equal ones only once
};

// The findings of one file, each with its source line and a caret.
std::string asText(const FileReport &report, const TextStyle &style);
// The summary.
std::string summaryOf(const Totals &totals, const TextStyle &style);

// A line for each finding of a file: as GCC's, and as a workflow command of GitHub Actions.
std::string asGcc(const FileReport &report, const TextStyle &style);
std::string asGithub(const FileReport &report, const TextStyle &style);

std::string asCheckstyle(const std::vector<FileReport> &reports, const TextStyle &style);
std::string asJson(const std::vector<FileReport> &reports);
// The addresses of the pages of rules begin with `pages`; empty where there are none.
std::string asSarif(const std::vector<FileReport> &reports, const std::string &pages);

// The path, the text, what was meant, and how many more there are: as the file has them, on any number of lines.
std::string messageOf(const Finding &finding);
std::string messageOf(const Finding &finding, size_t more);
// Whether the finding has a place in the file, which one about a file that cannot be read has not.
bool isPlaced(const Finding &finding);

// The rules themselves: a line for each, and all about one.
std::string listOfRules();
std::string pageAsText(const Rule &rule);

// "error", "warning" or "info".
const char *nameOf(Severity severity);

} // namespace dcmtool

#endif
