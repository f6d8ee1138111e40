#include "tools/dcm/uri.h"

#include <cctype>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace dcmtool {

std::string uriOf(const std::string &name)
{
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string uri = !name.empty() && name[0] == '/' ? "file://" : "";
    for (const char character : name) {
        const auto byte = static_cast<unsigned char>(character);
        if (std::isalnum(byte) != 0 || std::strchr("/._-~", character) != nullptr)
            uri += character;
        else
            uri.append("%").append(1, kHex[byte >> 4]).append(1, kHex[byte & 15]);
    }
    return uri;
}

std::string uriOfRulePages()
{
    std::error_code error;
    const std::filesystem::path tool = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::filesystem::path folder = (tool.parent_path() / DCM_DOC_FROM_BIN / "docs/checks/").lexically_normal();
    return !error && std::filesystem::is_directory(folder, error) ? uriOf(folder.string()) : "";
}

} // namespace dcmtool
