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

/// From so much waiting on the machine is too busy to be measured on.
constexpr double kBusyShare = 0.7;
/// Less of a side's time is not worth a word.
constexpr double kWorthAWord = 0.005;

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

/// Of the frames of one side.
struct Waiting {
  std::size_t frames = 0;
  std::size_t waited = 0;  ///< for more than 2 % of their time
  double wall = 0;
  double wait = 0;

  double share() const { return wall > 0 ? wait / wall : 0; }
};

Waiting waitingOf(const SideView& side) {
  constexpr double kMuch = 0.02;
  Waiting waiting;
  for (const Visit& visit : side.record->visits) {
    for (const Frame& frame : side.frames(visit)) {
      const auto wall = static_cast<double>(frame.wall);
      const auto wait = static_cast<double>(frame.wait);
      ++waiting.frames;
      waiting.waited += wait > kMuch * wall ? 1 : 0;
      waiting.wall += wall;
      waiting.wait += wait;
    }
  }
  return waiting;
}

/// How long sides waited for a processor, whether that is too long, and whether it is their own
/// fault; empty where it is not worth a word.
Sentences waitingOf(const std::vector<SideView>& sides) {
  constexpr double kFarMore = 4;
  Sentences sentences;
  const Waiting ofFirst = waitingOf(sides.front());
  const std::vector<std::string> labels = labelsOf(sides);
  for (std::size_t i = 0; i < sides.size(); ++i) {
    const SideView& side = sides[i];
    const Waiting own = waitingOf(side);
    if (own.share() < kWorthAWord) {
      continue;
    }
    const bool isOwnFault = side.record == sides.front().record && sides.size() > 1 &&
                            own.share() > kFarMore * std::max(ofFirst.share(), kWorthAWord);
    sentences.push_back(fmt::format(
        "{} of {} frames{} waited for the processor, {:.0f} % of the time, which is not counted.{}",
        own.waited, own.frames, labels[i].empty() ? "" : " of " + labels[i], kPercent * own.share(),
        isOwnFault
            ? fmt::format(" Those of {} hardly did: threads of {} itself seem to compete with "
                          "the one that submits.",
                          sides.front().name(), side.name())
        : own.share() > kBusyShare
            ? " The machine is too busy for sure figures: repeat this when it is calmer."
            : ""));
  }
  return sentences;
}

/// What states the processor was in, where those were two.
std::string statesInWords(const SideView& side, bool isRanked) {
  const States states = statesOf(*side.record);
  if (!states.areTwo) {
    return "";
  }
  const auto percent = [&](const std::optional<CoreState>& state) {
    const auto count = std::count(states.ofVisits.begin(), states.ofVisits.end(), state);
    return kPercent * static_cast<double>(count) / static_cast<double>(states.ofVisits.size());
  };
  const std::string share = fmt::format(
      "The core was fast in {:.0f} % of the visits, slow, as if it were shared, in {:.0f} %, and "
      "changed during {:.0f} %, which do not count",
      percent(CoreState::kFast), percent(CoreState::kSlow), percent(std::nullopt));
  return share + (!isRanked ? "."
                  : states.shown == CoreState::kFast
                      ? "; the figures are those of the fast state."
                      : "; it was too seldom fast for figures: THESE ARE "
                        "THOSE OF THE SLOW STATE.");
}

/// What is said of any sittings, of one side or several.
Sentences caveatsOf(const std::vector<SideView>& sides) {
  Sentences sentences;
  const std::vector<const Record*> records = sittingsOf(sides);
  for (const Record* const record : records) {
    const Sentences ending = endingOf(*record);
    sentences.insert(sentences.end(), ending.begin(), ending.end());
  }
  const std::vector<std::string> labels = labelsOf(sides);
  for (std::size_t i = 0; i < sides.size(); ++i) {
    const std::string states =
        sides[i].index == 0 ? statesInWords(sides[i], sides.size() == 1) : "";
    if (!states.empty()) {
      sentences.push_back((records.size() > 1 ? labels[i] + ": " : "") + states);
    }
  }
  const Sentences waiting = waitingOf(sides);
  sentences.insert(sentences.end(), waiting.begin(), waiting.end());
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
  if (changes.allowance > 0) {
    return fmt::format(
        "One sitting a side does not tell how far sittings lie apart, so nothing is called slower "
        "or "
        "faster, and the intervals are {:g} % wider at either end, to allow for what sittings "
        "of one driver may differ by. Give several files a side, or let the drivers take turns "
        "with "
        "versus.",
        changes.allowance);
  }
  if (!std::isfinite(changes.visibleOverall) || changes.visibleOverall >= kPercent) {
    return !changes.isInTurns() ? "So few sittings cannot tell how far they lie apart, and so "
                                  "nothing could be found; "
                                  "give more files a side."
                                : "One block cannot tell how far blocks scatter, and so nothing "
                                  "could be found; give more "
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
  if (changes.inUnlikeStates) {
    sentences.push_back(fmt::format(
        "The core was in another state in the sittings of {} than in those of {}, or one of the "
        "drivers is slower at the yardstick itself; let them take turns with versus.",
        newer, base));
  }
  if (!changes.cells.empty()) {
    sentences.push_back(sensitivityOf(changes, threshold));
  }
  const auto name = [&](const std::vector<Cell>& cells, const std::vector<std::size_t>& indices,
                        const std::string& what) {
    if (!indices.empty()) {
      sentences.push_back(fmt::format("{}: {}.", what, namesOf(cells, indices)));
    }
  };
  name(ofBase, changes.notInOverall,
       "Left out of the overall change, as they were not measured often enough");
  name(ofBase, changes.onlyBase, "Only in " + base);
  name(ofNew, changes.onlyNew, "Only in " + newer);
  name(ofNew, changes.newFails, "Fails in " + newer + " alone");
  name(ofNew, changes.newDies,
       "Drawn at first, but given up in " + newer +
           " alone, which may be chance; repeat the comparison with these cells");
  name(ofBase, changes.baseFails, "Fails in " + base + " alone");
  return sentences;
}

/// "1 frame in 4 takes 20 ms longer than the typical one"
std::string stallsInWords(const Stalls& stalls) {
  constexpr double kNanosecondsPerMillisecond = 1e6;
  return fmt::format("1 frame in {:.0f} takes {} ms longer than the typical one", 1 / stalls.part,
                     threeDigits(stalls.longer / kNanosecondsPerMillisecond));
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

Sentences caveatsOf(const std::vector<SideView>& sides, const std::vector<Changes>& changes,
                    double threshold) {
  Sentences sentences = caveatsOf(sides);
  for (const SideView& side : sides) {
    for (const std::string& difference : differencesOf(*sides.front().record, *side.record)) {
      if (std::find(sentences.begin(), sentences.end(), difference) == sentences.end()) {
        sentences.push_back(difference);
      }
    }
  }
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

std::string remarkOn(const SideView& side, const CellFigure& figure) {
  const std::string remark = remarkOn(side, figure.cell, true);
  return !figure.stalls ? remark
                        : fmt::format("{}{}{}", remark, remark.empty() ? "" : "; ",
                                      stallsInWords(*figure.stalls));
}

std::string remarkOn(const Changes& changes, const CellChange& cell) {
  const auto ofSide = [&](const SideView& side, std::size_t index) {
    std::vector<std::string> remarks{remarkOn(side, index, true)};
    if (const auto stalls = cell.typical ? stallsOf(side, index) : std::nullopt) {
      remarks.push_back(stallsInWords(*stalls));
    }
    std::erase(remarks, "");
    return fmt::format("{}", fmt::join(remarks, "; "));
  };
  const std::string ofBase = ofSide(changes.base, cell.base);
  const std::string ofNew = ofSide(changes.newer, cell.newer);
  std::vector<std::string> remarks;
  if (cell.typical) {
    remarks.push_back("the typical frame is " + changeInWords(*cell.typical));
  }
  if (ofBase == ofNew) {
    remarks.push_back(ofBase);
  } else {
    remarks.push_back(ofBase.empty() ? "" : fmt::format("{}: {}", changes.base.name(), ofBase));
    remarks.push_back(ofNew.empty() ? "" : fmt::format("{}: {}", changes.newer.name(), ofNew));
  }
  std::erase(remarks, "");
  return fmt::format("{}", fmt::join(remarks, "; "));
}

}  // namespace survey
