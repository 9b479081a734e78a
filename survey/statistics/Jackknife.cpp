#include "survey/statistics/Jackknife.h"

#include <algorithm>

#include "survey/statistics/EffectiveSize.h"

namespace survey {
namespace {

/// Groups that have a part in it.
std::size_t partsOf(const Jackknife& figure) {
  return static_cast<std::size_t>(
      std::count_if(figure.without.begin(), figure.without.end(),
                    [](const std::optional<double>& part) { return part.has_value(); }));
}

}  // namespace

Estimate estimateOf(const Jackknife& figure) {
  std::vector<double> parts;
  double mean = 0;
  for (const std::optional<double>& part : figure.without) {
    if (part) {
      parts.push_back(*part);
      mean += *part;
    }
  }
  Estimate estimate{figure.whole, {0, 0}, figure.kept};
  if (parts.size() > 1) {
    const auto count = static_cast<double>(parts.size());
    mean /= count;
    for (const double part : parts) {
      estimate.variance.value += (part - mean) * (part - mean) * (count - 1) / count;
    }
    estimate.variance.freedom = static_cast<double>(std::min(figure.kept, parts.size())) - 1;
  }
  return estimate;
}

Estimate meanOf(std::span<const Jackknife> figures) {
  const auto count = static_cast<double>(figures.size());
  Jackknife mean;
  double kept = 0;
  double parts = 0;
  for (const Jackknife& figure : figures) {
    mean.whole += figure.whole / count;
    kept += static_cast<double>(std::min(figure.kept, partsOf(figure)));
    parts += static_cast<double>(partsOf(figure));
  }
  std::vector<double> shares;
  for (std::size_t group = 0; group < figures.front().without.size(); ++group) {
    double change = 0;
    double share = 0;
    for (const Jackknife& figure : figures) {
      if (figure.without[group]) {
        change += (*figure.without[group] - figure.whole) / count;
        share += 1 / static_cast<double>(partsOf(figure));
      }
    }
    mean.without.push_back(share > 0 ? std::optional(mean.whole + change) : std::nullopt);
    shares.push_back(share);
  }
  Estimate estimate = estimateOf(mean);
  estimate.variance.freedom = parts > 0 ? effectiveSize(shares) * kept / parts - 1 : 0;
  return estimate;
}

}  // namespace survey
