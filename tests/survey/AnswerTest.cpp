#include <random>

#include <gtest/gtest.h>

#include "survey/show/Answer.h"
#include "survey/show/Table.h"
#include "tests/survey/SimulatedMachine.h"

namespace survey {
namespace {

std::string answerAfter(std::size_t blocks) {
  std::mt19937_64 random(5);
  const Record record = simulate({.dwell = 2, .cells = 10, .blocks = blocks}, random).record;
  return answerOf(record, figuresOf(record));
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
    return tableOf(record, figuresOf(record), false).find("glFinish returns before all is drawn") !=
           std::string::npos;
  };
  Frame& once = record.visits[0].frames[0];
  once.late = once.wall / 2;
  EXPECT_FALSE(told());
  for (Visit& visit : record.visits) {
    visit.frames[1].late = visit.frames[2].late = visit.frames[3].late = once.late;
  }
  EXPECT_TRUE(told());
}

}  // namespace
}  // namespace survey
