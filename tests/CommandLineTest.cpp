// The parser.
#include <climits>
#include <functional>

#include "tests/support/ApplicationTest.h"

namespace {

using CommandLine = ApplicationTest;

TEST_F(CommandLine, OptionsReachTheTestObject) {
  EXPECT_TRUE(contains(apply("-o"), gl("Translatef", 0, 0, 500)));
  const auto texCoords = [this](int unit) {
    return gl("TexCoordPointer", 2, GL_FLOAT, 0, test->getArrays().texCoords.at(unit));
  };
  std::vector<std::pair<std::string, std::function<Calls()>>> marks = {
      {"-p points", [] { return "glDrawArrays 0"; }},
      {"-n", [] { return "glNormalPointer"; }},
      {"-A", [] { return "glRotatef"; }},
      {"-T", [] { return "glPushAttrib"; }},
      {"-m", [] { return "context DrawArrays"; }},
      {"-u", [] { return "glCopyTexImage2D"; }}};
  for (int i = 0; i < 8; ++i) {
    const std::string number = std::to_string(i);
    marks.emplace_back("-t" + number, [=] { return texCoords(i); });
    marks.emplace_back("-l" + number, [=] { return gl("Enable", GL_LIGHT0 + i); });
  }
  apply("-M drawArrays -d 2 -c -s -z 3");
  Calls before = drawFrame();
  EXPECT_TRUE(contains(before, "glColorPointer") && contains(before, "glSecondaryColorPointer"));
  EXPECT_LT(test->getArrays().colors[0].x, 1);  // filled
  for (const auto& [option, mark] : marks) {
    apply(option);
    Calls after = drawFrame();
    EXPECT_FALSE(contains(before, mark())) << option;
    EXPECT_TRUE(contains(after, mark())) << option;
    before = std::move(after);
  }
  apply("-u");
  EXPECT_FALSE(contains(drawFrame(), "glCopyTexImage2D"));
  EXPECT_EXIT(setUpOn("");
              apply("-M compiledVertArray"), testing::ExitedWithCode(1), "compiledVertArray needs");
}

TEST_F(CommandLine, OptionsReachTheReportAndTheWindow) {
  using Sizes = std::vector<std::pair<int, int>>;
  apply("-d -3 -r 5 -h 300 -w 500 -b -avg");
  EXPECT_EQ(test->getDetail(), 2048U);  // as a negative number is a large one
  EXPECT_EQ(fakeView.sizes, (Sizes{{400, 300}, {500, 300}}));
  EXPECT_EQ(fakeView.covers, 1);
  EXPECT_TRUE(report.averageResults && report.timedBenchmark && !report.terse && !report.regress);
  EXPECT_EQ(report.benchmarkStartTime, fakeClock.now + 100000);
  EXPECT_EQ(report.benchmarkEndTime, report.benchmarkStartTime + 5000000);
  report = {};
  report.samples = 9;
  apply("-d 1 -regress 40 0.05x -r -1");
  EXPECT_TRUE(report.terse && report.averageResults && report.regress);
  EXPECT_EQ(report.regressReference, 40);
  EXPECT_EQ(report.tolerance, 0.05F);
  EXPECT_EQ(report.samples, 0);
  EXPECT_EQ(report.benchmarkEndTime, report.benchmarkStartTime - 1000000);
  fakeView.cannotCover = "there is no window";
  EXPECT_FALSE(parse({"-b", "-r", "5", "-d"}));  // the usage text comes first
  EXPECT_EXIT(apply("-b -d 1"), testing::ExitedWithCode(1), ": there is no window\n");
  report = {};
  apply("-terse");
  EXPECT_TRUE(report.terse && !report.averageResults);
}

TEST_F(CommandLine, HostileArgumentsAreRefusedOrReadAsFarAsTheyGo) {
  const std::string digits(5000, '7');
  testing::internal::CaptureStdout();
  for (const char* refused :
       {"", "-r 1 %s%n", "-r 1 \xff\xfe", "-r 1 -t", "-r 1 -t-0", "-r 1 -t8", "-r 1 -N", "-r nan",
        "-r 1 -p -n", "-r 1 -regress -r", "-r 1 -M immediate"}) {
    EXPECT_FALSE(parse(split(refused))) << refused;
  }
  EXPECT_FALSE(parse({"-r", "1", ""}) || parse({"-r", "1", "-M", ""}));
  EXPECT_NE(testing::internal::GetCapturedStdout().find("'%s%n' not recognized.\n"),
            std::string::npos);
  EXPECT_TRUE(parse({"-r", " 1.9x", "-d", "0", "-z", digits, "-regress", "-inf", digits}));
  EXPECT_EQ(report.benchmarkEndTime, report.benchmarkStartTime + 1000000);
  EXPECT_EQ(test->getDetail(), 1U);
  EXPECT_TRUE(parse({"-r", digits, "-w", digits, "-h", "-" + digits, "-d", "4294967298"}));
  EXPECT_EQ(fakeView.sizes.back(), std::pair(INT_MAX, INT_MIN));
  EXPECT_EQ(test->getDetail(), 2U);
  EXPECT_EQ(report.benchmarkEndTime, report.benchmarkStartTime + INT_MAX * 1000000UL);
  EXPECT_TRUE(parse({"-r", "4294967296"}));
  EXPECT_EQ(report.benchmarkEndTime, report.benchmarkStartTime + INT_MAX * 1000000UL);
  EXPECT_TRUE(parse({"-r", "-1900000000"}));
  EXPECT_EQ(report.benchmarkEndTime, 0U);
}

TEST_F(CommandLine, ARegressionCheckThatIsProbablyNotMeantIsReadOut) {
  const std::tuple<const char*, const char*, std::string> checks[] = {
      {"90", "0.05", ""},          {"1e2", "0", ""},
      {"90", "5%", " of 90 mill"}, {"90", "5%", " of 500 percent"},
      {"nan", "1", " of nan m"},   {"90", "inf", " of inf percent"},
      {"9e99", "1", " of inf m"},  {"-90", "0.05", " of -90 mill"},
      {"0", "1", " of 0 mill"},    {"fast", "0.05", " of 0 million"},
      {"90", "", " of 0 perc"},    {"90", "-0.05", " of -5 percent"}};
  for (const auto& [reference, tolerance, said] : checks) {
    testing::internal::CaptureStderr();
    EXPECT_TRUE(parse({"-r", "1", "-regress", reference, tolerance}));
    const std::string sentence = testing::internal::GetCapturedStderr();
    EXPECT_NE(sentence.find(said), std::string::npos) << sentence;
    EXPECT_EQ(sentence.empty(), said.empty()) << sentence;
  }
}

}  // namespace
