// Every rule.
#ifndef DCM_TOOLS_CHECK_REGISTRY_H
#define DCM_TOOLS_CHECK_REGISTRY_H

#include "tools/dcm/check/rule.h"

#include <string>
#include <vector>

namespace dcmtool {

#define RULE(rule) extern const Rule rule;
#include "tools/dcm/check/registry.def"
#undef RULE

// In alphabetical order.
const std::vector<const Rule *> &allRules();
// By name; nullptr if there is none.
const Rule *findRule(const std::string &name);
// The rule with the nearest name; empty if none is near.
std::string nearestRule(const std::string &name);

} // namespace dcmtool

#endif
