// The parser and the report, on the recording GL and a clock that tests set.
#include <climits>

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
  requestedSizes.clear();
  obscuringWindows = 0;
  apply("-p points -d -3 -M drawArrays -m -T -A -r 5 -h 300 -w 500 -b");
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

TEST_F(CommandLineTest, HostileArgumentsAreRefusedOrReadAsFarAsTheyGo) {
  const std::string digits(5000, '7');
  testing::internal::CaptureStdout();
  for (const std::vector<std::string>& refused :
       std::vector<std::vector<std::string>>{{},
                                             {"-r", "1", ""},
                                             {"-r", "1", "%s%n"},
                                             {"-r", "1", "\xff\xfe"},
                                             {"-r", "1", "-t"},
                                             {"-r", "1", "-t-0"},
                                             {"-r", "1", "-M", ""},
                                             {"-r", "1", "-p", "-n"},
                                             {"-r", "1", "-regress", "-r"},
                                             {"-r", "nan"},
                                             {"-r", "4294967296"}}) {
    EXPECT_FALSE(parse(refused)) << testing::PrintToString(refused);
  }
  EXPECT_NE(testing::internal::GetCapturedStdout().find("'%s%n' not recognized.\n"),
            std::string::npos);
  EXPECT_TRUE(parse({"-r", " 1.9x", "-d", "0", "-z", digits, "-regress", "-inf", digits}));
  EXPECT_EQ(report.benchmarkEndTime, report.benchmarkStartTime + 1000000);
  EXPECT_EQ(test.getDetail(), 1U);
  EXPECT_TRUE(parse({"-r", digits, "-w", digits, "-h", "-" + digits, "-d", "4294967298"}));
  EXPECT_EQ(requestedSizes.back(), std::pair(INT_MAX, INT_MIN));
  EXPECT_EQ(test.getDetail(), 2U);
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
