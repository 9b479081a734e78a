#include "survey/show/Answer.h"

#include <algorithm>
#include <csignal>
#include <cstring>

#include <fmt/format.h>

#include "survey/show/Numbers.h"

namespace survey {
namespace {

constexpr double kMillion = 1e6;
/// From so many disturbed frames on the machine is too busy to be measured on.
constexpr double kBusyShare = 1.0 / 3;
/// Below so much of its fastest speed the machine's moves are worth a word.
constexpr double kSteady = 0.9;
constexpr std::size_t kMostLeaders = 4;

/// "a", "a and b", "a, b and c".
std::string listOf(const std::vector<std::string>& names) {
  if (names.size() == 1) {
    return names.front();
  }
  const std::vector<std::string> first(names.begin(), names.end() - 1);
  return fmt::format("{} and {}", fmt::join(first, ", "), names.back());
}

std::string methodOf(const Record& record, const CellFigure& figure) {
  return record.cells[figure.cell].cell.method;
}

/// At most so many; more are counted.
std::string listOf(std::vector<std::string> names, std::size_t most) {
  if (names.size() > most) {
    const std::size_t others = names.size() - most;
    names.resize(most);
    names.push_back(fmt::format("{} more", others));
  }
  return listOf(names);
}

/// Whether a method leads for no other reason than that next to nothing is known of it.
bool leadsByIgnorance(const CellFigure& figure) {
  constexpr double kVague = 0.1;
  return figure.leads && !(figure.ratio.halfWidth() <= kVague * figure.ratio.middle);
}

/// "at detail 64 displayLists (140 MTri/s at 8320 vertices a call; 1.31 times drawArrays)".
std::string answerOf(const Record& record, const Group& group) {
  std::vector<std::string> leaders;
  const CellFigure* next = nullptr;
  for (const CellFigure& figure : group.ranking) {
    if (figure.leads) {
      leaders.push_back(methodOf(record, figure));
    } else if (next == nullptr) {
      next = &figure;
    }
  }
  const CellFigure& best = group.ranking.front();
  const std::string figure =
      fmt::format("{} {} at {:.0f} vertices a call", threeDigits(best.rate.middle / kMillion),
                  unitOf(group.primitive), record.cells[best.cell].answer->verticesPerCall);
  if (std::any_of(group.ranking.begin(), group.ranking.end(), leadsByIgnorance)) {
    return fmt::format(
        "at detail {} undecided, as the time was too short to tell {} methods apart ({}: {})",
        group.detail, leaders.size(), leaders.front(), figure);
  }
  return fmt::format("at detail {} {} ({}{}{})", group.detail, listOf(leaders, kMostLeaders),
                     figure, leaders.size() > 1 ? "; not distinguishable" : "",
                     next == nullptr ? ""
                                     : fmt::format("; {:.2f} times {}", 1 / next->ratio.middle,
                                                   methodOf(record, *next)));
}

std::string cells(std::size_t count) {
  return count == 1 ? "1 cell" : fmt::format("{} cells", count);
}

/// Empty where the survey came to its planned end.
std::string endingOf(const Record& record) {
  switch (record.ending) {
    case Ending::kPrecise:
    case Ending::kTimeUp:
      return "";
    case Ending::kInterrupted:
      return fmt::format(
          "Interrupted by a signal ({}) after {:.0f} s: this is what was known by then.",
          strsignal(record.signal), record.elapsed);
    case Ending::kNoWorker:
      return fmt::format("Broken off after {:.0f} s, as no further worker came up: it {}.",
                         record.elapsed, record.endingSentence);
    case Ending::kNothingLeft:
      return "No cell is left that could be measured.";
  }
  return "";
}

/// Which cells are not as precise as asked for; empty where all are.
std::string imprecisionOf(const Record& record, const Figures& figures) {
  std::vector<std::string> names;
  std::size_t measured = 0;
  for (const Group& group : figures.groups) {
    measured += group.ranking.size();
    for (const CellFigure& figure : group.ranking) {
      if (!figure.precise) {
        names.push_back(nameOf(record.cells[figure.cell].cell));
      }
    }
  }
  if (names.empty()) {
    return "";
  }
  constexpr std::size_t kMostNames = 6;
  return fmt::format("Not as precise as {:g} %: {}.", record.settings.precision,
                     names.size() <= kMostNames
                         ? listOf(names)
                         : fmt::format("{} of {} ratios, those with a wider ± in the table; "
                                       "give more time with --seconds",
                                       names.size(), measured));
}

}  // namespace

std::string disturbanceInWords(std::size_t disturbed, std::size_t frames) {
  const double share = static_cast<double>(disturbed) / static_cast<double>(frames);
  return fmt::format("{} of {} frames were disturbed by other work.{}", disturbed, frames,
                     share > kBusyShare ? " The machine is too busy for sure figures: repeat the "
                                          "survey when it is calmer."
                                        : "");
}

std::string answerOf(const Record& record, const Figures& figures) {
  std::vector<std::string> sentences;
  std::vector<const Group*> open;
  for (const Group& group : figures.groups) {
    if (!group.ranking.empty()) {
      open.push_back(&group);
    }
  }
  while (!open.empty()) {
    const Group& first = *open.front();
    std::vector<std::string> parts;
    std::erase_if(open, [&](const Group* group) {
      const bool same = group->primitive == first.primitive && group->sent == first.sent;
      if (same) {
        parts.push_back(answerOf(record, *group));
      }
      return same;
    });
    sentences.push_back(fmt::format("Fastest for {}, {}: {}.", first.primitive,
                                    attributesInWords(first.sent), fmt::join(parts, ", ")));
  }
  return sentences.empty() ? "There is no figure." : fmt::format("{}", fmt::join(sentences, "\n"));
}

std::string sourceOf(const Record& record) {
  const Driver& driver = record.driver;
  std::string text = fmt::format("On {}, {}", driver.renderer, driver.version);
  text += driver.software ? " (a software renderer)" : "";
  text += record.machine.processor.empty() ? "" : fmt::format("; {}", record.machine.processor);
  text += fmt::format(", {} processors", record.machine.processors);
  text += record.machine.virtualMachine.empty() ? "" : ", a virtual machine";
  return text + ".";
}

std::vector<std::string> caveatsOf(const Record& record, const Figures& figures) {
  std::vector<std::string> sentences;
  const auto add = [&](std::string sentence) {
    if (!sentence.empty()) {
      sentences.push_back(std::move(sentence));
    }
  };
  add(endingOf(record));
  if (figures.disturbed > 0) {
    add(disturbanceInWords(figures.disturbed, figures.frames));
  }
  if (figures.slowest < kSteady) {
    add(
        fmt::format("The machine's own speed moved, down to {:.0f} % of its fastest; that is taken "
                    "out of the ratios.",
                    100 * figures.slowest));
  }
  if (figures.refused > 0) {
    add(fmt::format("The driver does not carry {} (see the notes).", cells(figures.refused)));
  }
  if (figures.failed > 0) {
    add(fmt::format("{} failed (see the notes).", cells(figures.failed)));
  }
  if (figures.unreached > 0) {
    add(fmt::format("The time did not suffice for {}; give more with --seconds.",
                    cells(figures.unreached)));
  }
  add(imprecisionOf(record, figures));
  return sentences;
}

}  // namespace survey
