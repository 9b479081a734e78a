/// What a side of a sitting says of its cells: rates, ratios, how sure each is, and who leads.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "survey/data/Record.h"
#include "survey/statistics/Estimate.h"

namespace survey {

/// Of one cell. The machine's speed on average over the sitting is part of its rate.
struct CellFigure {
  std::size_t cell = 0;    ///< index into the sitting's cells
  std::size_t blocks = 0;  ///< in which it was measured
  Interval rate{};         ///< primitives per second
  Interval ratio{};        ///< to the best of its group
  bool leads = false;      ///< the best, or not distinguishable from it
  bool precise = false;    ///< the ratio (alone in its group: the rate) is as precise as asked for
  double nanosecondsPerCall = 0;
  std::optional<double> gpuShare{};  ///< of the time; none without a GPU or timer queries
};

/// Cells whose rates may be ranked: the same primitive and detail, the same attributes really sent.
struct Group {
  std::string primitive;
  unsigned int detail;
  std::string sent;
  std::vector<CellFigure> ranking;   ///< best first
  std::vector<std::size_t> without;  ///< cells that have no figure
};

struct Figures {
  std::vector<Group> groups;
  std::size_t imprecise = 0;  ///< cells with a figure that is not precise
  std::size_t refused = 0;    ///< cells that the driver does not run as what they are named
  std::size_t failed = 0;     ///< cells that made workers fail, figures or not
  std::size_t unreached = 0;  ///< cells for which there was not enough time
  double slowest = 1;         ///< the machine's slowest level beside its fastest, typically
};

/// The intervals are of 95 %, with the block as the unit of replication: trimmed means over the
/// blocks, their errors by a jackknife over the blocks that repeats the fit of the machine's
/// levels, and cells that lend each other certainty about how far blocks scatter.
Figures figuresOf(const SideView& side);

}  // namespace survey
