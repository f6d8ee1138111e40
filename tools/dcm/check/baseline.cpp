#include "tools/dcm/check/baseline.h"

#include "tools/dcm/check/registry.h"
#include "tools/dcm/records/json_text.h"

#include <algorithm>
#include <filesystem>

namespace dcmtool {

namespace {

// A text as JSON can hold it, where bytes that are not UTF-8 become U+FFFD.
std::string inJson(const std::string &text)
{
    return Json(text).dump(-1, ' ', true, Json::error_handler_t::replace);
}

std::string comparedName(const std::string &file)
{
    return inJson(std::filesystem::path(file).lexically_normal().string());
}

// Takes up to `count` from what is left.
size_t taken(size_t &left, size_t count)
{
    const size_t most = std::min(left, count);
    left -= most;
    return most;
}

} // namespace

bool Baseline::take(const std::string &text)
{
    try {
        const Json json = Json::parse(text);
        if (json.at("format") != "dcm-check" || json.at("version") != 1)
            return false;
        for (const Json &file : json.at("files")) {
            const std::string name = comparedName(file.at("file"));
            for (const Json &finding : file.at("findings")) {
                const std::string check = finding.at("check");
                kept_[{name, check, inJson(finding.value("path", "")), inJson(finding.at("text"))}]++;
                counted_[{name, check}] += std::max<size_t>(finding.value("count", size_t{1}), 1) - 1;
            }
        }
        return true;
    } catch (const Json::exception &) {
        return false;
    }
}

void Baseline::apply(const std::string &file, std::vector<Finding> &findings)
{
    const std::string name = comparedName(file);
    std::vector<Finding> left;
    for (Finding &finding : findings) {
        size_t count = 1 + finding.more;
        if (finding.rule != &kNotXml && finding.rule != &kUnreadable) {
            const std::string check = finding.rule->name;
            count -= taken(kept_[{name, check, inJson(finding.path), inJson(finding.text)}], 1);
            count -= taken(counted_[{name, check}], count);
        }
        if (count == 0)
            continue;
        finding.more = count - 1;
        left.push_back(std::move(finding));
    }
    findings = std::move(left);
}

} // namespace dcmtool
