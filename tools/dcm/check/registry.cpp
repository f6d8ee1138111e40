#include "tools/dcm/check/registry.h"

namespace dcmtool {

const std::vector<const Rule *> &allRules()
{
    static const std::vector<const Rule *> all = {
#define RULE(rule) &(rule),
#include "tools/dcm/check/registry.def"
#undef RULE
    };
    return all;
}

const Rule *findRule(const std::string &name)
{
    for (const Rule *rule : allRules())
        if (name == rule->name)
            return rule;
    return nullptr;
}

std::string nearestRule(const std::string &name)
{
    std::vector<std::string> names;
    for (const Rule *rule : allRules())
        names.emplace_back(rule->name);
    return nearest(name, names);
}

} // namespace dcmtool
