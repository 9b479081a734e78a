#include <cmath>
#include <fstream>
#include <random>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "survey/data/RecordJson.h"
#include "survey/tell/Files.h"
#include "survey/tell/Numbers.h"
#include "survey/tell/Sentences.h"
#include "survey/tell/Summary.h"
#include "tests/survey/SimulatedMachine.h"

namespace survey {
namespace {

/// Two blocks of one cell, one that is refused, and one that fails.
Record exampleRecord() {
  Record record;
  record.settings.seed = ~std::uint64_t{0};
  record.machine.caches = {{"Data", 1, 32768, 2}};
  record.before.load = {0.5, 1, 2};
  record.cells = {{"drawArrays", "quads", 4, "-n"},
                  {"displayLists", "quads", 4, "-n"},
                  {"arrayElement", "quads", 4, "-n"}};
  CellAnswer drawn;
  drawn.primitivesPerModel = 16;
  drawn.callsPerModel = 4;
  CellAnswer refused;
  refused.runsAs = RunsAs::kRefused;
  refused.sentence = "no \"lists\" here";
  record.sides = {{"", {"A=1"}}};
  record.sides[0].driver = {0,
                            "device",
                            "vendor",
                            "renderer \xff",
                            "version",
                            true,
                            {{"/lib/driver.so", "1a2b"}},
                            {"MESA_X=1"}};
  record.sides[0].cells = {{drawn, {}}, {refused, {}}, {std::nullopt, {"died of SIGSEGV"}}};
  record.visits = {
      {0,
       0,
       0.5,
       {{{1600, 4000, 2000, 0, 5, 6, false}, {1600, 4000, 2000, 0, {}, {}, false, 1500}}},
       {0},
       {4e7, 3.9e7}},
      {0, 1, 1.5, {{{1600, 8900, 8000, 900, {}, {}, true, 4000}}}, {1}, {}}};
  record.ending = Ending::kInterrupted;
  record.signal = 2;
  record.elapsed = 2;
  return record;
}

TEST(ResultJson, FollowsTheSchemaOfGoogleBenchmark) {
  const auto json = nlohmann::json::parse(resultJson({{exampleRecord()}}));
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
  const auto& without = json.at("sorvanta").at("sides").at(0).at("without");
  EXPECT_EQ(without.at(0).at("remark"), "no \"lists\" here");
  EXPECT_EQ(without.at(1).at("name"), "arrayElement/quads/4/-n");
  EXPECT_EQ(without.at(1).at("remark"), "died of SIGSEGV");
}

TEST(ResultJson, IsReadBackAsItWas) {
  Record record = exampleRecord();
  const Record read = resultOf(resultJson({{record}})).sittings.at(0);
  record.sides[0].driver.renderer = "renderer \xEF\xBF\xBD";  // JSON holds UTF-8 alone
  EXPECT_EQ(nlohmann::json(read), nlohmann::json(record));
  EXPECT_EQ(read.visits[0].frames[0][0].steal, 6);
  EXPECT_EQ(read.ending, Ending::kInterrupted);
}

TEST(ResultJson, HoldsComparisonsWithTheirVerdicts) {
  std::mt19937_64 random(7);
  const Result result{{simulateTurns({.dwell = 2, .cells = 4}, {-0.2}, random)}, 2};
  const std::string text = resultJson(result);
  EXPECT_EQ(resultJson(resultOf(text)), text);
  const auto json = nlohmann::json::parse(text);
  const auto& own = json.at("sorvanta");
  const auto& changes = own.at("changes").at(0);
  EXPECT_EQ(changes.at("overall").at("verdict"), "slower");
  EXPECT_EQ(changes.at("cells").at(3).at("name"), "method3/triStrip/64");
  EXPECT_EQ(own.at("status"), 1);
  EXPECT_EQ(own.at("sides").at(1).at("figures").size(), 4U);
  EXPECT_EQ(json.at("benchmarks").at(0).at("name"), "base/method0/triStrip/64");
  EXPECT_EQ(json.at("benchmarks").back().at("run_name"), "new/method3/triStrip/64");
}

TEST(ResultJson, ReadsFilesOfFormatOne) {
  std::ifstream file(SORVANTA_SOURCE_DIR "/tests/survey/format-1.json");
  auto json = nlohmann::json::parse(file);
  const Result both = resultOf(json.dump());
  ASSERT_EQ(both.sittings.size(), 1U);
  EXPECT_EQ(both.threshold, 5);
  const Record& record = both.sittings[0];
  ASSERT_EQ(record.sides.size(), 2U);
  EXPECT_EQ(record.sides[1].name, "Karl");
  EXPECT_EQ(record.sides[1].environment, (std::vector<std::string>{"SPEED=all=0.5"}));
  EXPECT_EQ(record.sides[1].whyNoWorker, "found no device");
  EXPECT_EQ(record.sides[1].cells[1].faults.size(), 1U);
  EXPECT_EQ(record.sides[0].cells[0].answer->runsAs, RunsAs::kItself);
  EXPECT_EQ(record.machine.caches.at(0).sharing, 2);
  ASSERT_EQ(record.visits.size(), 2U);
  const auto& frames = record.visits[1].frames;
  EXPECT_NEAR(2.0 * static_cast<double>(frames[1][1].primitives),
              static_cast<double>(frames[0][1].primitives), 0.02 * 500e3);

  auto& comparison = json["sorvanta"]["comparison"];
  comparison["inTurns"] = false;
  EXPECT_EQ(resultOf(json.dump()).sittings.size(), 2U);
  json["sorvanta"]["record"] = comparison["base"]["record"];
  const Result survey = resultOf(json.dump());
  EXPECT_FALSE(survey.isComparison());
  EXPECT_EQ(survey.sittings[0].visits[1].frames[0][0].wall, frames[0][0].wall);
}

TEST(ResultJson, SaysWhatIsWrongWithAFile) {
  std::string damaged = resultJson({{exampleRecord()}});
  damaged.replace(damaged.rfind("\"visits\""), 8, "\"misits\"");
  std::string newer = resultJson({{exampleRecord()}});
  newer.replace(newer.find("\"format\":2"), 10, "\"format\":9");
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

TEST(ResultJson, IsNotBelievedUnread) {
  const auto sound = nlohmann::json::parse(resultJson({{exampleRecord()}}));
  const std::pair<const char*, nlohmann::json> damages[] = {
      {"/visits/0/cell", 7},
      {"/visits/0/block", 1u << 31},
      {"/visits/0/frames", {}},
      {"/visits/0/frames/0/0/0", 0},
      {"/visits/0/frames/0/0/1", -1},
      {"/visits/0/frames/0/0/2", "x"},
      {"/visits/0/cell", 2},
      {"/sides", nlohmann::json::array()},
      {"/sides/0/cells/0/answer", {}},
      {"/sides/0/cells/0/answer/callsPerModel", 0},
      {"/sides/0/cells/0/answer/runsAs", "refused"},
      {"/cells/0/detail", 0},
      {"/cells/0/detail", 1e300},
      {"/visits/0/frames/0/0/3", 1u << 31},
      {"/visits/0/yardstick", {0, 1}},
      {"/settings/precision", "1"}};
  for (const auto& [place, value] : damages) {
    auto json = sound;
    json["sorvanta"]["sittings"][0][nlohmann::json::json_pointer(place)] = value;
    try {
      const Result read = resultOf(json.dump());
      ADD_FAILURE() << place;
    } catch (const std::runtime_error& error) {
      EXPECT_EQ(std::string(error.what()).find("this result is damaged: "), 0U) << error.what();
    }
  }
  auto json = sound;
  auto& own = json["sorvanta"];
  own["threshold"] = 5;
  own["sittings"].push_back(own["sittings"][0]);
  EXPECT_THROW(resultOf(json.dump()), std::runtime_error);  // one side, measured again
  own["sittings"][1]["sides"][0]["name"] = "new";
  EXPECT_NO_THROW(resultOf(json.dump()));
  own["question"] = Question{2, 1};
  EXPECT_THROW(resultOf(json.dump()), std::runtime_error);  // of a comparison
  own["sittings"].erase(1);
  EXPECT_NO_THROW(resultOf(json.dump()));
  own["question"]["strips"] = 0;
  EXPECT_THROW(resultOf(json.dump()), std::runtime_error);
}

TEST(Summary, HoldsNothingThatActsOnWhereItIsShown) {
  const auto shown = [](const Record& record) {
    const SideView side{&record, 0};
    const Figures figures = figuresOf(side);
    const Summary summary = summaryOf(side, figures);
    return std::vector<std::string>{asText(summary, false), asMarkdown(summary),
                                    csvOf(side, figures)};
  };
  Record record = exampleRecord();
  const std::vector<std::string> usual = shown(record);
  record.sides[0].driver.renderer =
      "\x1b]0;x\a\xc2\x9b"
      "1m\xe2\x80\xa8\x9b\xf0\x82\x82\xac ü\r\n";
  record.sides[0].cells[1].answer->sentence = "=A1|B1\n| <img src=x> ![x](y)";
  const std::vector<std::string> hostile = shown(record);
  for (std::size_t i = 0; i < hostile.size(); ++i) {
    const std::string& text = hostile[i];
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'),
              std::count(usual[i].begin(), usual[i].end(), '\n'));
    EXPECT_TRUE(std::none_of(text.begin(), text.end(), [](unsigned char c) {
      return (c < ' ' && c != '\n') || c == 0x7f || c == 0x9b;
    })) << text;
  }
  EXPECT_NE(hostile[0].find("On  ]0;x  1m \xEF\xBF\xBD"), std::string::npos) << hostile[0];
  EXPECT_NE(hostile[0].find(" ü  , version"), std::string::npos) << hostile[0];
  EXPECT_NE(hostile[1].find("- [2] =A1&#124;B1 &#124; &lt;img src=x> ![x]\\(y)"), std::string::npos)
      << hostile[1];
  EXPECT_NE(hostile[2].find(",\"'=A1|B1 | "), std::string::npos) << hostile[2];
}

TEST(Sources, TellARebuiltDriverAndAnotherEnvironmentFromTheSame) {
  std::vector<Record> sittings(2, exampleRecord());
  Driver& base = sittings[0].sides[0].driver;
  Driver& newer = sittings[1].sides[0].driver;
  sittings[0].sides[0].name = "old";
  sittings[1].sides[0].name = "new";
  const auto sources = [&] {
    std::string all;
    for (const std::string& sentence : sourcesOf({{&sittings[0], 0}, {&sittings[1], 0}})) {
      all += sentence.substr(sentence.rfind("version") + 7);
    }
    return all;
  };
  const auto contains = [&](const std::string& part) {
    return sources().find(part) != std::string::npos;
  };
  EXPECT_TRUE(contains("SAME DRIVER") && contains("the same files."));
  newer.environment = {"MESA_X=2"};
  EXPECT_TRUE(contains("SAME DRIVER") && contains(", in environments that differ."));
  EXPECT_TRUE(contains(" (with A=1 MESA_X=1). (with A=1 MESA_X=2)."));
  newer.environment = base.environment;
  newer.libraries = {{"/lib/driver.so", "1a2b3c4d5e6f"}, {"/lib/more.so", "1a2b"}};
  EXPECT_EQ(sources(),
            " (with A=1); its own files: /lib/driver.so (1a2b)."
            " (with A=1); its own files: /lib/driver.so (1a2b3c4d) /lib/more.so.");
  // Of files of format 1 no builds are known.
  base.libraries = newer.libraries = {{"/lib/driver.so", ""}};
  EXPECT_EQ(sources(), " (with A=1). (with A=1).");
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
