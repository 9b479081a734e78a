#include "survey/statistics/Jackknife.h"

#include <algorithm>
#include <limits>

#include "survey/statistics/TrimmedMean.h"

namespace survey {

Estimate estimateOf(const Jackknife& figure) {
  std::vector<double> parts;
  double mean = 0;
  for (const std::optional<double>& part : figure.without) {
    if (part) {
      parts.push_back(*part);
      mean += *part;
    }
  }
  Estimate estimate{figure.whole, {std::numeric_limits<double>::infinity(), 0}, figure.values};
  if (parts.size() > 1) {
    const auto count = static_cast<double>(parts.size());
    mean /= count;
    estimate.variance = {0, static_cast<double>(std::min(figure.kept, parts.size())) - 1};
    for (const double part : parts) {
      estimate.variance.value += (part - mean) * (part - mean) * (count - 1) / count;
    }
  }
  return estimate;
}

Estimate meanOf(std::span<const Jackknife> figures) {
  const auto count = static_cast<double>(figures.size());
  Jackknife mean;
  JointFreedom freedom;
  for (const Jackknife& figure : figures) {
    mean.whole += figure.whole / count;
    freedom.add(figure.values, estimateOf(figure).variance.freedom);
  }
  for (std::size_t group = 0; group < figures.front().without.size(); ++group) {
    double change = 0;
    bool hasPart = false;
    for (const Jackknife& figure : figures) {
      change += (figure.without[group].value_or(figure.whole) - figure.whole) / count;
      hasPart = hasPart || figure.without[group];
    }
    mean.without.push_back(hasPart ? std::optional(mean.whole + change) : std::nullopt);
  }
  Estimate estimate = estimateOf(mean);
  estimate.variance.freedom = freedom.value();
  return estimate;
}

}  // namespace survey
