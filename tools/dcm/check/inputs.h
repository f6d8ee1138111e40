// What there is to check: files and folders of the command line, and how each is configured.
#ifndef DCM_TOOLS_CHECK_INPUTS_H
#define DCM_TOOLS_CHECK_INPUTS_H

#include "tools/dcm/check/configuration.h"

#include <memory>
#include <string>
#include <vector>

namespace dcmtool {

struct Input {
    std::string name;  // "-" is standard input
    std::string shown; // instead of it
    std::string fault; // why a folder of this name cannot be searched
    const Configuration *configuration = nullptr;

    std::unique_ptr<DescriptionFile> open() const;
};

// Adds a file, or the descriptions in a folder, except what the configuration excludes. `standardInput` is what "-" is
// called. Returns what is wrong with a configuration.
std::string addInputs(const std::string &name, const std::string &standardInput, Configurations &configurations,
                      std::vector<Input> &inputs);

} // namespace dcmtool

#endif
