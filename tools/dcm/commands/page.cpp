#include "tools/dcm/page/page.h"
#include "tools/dcm/check/engine.h"
#include "tools/dcm/commands/command.h"
#include "tools/dcm/description/described.h"
#include "tools/dcm/output_file.h"
#include "tools/dcm/own_output.h"
#include "tools/dcm/page/html.h"
#include "tools/dcm/printable.h"

#include <algorithm>
#include <cstdio>
#include <memory>

using namespace dcmtool;

namespace {

struct Options {
    std::string file;
    std::string output;
};

Exit runPage(const Options &options)
{
    if (options.file.empty())
        throw UsageError("FILE is required");
    const OwnOutput output;
    const auto file = openDescription(options.file);
    if (file == nullptr)
        return kUnreadable;
    if (!file->isDevice()) {
        std::fprintf(stderr, "dcm: %s: a list of ports has no page\n", printable(file->name()).c_str());
        return kQueryFailed;
    }
    const HtmlPage page = pageOf(*file, checkFile(*file), std::min(mostOutputOf(*file), kMostOfPage));
    if (page.omitted != 0)
        std::fprintf(stderr, "dcm: %s: the page is full: the last %zu frames, slots and cards are left out\n",
                     printable(file->name()).c_str(), page.omitted);
    const bool isWritten = options.output.empty() ? output.print(page.html) : writeFile(options.output, page.html);
    return isWritten && page.failed == 0 && page.omitted == 0 ? kSuccess : kQueryFailed;
}

} // namespace

Command pageCommand()
{
    const auto options = std::make_shared<Options>();
    return {"page",
            "Write a description as one HTML page: pictures, tables, cards to be fitted into slots",
            {{"FILE", "Device description to read, - for standard input", &options->file},
             {"-o,--output", "File to write [standard output]", &options->output, "FILE"}},
            [options] { return runPage(*options); }};
}
