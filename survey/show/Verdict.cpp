#include "survey/show/Verdict.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstring>
#include <iterator>

#include <fmt/format.h>

#include "survey/show/Answer.h"
#include "survey/show/Numbers.h"

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

Tint tintOf(Verdict verdict) {
  return verdict == Verdict::kSlower   ? Tint::kBad
         : verdict == Verdict::kFaster ? Tint::kGood
                                       : Tint::kPlain;
}

std::string intervalInWords(const Interval& ratio) {
  return std::isfinite(ratio.high) ? fmt::format("{:.3f} to {:.3f}", ratio.low, ratio.high) : "?";
}

/// What only one side says of a cell, or both.
std::string remarkOn(const Comparison& comparison, std::size_t base, std::size_t newer,
                     bool hasFigure) {
  std::string ofBase = survey::remarkOn(comparison.base.record, base, hasFigure);
  const std::string ofNew = survey::remarkOn(comparison.newer.record, newer, hasFigure);
  if (ofBase == ofNew) {
    return ofBase;
  }
  std::string text = ofBase.empty() ? "" : fmt::format("{}: {}", comparison.base.name, ofBase);
  text += text.empty() || ofNew.empty() ? "" : "; ";
  return text + (ofNew.empty() ? "" : fmt::format("{}: {}", comparison.newer.name, ofNew));
}

/// Rates as they were, the machine's moves with them.
std::vector<double> ratesOf(const Record& record) {
  std::vector<double> rates(record.cells.size(), 0);
  for (const Group& group : figuresOf(record).groups) {
    for (const CellFigure& figure : group.ranking) {
      rates[figure.cell] = figure.rate.middle;
    }
  }
  return rates;
}

constexpr double kMillion = 1e6;

class Rows {
 public:
  explicit Rows(const Comparison& given) : comparison(given) {
    grid.onTheRight = {false, true, true, true, true, true, false, false};
  }

  /// Sections are groups of neighbours: details are outermost in a record's cells.
  void add(const Cell& cell, Row row, Tint tint) {
    const std::string title =
        fmt::format("Detail {}, {}, {}", cell.detail, cell.primitive, attributesInWords(cell.with));
    auto section = std::find_if(grid.sections.begin(), grid.sections.end(),
                                [&](const Section& existing) { return existing.title == title; });
    if (section == grid.sections.end()) {
      const std::string unit = ' ' + unitOf(cell.primitive);
      grid.sections.push_back(
          {title,
           {{"method", comparison.base.name + unit, comparison.newer.name + unit, "ratio", "95 %",
             "blocks", "verdict", "note"}}});
      section = grid.sections.end() - 1;
    }
    section->add(std::move(row), tint);
  }
  void addWithout(const Cell& cell, const std::string& verdict, const std::string& remark,
                  Tint tint = Tint::kPlain) {
    add(cell, {cell.method, "", "", "-", "", "", verdict, grid.notes.numberOf(remark)}, tint);
  }

  const Comparison& comparison;
  Grid grid;
};

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

std::string sideOf(const Side& side) {
  const std::string environment =
      side.record.settings.environment.empty()
          ? ""
          : fmt::format(" (with {})", fmt::join(side.record.settings.environment, " "));
  const Driver& driver = side.record.driver;
  return fmt::format(
      "{}: {}{}", side.name,
      !driver.renderer.empty()             ? fmt::format("{}, {}", driver.renderer, driver.version)
      : side.record.endingSentence.empty() ? "no worker was started"
                                           : "no worker came up: " + side.record.endingSentence,
      environment);
}

/// The driver's files that this side loaded and the other one did not.
std::string ownFilesOf(const Driver& driver, const Driver& other) {
  std::vector<std::string> own;
  std::copy_if(driver.libraries.begin(), driver.libraries.end(), std::back_inserter(own),
               [&](const std::string& path) {
                 return std::find(other.libraries.begin(), other.libraries.end(), path) ==
                        other.libraries.end();
               });
  return own.empty() ? "" : fmt::format("; its own files: {}", fmt::join(own, " "));
}

/// How two sittings differ in what they were taken on, apart from the driver.
std::vector<std::string> differencesOf(const Comparison& comparison) {
  const Record& base = comparison.base.record;
  const Record& newer = comparison.newer.record;
  std::vector<std::string> sentences;
  const auto add = [&](const char* what, const std::string& one, const std::string& other) {
    if (one != other) {
      sentences.push_back(fmt::format("The sittings differ in {}: {} and {}.", what,
                                      one.empty() ? "none" : one, other.empty() ? "none" : other));
    }
  };
  add("the host", base.machine.host, newer.machine.host);
  add("the kernel", base.machine.kernel, newer.machine.kernel);
  add("the processor", base.machine.processor, newer.machine.processor);
  add("the number of processors", std::to_string(base.machine.processors),
      std::to_string(newer.machine.processors));
  add("the power source", base.machine.powerSource, newer.machine.powerSource);
  add("the processor's governor", base.before.governor, newer.before.governor);
  add("the survey's version", base.program.version, newer.program.version);
  add("the survey's commit", base.program.commit, newer.program.commit);
  add("the compiler's flags", base.program.flags, newer.program.flags);
  add("the length of a frame", fmt::format("{:g} ms", base.settings.frame),
      fmt::format("{:g} ms", newer.settings.frame));
  add("where they draw", base.settings.onScreen ? "on screen" : "offscreen",
      newer.settings.onScreen ? "on screen" : "offscreen");
  return sentences;
}

}  // namespace

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

std::vector<std::string> sidesOf(const Comparison& comparison) {
  const Record& base = comparison.base.record;
  const Record& newer = comparison.newer.record;
  if (base.driver.renderer.empty() || newer.driver.renderer.empty()) {
    return {sideOf(comparison.base) + '.', sideOf(comparison.newer) + '.'};
  }
  std::vector<std::string> sentences{
      sideOf(comparison.base) + ownFilesOf(base.driver, newer.driver) + '.',
      sideOf(comparison.newer) + ownFilesOf(newer.driver, base.driver) + '.'};
  if (base.driver == newer.driver) {
    sentences.push_back(fmt::format(
        "THE TWO SIDES ARE THE SAME DRIVER: {} and {} have the same GL strings, the same device, "
        "and loaded the same files{}.",
        comparison.base.name, comparison.newer.name,
        base.settings.environment == newer.settings.environment ? ""
                                                                : ", in environments that differ"));
  }
  return sentences;
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
            ? fmt::format("Slower by {:.1f} % overall, or by {:.1f} % in one cell, would most "
                          "probably have been found (the threshold is {:g} %).",
                          changes.visibleOverall, changes.visible, comparison.threshold)
            : "One block cannot tell how far blocks scatter, and so nothing could be found; give "
              "more time with --seconds.");
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

Grid gridOf(const Comparison& comparison, const Changes& changes) {
  const Record& base = comparison.base.record;
  const Record& newer = comparison.newer.record;
  const std::vector<double> baseRates = ratesOf(base);
  const std::vector<double> newRates = ratesOf(newer);
  Rows rows(comparison);
  for (const CellChange& cell : changes.cells) {
    const Change& change = cell.change;
    const Cell& planned = base.cells[cell.base].cell;
    rows.add(planned,
             {planned.method, threeDigits(baseRates[cell.base] / kMillion),
              threeDigits(newRates[cell.newer] / kMillion),
              fmt::format("{:.3f}", change.ratio.middle), intervalInWords(change.ratio),
              std::to_string(change.blocks), std::string(inWords(change.verdict)),
              rows.grid.notes.numberOf(remarkOn(comparison, cell.base, cell.newer, true))},
             tintOf(change.verdict));
  }
  for (const std::size_t cell : changes.newFails) {
    const std::string remark = newer.driver.renderer.empty()
                                   ? "no worker came up: " + newer.endingSentence
                                   : survey::remarkOn(newer, cell, false);
    rows.addWithout(newer.cells[cell].cell, "fails",
                    fmt::format("{}: {}", comparison.newer.name, remark), Tint::kBad);
  }
  for (const std::size_t cell : changes.baseFails) {
    rows.addWithout(
        base.cells[cell].cell, "base fails",
        fmt::format("{}: {}", comparison.base.name, survey::remarkOn(base, cell, false)));
  }
  for (const std::size_t cell : changes.withoutFigures) {
    rows.addWithout(base.cells[cell].cell, "", survey::remarkOn(base, cell, false));
  }
  for (const std::size_t cell : changes.onlyBase) {
    rows.addWithout(base.cells[cell].cell, "missing", "only in " + comparison.base.name);
  }
  for (const std::size_t cell : changes.onlyNew) {
    rows.addWithout(newer.cells[cell].cell, "added", "only in " + comparison.newer.name);
  }
  return std::move(rows.grid);
}

std::string tableOf(const Comparison& comparison, const Changes& changes, bool colours) {
  return asText(gridOf(comparison, changes), colours);
}

std::string markdownOf(const Comparison& comparison, const Changes& changes) {
  std::string text = verdictOf(comparison, changes) + "\n";
  for (const std::string& side : sidesOf(comparison)) {
    text += "\n- " + side;
  }
  return text + '\n' + asMarkdown(gridOf(comparison, changes));
}

}  // namespace survey
