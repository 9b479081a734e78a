// Answers for meshes that were not measured, where the truth is known.
#include <algorithm>
#include <random>

#include <gtest/gtest.h>

#include "survey/judge/Advice.h"
#include "tests/survey/SimulatedMachine.h"
#include "words/DrawMethods.h"

namespace survey {
namespace {

constexpr Question kQuestion{.triangles = 20000, .strips = 40};

/// Nanoseconds.
struct Costs {
  const char* method;
  double perModel, perStrip, perVertex;

  double timeOf(double strips, double vertices) const {
    return perModel + perStrip * strips + perVertex * vertices;
  }
};
constexpr Costs kCosts[] = {{"displayLists", 900, 0, 6},
                            {"multiDrawArrays", 600, 40, 4.5},
                            {"drawArrays", 100, 400, 5},
                            {"immediateMode", 50, 30, 15}};

/// A survey at the details that the question asks for. `bend` makes the largest models slower.
Record surveyed(double bend, std::mt19937_64& random) {
  SimulatedSurvey survey;
  std::vector<Cell> cells;
  const std::vector<unsigned int> details = detailsFor(kQuestion);
  for (const Costs& costs : kCosts) {
    for (const unsigned int detail : details) {
      const double time =
          costs.timeOf(detail, 2.0 * detail * (detail + 1)) * (detail == details.back() ? bend : 1);
      survey.rates.push_back(1e9 * 2 * detail * detail / time);
      survey.slowFactors.push_back(1);
      cells.push_back({costs.method, "triStrip", detail, ""});
    }
  }
  Record record = simulateAgain(
      survey, {.dwell = 1e6, .cells = cells.size(), .blocks = 12, .luck = 0.01}, 1, random);
  record.cells = cells;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    record.sides[0].cells[i].answer->primitivesPerModel =
        std::uint64_t{2} * cells[i].detail * cells[i].detail;
  }
  return record;
}

TEST(Advice, HoldsTheTruthOfAMeshThatIsNoSquare) {
  constexpr int kSurveys = 40;
  std::mt19937_64 random(89);
  int held = 0;
  for (int i = 0; i < kSurveys; ++i) {
    const Record record = surveyed(1, random);
    const std::vector<MethodAdvice> advice = adviceFor(kQuestion, {&record, 0});
    ASSERT_EQ(advice.size(), std::size(kCosts));
    EXPECT_EQ(advice[0].method, "multiDrawArrays");
    EXPECT_EQ(advice[2].method, "displayLists") << advice[1].method;
    EXPECT_FALSE(advice[3].leads);
    for (const MethodAdvice& method : advice) {
      const Costs& costs = *std::find_if(std::begin(kCosts), std::end(kCosts),
                                         [&](const Costs& c) { return c.method == method.method; });
      const double truth = costs.timeOf(40, 20080);
      held += method.time.contains(truth) ? 1 : 0;
      EXPECT_NEAR(method.time.middle / truth, 1, 0.1);
      EXPECT_LT(method.miss, 0.1);
    }
  }
  EXPECT_GE(held, kSurveys * static_cast<int>(std::size(kCosts)) * 9 / 10);
  const Record bent = surveyed(2, random);
  for (const MethodAdvice& method : adviceFor(kQuestion, {&bent, 0})) {
    EXPECT_GT(method.miss, 0.1);
  }
}

TEST(Advice, IsForTheMethodsThatTheQuestionAllows) {
  const auto has = [](const Question& question, const char* method) {
    const std::vector<std::string> methods = methodsFor(question);
    return std::find(methods.begin(), methods.end(), method) != methods.end();
  };
  EXPECT_TRUE(has({}, "displayLists"));
  EXPECT_FALSE(has({}, "streamSubData"));
  EXPECT_TRUE(has({.changes = true}, "streamSubData"));
  EXPECT_TRUE(has({.changes = true}, "drawArrays"));
  EXPECT_FALSE(has({.changes = true}, "multiDrawArrays"));
  EXPECT_FALSE(has({.core = true}, "drawArrays"));
  EXPECT_TRUE(has({.core = true}, "multiDrawArrays"));
}

TEST(Advice, IsMeasuredNearTheQuestion) {
  for (const double triangles : {200.0, 20000.0, 500000.0}) {
    const std::vector<unsigned int> details = detailsFor({.triangles = triangles});
    ASSERT_EQ(details.size(), 4U);
    EXPECT_TRUE(std::is_sorted(details.begin(), details.end()));
    const double largest = 2.0 * details[3] * details[3];
    EXPECT_GT(largest, triangles / 2);
    EXPECT_LT(largest, 5 * triangles);
  }
}

}  // namespace
}  // namespace survey
