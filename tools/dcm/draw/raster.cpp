#include "tools/dcm/draw/back_ends.h"

#include <cairo-pdf.h>
#include <dlfcn.h>
#include <librsvg/rsvg.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace dcmtool {

namespace {

constexpr double kScale = 2;          // pixels of a PNG for one of SVG
constexpr double kMostPixels = 3e7;   // of a PNG; larger pictures have a smaller scale
constexpr double kMostOfSide = 32000; // the limit of cairo

// librsvg and its dependencies, loaded when a picture needs them: without them, other commands start several times
// faster.
class Library {
public:
    static const Library &get()
    {
        static const Library library;
        return library;
    }
    const char *fault() const
    {
        return handle_ != nullptr ? nullptr : "PNG and PDF need librsvg-2.so.2, which is not found";
    }

// NOLINTNEXTLINE(bugprone-macro-parentheses): a name is declared
#define DCM_FUNCTION(name) decltype(&::name) name = load<decltype(&::name)>(#name)
private:
    void *handle_ = dlopen("librsvg-2.so.2", RTLD_NOW | RTLD_LOCAL);
    // A library's handle also provides the functions of its dependencies.
    template <class Function> Function load(const char *name) const
    {
        return handle_ != nullptr ? reinterpret_cast<Function>(dlsym(handle_, name)) : nullptr;
    }

public:
    DCM_FUNCTION(cairo_create);
    DCM_FUNCTION(cairo_destroy);
    DCM_FUNCTION(cairo_image_surface_create);
    DCM_FUNCTION(cairo_pdf_surface_create_for_stream);
    DCM_FUNCTION(cairo_pdf_surface_set_metadata);
    DCM_FUNCTION(cairo_scale);
    DCM_FUNCTION(cairo_status);
    DCM_FUNCTION(cairo_status_to_string);
    DCM_FUNCTION(cairo_surface_destroy);
    DCM_FUNCTION(cairo_surface_finish);
    DCM_FUNCTION(cairo_surface_status);
    DCM_FUNCTION(cairo_surface_write_to_png_stream);
    DCM_FUNCTION(g_error_free);
    DCM_FUNCTION(g_object_unref);
    DCM_FUNCTION(rsvg_handle_get_intrinsic_size_in_pixels);
    DCM_FUNCTION(rsvg_handle_new_from_data);
    DCM_FUNCTION(rsvg_handle_render_document);
#undef DCM_FUNCTION
};

struct Release {
    void operator()(RsvgHandle *handle) const { Library::get().g_object_unref(handle); }
    void operator()(cairo_surface_t *surface) const { Library::get().cairo_surface_destroy(surface); }
    void operator()(cairo_t *cairo) const { Library::get().cairo_destroy(cairo); }
};
using Handle = std::unique_ptr<RsvgHandle, Release>;
using Surface = std::unique_ptr<cairo_surface_t, Release>;

std::string textOf(GError *error)
{
    std::string text = error != nullptr && error->message != nullptr ? error->message : "cannot draw";
    if (error != nullptr)
        Library::get().g_error_free(error);
    return text;
}

cairo_status_t append(void *text, const unsigned char *bytes, unsigned int size)
{
    static_cast<std::string *>(text)->append(reinterpret_cast<const char *>(bytes), size);
    return CAIRO_STATUS_SUCCESS;
}

Handle open(const std::string &svg, double &width, double &height, std::string &fault)
{
    const Library &library = Library::get();
    if (library.fault() != nullptr) {
        fault = library.fault();
        return nullptr;
    }
    GError *error = nullptr;
    Handle handle(library.rsvg_handle_new_from_data(reinterpret_cast<const guint8 *>(svg.data()), svg.size(), &error));
    if (handle == nullptr)
        fault = textOf(error);
    else if (library.rsvg_handle_get_intrinsic_size_in_pixels(handle.get(), &width, &height) == 0)
        fault = "the picture has no size";
    return handle;
}

// Draws on a surface; false on failure.
bool draw(RsvgHandle *handle, cairo_surface_t *surface, double width, double height, double scale, std::string &fault)
{
    const Library &library = Library::get();
    const std::unique_ptr<cairo_t, Release> cairo(library.cairo_create(surface));
    library.cairo_scale(cairo.get(), scale, scale);
    const RsvgRectangle box = {0, 0, width, height};
    GError *error = nullptr;
    if (library.rsvg_handle_render_document(handle, cairo.get(), &box, &error) == 0)
        fault = textOf(error);
    else if (library.cairo_status(cairo.get()) != CAIRO_STATUS_SUCCESS)
        fault = library.cairo_status_to_string(library.cairo_status(cairo.get()));
    return fault.empty();
}

} // namespace

bool canRasterize()
{
    return Library::get().fault() == nullptr;
}

std::string asPng(const std::string &svg, std::string &fault)
{
    double width = 0;
    double height = 0;
    const Handle handle = open(svg, width, height, fault);
    if (!fault.empty())
        return "";
    const Library &library = Library::get();
    const double scale =
        std::min({kScale, std::sqrt(kMostPixels / (width * height)), kMostOfSide / width, kMostOfSide / height});
    const Surface surface(library.cairo_image_surface_create(
        CAIRO_FORMAT_ARGB32, static_cast<int>(std::ceil(width * scale)), static_cast<int>(std::ceil(height * scale))));
    std::string png;
    if (!draw(handle.get(), surface.get(), width, height, scale, fault))
        return "";
    const cairo_status_t status = library.cairo_surface_write_to_png_stream(surface.get(), append, &png);
    if (status != CAIRO_STATUS_SUCCESS)
        fault = library.cairo_status_to_string(status);
    return fault.empty() ? png : "";
}

std::string asPdf(const std::string &svg, std::string &fault)
{
    constexpr double kPointsOfPixel = 0.75;
    double width = 0;
    double height = 0;
    const Handle handle = open(svg, width, height, fault);
    if (!fault.empty())
        return "";
    const Library &library = Library::get();
    std::string pdf;
    const Surface surface(
        library.cairo_pdf_surface_create_for_stream(append, &pdf, width * kPointsOfPixel, height * kPointsOfPixel));
    // The same picture always gives the same file, because no date is written.
    library.cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, "2000-01-01T00:00:00Z");
    if (!draw(handle.get(), surface.get(), width, height, kPointsOfPixel, fault))
        return "";
    library.cairo_surface_finish(surface.get());
    const cairo_status_t status = library.cairo_surface_status(surface.get());
    if (status != CAIRO_STATUS_SUCCESS)
        fault = library.cairo_status_to_string(status);
    return fault.empty() ? pdf : "";
}

} // namespace dcmtool
