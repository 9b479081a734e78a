#include "survey/show/Verdict.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstring>

#include <fmt/format.h>

#include "survey/show/Answer.h"
#include "survey/show/Sides.h"

namespace survey {
namespace {

constexpr double kPercent = 100;

/// 3.1 for a ratio of 0.969 and for one of 1.031.
std::string percentOf(const Interval& ratio) {
  return fmt::format("{:.1f} %", kPercent * std::abs(ratio.middle - 1));
}

std::string direction(const Interval& ratio) {
  return ratio.middle < 1 ? "slower" : "faster";
}

/// "7.1 % ± 0.8 % slower"
std::string changeInWords(const Interval& ratio) {
  const double reach = kPercent * ratio.halfWidth();
  return fmt::format("{} ± {} {}", percentOf(ratio),
                     std::isfinite(reach) ? fmt::format("{:.1f} %", reach) : "?", direction(ratio));
}

std::string cellInWords(const Cell& cell) {
  return fmt::format("{}, {}detail {}{}", cell.method,
                     cell.primitive == "triStrip" ? "" : cell.primitive + ", ", cell.detail,
                     cell.with.empty() ? "" : ", with " + cell.with);
}

std::string cells(std::size_t count) {
  return count == 1 ? "1 cell" : fmt::format("{} cells", count);
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

std::string extremeInWords(const Comparison& comparison, const Changes& changes, Verdict verdict) {
  const CellChange* const extreme = extremeOf(changes, verdict);
  if (extreme == nullptr) {
    return "";
  }
  return fmt::format("; {}: {}, {}", verdict == Verdict::kSlower ? "worst" : "best",
                     cellInWords(comparison.base.record.cells[extreme->base].cell),
                     percentOf(extreme->change.ratio));
}

std::string namesOf(const Record& record, const std::vector<std::size_t>& indices) {
  std::vector<std::string> names;
  names.reserve(indices.size());
  for (const std::size_t index : indices) {
    names.push_back(nameOf(record.cells[index].cell));
  }
  return fmt::format("{}", fmt::join(names, ", "));
}

/// What is said where something could be compared.
std::string verdictOnCells(const Comparison& comparison, const Changes& changes) {
  const std::string& name = comparison.newer.name;
  const std::string& base = comparison.base.name;
  const std::string all = changeInWords(changes.overall.ratio);
  const std::string extremes = extremeInWords(comparison, changes, Verdict::kSlower) +
                               extremeInWords(comparison, changes, Verdict::kFaster);
  const Verdict overall = changes.overall.verdict;
  if (overall == Verdict::kSlower || overall == Verdict::kFaster) {
    return fmt::format("{} is {}{}", name, all, extremes);
  }
  for (const Verdict verdict : {Verdict::kSlower, Verdict::kFaster}) {
    if (const std::size_t count = countOf(changes, verdict); count > 0) {
      return fmt::format("{} is {} in {} of {}{}; overall {}", name, inWords(verdict), count,
                         cells(changes.cells.size()), extremes, all);
    }
  }
  const std::size_t open = countOf(changes, Verdict::kUndecided);
  if (overall == Verdict::kSame && open == 0) {
    return fmt::format("{} is the same as {} within {:g} %: {} overall", name, base,
                       comparison.threshold, all);
  }
  const bool mayBeSlower =
      changes.overall.mayBeSlower ||
      std::any_of(changes.cells.begin(), changes.cells.end(),
                  [](const CellChange& cell) { return cell.change.mayBeSlower; });
  return fmt::format("{}: {} overall; {} of {} undecided",
                     mayBeSlower
                         ? fmt::format("undecided whether {} is slower than {}", name, base)
                         : fmt::format("{} is not slower than {}, and may be faster", name, base),
                     all, open, cells(changes.cells.size()));
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

std::string verdictOf(const Comparison& comparison, const Changes& changes) {
  std::vector<std::string> parts;
  if (!changes.newFails.empty()) {
    constexpr std::size_t kMostNames = 6;  // standard error has all
    const std::size_t count = changes.newFails.size();
    parts.push_back(fmt::format(
        "{} fails in {} that {} carries{}", comparison.newer.name, cells(count),
        comparison.base.name,
        count > kMostNames
            ? ""
            : fmt::format(" ({})", namesOf(comparison.newer.record, changes.newFails))));
  }
  if (!changes.newDies.empty()) {
    parts.push_back(fmt::format("undecided whether {} fails in {} that it drew at first",
                                comparison.newer.name, cells(changes.newDies.size())));
  }
  if (!changes.cells.empty()) {
    parts.push_back(verdictOnCells(comparison, changes));
  }
  const std::size_t left = changes.baseFails.size() + changes.withoutFigures.size();
  if (parts.empty()) {
    return !changes.hopeless ? "undecided: the time did not suffice for anything to compare."
           : left == 0 ? fmt::format("{} and {} have no cell in common.", comparison.base.name,
                                     comparison.newer.name)
                       : fmt::format("{} has no figure to compare with.", comparison.base.name);
  }
  if (left > 0) {
    parts.push_back(fmt::format("{} not compared", cells(left)));
  }
  return fmt::format("{}.", fmt::join(parts, "; "));
}

/// How many pairs of frames others disturbed; empty for none.
std::string disturbanceOf(const Comparison& comparison) {
  std::size_t disturbed = 0;
  std::size_t all = 0;
  for (const Side* const side : {&comparison.base, &comparison.newer}) {
    for (const Visit& visit : side->record.visits) {
      all += visit.frames.size();
      disturbed += static_cast<std::size_t>(
          std::count_if(visit.frames.begin(), visit.frames.end(),
                        [](const Frame& frame) { return frame.disturbed; }));
    }
  }
  return disturbed == 0 ? "" : disturbanceInWords(disturbed, all);
}

std::vector<std::string> caveatsOf(const Comparison& comparison, const Changes& changes) {
  const Record& base = comparison.base.record;
  const Record& newer = comparison.newer.record;
  std::vector<std::string> sentences;
  if (!changes.cells.empty()) {
    sentences.push_back(
        std::isfinite(changes.visibleOverall) && changes.visibleOverall < kPercent
            ? fmt::format(
                  "Slower by {:.1f} % overall, or by {} in one cell, would most probably "
                  "have been found (the threshold is {:g} %).",
                  changes.visibleOverall,
                  changes.visible < kPercent ? fmt::format("{:.1f} %", changes.visible) : "?",
                  comparison.threshold)
            : "One block cannot tell how far blocks scatter, and so nothing could be found; give "
              "more time with --seconds.");
  }
  if (!changes.notInOverall.empty()) {
    sentences.push_back(
        fmt::format("Not part of the overall change, as so few blocks tell no scatter: {}.",
                    namesOf(base, changes.notInOverall)));
  }
  if (std::string disturbance = disturbanceOf(comparison); !disturbance.empty()) {
    sentences.push_back(std::move(disturbance));
  }
  if (!comparison.inTurns) {
    const std::vector<std::string> differences = differencesOf(comparison);
    sentences.insert(sentences.end(), differences.begin(), differences.end());
    constexpr double kWorthAWord = 1;
    if (changes.moved > kWorthAWord) {
      sentences.push_back(
          fmt::format("The machine's own speed moved by {:.1f} % between the sittings; the "
                      "intervals are wider by that.",
                      changes.moved));
    }
  }
  const auto name = [&](const Record& record, const std::vector<std::size_t>& indices,
                        const std::string& what) {
    if (!indices.empty()) {
      sentences.push_back(fmt::format("{}: {}.", what, namesOf(record, indices)));
    }
  };
  name(base, changes.onlyBase, "Only in " + comparison.base.name);
  name(newer, changes.onlyNew, "Only in " + comparison.newer.name);
  name(newer, changes.newFails, "Fails in " + comparison.newer.name + " alone");
  name(newer, changes.newDies,
       "Drawn at first, but given up in " + comparison.newer.name +
           " alone, which may be chance; repeat the comparison with these cells");
  name(base, changes.baseFails, "Fails in " + comparison.base.name + " alone");
  if (base.ending == Ending::kInterrupted) {
    sentences.push_back(
        fmt::format("Interrupted by a signal ({}) after {:.0f} s: this is what was known by then.",
                    strsignal(base.signal), base.elapsed));
  }
  if (base.ending == Ending::kNoWorker && !newer.driver.renderer.empty()) {
    const Side& side = base.endingSentence.empty() ? comparison.newer : comparison.base;
    sentences.push_back(
        fmt::format("Broken off after {:.0f} s, as no further worker of {} came up: it {}.",
                    base.elapsed, side.name, side.record.endingSentence));
  }
  return sentences;
}

}  // namespace survey
