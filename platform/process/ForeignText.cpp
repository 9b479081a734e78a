#include "platform/process/ForeignText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace {

/// A character at the beginning of a text.
struct Character {
  std::uint32_t code;
  std::size_t bytes;  ///< 0: it is no UTF-8
};

Character firstOf(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  if (first < 0x80) {
    return {first, 1};
  }
  const std::size_t bytes = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < bytes) {
    return {0, 0};
  }
  std::uint32_t code = first & (0x7FU >> bytes);
  for (const char character : text.substr(1, bytes - 1)) {
    const auto byte = static_cast<unsigned char>(character);
    if ((byte & 0xC0) != 0x80) {
      return {0, 0};
    }
    code = code << 6 | (byte & 0x3FU);
  }
  // Not written longer than need be, no half of a pair, and not beyond the last one.
  constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSound =
      code >= kLeast[bytes] && (code < 0xD800 || code > 0xDFFF) && code <= 0x10FFFF;
  return {code, isSound ? bytes : 0};
}

/// Terminals obey the second block as well. Then there are line ends, and what XML must not hold.
bool isControl(std::uint32_t code) {
  return code < 0x20 || (code >= 0x7F && code <= 0x9F) || code == 0x2028 || code == 0x2029 ||
         (code & 0xFFFE) == 0xFFFE;
}

}  // namespace

std::string harmless(std::string_view text, LineEnds lineEnds) {
  std::string result;
  while (!text.empty()) {
    const auto [code, bytes] = firstOf(text);
    if (bytes == 0) {
      result += "\xEF\xBF\xBD";
    } else if (!isControl(code) || (code == '\n' && lineEnds == LineEnds::kKept)) {
      result += text.substr(0, bytes);
    } else {
      result += ' ';
    }
    text.remove_prefix(std::max<std::size_t>(1, bytes));
  }
  return result;
}
