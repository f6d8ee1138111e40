// The output formats of pictures.
#ifndef DCM_TOOLS_DRAW_BACK_ENDS_H
#define DCM_TOOLS_DRAW_BACK_ENDS_H

#include "tools/dcm/draw/scene.h"

#include <string>

namespace dcmtool {

// An SVG document with its style sheet, light and dark.
std::string asSvg(const Picture &picture);
// Only the svg element, for a page that has the style sheets and definitions once. Slots have their number and the area
// for cards as "data-slot" and "data-room".
std::string asSvgElement(const Picture &picture);
// A part of a picture that is used several times: without ids, which must be unique in a page, and without titles.
std::string asSvgPart(const Figure &figure, const std::string &id);
// The style sheets, and the definitions that they and pictures refer to by id.
std::string lightStyle();
std::string darkStyle();
std::string svgDefinitions();
// A text with XML's special characters escaped.
std::string escapedXml(const std::string &text);

// Lines of UTF-8, from a picture in character cells.
std::string asText(const Picture &picture);

// Whether this build can convert SVG to PNG and PDF, which needs librsvg.
bool canRasterize();
// Empty on failure; `fault` is then the reason.
std::string asPng(const std::string &svg, std::string &fault);
std::string asPdf(const std::string &svg, std::string &fault);

} // namespace dcmtool

#endif
