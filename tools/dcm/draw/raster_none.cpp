// The PNG and PDF formats in a build without librsvg.
#include "tools/dcm/draw/back_ends.h"

namespace dcmtool {

bool canRasterize()
{
    return false;
}

std::string asPng(const std::string &, std::string &fault)
{
    fault = "this dcm was built without librsvg, which PNG needs; .svg and .txt do not need it";
    return "";
}

std::string asPdf(const std::string &, std::string &fault)
{
    fault = "this dcm was built without librsvg, which PDF needs; .svg and .txt do not need it";
    return "";
}

} // namespace dcmtool
