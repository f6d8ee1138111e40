#include "tools/dcm/check/configuration.h"

#include "tools/dcm/check/output.h"
#include "tools/dcm/check/registry.h"
#include "tools/dcm/description/input_file.h"
#include "tools/dcm/description/texts.h"

#include <fnmatch.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <system_error>

namespace dcmtool {

namespace {

namespace fs = std::filesystem;

constexpr size_t kMostBytes = size_t{64} << 10;
constexpr size_t kMostPatterns = 1000;
constexpr char kLineBlanks[] = " \t\r";

const std::vector<std::string> &keywords()
{
    static const std::vector<std::string> all = {"off", "info", "warning", "error", "exclude", "known"};
    return all;
}

// Without a comment, which begins the line or is behind a blank.
std::string settingIn(const std::string &line)
{
    for (size_t at = line.find('#'); at != std::string::npos; at = line.find('#', at + 1))
        if (at == 0 || line[at - 1] == ' ' || line[at - 1] == '\t')
            return trimmed(line.substr(0, at));
    return trimmed(line);
}

std::string suggested(const std::string &written, const std::vector<std::string> &words, const std::string &otherwise)
{
    const std::string meant = nearest(written, words);
    return meant.empty() ? otherwise : "did you mean " + inQuotes(meant) + "?";
}

std::string setSeverity(const std::string &keyword, const std::string &name, Configuration &configuration)
{
    const Rule *rule = findRule(name);
    if (rule == nullptr)
        return inQuotes(name) + " is not a valid name of a check; " +
               (nearestRule(name).empty() ? "'dcm check --list-checks' lists them all"
                                          : "did you mean " + inQuotes(nearestRule(name)) + "?");
    std::optional<Severity> severity;
    for (const Severity one : {Severity::info, Severity::warning, Severity::error})
        if (keyword == nameOf(one))
            severity = one;
    if (!rule->canBeSilenced() && severity != Severity::error)
        return name + " cannot be " + (severity ? "of severity " + keyword : "left out") +
               ": the query of such a description fails";
    if (!configuration.severities.emplace(rule, severity).second)
        return name + " is given a second time";
    return "";
}

std::string addExcluded(std::string pattern, Configuration &configuration)
{
    if (configuration.excluded.size() == kMostPatterns)
        return "more than " + std::to_string(kMostPatterns) + " patterns";
    for (const fs::path &part : fs::path(pattern))
        if (part == "..")
            return inQuotes(pattern) + " is outside of the folder of this file";
    while (pattern.size() > 1 && pattern.back() == '/')
        pattern.pop_back();
    configuration.excluded.push_back(std::move(pattern));
    return "";
}

std::string take(const std::string &setting, Configuration &configuration)
{
    const size_t blank = setting.find_first_of(kLineBlanks);
    const std::string keyword = setting.substr(0, blank);
    const std::string value = blank == std::string::npos ? "" : trimmed(setting.substr(blank));
    if (std::find(keywords().begin(), keywords().end(), keyword) == keywords().end())
        return inQuotes(keyword) + " is not a setting; " +
               suggested(keyword, keywords(), "expected " + listed(keywords()));
    if (value.empty())
        return inQuotes(keyword) + " has no value";
    if (keyword == "exclude")
        return addExcluded(value, configuration);
    if (value.find_first_of(kLineBlanks) != std::string::npos)
        return inQuotes(value) + " is more than one name";
    if (keyword != "known")
        return setSeverity(keyword, value, configuration);
    configuration.knownNames.insert(value);
    return "";
}

// The name without symbolic links and "..", as far as it exists.
fs::path resolved(const fs::path &name)
{
    std::error_code error;
    const fs::path whole = fs::weakly_canonical(fs::absolute(name, error), error);
    return error ? fs::path() : whole;
}

// A pattern without a slash is about a name, in any folder.
bool matches(const std::string &pattern, const fs::path &path)
{
    if (pattern.find('/') == std::string::npos)
        return fnmatch(pattern.c_str(), path.filename().c_str(), 0) == 0;
    const char *const relative = pattern.front() == '/' ? pattern.c_str() + 1 : pattern.c_str();
    return fnmatch(relative, path.c_str(), FNM_PATHNAME) == 0;
}

} // namespace

std::string readConfiguration(const std::string &text, Configuration &configuration)
{
    std::istringstream lines(text);
    size_t number = 0;
    for (std::string line; std::getline(lines, line);) {
        number++;
        const std::string setting = settingIn(line);
        const std::string fault = setting.empty() ? "" : take(setting, configuration);
        if (!fault.empty())
            return std::to_string(number) + ": " + fault;
    }
    return "";
}

std::string Configurations::findIn(const std::string &folder, const Configuration *&configuration)
{
    const auto known = known_.find(folder);
    if (known != known_.end()) {
        configuration = known->second;
        return "";
    }
    const fs::path file = fs::path(folder) / kConfigurationName;
    std::string fault;
    if (access(file.c_str(), F_OK) == 0) {
        auto read = std::make_unique<Configuration>();
        std::string text;
        fault = readBeginning(file.string(), kMostBytes + 1, text);
        if (!fault.empty())
            return file.string() + ": " + fault;
        if (text.size() > kMostBytes)
            return file.string() + ": larger than " + std::to_string(kMostBytes) + " bytes";
        fault = readConfiguration(text, *read);
        if (!fault.empty())
            return file.string() + ":" + fault;
        read->folder = folder;
        configuration = read.get();
        read_[folder] = std::move(read);
    } else if (const fs::path above = fs::path(folder).parent_path(); above.string() != folder) {
        fault = findIn(above.string(), configuration);
    } else {
        configuration = &none_;
    }
    if (fault.empty())
        known_[folder] = configuration;
    return fault;
}

std::string Configurations::find(const std::string &name, const Configuration *&configuration)
{
    configuration = &none_;
    if (!isUsed_)
        return "";
    const std::string written = fs::path(name).parent_path().string();
    const auto known = knownByWrittenName_.find(written);
    if (known != knownByWrittenName_.end()) {
        configuration = known->second;
        return "";
    }
    const fs::path folder = resolved(written.empty() ? fs::path(".") : fs::path(written));
    std::string fault = folder.empty() ? "" : findIn(folder.string(), configuration);
    if (fault.empty())
        knownByWrittenName_[written] = configuration;
    return fault;
}

bool Configurations::excludes(const Configuration &configuration, const std::string &name)
{
    if (configuration.excluded.empty())
        return false;
    const fs::path written(name);
    const fs::path relative =
        (resolved(written.has_parent_path() ? written.parent_path() : fs::path(".")) / written.filename())
            .lexically_relative(configuration.folder);
    fs::path path;
    for (const fs::path &part : relative) {
        path /= part;
        for (const std::string &pattern : configuration.excluded)
            if (matches(pattern, path))
                return true;
    }
    return false;
}

} // namespace dcmtool
