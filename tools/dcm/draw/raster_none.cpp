// The back ends for PNG and PDF of a build without librsvg.
#include "tools/dcm/draw/back_ends.h"

namespace dcmtool {

bool canRasterize()
{
    return false;
}

std::string asPng(const std::string &, std::string &fault)
{
    fault = "this dcm was built without librsvg, which PNG takes; .svg and .txt do without";
    return "";
}

std::string asPdf(const std::string &, std::string &fault)
{
    fault = "this dcm was built without librsvg, which PDF takes; .svg and .txt do without";
    return "";
}

} // namespace dcmtool
