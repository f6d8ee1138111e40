#include "tools/dcm/json_text.h"

#include "tools/dcm/printable.h"

namespace dcmtool {

namespace {

constexpr size_t kLineWidth = 120;
constexpr size_t kStep = 2;

std::string onOneLine(const Json &json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void append(std::string &text, const Json &json, size_t indent)
{
    const std::string line = onOneLine(json);
    const size_t used = text.size() - (text.rfind('\n') + 1);
    if (!json.is_structured() || used + line.size() <= kLineWidth) {
        text += line;
        return;
    }
    const bool isObject = json.is_object();
    const char *separator = isObject ? "{" : "[";
    for (const auto &item : json.items()) {
        text.append(separator).append("\n").append(indent + kStep, ' ');
        if (isObject)
            text.append(onOneLine(item.key())).append(": ");
        append(text, item.value(), indent + kStep);
        separator = ",";
    }
    text.append("\n").append(indent, ' ').append(isObject ? "}" : "]");
}

} // namespace

std::string jsonText(const Json &json)
{
    std::string text;
    append(text, json, 0);
    return printableJson(text) + "\n";
}

} // namespace dcmtool
