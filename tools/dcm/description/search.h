// Descriptions in folders.
#ifndef DCM_TOOLS_SEARCH_H
#define DCM_TOOLS_SEARCH_H

#include <functional>
#include <string>
#include <vector>

namespace dcmtool {

struct SearchResult {
    std::string name;
    std::string fault = {}; // why the folder of this name cannot be searched; empty for a description
};

bool isFolder(const std::string &name);

// Whether a file, as far as its beginning says, has the root element of a description or of a port list.
bool isDescription(const std::string &name);

// The descriptions in a folder and those below it, in the order of their names: files *.xml with the root element of
// one. Hidden files and folders, symbolic links, and what is excluded are skipped.
std::vector<SearchResult> descriptionsIn(const std::string &folder,
                                         const std::function<bool(const std::string &name)> &isExcluded);

} // namespace dcmtool

#endif
