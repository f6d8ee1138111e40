// What a project wants of its checks: the file ".dcm-check" in the folder of a description or in the nearest one above.
//
//     # one setting a line
//     off NAME            leaves a check out
//     info NAME           gives its findings another severity; also "warning" and "error"
//     exclude PATTERN     skips files and folders, as in "generated/*.xml", below the folder of this file
//     known NAME          an element or attribute that another program puts into descriptions
#ifndef DCM_TOOLS_CHECK_CONFIGURATION_H
#define DCM_TOOLS_CHECK_CONFIGURATION_H

#include "tools/dcm/check/findings.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace dcmtool {

constexpr char kConfigurationName[] = ".dcm-check";

struct Configuration {
    std::map<const Rule *, std::optional<Severity>> severities; // none of a check that is off
    std::set<std::string> knownNames;
    std::vector<std::string> excluded;
    std::string folder; // absolute; what is excluded is below it
};

// Takes the text of such a file. Returns what is wrong, with the number of the line: "3: ...".
std::string readConfiguration(const std::string &text, Configuration &configuration);

// Finds the configuration of each file.
class Configurations {
public:
    // `isUsed`: otherwise nothing is configured.
    explicit Configurations(bool isUsed) : isUsed_(isUsed) {}

    // That of a file or folder, which need not exist. Returns what is wrong with it, after its name and line.
    std::string find(const std::string &name, const Configuration *&configuration);
    // Whether it excludes the file or folder, or a folder around it.
    static bool excludes(const Configuration &configuration, const std::string &name);

private:
    std::string findIn(const std::string &folder, const Configuration *&configuration);

    bool isUsed_;
    Configuration none_;
    std::map<std::string, std::unique_ptr<Configuration>> read_;      // by the folder that holds it
    std::map<std::string, const Configuration *> known_;              // by folder
    std::map<std::string, const Configuration *> knownByWrittenName_; // of the folder
};

} // namespace dcmtool

#endif
