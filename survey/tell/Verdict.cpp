#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>

#include <fmt/format.h>

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

std::string sourceInWords(const SideView& view) {
  const Side& side = view.side();
  const Driver& driver = side.driver;
  return fmt::format(
      "{}: {}{}", side.name,
      side.started()             ? fmt::format("{}, {}", driver.renderer, driver.version)
      : side.whyNoWorker.empty() ? "no worker was started"
                                 : "no worker could be started: " + side.whyNoWorker,
      side.environment.empty() ? "" : fmt::format(" (with {})", fmt::join(side.environment, " ")));
}

bool hasLoaded(const SideView& view, const std::string& path) {
  const std::vector<std::string>& libraries = view.side().driver.libraries;
  return std::find(libraries.begin(), libraries.end(), path) != libraries.end();
}

/// The driver's files that this side loaded and not all of the others.
std::string ownFilesOf(const SideView& view, const std::vector<SideView>& sides) {
  std::vector<std::string> own;
  const std::vector<std::string>& libraries = view.side().driver.libraries;
  std::copy_if(libraries.begin(), libraries.end(), std::back_inserter(own),
               [&](const std::string& path) {
                 return std::any_of(sides.begin(), sides.end(), [&](const SideView& other) {
                   return other.side().started() && !hasLoaded(other, path);
                 });
               });
  return own.empty() ? "" : fmt::format("; its own files: {}", fmt::join(own, " "));
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
  const double reach = kPercent * ratio.halfWidth();
  return fmt::format("{} ± {} {}", percentOf(ratio),
                     reach < kPercent ? fmt::format("{:.1f} %", reach) : "?", direction(ratio));
}

std::string verdictOf(const std::vector<Changes>& changes, double threshold) {
  std::vector<std::string> lines;
  for (const Changes& ofSide : changes) {
    const std::string& name = ofSide.newer.name();
    const std::string sentence = verdictOf(ofSide, threshold);
    const bool saysWhose = changes.size() == 1 || sentence.starts_with(name + ' ');
    lines.push_back(saysWhose ? sentence : fmt::format("{}: {}", name, sentence));
  }
  return fmt::format("{}", fmt::join(lines, "\n"));
}

std::string linesOf(const std::vector<Changes>& changes) {
  std::string lines;
  for (const Changes& ofSide : changes) {
    const std::string prefix = changes.size() > 1 ? ofSide.newer.name() + ", " : "";
    const auto add = [&](const std::string& what, const Change& change) {
      const double reach = kPercent * change.ratio.halfWidth();
      lines += fmt::format("{}{}: {:+.2f} % ± {} (n = {})\n", prefix, what,
                           kPercent * (change.ratio.middle - 1),
                           reach < kPercent ? fmt::format("{:.2f} %", reach) : "?", change.units);
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
    add(sourceInWords(side) + ownFilesOf(side, sides) + '.');
  }
  const SideView& base = sides.front();
  for (const SideView& side : sides) {
    if (side.name() != base.name() && side.side().started() &&
        side.side().driver == base.side().driver) {
      add(fmt::format(
          "THE TWO SIDES ARE THE SAME DRIVER: {} and {} have the same GL strings, the same "
          "device, and loaded the same files{}.",
          base.name(), side.name(),
          base.side().environment == side.side().environment ? ""
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
