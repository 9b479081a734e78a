#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <tuple>

#include <fmt/format.h>

#include "platform/process/ForeignText.h"
#include "survey/tell/Numbers.h"
#include "survey/tell/Sentences.h"

namespace survey {
namespace {

/// 3.1 for a ratio of 0.969 and for one of 1.031.
std::string percentOf(const Interval& ratio) {
  return fmt::format("{:.1f} %", kPercent * std::abs(ratio.middle - 1));
}

std::string direction(const Interval& ratio) {
  return ratio.middle < 1 ? "slower" : "faster";
}

std::string cellInWords(const Cell& cell) {
  return fmt::format("{}, {}detail {}{}", cell.method,
                     cell.primitive == "triStrip" ? "" : cell.primitive + ", ", cell.detail,
                     cell.with.empty() ? "" : ", with " + cell.with);
}

std::size_t countOf(const Changes& changes, Verdict verdict) {
  return static_cast<std::size_t>(
      std::count_if(changes.cells.begin(), changes.cells.end(),
                    [=](const CellChange& cell) { return cell.change.verdict == verdict; }));
}

/// The cell that changed most in that direction, of those with that verdict; null for none.
const CellChange* extremeOf(const Changes& changes, Verdict verdict) {
  const CellChange* extreme = nullptr;
  for (const CellChange& cell : changes.cells) {
    const auto size = [](const CellChange& c) { return std::abs(std::log(c.change.ratio.middle)); };
    if (cell.change.verdict == verdict && (extreme == nullptr || size(cell) > size(*extreme))) {
      extreme = &cell;
    }
  }
  return extreme;
}

std::string extremeInWords(const Changes& changes, Verdict verdict) {
  const CellChange* const extreme = extremeOf(changes, verdict);
  if (extreme == nullptr) {
    return "";
  }
  return fmt::format("; {}: {}, {}", verdict == Verdict::kSlower ? "worst" : "best",
                     cellInWords(changes.base.cell(extreme->base)),
                     percentOf(extreme->change.ratio));
}

/// What is said where something could be compared.
std::string verdictOnCells(const Changes& changes, double threshold) {
  const std::string& name = changes.newer.name();
  const std::string& base = changes.base.name();
  const std::string all = changeInWords(changes.overall.ratio);
  const std::string extremes =
      extremeInWords(changes, Verdict::kSlower) + extremeInWords(changes, Verdict::kFaster);
  const Verdict overall = changes.overall.verdict;
  if (overall == Verdict::kSlower || overall == Verdict::kFaster) {
    return fmt::format("{} is {}{}", name, all, extremes);
  }
  for (const Verdict verdict : {Verdict::kSlower, Verdict::kFaster}) {
    if (const std::size_t count = countOf(changes, verdict); count > 0) {
      return fmt::format("{} is {} in {} of {}{}; overall {}", name, inWords(verdict), count,
                         cellsInWords(changes.cells.size()), extremes, all);
    }
  }
  const std::size_t open = countOf(changes, Verdict::kUndecided);
  if (overall == Verdict::kSame && open == 0) {
    return fmt::format("{} is the same as {} within {:g} %: {} overall", name, base, threshold,
                       all);
  }
  const bool mayBeSlower =
      changes.overall.mayBeSlower ||
      std::any_of(changes.cells.begin(), changes.cells.end(),
                  [](const CellChange& cell) { return cell.change.mayBeSlower; });
  return fmt::format("{}: {} overall; {} of {} undecided",
                     mayBeSlower
                         ? fmt::format("undecided whether {} is slower than {}", name, base)
                         : fmt::format("{} is not slower than {}, and may be faster", name, base),
                     all, open, cellsInWords(changes.cells.size()));
}

std::string verdictOf(const Changes& changes, double threshold) {
  const std::string& name = changes.newer.name();
  const std::string& base = changes.base.name();
  std::vector<std::string> parts;
  if (!changes.newFails.empty()) {
    constexpr std::size_t kMostNames = 6;  // standard error has all
    const std::size_t count = changes.newFails.size();
    parts.push_back(fmt::format(
        "{} fails in {} that {} runs{}", name, cellsInWords(count), base,
        count > kMostNames
            ? ""
            : fmt::format(" ({})", namesOf(changes.newer.record->cells, changes.newFails))));
  }
  if (!changes.newDies.empty()) {
    parts.push_back(fmt::format("undecided whether {} fails in {} that it drew at first", name,
                                cellsInWords(changes.newDies.size())));
  }
  if (changes.newStopped()) {
    parts.push_back(fmt::format(
        "undecided whether {} still works, as no further worker could be started", name));
  }
  if (!changes.cells.empty()) {
    parts.push_back(verdictOnCells(changes, threshold));
  }
  const std::size_t left = changes.baseFails.size() + changes.withoutFigures.size();
  if (parts.empty()) {
    return !changes.hopeless ? "undecided: there was not enough time to compare anything."
           : left == 0       ? fmt::format("{} and {} have no cell in common.", base, name)
                             : fmt::format("{} has no figure to compare with.", base);
  }
  if (left > 0) {
    parts.push_back(fmt::format("{} not compared", cellsInWords(left)));
  }
  return fmt::format("{}.", fmt::join(parts, "; "));
}

/// Files of format 1 tell no builds, and name the driver's files alone.
bool knowsBuilds(const SideView& view) {
  const std::vector<Library>& libraries = view.side().driver.libraries;
  return std::none_of(libraries.begin(), libraries.end(),
                      [](const Library& library) { return library.build.empty(); });
}

/// Those of a list of this side's driver that not all of the others have, as far as is known.
template <typename Item>
std::vector<Item> ownOf(const SideView& view, const std::vector<SideView>& sides,
                        std::vector<Item> Driver::*list) {
  std::vector<Item> own;
  const std::vector<Item>& all = view.side().driver.*list;
  std::copy_if(all.begin(), all.end(), std::back_inserter(own), [&](const Item& item) {
    return std::any_of(sides.begin(), sides.end(), [&](const SideView& other) {
      const std::vector<Item>& others = other.side().driver.*list;
      return other.side().started() && knowsBuilds(other) == knowsBuilds(view) &&
             std::find(others.begin(), others.end(), item) == others.end();
    });
  });
  return own;
}

/// What the side was given, and of what was there what others had not.
std::string environmentInWords(const SideView& view, const std::vector<SideView>& sides) {
  std::vector<std::string> variables = view.side().environment;
  for (const std::string& variable : ownOf(view, sides, &Driver::environment)) {
    if (std::find(variables.begin(), variables.end(), variable) == variables.end()) {
      variables.push_back(variable);
    }
  }
  return variables.empty() ? "" : fmt::format(" (with {})", fmt::join(variables, " "));
}

/// A build is told where somebody else has another one of the same file.
std::string ownFilesInWords(const SideView& view, const std::vector<SideView>& sides) {
  std::vector<std::string> own;
  for (const Library& library : ownOf(view, sides, &Driver::libraries)) {
    const bool isRebuilt = std::any_of(sides.begin(), sides.end(), [&](const SideView& other) {
      const std::vector<Library>& others = other.side().driver.libraries;
      return std::any_of(others.begin(), others.end(), [&](const Library& one) {
        return one.path == library.path && one.build != library.build;
      });
    });
    own.push_back(isRebuilt ? fileInWords(library) : library.path);
  }
  constexpr std::size_t kMostFiles = 8;  // sides of two machines share hardly any
  if (own.size() > kMostFiles) {
    const std::size_t others = own.size() - kMostFiles;
    own.resize(kMostFiles);
    own.push_back(fmt::format("and {} more", others));
  }
  return own.empty() ? "" : fmt::format("; its own files: {}", fmt::join(own, " "));
}

std::string sourceInWords(const SideView& view, const std::vector<SideView>& sides) {
  const Side& side = view.side();
  const Driver& driver = side.driver;
  return fmt::format("{}: {}{}{}.", side.name,
                     side.started() ? fmt::format("{}, {}", driver.renderer, driver.version)
                     : side.whyNoWorker.empty() ? "no worker was started"
                                                : "no worker could be started: " + side.whyNoWorker,
                     environmentInWords(view, sides), ownFilesInWords(view, sides));
}

bool areSurelyTheSame(const SideView& one, const SideView& other) {
  const auto identity = [](const Driver& d) {
    return std::tie(d.number, d.device, d.vendor, d.renderer, d.version, d.software, d.libraries);
  };
  return one.side().started() && knowsBuilds(one) &&
         identity(one.side().driver) == identity(other.side().driver);
}

}  // namespace

std::string_view inWords(Verdict verdict) {
  switch (verdict) {
    case Verdict::kSame:
      return "same";
    case Verdict::kSlower:
      return "slower";
    case Verdict::kFaster:
      return "faster";
    case Verdict::kUndecided:
      break;
  }
  return "undecided";
}

std::string changeInWords(const Interval& ratio) {
  if (ratio.middle == 1 && !std::isfinite(ratio.high)) {
    return "nobody knows how much slower or faster";
  }
  const double reach = kPercent * ratio.halfWidth();
  return fmt::format("{} ± {} {}", percentOf(ratio),
                     reach < kPercent ? fmt::format("{:.1f} %", reach) : "?", direction(ratio));
}

std::vector<std::string> verdictOf(const std::vector<Changes>& changes, double threshold) {
  std::vector<std::string> lines;
  for (const Changes& ofSide : changes) {
    const std::string& name = ofSide.newer.name();
    const std::string sentence = verdictOf(ofSide, threshold);
    const bool saysWhose = changes.size() == 1 || sentence.starts_with(name + ' ');
    lines.push_back(saysWhose ? sentence : fmt::format("{}: {}", name, sentence));
  }
  return lines;
}

std::string linesOf(const std::vector<Changes>& changes) {
  std::string lines;
  for (const Changes& ofSide : changes) {
    const std::string prefix = changes.size() > 1 ? ofSide.newer.name() + ", " : "";
    const auto add = [&](const std::string& what, const Change& change) {
      const double reach = kPercent * change.ratio.halfWidth();
      lines +=
          harmless(fmt::format(
              "{}{}: {:+.2f} % ± {} (n = {})", prefix, what, kPercent * (change.ratio.middle - 1),
              reach < kPercent ? fmt::format("{:.2f} %", reach) : "?", change.units)) +
          '\n';
    };
    const std::size_t before = lines.size();
    for (const CellChange& cell : ofSide.cells) {
      if (cell.change.verdict == Verdict::kSlower || cell.change.verdict == Verdict::kFaster) {
        add(cellInWords(ofSide.base.cell(cell.base)), cell.change);
      }
    }
    if (lines.size() == before && !ofSide.cells.empty()) {
      Change overall = ofSide.overall;
      overall.units = ofSide.cells.size();
      add("all cells", overall);
    }
  }
  return lines;
}

std::vector<std::string> sourcesOf(const std::vector<SideView>& sides) {
  std::vector<std::string> sentences;
  const auto add = [&](const std::string& sentence) {
    // Sittings of one side say the same.
    if (std::find(sentences.begin(), sentences.end(), sentence) == sentences.end()) {
      sentences.push_back(sentence);
    }
  };
  for (const SideView& side : sides) {
    add(sourceInWords(side, sides));
  }
  const SideView& base = sides.front();
  for (const SideView& side : sides) {
    if (side.name() != base.name() && areSurelyTheSame(base, side)) {
      add(fmt::format(
          "THE TWO SIDES ARE THE SAME DRIVER: {} and {} have the same GL strings, the same "
          "device, and loaded the same files{}.",
          base.name(), side.name(),
          base.side().environment == side.side().environment &&
                  base.side().driver.environment == side.side().driver.environment
              ? ""
              : ", in environments that differ"));
    }
  }
  return sentences;
}

std::vector<std::string> labelsOf(const std::vector<SideView>& sides) {
  std::vector<std::string> labels;
  std::map<std::string, int> numbers;
  for (const SideView& side : sides) {
    const auto same = std::count_if(sides.begin(), sides.end(), [&](const SideView& other) {
      return other.name() == side.name();
    });
    labels.push_back(same == 1 ? side.name()
                               : fmt::format("{} {}", side.name(), ++numbers[side.name()]));
  }
  return labels;
}

}  // namespace survey
