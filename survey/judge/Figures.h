/// What a side of a sitting says of its cells: rates, ratios, how sure each is, and who leads.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "survey/data/Record.h"
#include "survey/judge/Blocks.h"
#include "survey/judge/States.h"
#include "survey/statistics/Estimate.h"

namespace survey {

/// Of one cell, in the state that the sitting's figures are of.
struct CellFigure {
  std::size_t cell = 0;            ///< index into the sitting's cells
  std::size_t blocks = 0;          ///< in which it was measured
  std::size_t visits = 0;          ///< that count
  Interval rate{};                 ///< primitives per second: all of them over all time
  Interval typical{};              ///< of the typical frame
  std::optional<Stalls> stalls{};  ///< where those two differ by more than they are unsure
  Interval ratio{};                ///< to the best of its group
  bool leads = false;              ///< the best, or one that may well be it
  bool precise = false;  ///< the ratio (alone in its group: the rate) is as precise as asked for
  double nanosecondsPerCall = 0;
  std::optional<double> gpuShare{};      ///< of the time; none without a GPU or timer queries
  std::optional<Interval> slowFactor{};  ///< its rate in the slow state to that in the fast one
};

/// Cells whose rates may be ranked: the same primitive and detail, the same attributes really sent.
struct Group {
  std::string primitive;
  unsigned int detail;
  std::string sent;
  std::vector<CellFigure> ranking;   ///< by ratio, best first
  std::vector<std::size_t> without;  ///< cells that have no figure
};

/// What attributes cost a method: of two cells that differ in nothing else.
struct AttributeCost {
  std::size_t cell;    ///< with them
  std::size_t beside;  ///< with the most of them among those that have fewer
  Interval times;      ///< how many times as long it takes
  Interval perVertex;  ///< nanoseconds more; less than 0 where it is faster
};

struct Figures {
  States states;
  std::vector<Group> groups;
  std::vector<AttributeCost> costs;
  std::size_t imprecise = 0;  ///< cells with a figure that is not precise
  std::size_t refused = 0;    ///< cells that the driver does not run as what they are named
  std::size_t failed = 0;     ///< cells that made workers fail, figures or not
  std::size_t unreached = 0;  ///< cells for which there was not enough time
};

/// The intervals are of 95 %, with the block as the unit of replication: trimmed means over the
/// blocks, ratios block by block, and cells that lend each other certainty about how far blocks
/// scatter; who leads, as rankingsOf (Ranking.h) has it.
Figures figuresOf(const SideView& side);

/// Where the core has two states: by cell, whether it was drawn in the one that counts by some
/// visits more than others were, which are to catch up.
std::vector<bool> cellsAhead(const SideView& side, const Figures& figures);

}  // namespace survey
