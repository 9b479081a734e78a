// Functions that are found, or not, in samples of which the truth is known.
#include <random>

#include <gtest/gtest.h>

#include "survey/judge/Explanation.h"
#include "tests/survey/SimulatedMachine.h"

namespace survey {
namespace {

constexpr std::size_t kFunctions = 12;

/// Samples of twenty blocks: each process has luck of its own with each function, and of the new
/// side one function takes longer by that part of all time.
Record sampled(double more, std::mt19937_64& random) {
  constexpr std::size_t kBlocks = 20;
  constexpr double kTime = 40e6;
  constexpr double kSample = 200'000;
  std::normal_distribution<> normal;
  Record record = simulateTurns({.dwell = 1e6, .cells = 1, .blocks = 2}, {0}, random);
  for (Side& side : record.sides) {
    side.cells[0].answer->verticesPerCall = 130;
  }
  for (std::size_t block = 0; block < kBlocks; ++block) {
    ProfiledVisit visit{0, block, std::vector<Profile>(2)};
    for (std::size_t side = 0; side < 2; ++side) {
      Profile& profile = visit.sides[side];
      profile.primitives = 819200;
      profile.time = 1e6;  // outside of functions
      for (std::size_t i = 0; i < kFunctions; ++i) {
        const bool isSlower = side == 1 && i == 3;
        const double part = 1.0 / kFunctions * (1 + 0.05 * normal(random)) + (isSlower ? more : 0);
        const double samples = std::poisson_distribution<>(part * kTime / kSample)(random);
        profile.functions.push_back({"f" + std::to_string(i),
                                     side == 0 ? "libdriver-25.0.6.so" : "libdriver-25.0.7.so",
                                     isSlower && more > 0 ? 480U : 400U, samples * kSample});
        profile.time += samples * kSample;
      }
    }
    record.profiles.push_back(std::move(visit));
  }
  return record;
}

Explanation explained(const Record& record) {
  return explanationsOf({&record, 0}, {&record, 1}).at(0);
}

TEST(Explanations, NameNoFunctionOfADriverBesideItself) {
  constexpr int kTrials = 200;
  constexpr int kMost = 18;  // 5 %, and two and a half of their deviations
  std::mt19937_64 random(73);
  int alarms = 0;
  for (int i = 0; i < kTrials; ++i) {
    alarms += explained(sampled(0, random)).functions.at(0).changed ? 1 : 0;
  }
  EXPECT_LE(alarms, kMost);
}

TEST(Explanations, NameTheFunctionThatTakesLonger) {
  constexpr int kTrials = 50;
  std::mt19937_64 random(79);
  int found = 0;
  for (int i = 0; i < kTrials; ++i) {
    const Explanation explanation = explained(sampled(0.06, random));
    const FunctionChange& first = explanation.functions.at(0);
    EXPECT_NE(hasSameSize(first), first.function == "f3");
    found += first.function == "f3" && first.file == "libdriver.so" && first.changed ? 1 : 0;
    EXPECT_EQ(explanation.functions.size(), kFunctions);  // of either version the same ones
    EXPECT_NEAR(explanation.outside.newer, 1e6 / (8320.0 * 100), 1e-6);
    EXPECT_NEAR(explanation.newer / explanation.base, 1.06, 0.1);
  }
  EXPECT_GE(found, kTrials * 9 / 10);
}

TEST(CallChanges, TellACostPerCallFromOnePerVertex) {
  std::mt19937_64 random(83);
  for (const bool isPerCall : {true, false}) {
    Record record = simulateTurns(
        {.dwell = 1e6, .cells = 3, .blocks = 20, .slow = 1, .luck = 0.005}, {0}, random);
    const double vertices[] = {18, 130, 1026};
    for (std::size_t cell = 0; cell < 3; ++cell) {
      record.cells[cell] = {"drawArrays", "triStrip", 8, ""};
      record.cells[cell].detail <<= 3 * cell;
      for (Side& side : record.sides) {
        CellAnswer& answer = *side.cells[cell].answer;
        answer.verticesPerCall = vertices[cell];
        answer.primitivesPerModel = 64 * static_cast<std::uint64_t>(vertices[cell] - 2);
      }
      // At a hundred million triangles a second a call takes so many nanoseconds.
      const double call = 10 * (vertices[cell] - 2);
      stretch(record, 1, 1 + (isPerCall ? 40 : 2 * vertices[cell]) / call, cell);
    }
    const auto found = callChangesOf(changesOf(sidesOf(record), 2).front());
    ASSERT_EQ(found.size(), 1U);
    const auto [cell, perCall, perVertex] = found[0];
    EXPECT_NEAR(perCall.middle, isPerCall ? 40 : 0, 5);
    EXPECT_NEAR(perVertex.middle, isPerCall ? 0 : 2, 0.2);
    EXPECT_LT(perCall.halfWidth(), 5);
    EXPECT_LT(perVertex.halfWidth(), 0.2);
  }
}

}  // namespace
}  // namespace survey
