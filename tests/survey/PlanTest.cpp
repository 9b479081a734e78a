#include <chrono>
#include <cstdlib>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include "survey/data/Cells.h"
#include "survey/data/Words.h"
#include "survey/sitting/Turns.h"
#include "survey/sitting/Worker.h"
#include "words/DrawMethods.h"
#include "words/Primitives.h"

namespace survey {
namespace {

TEST(Cells, AreTheProductWithoutRepetitionsUnderTheirNames) {
  EXPECT_EQ(cellsOf({}).size(), 30U);
  EXPECT_EQ(cellsOf({.methods = "all", .details = "1"}).size(), kDrawMethodWords.size());
  std::vector<std::string> names;
  for (const Cell& cell : cellsOf({"drawArrays,displayLists,drawArrays",
                                   "quads,points",
                                   "64",
                                   {"", "-T  -l0 -n -n", "-n -l0 -T"}})) {
    names.push_back(nameOf(cell) + (countsQuads(cell.primitive) ? " quads" : ""));
  }
  EXPECT_EQ(names, (std::vector<std::string>{
                       "drawArrays/quads/64 quads", "displayLists/quads/64 quads",
                       "drawArrays/quads/64/-n-l0-T quads", "displayLists/quads/64/-n-l0-T quads",
                       "drawArrays/points/64", "displayLists/points/64",
                       "drawArrays/points/64/-n-l0-T", "displayLists/points/64/-n-l0-T"}));
}

TEST(Cells, RefuseWhatNamesNothing) {
  for (const char* details : {"", "0", "2049", "8,", "8 ", "-8", "8.5", "99999999999"}) {
    EXPECT_THROW(cellsOf({"all", "triStrip", details, {""}}), Unusable) << details;
  }
  EXPECT_THROW(cellsOf({"", "triStrip", "8", {""}}), Unusable);
  EXPECT_THROW(cellsOf({"all", "triFan", "8", {""}}), Unusable);
  EXPECT_THROW(cellsOf({"all", "triStrip", "8", {"-n,-c"}}), Unusable);
}

TEST(Environment, IsReadAsAShellReadsIt) {
  setenv("PLAN_TEST", "there", 1);
  EXPECT_EQ(assignmentsIn(" A=1 B='two words' C=$PLAN_TEST/x  D= E='$PLAN_TEST' ", "--new"),
            (std::vector<std::string>{"A=1", "B=two words", "C=there/x", "D=", "E=$PLAN_TEST"}));
  EXPECT_TRUE(assignmentsIn("", "--new").empty());
  for (const char* const words :
       {"A", "=1", "1A=1", "A-B=1", "A=`id`", "A=$UNSET_THERE", "A=1;B=2"}) {
    EXPECT_THROW(assignmentsIn(words, "--new"), Unusable) << words;
  }
}

TEST(Worker, ThatCannotBeExecutedSaysWhy) {
  const Interruption interruption;
  Worker worker(1, {{"/proc/no/such"}, {}}, interruption);
  try {
    worker.set({}, std::chrono::seconds(9));
    ADD_FAILURE();
  } catch (const WorkerFault& fault) {
    EXPECT_EQ(fault.side, 1U);
    EXPECT_EQ(std::string(fault.what()),
              "/proc/no/such cannot be executed, through which the program starts itself: /proc "
              "has to be mounted and readable (No such file or directory)");
  }
}

TEST(Turns, DependOnTheSeedAlone) {
  Turns turns(1);
  EXPECT_EQ(turns.order(8), (std::vector<std::size_t>{4, 6, 3, 5, 1, 7, 2, 0}));
  EXPECT_NE(Turns(2).order(30), Turns(1).order(30));
}

TEST(Turns, FavourNobody) {
  constexpr int kRounds = 6000;
  constexpr int kExpected = 1200;  // at each place, and behind each other
  constexpr std::size_t kCells = 5;
  Turns turns(3);
  std::map<std::pair<std::size_t, std::size_t>, int> places;      // of a cell in the order
  std::map<std::pair<std::size_t, std::size_t>, int> neighbours;  // who follows whom
  for (int round = 0; round < kRounds; ++round) {
    const std::vector<std::size_t> order = turns.order(kCells);
    ASSERT_EQ(std::set<std::size_t>(order.begin(), order.end()).size(), kCells);
    for (std::size_t place = 0; place < kCells; ++place) {
      ++places[{order[place], place}];
      if (place > 0) {
        ++neighbours[{order[place - 1], order[place]}];
      }
    }
  }
  ASSERT_EQ(places.size(), kCells * kCells);
  ASSERT_EQ(neighbours.size(), kCells * (kCells - 1));
  for (const auto& counts : {places, neighbours}) {
    for (const auto& [pair, count] : counts) {
      EXPECT_NEAR(count, kExpected, 150) << pair.first << ' ' << pair.second;  // five sigma
    }
  }
}

}  // namespace
}  // namespace survey
