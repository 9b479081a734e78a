#include <cmath>
#include <random>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "survey/files/ResultJson.h"
#include "survey/record/RecordJson.h"
#include "survey/show/Numbers.h"
#include "tests/survey/SimulatedMachine.h"

namespace survey {
namespace {

/// Two blocks of one cell, one that is refused, and one that fails.
Record exampleRecord() {
  Record record;
  record.settings.seed = ~std::uint64_t{0};
  record.settings.environment = {"A=1"};
  record.machine.caches = {{"Data", 1, 32768, 2}};
  record.before.load = {0.5, 1, 2};
  record.driver = {0, "device", "vendor", "renderer \xff", "version", true, {"/lib/driver.so"}};
  record.cells = {{{"drawArrays", "quads", 4, "-n"}, CellAnswer{}, {}},
                  {{"displayLists", "quads", 4, "-n"}, CellAnswer{}, {}},
                  {{"arrayElement", "quads", 4, "-n"}, std::nullopt, {"died of SIGSEGV"}}};
  record.cells[0].answer->primitivesPerModel = 16;
  record.cells[0].answer->callsPerModel = 4;
  record.cells[1].answer->support = RunsAs::kRefused;
  record.cells[1].answer->sentence = "no \"lists\" here";
  record.visits = {
      {0,
       0,
       0,
       0.5,
       {{1600, 4000, 2000, 1, 5, 6, false}, {1600, 4000, 2000, 0, {}, {}, false, 1500}}},
      {0, 1, 1, 1.5, {{1600, 8000, 8000, 900, {}, {}, true, 4000}}}};
  record.ending = Ending::kInterrupted;
  record.signal = 2;
  record.elapsed = 2;
  return record;
}

TEST(ResultJson, FollowsTheSchemaOfGoogleBenchmark) {
  const auto json = nlohmann::json::parse(resultJson(exampleRecord()));
  EXPECT_EQ(json.at("context").at("caches").at(0).at("num_sharing"), 2);
  const auto& entries = json.at("benchmarks");
  ASSERT_EQ(entries.size(), 2U + 4);  // repetitions and aggregates of the one that was measured
  EXPECT_EQ(entries[1].at("name"), "drawArrays/quads/4/-n");
  EXPECT_EQ(entries[1].at("run_type"), "iteration");
  EXPECT_EQ(entries[1].at("repetitions"), 2);
  EXPECT_EQ(entries[1].at("repetition_index"), 1);
  EXPECT_EQ(entries[1].at("iterations"), 100);
  EXPECT_EQ(entries[1].at("real_time"), 80);
  EXPECT_EQ(entries[0].at("cpu_time"), 20);
  EXPECT_EQ(entries[0].at("time_unit"), "ns");
  EXPECT_EQ(entries[0].at("items_per_second"), 4e8);
  EXPECT_EQ(entries[2].at("aggregate_name"), "mean");
  EXPECT_EQ(entries[2].at("real_time"), 60);
  EXPECT_NEAR(entries[5].at("real_time").get<double>(), std::sqrt(800.0) / 60, 1e-9);
  const auto& without = json.at("sorvanta").at("without");
  EXPECT_EQ(without.at(0).at("remark"), "no \"lists\" here");
  EXPECT_EQ(without.at(1).at("name"), "arrayElement/quads/4/-n");
  EXPECT_EQ(without.at(1).at("remark"), "died of SIGSEGV");
}

TEST(ResultJson, IsReadBackAsItWas) {
  Record record = exampleRecord();
  const auto read = std::get<Record>(resultOf(resultJson(record)));
  record.driver.renderer = "renderer \xEF\xBF\xBD";  // JSON holds UTF-8 alone
  EXPECT_EQ(nlohmann::json(read), nlohmann::json(record));
  EXPECT_EQ(read.visits[0].frames[0].steal, 6);
  EXPECT_EQ(read.ending, Ending::kInterrupted);
}

TEST(ResultJson, HoldsComparisonsWithTheirVerdicts) {
  std::mt19937_64 random(7);
  Comparison comparison = simulateTurns({.dwell = 2, .cells = 4}, -0.2, random);
  comparison.threshold = 2;
  const std::string text = resultJson(comparison);
  const auto read = std::get<Comparison>(resultOf(text));
  EXPECT_EQ(resultJson(read), text);
  EXPECT_EQ(nlohmann::json(read.newer.record), nlohmann::json(comparison.newer.record));
  const auto json = nlohmann::json::parse(text);
  const auto& changes = json.at("sorvanta").at("changes");
  EXPECT_EQ(changes.at("overall").at("verdict"), "slower");
  EXPECT_EQ(changes.at("cells").at(3).at("name"), "method3/triStrip/64");
  EXPECT_EQ(changes.at("status"), 1);
  EXPECT_EQ(json.at("benchmarks").at(0).at("name"), "base/method0/triStrip/64");
  EXPECT_EQ(json.at("benchmarks").back().at("run_name"), "new/method3/triStrip/64");
}

TEST(ResultJson, SaysWhatIsWrongWithAFile) {
  std::string damaged = resultJson(exampleRecord());
  damaged.replace(damaged.find("\"visits\""), 8, "\"misits\"");
  std::string newer = resultJson(exampleRecord());
  newer.replace(newer.find("\"format\":1"), 10, "\"format\":9");
  const std::pair<std::string, std::string> texts[] = {
      {"{", "no JSON"},
      {"[1]", "no result"},
      {R"({"context": {}, "benchmarks": []})", "compare.py"},
      {newer, "format 9"},
      {damaged, "damaged"}};
  for (const auto& [text, sentence] : texts) {
    try {
      resultOf(text);
      ADD_FAILURE() << text;
    } catch (const std::runtime_error& error) {
      EXPECT_NE(std::string(error.what()).find(sentence), std::string::npos) << error.what();
    }
  }
}

TEST(Numbers, HaveThreeDigitsThatCount) {
  const std::pair<double, std::string> numbers[] = {
      {183.4, "183"},    {35.44, "35.4"}, {7.024, "7.02"}, {9.996, "10.0"}, {999.6, "1000"},
      {0.1234, "0.123"}, {1834, "1830"},  {1, "1.00"},     {0, "?"},        {INFINITY, "?"}};
  for (const auto& [number, text] : numbers) {
    EXPECT_EQ(threeDigits(number), text);
  }
}

}  // namespace
}  // namespace survey
