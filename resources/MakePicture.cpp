// Draws the picture of the first texture: make_picture FILE.jpg
//
// Every corner has its own colour and its name, an arrow points up and a grid divides the sides
// into eighths, so that a flipped, turned, cropped or sheared picture is seen at a glance.

#include <cstdio>

#include <gdk/gdk.h>

namespace {

constexpr int kSide = 256;
constexpr int kCell = kSide / 8;
constexpr double kCornerSide = 2.5 * kCell;

struct Corner {
  const char* name;
  double x, y;
  double red, green, blue;
};

constexpr double kFar = kSide - kCornerSide;
constexpr Corner kCorners[] = {{"TL", 0, 0, 0.80, 0.15, 0.15},
                               {"TR", kFar, 0, 0.10, 0.55, 0.20},
                               {"BL", 0, kFar, 0.15, 0.30, 0.80},
                               {"BR", kFar, kFar, 0.85, 0.65, 0.05}};

void drawCentred(cairo_t* canvas, const char* text, double size, double x, double y) {
  cairo_select_font_face(canvas, "Nimbus Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
  cairo_set_font_size(canvas, size);
  cairo_text_extents_t extents;
  cairo_text_extents(canvas, text, &extents);
  cairo_move_to(canvas, x - extents.x_bearing - extents.width / 2,
                y - extents.y_bearing - extents.height / 2);
  cairo_show_text(canvas, text);
}

void drawCorners(cairo_t* canvas) {
  for (const Corner& corner : kCorners) {
    cairo_rectangle(canvas, corner.x, corner.y, kCornerSide, kCornerSide);
    cairo_set_source_rgb(canvas, corner.red, corner.green, corner.blue);
    cairo_fill(canvas);
  }
}

void drawGrid(cairo_t* canvas) {
  cairo_set_source_rgba(canvas, 0, 0, 0, 0.35);
  cairo_set_line_width(canvas, 1);
  for (int line = kCell; line < kSide; line += kCell) {
    cairo_move_to(canvas, line + 0.5, 0);
    cairo_line_to(canvas, line + 0.5, kSide);
    cairo_move_to(canvas, 0, line + 0.5);
    cairo_line_to(canvas, kSide, line + 0.5);
  }
  cairo_stroke(canvas);
}

void drawArrow(cairo_t* canvas) {
  const double middle = kSide / 2.0;
  cairo_set_source_rgb(canvas, 0.1, 0.1, 0.1);
  cairo_move_to(canvas, middle, 0.75 * kCell);
  cairo_line_to(canvas, middle + 1.2 * kCell, 2.75 * kCell);
  cairo_line_to(canvas, middle + 0.5 * kCell, 2.75 * kCell);
  cairo_line_to(canvas, middle + 0.5 * kCell, 7.25 * kCell);
  cairo_line_to(canvas, middle - 0.5 * kCell, 7.25 * kCell);
  cairo_line_to(canvas, middle - 0.5 * kCell, 2.75 * kCell);
  cairo_line_to(canvas, middle - 1.2 * kCell, 2.75 * kCell);
  cairo_close_path(canvas);
  cairo_fill(canvas);
}

void drawNames(cairo_t* canvas) {
  cairo_set_source_rgb(canvas, 1, 1, 1);
  for (const Corner& corner : kCorners) {
    drawCentred(canvas, corner.name, 44, corner.x + kCornerSide / 2, corner.y + kCornerSide / 2);
  }
  cairo_set_source_rgb(canvas, 0.1, 0.1, 0.1);
  drawCentred(canvas, "left", 28, 1.7 * kCell, kSide / 2.0);
  drawCentred(canvas, "right", 28, 6.3 * kCell, kSide / 2.0);
}

void drawPicture(cairo_t* canvas) {
  cairo_set_source_rgb(canvas, 0.93, 0.93, 0.88);
  cairo_paint(canvas);
  drawCorners(canvas);
  drawGrid(canvas);
  drawArrow(canvas);
  drawNames(canvas);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: make_picture FILE.jpg\n", stderr);
    return 2;
  }
  cairo_surface_t* const surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kSide, kSide);
  cairo_t* const canvas = cairo_create(surface);
  drawPicture(canvas);
  cairo_destroy(canvas);

  g_autoptr(GdkPixbuf) picture = gdk_pixbuf_get_from_surface(surface, 0, 0, kSide, kSide);
  cairo_surface_destroy(surface);
  g_autoptr(GError) error = nullptr;
  if (gdk_pixbuf_save(picture, argv[1], "jpeg", &error, "quality", "92", nullptr) == FALSE) {
    std::fprintf(stderr, "make_picture: %s\n", error->message);
    return 1;
  }
  return 0;
}
