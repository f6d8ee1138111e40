// The pages of rules, docs/checks/NAME.md, which the build embeds.
//
//     # NAME: summary, one line
//
//     Why it matters on the network element.
//
//     ## Incorrect            files, as blocks of XML, in which this rule finds something and no other rule does
//     ## Correct              files in which nothing is found
//     ## When to allow it
#ifndef DCM_TOOLS_CHECK_PAGES_H
#define DCM_TOOLS_CHECK_PAGES_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dcmtool {

struct Rule;

// The text of a page; empty when the rule has none.
std::string_view pageOf(const Rule &rule);

// Parts of a page.
std::string summaryOf(const Rule &rule);
std::string explanationOf(const Rule &rule); // each paragraph in one line
std::vector<std::string> examplesOf(const Rule &rule, const char *heading);

// What the build makes of the files.
struct EmbeddedPage {
    const char *name;
    const char *text;
};
extern const EmbeddedPage kPages[];
extern const size_t kPageCount;

} // namespace dcmtool

#endif
