#include "platform/services/DrawnText.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include <pango/pangocairo.h>

namespace {

constexpr std::size_t kChannels = 4;

std::uint8_t byteOf(float intensity) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(intensity, 0.0F, 1.0F) * 255.0F));
}

void drawLayout(cairo_t* canvas, const TextRequest& request) {
  PangoLayout* const layout = pango_cairo_create_layout(canvas);
  // Grey edges whatever screen the user's font settings are made for.
  cairo_font_options_t* const options = cairo_font_options_create();
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  pango_cairo_context_set_font_options(pango_layout_get_context(layout), options);
  cairo_font_options_destroy(options);

  PangoFontDescription* const font = pango_font_description_new();
  pango_font_description_set_family(font, request.fontName.c_str());
  // Absolute: Pango's own points are those of a 96 dpi screen, 4/3 pixel each.
  pango_font_description_set_absolute_size(font,
                                           static_cast<double>(request.fontSize) * PANGO_SCALE);
  pango_layout_set_font_description(layout, font);
  pango_font_description_free(font);

  pango_layout_set_width(layout, static_cast<int>(request.width) * PANGO_SCALE);
  pango_layout_set_wrap(layout, PANGO_WRAP_WORD);
  g_autofree char* text = g_utf8_make_valid(request.text.c_str(), -1);
  pango_layout_set_text(layout, text, -1);
  pango_cairo_show_layout(canvas, layout);
  g_object_unref(layout);
}

}  // namespace

Bitmap drawnText(const TextRequest& request) {
  Bitmap bitmap{.hasAlpha = true,
                .bitsPerPixel = 8 * kChannels,
                .bytesPerRow = static_cast<int>(request.width * kChannels),
                .width = static_cast<float>(request.width),
                .height = static_cast<float>(request.height),
                .data = std::vector<std::uint8_t>(kChannels * request.width * request.height)};

  // The text is all of one colour, so the canvas holds only how much of it each pixel gets: the
  // texels then carry the colour exactly, which dividing by a small alpha would not give back.
  cairo_surface_t* const coverage = cairo_image_surface_create(
      CAIRO_FORMAT_A8, static_cast<int>(request.width), static_cast<int>(request.height));
  cairo_t* const canvas = cairo_create(coverage);
  drawLayout(canvas, request);
  cairo_destroy(canvas);
  cairo_surface_flush(coverage);

  const std::uint8_t* const samples = cairo_image_surface_get_data(coverage);
  const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(coverage));
  auto texel = bitmap.data.begin();
  for (std::size_t y = 0; samples != nullptr && y < request.height; ++y) {
    for (std::size_t x = 0; x < request.width; ++x, texel += kChannels) {
      if (const std::uint8_t alpha = samples[y * stride + x]; alpha != 0) {
        texel[0] = byteOf(request.red);
        texel[1] = byteOf(request.green);
        texel[2] = byteOf(request.blue);
        texel[3] = alpha;
      }
    }
  }
  cairo_surface_destroy(coverage);
  return bitmap;
}
