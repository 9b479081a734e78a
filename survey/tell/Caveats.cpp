#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

#include <fmt/format.h>

#include "survey/tell/Numbers.h"
#include "survey/tell/Sentences.h"

namespace survey {
namespace {

using Sentences = std::vector<std::string>;

/// From so many disturbed frames on the machine is too busy to be measured on.
constexpr double kBusyShare = 1.0 / 3;
/// Below so much of its fastest speed the machine's moves are worth a word.
constexpr double kSteady = 0.9;

/// The sittings that these are sides of, each once.
std::vector<const Record*> sittingsOf(const std::vector<SideView>& sides) {
  std::vector<const Record*> records;
  for (const SideView& side : sides) {
    if (records.empty() || records.back() != side.record) {
      records.push_back(side.record);
    }
  }
  return records;
}

/// How a sitting ended that did not come to its planned end.
Sentences endingOf(const Record& record) {
  Sentences sentences;
  if (record.ending == Ending::kInterrupted) {
    sentences.push_back(
        fmt::format("Interrupted by a signal ({}) after {:.0f} s: this is what was known by then.",
                    strsignal(record.signal), record.elapsed));
  }
  if (record.ending == Ending::kNothingLeft) {
    sentences.emplace_back("No cell is left that could be measured.");
  }
  for (const Side& side : record.sides) {
    if (side.started() && !side.whyNoWorker.empty()) {
      sentences.push_back(fmt::format(
          "{} after {:.0f} s, as no further worker{} could be started: it {}.",
          record.ending == Ending::kNoWorker ? "Ended early," : "Went on without it,",
          record.elapsed, side.name.empty() ? "" : " of " + side.name, side.whyNoWorker));
    }
  }
  return sentences;
}

/// How many frames others disturbed, and whether those are too many; empty for none.
Sentences disturbanceOf(const std::vector<const Record*>& records) {
  std::size_t disturbed = 0;
  std::size_t all = 0;
  for (const Record* const record : records) {
    for (const Visit& visit : record->visits) {
      for (const std::vector<Frame>& frames : visit.frames) {
        all += frames.size();
        disturbed += static_cast<std::size_t>(std::count_if(
            frames.begin(), frames.end(), [](const Frame& frame) { return frame.disturbed; }));
      }
    }
  }
  if (disturbed == 0) {
    return {};
  }
  const double share = static_cast<double>(disturbed) / static_cast<double>(all);
  return {fmt::format("{} of {} frames were disturbed by other work.{}", disturbed, all,
                      share > kBusyShare ? " The machine is too busy for sure figures: repeat the "
                                           "survey when it is calmer."
                                         : "")};
}

/// What is said of any sittings, of one side or several.
Sentences caveatsOf(const std::vector<SideView>& sides) {
  Sentences sentences;
  const std::vector<const Record*> records = sittingsOf(sides);
  for (const Record* const record : records) {
    const Sentences ending = endingOf(*record);
    sentences.insert(sentences.end(), ending.begin(), ending.end());
  }
  const Sentences disturbance = disturbanceOf(records);
  sentences.insert(sentences.end(), disturbance.begin(), disturbance.end());
  return sentences;
}

/// Which cells are not as precise as asked for; empty where all are.
std::string imprecisionOf(const SideView& side, const Figures& figures) {
  std::vector<std::string> names;
  std::size_t measured = 0;
  for (const Group& group : figures.groups) {
    measured += group.ranking.size();
    for (const CellFigure& figure : group.ranking) {
      if (!figure.precise) {
        names.push_back(nameOf(side.cell(figure.cell)));
      }
    }
  }
  if (names.empty()) {
    return "";
  }
  constexpr std::size_t kMostNames = 6;
  return fmt::format("Not as precise as {:g} %: {}.", side.record->settings.precision,
                     names.size() <= kMostNames
                         ? listInWords(names)
                         : fmt::format("{} of {} ratios, those with a wider ± in the table; "
                                       "give more time with --seconds",
                                       names.size(), measured));
}

/// How two sittings differ in what they were taken on, apart from the driver.
Sentences differencesOf(const Record& base, const Record& newer) {
  Sentences sentences;
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

/// What could have been found.
std::string sensitivityOf(const Changes& changes, double threshold) {
  if (!std::isfinite(changes.visibleOverall) || changes.visibleOverall >= kPercent) {
    return "One block cannot tell how far blocks scatter, and so nothing could be found; give more "
           "time with --seconds.";
  }
  return fmt::format(
      "Slower by {:.1f} % overall, or by {} in one cell, would most probably have been found (the "
      "threshold is {:g} %).",
      changes.visibleOverall,
      changes.visible < kPercent ? fmt::format("{:.1f} %", changes.visible) : "?", threshold);
}

/// What is said of one side against the first.
Sentences caveatsOf(const Changes& changes, double threshold) {
  const std::vector<Cell>& ofBase = changes.base.record->cells;
  const std::vector<Cell>& ofNew = changes.newer.record->cells;
  const std::string& base = changes.base.name();
  const std::string& newer = changes.newer.name();
  Sentences sentences;
  if (!changes.cells.empty()) {
    sentences.push_back(sensitivityOf(changes, threshold));
  }
  if (changes.base.record != changes.newer.record) {
    const Sentences differences = differencesOf(*changes.base.record, *changes.newer.record);
    sentences.insert(sentences.end(), differences.begin(), differences.end());
    constexpr double kWorthAWord = 1;
    if (changes.moved > kWorthAWord) {
      sentences.push_back(
          fmt::format("The machine's own speed moved by {:.1f} % between the sittings; the "
                      "intervals are wider by that.",
                      changes.moved));
    }
  }
  const auto name = [&](const std::vector<Cell>& cells, const std::vector<std::size_t>& indices,
                        const std::string& what) {
    if (!indices.empty()) {
      sentences.push_back(fmt::format("{}: {}.", what, namesOf(cells, indices)));
    }
  };
  name(ofBase, changes.notInOverall,
       "Left out of the overall change, as one block does not tell how far it scatters");
  name(ofBase, changes.onlyBase, "Only in " + base);
  name(ofNew, changes.onlyNew, "Only in " + newer);
  name(ofNew, changes.newFails, "Fails in " + newer + " alone");
  name(ofNew, changes.newDies,
       "Drawn at first, but given up in " + newer +
           " alone, which may be chance; repeat the comparison with these cells");
  name(ofBase, changes.baseFails, "Fails in " + base + " alone");
  return sentences;
}

/// Whether most frames go on after glFinish.
bool isLate(const SideView& side, std::size_t cell) {
  std::ptrdiff_t balance = 0;
  for (const Visit& visit : side.record->visits) {
    for (const Frame& frame : side.frames(visit)) {
      if (visit.cell == cell) {
        balance += frame.late > 0 ? 1 : -1;
      }
    }
  }
  return balance > 0;
}

}  // namespace

Sentences caveatsOf(const SideView& side, const Figures& figures) {
  Sentences sentences = caveatsOf(std::vector{side});
  const auto add = [&](bool applies, const std::string& sentence) {
    if (applies) {
      sentences.push_back(sentence);
    }
  };
  add(figures.slowest < kSteady,
      fmt::format("The machine's own speed moved, down to {:.0f} % of its fastest; that is taken "
                  "out of the ratios.",
                  kPercent * figures.slowest));
  add(figures.refused > 0,
      fmt::format("The driver does not run {} (see the notes).", cellsInWords(figures.refused)));
  add(figures.failed > 0, fmt::format("{} failed (see the notes).", cellsInWords(figures.failed)));
  add(figures.unreached > 0,
      fmt::format("There was not enough time for {}; give more with --seconds.",
                  cellsInWords(figures.unreached)));
  const std::string imprecision = imprecisionOf(side, figures);
  add(!imprecision.empty(), imprecision);
  return sentences;
}

Sentences caveatsOf(const std::vector<Changes>& changes, double threshold) {
  std::vector<SideView> sides{changes.front().base};
  std::transform(changes.begin(), changes.end(), std::back_inserter(sides),
                 [](const Changes& ofSide) { return ofSide.newer; });
  Sentences sentences = caveatsOf(sides);
  for (const Changes& ofSide : changes) {
    for (const std::string& sentence : caveatsOf(ofSide, threshold)) {
      sentences.push_back(changes.size() == 1 ? sentence : ofSide.newer.name() + ": " + sentence);
    }
  }
  return sentences;
}

std::string remarkOn(const SideView& side, std::size_t cell, bool hasFigure) {
  const CellState& state = side.state(cell);
  std::vector<std::string> remarks;
  if (state.answer && !state.answer->sentence.empty()) {
    remarks.push_back(state.answer->sentence);
  }
  if (!state.faults.empty()) {
    const char* const beginning = !hasFigure ? ""
                                  : state.isGivenUp()
                                      ? "given up when it had made two workers fail: "
                                      : "made a worker fail once: ";
    remarks.push_back(beginning + state.faults.back());
  } else if (!hasFigure && !state.isBad()) {
    remarks.emplace_back("there was not enough time");
  }
  if (isLate(side, cell)) {
    remarks.emplace_back(
        "glFinish returns before all is drawn; counted is the time until a pixel can be read");
  }
  return fmt::format("{}", fmt::join(remarks, "; "));
}

}  // namespace survey
