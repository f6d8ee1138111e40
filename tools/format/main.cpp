// dcm-format: writes documents about the format of descriptions from the tables of the decoders and from docs/format/.
#include "tools/format/coverage.h"
#include "tools/format/reference.h"
#include "tools/format/schema.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace {

using namespace dcmformat;

struct Sources {
    Tree tree;
    Prose prose;
    std::string introduction;
    std::string coverage;
};

// A document, identified by the name of its file.
struct Document {
    const char *name;
    std::string (*text)(const Sources &);
};

constexpr Document kDocuments[] = {
    {"coverage.md", [](const Sources &from) { return coveragePage(from.tree, Coverage(from.coverage)); }},
    {"format.md", [](const Sources &from) { return markdownReference(from.tree, from.prose, from.introduction); }},
    {"dcm-description.5", [](const Sources &from) { return manPage(from.tree, from.prose, from.introduction); }},
    {"dcm-description.rnc", [](const Sources &from) { return toCompact(makeSchema(from.tree, from.prose)); }},
    {"dcm-description.rng", [](const Sources &from) { return toXml(makeSchema(from.tree, from.prose)); }},
};

Sources readSources(const std::string &folder)
{
    Sources sources = {makeTree(), Prose(readFile(folder + "/docs/format/elements.txt")),
                       readFile(folder + "/docs/format/introduction.txt"),
                       readFile(folder + "/docs/checks/coverage.txt")};
    std::string faults;
    for (const std::string &fault : sources.prose.faults(sources.tree))
        faults += "docs/format/elements.txt: " + fault + "\n";
    if (!faults.empty())
        throw std::runtime_error(faults);
    return sources;
}

const Document &documentFor(const std::filesystem::path &path)
{
    for (const Document &document : kDocuments)
        if (path.filename() == document.name)
            return document;
    throw std::runtime_error("no document is named " + path.filename().string());
}

// The folder of the file must exist.
void write(const std::filesystem::path &path, const std::string &text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush())
        throw std::runtime_error("cannot write " + path.string());
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3) {
        std::fputs("usage: dcm-format SOURCE-FOLDER FILE...\n", stderr);
        return 64;
    }
    try {
        const Sources sources = readSources(argv[1]);
        for (int i = 2; i < argc; i++)
            write(argv[i], documentFor(argv[i]).text(sources));
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}
