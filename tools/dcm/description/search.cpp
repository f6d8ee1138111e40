#include "tools/dcm/description/search.h"

#include "common/paths.h"
#include "tools/dcm/description/format_lookup.h"
#include "tools/dcm/description/input_file.h"

#include <libxml/parser.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <system_error>

namespace dcmtool {

namespace {

namespace fs = std::filesystem;

constexpr size_t kMostBeforeRoot = size_t{64} << 10;
constexpr size_t kMostDepth = 64;
constexpr size_t kMostEntries = 1000000;

constexpr char kSuffix[] = ".xml";

void takeRoot(void *root, const xmlChar *name, const xmlChar *, const xmlChar *, int, const xmlChar **, int, int,
              const xmlChar **)
{
    auto &taken = *static_cast<std::string *>(root);
    if (taken.empty())
        taken = reinterpret_cast<const char *>(name);
}

// Even without a tree, a parser keeps declarations of entities in a document, which is freed separately.
struct FreeParser {
    void operator()(xmlParserCtxt *parser) const
    {
        xmlFreeDoc(parser->myDoc);
        xmlFreeParserCtxt(parser);
    }
};

// Without a tree, and without entities, whose text is of no interest.
std::string rootIn(const std::string &beginning)
{
    constexpr int kSignature = 4; // bytes that tell the encoding
    if (beginning.size() < kSignature)
        return "";
    std::string root;
    xmlSAXHandler events = {};
    events.initialized = XML_SAX2_MAGIC;
    events.startElementNs = takeRoot;
    const std::unique_ptr<xmlParserCtxt, FreeParser> parser(
        xmlCreatePushParserCtxt(&events, &root, beginning.data(), kSignature, nullptr));
    // Faults, such as entities that are not declared here, are found when the file is checked.
    xmlCtxtUseOptions(parser.get(), XML_PARSE_RECOVER);
    constexpr size_t kBlock = 512;
    for (size_t at = kSignature; at < beginning.size() && root.empty(); at += kBlock)
        xmlParseChunk(parser.get(), beginning.data() + at, static_cast<int>(std::min(kBlock, beginning.size() - at)),
                      0);
    return root;
}

class Search {
public:
    explicit Search(const std::function<bool(const std::string &name)> &isExcluded) : isExcluded_(isExcluded) {}

    // `prefix` is in front of the names of what is in the folder.
    void visit(const std::string &folder, const std::string &prefix, size_t depth)
    {
        if (entryCount_ > kMostEntries)
            return;
        std::vector<fs::directory_entry> entries;
        std::string fault = depth > kMostDepth ? "more than " + std::to_string(kMostDepth) + " folders deep"
                                               : readEntries(folder, entries);
        if (!fault.empty())
            results_.push_back({folder, std::move(fault)});
        for (const fs::directory_entry &entry : entries)
            visit(entry, prefix + entry.path().filename().string(), depth);
    }

    bool hasExcluded() const { return hasExcluded_; }
    std::vector<SearchResult> take() { return std::move(results_); }

private:
    // In the order of their names.
    std::string readEntries(const std::string &folder, std::vector<fs::directory_entry> &entries)
    {
        std::error_code error;
        fs::directory_iterator next(folder, error);
        while (!error && next != fs::directory_iterator()) {
            if (++entryCount_ > kMostEntries) {
                entries.clear();
                return "more than " + std::to_string(kMostEntries) + " files and folders";
            }
            entries.push_back(*next);
            next.increment(error);
        }
        std::sort(entries.begin(), entries.end());
        return error ? error.message() : "";
    }

    void visit(const fs::directory_entry &entry, const std::string &name, size_t depth)
    {
        const std::string own = entry.path().filename().string();
        std::error_code error;
        const fs::file_type type = entry.symlink_status(error).type();
        const bool isFile = type == fs::file_type::regular && entry.path().extension() == kSuffix;
        if (own.front() == '.' || (!isFile && type != fs::file_type::directory))
            return;
        if (isExcluded_(name))
            hasExcluded_ = true;
        else if (!isFile)
            visit(name, name + "/", depth + 1);
        else if (isDescription(name))
            results_.push_back({name});
    }

    const std::function<bool(const std::string &name)> &isExcluded_;
    std::vector<SearchResult> results_;
    size_t entryCount_ = 0;
    bool hasExcluded_ = false;
};

} // namespace

bool isFolder(const std::string &name)
{
    std::error_code error;
    return fs::is_directory(name, error);
}

bool isDescription(const std::string &name)
{
    std::string beginning;
    // Whether it can be read is found when it is checked.
    if (!readBeginning(name, kMostBeforeRoot, beginning).empty())
        return true;
    const std::string root = rootIn(beginning);
    return root == dcm::kDeviceName || root == rowOf(RecordKind::vm).name;
}

std::vector<SearchResult> descriptionsIn(const std::string &folder,
                                         const std::function<bool(const std::string &name)> &isExcluded)
{
    Search search(isExcluded);
    const bool endsWithSlash = folder.back() == '/';
    search.visit(folder, folder == "." ? "" : endsWithSlash ? folder : folder + "/", 0);
    std::vector<SearchResult> results = search.take();
    if (results.empty() && !search.hasExcluded())
        results.push_back({folder, "no description is in this folder"});
    return results;
}

} // namespace dcmtool
