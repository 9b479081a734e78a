// The parser and the report, on the recording GL and a clock that tests set.
#include <random>

#include "app/Reporting.h"
#include "app/Window.h"
#include "engine/Memory.h"
#include "tests/support/EngineTest.h"

SorvantaTest* vpt = nullptr;
PerformanceHistory* perfHistory = nullptr;

namespace {

std::vector<std::pair<int, int>> requestedSizes;
int obscuringWindows = 0;

using CommandLineTest = EngineTest;

TEST_F(CommandLineTest, OptionsReachTheTestObjectAndTheReport) {
  apply("-d -3 -p quads -M drawArrays -m -T -A -r 5 -h 300 -w 500 -b");
  EXPECT_EQ(test.getDetail(), 2048U);  // as a negative number is a large one
  EXPECT_TRUE(test.getMacros() && test.getThrash() && test.getRotate());
  EXPECT_EQ(requestedSizes, (std::vector<std::pair<int, int>>{{400, 300}, {500, 300}}));
  EXPECT_EQ(obscuringWindows, 1);
  EXPECT_EQ(report.benchmarkStartTime, fakeClock.now + 100000);
  EXPECT_EQ(report.benchmarkEndTime, report.benchmarkStartTime + 5000000);
  apply("-u -u -t7 -l7 -d 1 -regress 40 0.05x -r -5");
  EXPECT_TRUE(report.terse && report.averageResults && report.regress && report.timedBenchmark);
  EXPECT_EQ(report.regressReference, 40);
  EXPECT_EQ(report.tolerance, 0.05F);
  EXPECT_EQ(report.benchmarkEndTime, report.benchmarkStartTime - 5000000);
  const Calls frame = drawFrame();
  EXPECT_EQ(countOf(frame, "glCopyTexImage2D"), 0);
  EXPECT_EQ(countOf(frame, "glTexCoordPointer"), 1);
  EXPECT_TRUE(contains(frame, gl("Enable", GL_LIGHT7)));
}

TEST_F(CommandLineTest, AnyArgumentListEndsInSoundSettings) {
  std::istringstream list(
      "-r -help -regress -terse -avg -t0 -t7 -t8 -t -l3 -n -c -s -m -T -p -M -d -z -A -o -u -h -w "
      "-b -a -R triangles quads points drawArrays displayLists drawArraysWithStaticVBO "
      "drawArraysWithVertArrayObjects compiledVertArray arrayElement 0 1 2 17 -3 0.5 1e9 nan -inf "
      "4294967297 -99999999999999999999 %s%n \xff\xfe -geometry --");
  std::vector<std::string> words = {"", std::string(5000, '7')};
  words.insert(words.end(), std::istream_iterator<std::string>(list), {});
  std::mt19937 random(20);
  testing::internal::CaptureStdout();
  int accepted = 0;
  for (int run = 0; run < 4000; ++run) {
    std::vector<std::string> arguments;
    for (auto count = random() % 9; count > 0; --count) {
      arguments.push_back(words[random() % words.size()]);
      // Meshes of the largest detail take a second each; they have a test of their own.
      if (arguments.size() > 1 && *(arguments.end() - 2) == "-d") {
        arguments.back() = std::to_string(random() % 20);
      }
    }
    if (run % 2 == 0) {
      arguments.insert(arguments.end(), {"-r", std::to_string(run - 2000)});
    }
    accepted += parse(arguments) ? 1 : 0;
    EXPECT_GE(test.getDetail(), test.minDetail());
    EXPECT_LE(test.getDetail(), test.maxDetail());
    takeCalls();
  }
  EXPECT_NE(testing::internal::GetCapturedStdout().find("'%s%n' not recognized.\n"),
            std::string::npos);
  EXPECT_GT(accepted, 100);
  EXPECT_LT(accepted, 2000);
}

TEST_F(CommandLineTest, RecordsFromTheSecondFrameAfterTheStart) {
  report.benchmarkStartTime = fakeClock.now + 100;
  testing::internal::CaptureStdout();
  for (const float figure : {1.0F, 2.0F, 12.3456789F, 4e6F}) {  // the second brings the reset
    fakeClock.now += 60;
    history.addSample(figure);
    recordPerf();
    test.setPrimitive(figure < 10 ? kTriStrip : kQuadStrip);
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "12.3457 MTri/sec\n4e+06 MQuad/sec\n");
  EXPECT_EQ(report.samples, 2);
  EXPECT_FLOAT_EQ(report.sum, 12.3456789F + 4e6F);
}

TEST_F(CommandLineTest, VerdictOfARegressionCheck) {
  const std::tuple<float, int, float, float, int> verdicts[] = {
      {84, 2, 40, 0.0501F, 0}, {84, 2, 40, 0.0499F, 1}, {80, 2, 40, 0, 0},
      {80, 2, -40, 0, 0},      {80, 2, 0, 5, 1},        {0, 0, 40, 0, 0}};
  report.regress = true;
  for (const auto& [sum, samples, reference, tolerance, status] : verdicts) {
    report.sum = sum;
    report.samples = samples;
    report.regressReference = reference;
    report.tolerance = tolerance;
    EXPECT_EXIT(quit(), testing::ExitedWithCode(status), "") << sum << ' ' << reference;
  }
}

TEST(Memory, RefusalEndsTheProgramWithASentence) {
  EXPECT_EXIT(allocateOrExit(SIZE_MAX / 4, "a wish"), testing::ExitedWithCode(1),
              "refuses 4611686018427387903 bytes of memory for a wish");
}

}  // namespace

void requestWindowSize(int width, int height) {
  requestedSizes.emplace_back(width, height);
}
void createObscuringWindow() {
  ++obscuringWindows;
}
