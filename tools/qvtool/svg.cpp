#include <cmath>
#include <memory>

#include <cairo.h>
#include <librsvg/rsvg.h>

#include "graphics/dib.h"
#include "tools/failure.h"
#include "tools/qvtool/image.h"

namespace qv::tool {

namespace {

struct Unref {
  void operator()(gpointer object) const { g_object_unref(object); }
  void operator()(GError* error) const { g_error_free(error); }
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};
template <class Type>
using Held = std::unique_ptr<Type, Unref>;

std::string messageOf(GError* error) {
  const Held<GError> held(error);
  return error ? error->message : "no reason given";
}

/// Drawings without a size in pixels have a view box, which is as good.
void ownSize(RsvgHandle* drawing, double& width, double& height) {
  if (rsvg_handle_get_intrinsic_size_in_pixels(drawing, &width, &height)) return;
  gboolean hasWidth, hasHeight, hasBox;
  RsvgLength ignoredWidth, ignoredHeight;
  RsvgRectangle box;
  rsvg_handle_get_intrinsic_dimensions(drawing, &hasWidth, &ignoredWidth, &hasHeight,
                                       &ignoredHeight, &hasBox, &box);
  width = hasBox ? box.width : 0, height = hasBox ? box.height : 0;
}

/// Colours as an artist names them, not multiplied by their opacity.
void unmultiply(Held<cairo_surface_t>& surface, Image& image) {
  cairo_surface_flush(surface.get());
  const uint8_t* const data = cairo_image_surface_get_data(surface.get());
  const int stride = cairo_image_surface_get_stride(surface.get());
  image.rgba.resize(static_cast<size_t>(image.width) * static_cast<size_t>(image.height) * 4);
  uint8_t* target = image.rgba.data();
  for (int y = 0; y < image.height; ++y) {
    const auto* row = reinterpret_cast<const uint32_t*>(data + static_cast<ptrdiff_t>(y) * stride);
    for (int x = 0; x < image.width; ++x, target += 4) {
      const uint32_t opacity = row[x] >> 24;
      for (int channel = 0; channel < 3; ++channel) {
        const uint32_t value = row[x] >> (16 - 8 * channel) & 0xFF;
        target[channel] = opacity ? static_cast<uint8_t>((value * 255 + opacity / 2) / opacity) : 0;
      }
      target[3] = static_cast<uint8_t>(opacity);
    }
  }
}

}  // namespace

Image renderSvg(const std::filesystem::path& path, int width, int height) {
  GError* error = nullptr;
  const Held<GFile> file(g_file_new_for_path(path.c_str()));
  const Held<RsvgHandle> drawing(
      rsvg_handle_new_from_gfile_sync(file.get(), RSVG_HANDLE_FLAGS_NONE, nullptr, &error));
  if (!drawing)
    throw Failure(path.string() + " cannot be read as a drawing: " + messageOf(error) + ".");

  double ownWidth, ownHeight;
  ownSize(drawing.get(), ownWidth, ownHeight);
  if ((!width || !height) && (ownWidth < 1 || ownHeight < 1))
    throw Failure(path.string() + " has no size of its own; give one with --size.");
  Image image;
  image.width = width    ? width
                : height ? static_cast<int>(std::lround(ownWidth * height / ownHeight))
                         : static_cast<int>(std::lround(ownWidth));
  image.height = height  ? height
                 : width ? static_cast<int>(std::lround(ownHeight * width / ownWidth))
                         : static_cast<int>(std::lround(ownHeight));
  if (image.width < 1 || image.height < 1 || image.width > LongestSide ||
      image.height > LongestSide || int64_t{image.width} * image.height > MostPixels)
    throw Failure(path.string() + " would be " + std::to_string(image.width) + " by " +
                  std::to_string(image.height) + " pixels, which no picture may be.");

  Held<cairo_surface_t> surface(
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, image.width, image.height));
  const Held<cairo_t> context(cairo_create(surface.get()));
  const RsvgRectangle all = {0, 0, static_cast<double>(image.width),
                             static_cast<double>(image.height)};
  if (!rsvg_handle_render_document(drawing.get(), context.get(), &all, &error))
    throw Failure(path.string() + " cannot be drawn: " + messageOf(error) + ".");
  unmultiply(surface, image);
  return image;
}

}  // namespace qv::tool
