/// Whether a driver runs a draw method as itself, as something else, or not at all.
#pragma once

enum class RunsAs {
  kItself,   ///< as the method's name says
  kStandIn,  ///< by what asks the same of the driver where it lacks an extension
  kOther,    ///< it would run, but only as something else, whose figure it would have
  kRefused,  ///< it cannot run
};

/// Whether a figure of it is one of what was asked for.
constexpr bool hasFigure(RunsAs as) {
  return as == RunsAs::kItself || as == RunsAs::kStandIn;
}
