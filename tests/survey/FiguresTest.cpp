// A survey's figures on machines whose truth is known, and what is said of them.
#include <random>

#include <gtest/gtest.h>

#include "survey/judge/Figures.h"
#include "survey/statistics/Averages.h"
#include "survey/tell/Sentences.h"
#include "survey/tell/Summary.h"
#include "tests/survey/SimulatedMachine.h"

namespace survey {
namespace {

/// What intervals are worth.
struct Worth {
  int intervals = 0;
  int hits = 0;
  std::vector<double> halfWidths;

  void add(const Interval& interval, double truth) {
    ++intervals;
    hits += interval.contains(truth) ? 1 : 0;
    halfWidths.push_back(interval.halfWidth() / interval.middle);
  }
  double coverage() const { return static_cast<double>(hits) / intervals; }
};

struct Regime {
  Simulation machine;
  int surveys;
  double ratioWidth;  ///< half of it, as the median over the cells: the processes' luck, no more
};

void PrintTo(const Regime& regime, std::ostream* out) {
  const Simulation& machine = regime.machine;
  *out << machine.blocks << " blocks of " << machine.passes << " times " << machine.cells
       << " cells, speeds that last " << machine.dwell << " s";
}

class Simulated : public testing::TestWithParam<Regime> {};
INSTANTIATE_TEST_SUITE_P(
    Machine, Simulated,
    testing::Values(Regime{{.dwell = 0.5}, 20, 0.04}, Regime{{.dwell = 2}, 20, 0.035},
                    Regime{{.dwell = 20}, 20, 0.035}, Regime{{.dwell = 1e6}, 20, 0.035},
                    Regime{{.dwell = 2, .blocks = 6}, 20, 0.065},
                    Regime{{.dwell = 2, .blocks = 4}, 20, 0.08},
                    Regime{{.dwell = 0.5, .blocks = 14, .luck = 0.05, .scatter = 0.06}, 10, 0.1},
                    Regime{{.dwell = 2, .cells = 2, .passes = 8}, 120, 0.035}));

TEST_P(Simulated, IntervalsHoldTheTruth) {
  std::mt19937_64 random(17);
  Worth ratios;
  Worth rates;
  for (int i = 0; i < GetParam().surveys; ++i) {
    const auto [record, truth] = simulate(GetParam().machine, random);
    const Figures figures = figuresOf(sidesOf(record).front());
    ASSERT_EQ(figures.groups.size(), 1U);
    const auto& ranking = figures.groups[0].ranking;
    for (const CellFigure& figure : ranking) {
      rates.add(figure.rate, truth[figure.cell]);
      if (&figure != &ranking.front()) {
        ratios.add(figure.ratio, truth[figure.cell] / truth[ranking.front().cell]);
      }
    }
  }
  // 0.95, less what so few surveys scatter by: the ratios of one survey share its best cell.
  EXPECT_GE(ratios.coverage(), 0.9);
  EXPECT_GE(rates.coverage(), 0.9);
  EXPECT_LE(median(ratios.halfWidths), GetParam().ratioWidth);
}

std::string answerAfter(std::size_t blocks) {
  std::mt19937_64 random(5);
  const Record record = simulate({.dwell = 2, .cells = 10, .blocks = blocks}, random).record;
  const SideView side = sidesOf(record).front();
  return answerOf(side, figuresOf(side));
}

TEST(Answer, NamesLeadersOnlyWhereEnoughIsKnown) {
  EXPECT_NE(answerAfter(1).find("undecided, as the time was too short to tell "), std::string::npos)
      << answerAfter(1);
  EXPECT_NE(answerAfter(10).find(" times method"), std::string::npos) << answerAfter(10);
}

TEST(Remarks, TellOfADriverWhoseFramesGoOnAfterGlFinish) {
  std::mt19937_64 random(5);
  Record record = simulate({.dwell = 2, .cells = 2, .blocks = 3}, random).record;
  const auto told = [&] {
    const SideView side = sidesOf(record).front();
    return asText(summaryOf(side, figuresOf(side)), false)
               .find("glFinish returns before all is drawn") != std::string::npos;
  };
  Frame& once = record.visits[0].frames[0][0];
  once.late = once.wall / 2;
  EXPECT_FALSE(told());
  for (Visit& visit : record.visits) {
    for (const std::size_t i : {1, 2, 3}) {
      visit.frames[0][i].late = once.late;
    }
  }
  EXPECT_TRUE(told());
}

}  // namespace
}  // namespace survey
