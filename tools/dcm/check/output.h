// How findings are shown: as a compiler does, as JSON, or as SARIF.
#ifndef DCM_TOOLS_CHECK_OUTPUT_H
#define DCM_TOOLS_CHECK_OUTPUT_H

#include "tools/dcm/check/rule.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace dcmtool {

// A file and what was found in it.
struct FileReport {
    std::unique_ptr<DescriptionFile> file;
    std::vector<Finding> findings;
    size_t fixed = 0; // findings that are gone
};

struct Totals {
    size_t files = 0;
    size_t unread = 0; // of these
    size_t fixed = 0;
    size_t errors = 0;
    size_t warnings = 0;
    size_t infos = 0;

    void add(const FileReport &report);
};

// How text is printed; other formats have everything.
struct TextStyle {
    bool isColoured = false;
    bool hasInfos = false;    // or without findings of that severity
    bool areAllShown = false; // or equal ones only once
};

// The findings of one file, each with its source line and a caret.
std::string asText(const FileReport &report, const TextStyle &style);
// The line at the end.
std::string summaryOf(const Totals &totals, const TextStyle &style);

std::string asJson(const std::vector<FileReport> &reports);
std::string asSarif(const std::vector<FileReport> &reports);

// The rules themselves: a line for each, and all about one.
std::string listOfRules();
std::string pageAsText(const Rule &rule);

// "error", "warning" or "info".
const char *nameOf(Severity severity);

} // namespace dcmtool

#endif
