// What is recorded and printed, and the exit status.
#include <csignal>
#include <cstdlib>
#include <iostream>

#include "app/Diagnostics.h"
#include "tests/support/ApplicationTest.h"

namespace {

using Reporting = ApplicationTest;

TEST_F(Reporting, RecordsFromTheSecondFrameAfterTheStart) {
  report.benchmarkStartTime = fakeClock.now + 60;
  testing::internal::CaptureStdout();
  const auto frameGives = [this](float figure) {
    fakeClock.now += 60;
    history.addSample(figure);
    recordPerf();
  };
  frameGives(1);  // ends at the start time itself, which is too early
  EXPECT_EQ(history.getSampleCount(), 1);
  report.sum = 5;
  frameGives(2);  // begins the recording
  EXPECT_EQ(history.getSampleCount(), 0);
  frameGives(12.3456789F);
  history.clearSamples();
  test->setPrimitive(kQuadStrip);
  frameGives(4e6F);
  report.averageResults = true;
  frameGives(4e6F);
  test->setPrimitive(kLines);
  recordPerf();  // no time has passed
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "12.3457 MTri/sec\n4e+06 MQuad/sec\n");
  EXPECT_EQ(report.samples, 3);
  EXPECT_FLOAT_EQ(report.sum, 12.3456789F + 8e6F);
}

TEST_F(Reporting, VerdictOfARegressionCheck) {
  const std::tuple<float, int, float, float, int> verdicts[] = {
      {84, 2, 40, 0.0501F, 0}, {84, 2, 40, 0.0499F, 1}, {76, 2, 40, 0.0499F, 1}, {80, 2, 40, 0, 0},
      {80, 2, -40, 0, 0},      {80, 2, 0, 5, 1},        {0, 0, 40, 0, 0}};
  report.regress = true;
  for (const auto& [sum, samples, reference, tolerance, status] : verdicts) {
    report.sum = sum;
    report.samples = samples;
    report.regressReference = reference;
    report.tolerance = tolerance;
    EXPECT_EXIT(quit(), testing::ExitedWithCode(status), "") << sum << ' ' << reference;
  }
  const auto quitAndTellCalls = [] {
    std::atexit([] { std::cerr << takeCalls(); });
    quit();
  };
  EXPECT_EXIT(quitAndTellCalls(), testing::ExitedWithCode(0), "^" + gl("Finish") + "$");
}

TEST_F(Reporting, ChecksThatGLHasNoError) {
  checkGL();
  fakeDriver.errors["glFinish"] = GL_INVALID_VALUE;
  glFinish();
  EXPECT_EXIT(checkGL(), testing::KilledBySignal(SIGABRT), "^GL Error: ");
}

}  // namespace
