// The parser and the report, on the recording GL and a clock that tests set.
#include <random>
#include <string>

#include "app/Application.h"
#include "app/CommandLine.h"
#include "app/Reporting.h"
#include "app/Window.h"
#include "engine/Memory.h"
#include "tests/support/EngineTest.h"

SorvantaTest* vpt = nullptr;
PerformanceHistory* perfHistory = nullptr;

namespace {

std::vector<std::pair<int, int>> requestedSizes;
int obscuringWindows = 0;

class CommandLineTest : public EngineTest {
 protected:
  CommandLineTest() {
    vpt = &test;
    perfHistory = &history;
    report = Report();
    requestedSizes.clear();
    obscuringWindows = 0;
  }

  static bool apply(std::vector<std::string> arguments) {
    std::vector<char*> argv = {nullptr};
    for (std::string& argument : arguments) {
      argv.push_back(argument.data());
    }
    return applyArguments(static_cast<int>(argv.size()), argv.data());
  }
};

TEST_F(CommandLineTest, OptionsReachTheTestObjectAndTheReport) {
  EXPECT_TRUE(apply({"-d",       "7",  "-p",   "quads", "-M",  "drawArraysWithStaticVBO",
                     "-m",       "-T", "-A",   "-c",    "-s",  "-r",
                     "5",        "-h", "300",  "-w",    "500", "-b",
                     "-regress", "40", "0.05x"}));
  EXPECT_EQ(test.getDetail(), 7U);
  EXPECT_EQ(test.getPrimitive(), GLenum{GL_QUADS});
  EXPECT_EQ(test.getDrawMethod(), kDrawArraysWithStaticVBO);
  EXPECT_TRUE(test.getMacros() && test.getThrash() && test.getRotate());
  EXPECT_TRUE(test.getColor() && test.getSecColor());
  EXPECT_EQ(requestedSizes, (std::vector<std::pair<int, int>>{{400, 300}, {500, 300}}));
  EXPECT_EQ(obscuringWindows, 1);
  EXPECT_TRUE(report.terse && report.averageResults && report.regress && report.timedBenchmark);
  EXPECT_EQ(report.regressReference, 40);
  EXPECT_EQ(report.tolerance, 0.05F);
  EXPECT_EQ(report.benchmarkStartTime, fakeClock.now + 100000);
  EXPECT_EQ(report.benchmarkEndTime, report.benchmarkStartTime + 5000000);

  EXPECT_TRUE(apply({"-r", " -5", "-u", "-u", "-t7", "-l7", "-d", "1", "-M", "drawArrays"}));
  EXPECT_EQ(report.benchmarkEndTime, report.benchmarkStartTime - 5000000);
  const Calls frame = drawFrame();
  EXPECT_EQ(countOf(frame, "glCopyTexImage2D"), 0U);
  EXPECT_EQ(countOf(frame, "glTexCoordPointer"), 1U);
  EXPECT_EQ(std::count(frame.begin(), frame.end(), call("glEnable", GL_LIGHT7)), 1);
}

TEST_F(CommandLineTest, NegativeDetailIsALargeOne) {
  EXPECT_TRUE(apply({"-r", "1", "-d", "-3"}));
  EXPECT_EQ(test.getDetail(), 2048U);
}

TEST_F(CommandLineTest, MethodsThatTheDriverCannotCarryEndTheRun) {
  FakeDriver poor;
  poor.extensions = "GL_EXT_texture";
  setUpOn(poor);
  EXPECT_EXIT(apply({"-M", "drawArraysWithStaticVBO"}), testing::ExitedWithCode(1),
              "this OpenGL driver has no vertex buffer objects, which the method "
              "drawArraysWithStaticVBO draws with");
  EXPECT_TRUE(apply({"-r", "1", "-M", "drawArraysWithVertArrayRng"}));
}

TEST_F(CommandLineTest, AnyArgumentListEndsInSoundSettings) {
  const std::vector<std::string> words = {"-r",
                                          "-help",
                                          "-regress",
                                          "-terse",
                                          "-avg",
                                          "-t0",
                                          "-t7",
                                          "-t8",
                                          "-t",
                                          "-l3",
                                          "-n",
                                          "-c",
                                          "-s",
                                          "-m",
                                          "-T",
                                          "-p",
                                          "-M",
                                          "-d",
                                          "-z",
                                          "-A",
                                          "-o",
                                          "-u",
                                          "-h",
                                          "-w",
                                          "-b",
                                          "-a",
                                          "-R",
                                          "triangles",
                                          "quads",
                                          "points",
                                          "drawArrays",
                                          "displayLists",
                                          "drawArraysWithStaticVBO",
                                          "drawArraysWithVertArrayObjects",
                                          "compiledVertArray",
                                          "arrayElement",
                                          "",
                                          "0",
                                          "1",
                                          "2",
                                          "17",
                                          "-3",
                                          "0.5",
                                          "1e9",
                                          "nan",
                                          "-inf",
                                          "4294967297",
                                          "-99999999999999999999",
                                          "%s%n",
                                          "\xff\xfe",
                                          "-geometry",
                                          "--",
                                          std::string(5000, '7')};
  std::mt19937 random(20);
  testing::internal::CaptureStdout();
  int accepted = 0;
  for (int list = 0; list < 4000; ++list) {
    std::vector<std::string> arguments;
    for (auto count = random() % 9; count > 0; --count) {
      arguments.push_back(words[random() % words.size()]);
      // Meshes of the largest detail take a second each; they have a test of their own.
      if (arguments.size() > 1 && *(arguments.end() - 2) == "-d") {
        arguments.back() = std::to_string(random() % 20);
      }
    }
    if (list % 2 == 0) {
      arguments.insert(arguments.end(), {"-r", std::to_string(list - 2000)});
    }
    accepted += apply(arguments) ? 1 : 0;
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
  const auto frameWith = [this](float figure) {
    fakeClock.now += 60;
    history.addSample(figure);
    testing::internal::CaptureStdout();
    recordPerf();
    return testing::internal::GetCapturedStdout();
  };
  EXPECT_EQ(frameWith(1), "");
  EXPECT_EQ(frameWith(2), "");  // the reset
  EXPECT_EQ(history.getSampleCount(), 0);
  EXPECT_EQ(frameWith(12.3456789F), "12.3457 MTri/sec\n");
  test.setPrimitive(kQuadStrip);
  EXPECT_EQ(frameWith(4e6F), "4e+06 MQuad/sec\n");
  EXPECT_EQ(report.samples, 2);
  EXPECT_FLOAT_EQ(report.sum, 12.3456789F + 4e6F);
}

TEST_F(CommandLineTest, VerdictOfARegressionCheck) {
  const auto status = [](float sum, int samples, float reference, float tolerance) {
    report.regress = true;
    report.sum = sum;
    report.samples = samples;
    report.regressReference = reference;
    report.tolerance = tolerance;
    return [] { quit(); };
  };
  EXPECT_EXIT(status(84, 2, 40, 0.0501F)(), testing::ExitedWithCode(0), "");
  EXPECT_EXIT(status(84, 2, 40, 0.0499F)(), testing::ExitedWithCode(1), "");
  EXPECT_EXIT(status(80, 2, 40, 0)(), testing::ExitedWithCode(0), "");
  EXPECT_EXIT(status(80, 2, -40, 0)(), testing::ExitedWithCode(0), "");
  EXPECT_EXIT(status(80, 2, 0, 5)(), testing::ExitedWithCode(1), "");
  EXPECT_EXIT(status(0, 0, 40, 0)(), testing::ExitedWithCode(0), "");
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
