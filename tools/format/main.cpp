// dcm-format: writes what is told about the format of descriptions into the sources, or into another folder.
#include "tools/format/reference.h"
#include "tools/format/schema.h"

#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>

namespace {

void write(const std::string &path, const std::string &text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush())
        throw std::runtime_error("cannot write " + path);
}

// The folders of `target` exist.
void writeAll(const std::string &source, const std::string &target)
{
    using namespace dcmformat;
    const Tree tree = makeTree();
    const Prose prose(readFile(source + "/docs/format/elements.txt"));
    const std::string introduction = readFile(source + "/docs/format/introduction.txt");
    std::string text;
    for (const std::string &fault : prose.faults(tree))
        text += "docs/format/elements.txt: " + fault + "\n";
    if (!text.empty())
        throw std::runtime_error(text);
    write(target + "/docs/format.md", markdownReference(tree, prose, introduction));
    write(target + "/man/dcm-description.5", manPage(tree, prose, introduction));
    const Schema schema = makeSchema(tree, prose);
    write(target + "/schema/dcm-description.rnc", toCompact(schema));
    write(target + "/schema/dcm-description.rng", toXml(schema));
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fputs("usage: dcm-format SOURCE-FOLDER TARGET-FOLDER\n", stderr);
        return 64;
    }
    try {
        writeAll(argv[1], argv[2]);
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}
