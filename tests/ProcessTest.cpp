// The real binary in real windows: arguments, output, endings.
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/support/Process.h"
#include "tests/support/XServer.h"

namespace {

class ProcessTest : public testing::Test {
 protected:
  Process sorvanta(std::vector<std::string> arguments, const std::string& output = "") {
    arguments.insert(arguments.begin(), SORVANTA_BINARY);
    return {arguments, server.display(), output};
  }

  /// Runs to the end and returns standard output; standard error must stay empty.
  std::string outputOf(const std::vector<std::string>& arguments, int status) {
    Process process = sorvanta(arguments);
    EXPECT_EQ(process.wait(), status);
    EXPECT_EQ(process.err(), "");
    return process.out();
  }

  std::string x(const std::string& command) {
    return shell("export DISPLAY=" + server.display() + "; " + command);
  }

  /// Width and height of the benchmark window, "400x400".
  std::string windowSize() {
    return x("xwininfo -name SorvantaTest | sed -n 's/.*-geometry \\([0-9x]*\\).*/\\1/p'");
  }

  XServer server;
};

TEST_F(ProcessTest, BadCommandLinesGiveTheUsageText) {
  std::ostringstream usage;
  usage << std::ifstream(SORVANTA_TESTS "/usage.txt").rdbuf();
  ASSERT_FALSE(usage.str().empty());
  const std::pair<std::vector<std::string>, std::string> lines[] = {
      {{}, ""},
      {{"-r", "0.9"}, ""},
      {{"-r", "5", "-help"}, ""},
      {{"-r", "5", "-p", "Triangles"}, ""},
      {{"-r", "5", "-M", "drawArraysWithVBOs"}, ""},
      {{"-regress", "40", "-r"}, ""},
      {{"-r", "5", "-regress", "40"}, ""},
      {{"-r"}, ""},
      {{"-r", "5", "-a", "-t8"},
       "cmd line option '-a' not recognized.\ncmd line option '-t8' not recognized.\n"},
      {{"-r", "5", "7", ""},
       "cmd line option '7' not recognized.\ncmd line option '' not recognized.\n"},
  };
  for (const auto& [arguments, complaints] : lines) {
    EXPECT_EQ(outputOf(arguments, 1), " " + complaints + usage.str());
  }
}

TEST_F(ProcessTest, ReportsPerFrameOrOnAverage) {
  const std::regex perFrame(" .+, .+\n([0-9.]+ MTri/sec\n){2,}");
  EXPECT_TRUE(std::regex_match(outputOf({"-r", "2"}, 0), perFrame));
  const std::regex terseQuads(" ([0-9.]+ MQuad/sec\n)+");
  EXPECT_TRUE(std::regex_match(outputOf({"-terse", "-p", "quads", "-r", "2"}, 0), terseQuads));
  const std::regex average(" .+, .+\n[0-9.]+ MTri/sec\n");
  EXPECT_TRUE(std::regex_match(
      outputOf({"-r", "1", "-o", "-avg", "-M", "drawArrays", "-d", "256"}, 0), average));
}

TEST_F(ProcessTest, RegressionIsTheExitStatus) {
  const std::regex verdict(" [0-9.]+ MTri/sec\n");
  EXPECT_TRUE(std::regex_match(outputOf({"-r", "1", "-regress", "5", "1000"}, 0), verdict));
  EXPECT_TRUE(std::regex_match(outputOf({"-r", "1", "-regress", "1e6", "0.5"}, 1), verdict));

  Process nothing = sorvanta({"-r", "-5", "-avg"});
  EXPECT_EQ(nothing.wait(), 0);
  EXPECT_TRUE(std::regex_search(nothing.out(), std::regex("\n-?nan MTri/sec\n$")));
  EXPECT_NE(nothing.err().find("before a figure was recorded"), std::string::npos);
}

TEST_F(ProcessTest, EveryMethodAndOptionRunsWithoutAGlError) {
  setenv("MESA_DEBUG", "1", 1);
  for (const char* method :
       {"immediateMode", "drawArrays", "compiledVertArray", "displayLists",
        "drawArraysWithVertArrayRng", "drawArraysWithVertArrayObjects",
        "drawArraysWithDynVertBufferObjectsVAO", "drawArraysWithStatVertBufferObjectsVAO",
        "drawArraysWithStaticVBO", "arrayElement"}) {
    const std::string out = outputOf(
        {"-r", "-5", "-M",        method, "-t0", "-t1", "-t7", "-l0", "-l7", "-c", "-s", "-m",
         "-T", "-p", "quadStrip", "-d",   "5",   "-z",  "2",   "-A",  "-u",  "-n", "-o"},
        0);
    EXPECT_TRUE(std::regex_match(out, std::regex(" .+, .+\n"))) << method;
  }
}

TEST_F(ProcessTest, EscapeAndClosingEndTheRunOnce) {
  const Process windowManager({"openbox"}, server.display());
  for (const char* key : {"Escape", "alt+F4"}) {
    Process process = sorvanta({"-r", "600", "-avg", "-M", "drawArrays", "-o"});
    ASSERT_TRUE(process.printed("Mesa"));
    const std::string window = x("xdotool search --sync --name SorvantaTest");
    x("xdotool windowfocus --sync " + window + " key space; sleep 1; xdotool key " + key);
    EXPECT_EQ(process.wait(20), 0) << key;
    EXPECT_TRUE(std::regex_match(process.out(), std::regex(" .+\n[0-9.]+ MTri/sec\n")));
  }
}

TEST_F(ProcessTest, WindowHasTheSizeAskedFor) {
  const std::tuple<std::vector<std::string>, const char*, const char*> sizes[] = {
      {{"-w", "300", "-h", "200"}, "300x200", ""},
      {{"-h", "200", "-w", "300"}, "300x200", ""},
      {{"-w", "300", "-w", "400"}, "400x400", ""},
      {{"-h", "0"}, "400x1", "400 by 0 pixels cannot be made; it will be 400 by 1"},
      {{"-w", "-5"}, "1x400", "it will be 1 by 400"},
      {{"-w", "4294967296"}, "8192x400", "it will be 8192 by 400"},
  };
  for (const auto& [options, size, complaint] : sizes) {
    std::vector<std::string> arguments = {"-r", "600", "-d", "1", "-o"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    Process process = sorvanta(arguments);
    ASSERT_TRUE(process.printed("/sec"));
    EXPECT_EQ(windowSize(), size);
    EXPECT_NE(process.err().find(complaint), std::string::npos) << process.err();
    EXPECT_EQ(process.err().empty(), *complaint == '\0') << process.err();
  }
}

TEST_F(ProcessTest, FramesKeepComingWhileHidden) {
  const Process windowManager({"openbox"}, server.display());
  for (const char* hide : {"windowunmap", "windowminimize"}) {
    Process process = sorvanta({"-r", "3"});
    ASSERT_TRUE(process.printed("/sec"));
    x(std::string("xdotool search --name SorvantaTest ") + hide);
    const auto before = process.out().size();
    EXPECT_EQ(process.wait(10), 0) << hide;
    EXPECT_GT(process.out().size(), before + 30) << hide;
  }
}

TEST_F(ProcessTest, EndsWithASentenceWhenItCannotGoOn) {
  Process noDisplay({SORVANTA_BINARY, "-r", "1"}, "");
  EXPECT_EQ(noDisplay.wait(), 1);
  EXPECT_NE(noDisplay.err().find("display"), std::string::npos);

  Process fullDisk = sorvanta({"-r", "5"}, "/dev/full");
  EXPECT_EQ(fullDisk.wait(), 1);
  EXPECT_NE(fullDisk.err().find("standard output cannot be written"), std::string::npos);

  EXPECT_EQ(x(SORVANTA_BINARY " -r 600 | head -1 | wc -l"), "1");

  Process interrupted = sorvanta({"-r", "600"});
  ASSERT_TRUE(interrupted.printed("/sec"));
  interrupted.signal(SIGINT);
  EXPECT_EQ(interrupted.wait(5), 128 + SIGINT);

  Process orphaned = sorvanta({"-r", "600"});
  ASSERT_TRUE(orphaned.printed("/sec"));
  server.kill();
  EXPECT_EQ(orphaned.wait(10), 1);
  EXPECT_EQ(orphaned.err(), "Sorvanta: the connection to the X server is lost.\n");
}

}  // namespace
