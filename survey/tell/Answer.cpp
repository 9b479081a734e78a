#include <algorithm>

#include <fmt/format.h>

#include "survey/tell/Numbers.h"
#include "survey/tell/Sentences.h"

namespace survey {
namespace {

constexpr std::size_t kMostLeaders = 4;

/// At most so many; more are counted.
std::string listInWords(std::vector<std::string> names, std::size_t most) {
  if (names.size() > most) {
    const std::size_t others = names.size() - most;
    names.resize(most);
    names.push_back(fmt::format("{} more", others));
  }
  return survey::listInWords(names);
}

/// Whether a method leads for no other reason than that next to nothing is known of it.
bool leadsByIgnorance(const CellFigure& figure) {
  constexpr double kVague = 0.1;
  return figure.leads && !(figure.ratio.halfWidth() <= kVague * figure.ratio.middle);
}

/// "at detail 64 displayLists (140 MTri/s at 8320 vertices a call; 1.31 times drawArrays)".
std::string answerOf(const SideView& side, const Group& group) {
  const auto methodOf = [&](const CellFigure& figure) { return side.cell(figure.cell).method; };
  std::vector<std::string> leaders;
  const CellFigure* next = nullptr;
  for (const CellFigure& figure : group.ranking) {
    if (figure.leads) {
      leaders.push_back(methodOf(figure));
    } else if (next == nullptr) {
      next = &figure;
    }
  }
  const CellFigure& best = group.ranking.front();
  const std::string figure =
      fmt::format("{} {} at {:.0f} vertices a call", threeDigits(best.rate.middle / kMillion),
                  unitOf(group.primitive), side.state(best.cell).answer->verticesPerCall);
  if (std::any_of(group.ranking.begin(), group.ranking.end(), leadsByIgnorance)) {
    return fmt::format(
        "at detail {} undecided, as the time was too short to tell {} methods apart ({}: {})",
        group.detail, leaders.size(), leaders.front(), figure);
  }
  return fmt::format(
      "at detail {} {} ({}{}{})", group.detail, listInWords(leaders, kMostLeaders), figure,
      leaders.size() > 1 ? "; not distinguishable" : "",
      next == nullptr ? ""
                      : fmt::format("; {:.2f} times {}", 1 / next->ratio.middle, methodOf(*next)));
}

}  // namespace

std::vector<std::string> answerOf(const SideView& side, const Figures& figures) {
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
        parts.push_back(answerOf(side, *group));
      }
      return same;
    });
    sentences.push_back(fmt::format("Fastest for {}, {}: {}.", first.primitive,
                                    attributesInWords(first.sent), fmt::join(parts, ", ")));
  }
  return sentences.empty() ? std::vector<std::string>{"There is no figure."} : sentences;
}

std::string sourceOf(const SideView& side) {
  const Driver& driver = side.side().driver;
  const Machine& machine = side.record->machine;
  std::string text = side.side().started()
                         ? fmt::format("On {}, {}", driver.renderer, driver.version)
                         : "On no driver, as no worker was started";
  text += driver.software ? " (a software renderer)" : "";
  text += machine.processor.empty() ? "" : fmt::format("; {}", machine.processor);
  text += fmt::format(", {} processors", machine.processors);
  text += machine.virtualMachine.empty() ? "" : ", a virtual machine";
  return text + ".";
}

}  // namespace survey
