#include "tools/dcm/json_text.h"

namespace dcmtool {

namespace {

constexpr size_t kLineWidth = 120;
constexpr size_t kStep = 2;

std::string scalar(const Json &json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// Appends a value without line ends while the text stays within `end`; false when it does not.
bool appendOnOneLine(std::string &text, const Json &json, size_t end)
{
    if (!json.is_structured()) {
        // A long text is not even looked through.
        if (!json.is_string() || text.size() + json.get_ref<const std::string &>().size() <= end)
            text += scalar(json);
        else
            return false;
        return text.size() <= end;
    }
    const bool isObject = json.is_object();
    const char *separator = isObject ? "{" : "[";
    for (const auto &item : json.items()) {
        text += separator;
        separator = ",";
        if (isObject)
            text.append(scalar(item.key())).append(":");
        if (!appendOnOneLine(text, item.value(), end))
            return false;
    }
    text += json.empty() ? (isObject ? "{}" : "[]") : isObject ? "}" : "]";
    return text.size() <= end;
}

// `lineStart` is where the last line of the text begins.
void append(std::string &text, size_t lineStart, const Json &json, size_t indent)
{
    const size_t start = text.size();
    if (appendOnOneLine(text, json, lineStart + kLineWidth))
        return;
    text.resize(start);
    if (!json.is_structured()) {
        text += scalar(json);
        return;
    }
    const bool isObject = json.is_object();
    const char *separator = isObject ? "{" : "[";
    for (const auto &item : json.items()) {
        text.append(separator).append("\n");
        lineStart = text.size();
        text.append(indent + kStep, ' ');
        if (isObject)
            text.append(scalar(item.key())).append(": ");
        append(text, lineStart, item.value(), indent + kStep);
        separator = ",";
    }
    text.append("\n").append(indent, ' ').append(isObject ? "}" : "]");
}

} // namespace

std::string jsonText(const Json &json)
{
    std::string text;
    append(text, 0, json, 0);
    return text + "\n";
}

} // namespace dcmtool
