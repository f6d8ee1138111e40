// JSON as the tool prints it.
#ifndef DCM_TOOLS_JSON_TEXT_H
#define DCM_TOOLS_JSON_TEXT_H

#include <nlohmann/json.hpp>

#include <string>

namespace dcmtool {

using Json = nlohmann::ordered_json;

// For programs and people: what fits on a line stands on one. A byte that is no UTF-8, as where a field cuts a text in
// the middle of a character, becomes U+FFFD, and what printable() escapes is written as JSON's escape. Ends with a line
// end.
std::string jsonText(const Json &json);

} // namespace dcmtool

#endif
