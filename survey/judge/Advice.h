/// Which method suits a mesh that was not measured itself.
///
/// The time of a model is taken for a + b times its strips + c times its vertices, none of them
/// negative, and fitted to square meshes of several details, block by block.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "survey/data/Record.h"
#include "survey/statistics/Estimate.h"

namespace survey {

/// Times in nanoseconds; intervals of 95 %, with the block as the unit of replication.
struct MethodAdvice {
  std::string method;
  std::size_t blocks = 0;
  /// Of the model that was asked for; wider at either end by how far the fit lies off at worst.
  Interval time{};
  Interval times{};  ///< how many times as long as the best one's
  bool leads = false;
  Interval perModel{};
  Interval perStrip{};
  Interval perVertex{};
  double miss = 0;          ///< how far the fit lies off what was measured, at worst: a part
  unsigned int detail = 0;  ///< where that is
};

/// The methods that were measured at enough details, best first.
std::vector<MethodAdvice> adviceFor(const Question& question, const SideView& side);

/// The methods that answer a question: for vertices that never change all but those that stream,
/// for vertices that change those that take them anew each time; of core profiles where these alone
/// are asked for.
std::vector<std::string> methodsFor(const Question& question);

/// Four details whose measurements leave the least variance in the answer (a c-optimal design, as
/// Elfving described it in 1952), for costs as they usually are and errors in proportion to times.
std::vector<unsigned int> detailsFor(const Question& question);

}  // namespace survey
