/// Tables of words, as text or as Markdown: sections that share their columns' widths, with notes
/// below.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace survey {

using Row = std::vector<std::string>;

/// How a row stands out where there are colours.
enum class Tint { kPlain, kGood, kBad };

struct Section {
  std::string title;
  std::vector<Row> rows;  ///< the headings first
  std::vector<Tint> tints{Tint::kPlain};

  void add(Row row, Tint tint = Tint::kPlain) {
    rows.push_back(std::move(row));
    tints.push_back(tint);
  }
};

/// Numbers for remarks: the same remark has the same number.
class Notes {
 public:
  /// "[2]"; empty for an empty remark.
  std::string numberOf(const std::string& remark);
  const std::vector<std::string>& all() const { return remarks_; }
  std::vector<std::string>& all() { return remarks_; }

 private:
  std::vector<std::string> remarks_;
};

/// `onTheRight` says for each column whether its words stand there. Columns that hold nothing but
/// their headings are left out.
struct Grid {
  std::vector<bool> onTheRight;
  std::vector<Section> sections;
  Notes notes;
};

std::string asText(const Grid& grid, bool colours);
std::string asMarkdown(const Grid& grid);

/// A text without line ends, of which nothing is markup or ends a table's field.
std::string inMarkdown(std::string_view text);

/// The columns that hold more than their headings.
std::vector<std::size_t> usedColumns(const Grid& grid);

}  // namespace survey
