#include "tools/dcm/check/inputs.h"

#include "tools/dcm/description/search.h"

namespace dcmtool {

std::unique_ptr<DescriptionFile> Input::open() const
{
    return fault.empty() ? DescriptionFile::open(name, {}, shown) : DescriptionFile::unreadable(name, fault);
}

std::string addInputs(const std::string &name, const std::string &standardInput, Configurations &configurations,
                      std::vector<Input> &inputs)
{
    const bool isStandardInput = name == "-";
    const std::string &shown = isStandardInput && !standardInput.empty() ? standardInput : name;
    const Configuration *configuration = nullptr;
    std::string fault = configurations.find(shown, configuration);
    if (!fault.empty() || Configurations::excludes(*configuration, shown))
        return fault;
    if (isStandardInput || !isFolder(name)) {
        inputs.push_back({name, isStandardInput ? standardInput : "", "", configuration});
        return "";
    }
    const auto isExcluded = [&](const std::string &entry) {
        if (fault.empty())
            fault = configurations.find(entry, configuration);
        return !fault.empty() || Configurations::excludes(*configuration, entry);
    };
    for (SearchResult &result : descriptionsIn(name, isExcluded)) {
        if (fault.empty())
            fault = configurations.find(result.name, configuration);
        inputs.push_back({std::move(result.name), "", std::move(result.fault), configuration});
    }
    return fault;
}

} // namespace dcmtool
