/// What a record says of its cells: rates, ratios, how sure each is, and who leads.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "survey/record/Record.h"
#include "survey/statistics/Estimate.h"

namespace survey {

/// Of one cell. The machine's speed on average over the sitting is part of its rate.
struct CellFigure {
  std::size_t cell = 0;    ///< index into the record's cells
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
  std::size_t refused = 0;    ///< cells that the driver does not carry as what they are named
  std::size_t failed = 0;     ///< cells that cost workers, figures or not
  std::size_t unreached = 0;  ///< cells that the time did not suffice for
  std::size_t frames = 0;     ///< all that were measured
  std::size_t disturbed = 0;  ///< of those: the processor was with somebody else
  double slowest = 1;         ///< the machine's slowest level beside its fastest, typically
};

/// The intervals are of 95 %, with the block as the unit of replication: trimmed means over the
/// blocks, their errors by a jackknife over the blocks that repeats the fit of the machine's
/// levels, and cells that lend each other certainty about how far blocks scatter.
Figures figuresOf(const Record& record);

/// A sentence on a cell of that index: why it has no figure, or what has to be known beside it;
/// empty where there is nothing to say.
std::string remarkOn(const Record& record, std::size_t index, bool hasFigure);

}  // namespace survey
