/// Pictures by gnuplot, for a page.
#pragma once

#include <stdexcept>
#include <string>

namespace survey {

/// gnuplot is missing, or did not understand; the text says what to do.
class CannotPlot : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What is drawn in the page's own colour for text, so that it is seen on any background.
inline constexpr const char* kInk = "#010203";

/// Draws what the script says as an SVG element to stand in HTML: it takes the width that it is
/// given, its ids begin with `name`, and `title` says what it shows. Throws CannotPlot.
std::string svgOf(const std::string& script, int width, int height, const std::string& name,
                  const std::string& title);

}  // namespace survey
