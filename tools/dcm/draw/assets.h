// The files of this folder, tools/dcm/page and tools/dcm/diff that the build embeds; cmake/embed.cmake generates them.
#ifndef DCM_TOOLS_DRAW_ASSETS_H
#define DCM_TOOLS_DRAW_ASSETS_H

namespace dcmtool {

extern const char *const kPictureStyle;
extern const char *const kPictureDarkStyle;
extern const char *const kPictureDefinitions;
extern const char *const kPageStyle;
extern const char *const kPageDarkStyle;
extern const char *const kPageScript;
extern const char *const kDiffStyle;

} // namespace dcmtool

#endif
