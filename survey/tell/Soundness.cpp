#include "survey/tell/Soundness.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <stdexcept>

#include <fmt/format.h>

#include "words/Detail.h"

namespace survey {
namespace {

void require(bool sound, const std::string& otherwise) {
  if (!sound) {
    throw std::runtime_error(otherwise);
  }
}

/// Whole numbers in a double, and times, that figures can be made of without an overflow.
bool isUsable(double number) {
  constexpr double kMost = 1e15;
  return number > 0 && number <= kMost;
}

void requireSoundSide(const Record& record, const Side& side) {
  require(side.cells.size() == record.cells.size(),
          fmt::format("side '{}' has {} cells of {}", side.name, side.cells.size(),
                      record.cells.size()));
  for (std::size_t cell = 0; cell < side.cells.size(); ++cell) {
    const auto& answer = side.cells[cell].answer;
    require(!answer || !answer->hasFigure() ||
                (isUsable(static_cast<double>(answer->primitivesPerModel)) &&
                 isUsable(answer->callsPerModel)),
            fmt::format("side '{}' answers nonsense for cell {}", side.name, cell));
  }
}

void requireSoundFrames(const Record& record, const Visit& visit, const std::string& where) {
  std::size_t rounds = 0;
  for (std::size_t side = 0; side < record.sides.size(); ++side) {
    const std::vector<Frame>& frames = visit.frames[side];
    if (frames.empty()) {
      continue;
    }
    const auto& answer = record.sides[side].cells[visit.cell].answer;
    require(answer && answer->hasFigure(), where + " has frames of a cell that was not drawn");
    require(rounds == 0 || frames.size() == rounds, where + " has sides with unlike many frames");
    rounds = frames.size();
    require(std::all_of(frames.begin(), frames.end(),
                        [](const Frame& frame) {
                          return isUsable(static_cast<double>(frame.primitives)) &&
                                 isUsable(static_cast<double>(frame.wall)) && frame.cpu >= 0 &&
                                 frame.wait >= 0 && frame.wait < frame.wall && frame.late >= 0;
                        }),
            where + " has a frame of no time or of nothing");
  }
  require(rounds > 0 && (record.sides.size() == 1 || !visit.frames[0].empty()),
          where + " has no frames of the first side");
}

void requireSound(const Record& record) {
  require(!record.sides.empty() && !record.cells.empty(), "there are no sides or no cells");
  for (const Cell& cell : record.cells) {
    require(cell.detail >= kLeastDetail && cell.detail <= kMostDetail,
            fmt::format("there is a cell of detail {}", cell.detail));
  }
  for (const Side& side : record.sides) {
    requireSoundSide(record, side);
  }
  constexpr std::size_t kMostBlocks = 1'000'000;
  for (std::size_t i = 0; i < record.visits.size(); ++i) {
    const Visit& visit = record.visits[i];
    const std::string where = fmt::format("visit {}", i);
    require(visit.cell < record.cells.size(),
            fmt::format("{} names cell {} of {}", where, visit.cell, record.cells.size()));
    require(visit.block < kMostBlocks, fmt::format("{} names block {}", where, visit.block));
    require(
        visit.frames.size() == record.sides.size() && visit.workers.size() == record.sides.size(),
        fmt::format("{} is of {} sides of {}", where, visit.frames.size(), record.sides.size()));
    requireSoundFrames(record, visit, where);
    require((visit.yardstick.empty() || visit.yardstick.size() == 2) &&
                std::all_of(visit.yardstick.begin(), visit.yardstick.end(), isUsable),
            where + " has a yardstick that is no number");
  }
  for (const ProfiledVisit& visit : record.profiles) {
    require(visit.cell < record.cells.size() && visit.block < kMostBlocks &&
                visit.sides.size() == record.sides.size(),
            "there are samples of no cell or side");
  }
}

}  // namespace

void requireSound(const Result& result) {
  require(!result.sittings.empty(), "there are no sittings");
  constexpr double kMostThreshold = 90;
  const bool inRange = result.threshold > 0 && result.threshold <= kMostThreshold;
  require(!result.isComparison() || inRange, "the threshold is no percentage");
  std::set<std::string> names;
  for (const Record& record : result.sittings) {
    require(result.isInTurns() || record.sides.size() == 1,
            "sittings of several sides stand beside others");
    for (const Side& side : record.sides) {
      names.insert(side.name);
    }
  }
  require(!result.isComparison() || names.size() > 1, "there is but one side to compare");
  require(!result.isInTurns() || names.size() == result.sittings.front().sides.size(),
          "sides of one sitting have one name");
  require(!result.question || (!result.isComparison() && isUsable(result.question->triangles) &&
                               isUsable(result.question->strips)),
          "the question is none");
  for (std::size_t i = 0; i < result.sittings.size(); ++i) {
    try {
      requireSound(result.sittings[i]);
    } catch (const std::runtime_error& error) {
      throw std::runtime_error(fmt::format("sitting {}: {}", i, error.what()));
    }
  }
}

}  // namespace survey
