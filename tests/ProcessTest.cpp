// The real binary in real windows: arguments, output, endings.
#include <regex>

#include <gtest/gtest.h>

#include "tests/support/Shell.h"
#include "words/DrawMethods.h"

namespace {

/// Runs a script in which $S is the program. What it and the program print has to match.
void expectOutput(const std::string& script, const std::string& pattern) {
  needXServer();
  // The test's X server draws in software, which the program tells on machines with a card.
  const std::string printed = std::regex_replace(
      shell("S=" SORVANTA_BINARY "\n" + script),
      std::regex("Sorvanta: .* though this machine has a graphics card.*\n"), "");
  EXPECT_TRUE(std::regex_match(printed, std::regex(pattern))) << script << '\n' << printed;
}

/// Leaves the program running and goes on when it prints figures, or has ended.
std::string started(const std::string& options) {
  return "$S " + options +
         " > out 2>&1 & until grep -qs /sec out || ! kill -0 $! 2> out2; do sleep 0.1; done; ";
}

TEST(Process, BadCommandLinesGiveTheUsageText) {
  needXServer();
  const std::string usage = shell(SORVANTA_BINARY " -help").substr(1);
  EXPECT_EQ(shell(SORVANTA_BINARY " -help | sha256sum"),  // scripts compare it, to the byte
            "0db4780d1a6b724503aa8172f3bd90dd2611e82c20480e2aa0f5d6e2bc497825  -\n");
  for (const char* options : {"", "-r 0.9", "-r 5 -help", "-r 5 -p Triangles", "-regress 40 -r",
                              "-r 5 -M drawArraysWithVBOs", "-r 5 -regress 40", "-r"}) {
    EXPECT_EQ(shell(SORVANTA_BINARY " " + std::string(options) + "; echo $?"), " " + usage + "1\n");
  }
  EXPECT_EQ(shell(SORVANTA_BINARY " -r 5 -a -t8 ''"),
            " cmd line option '-a' not recognized.\ncmd line option '-t8' not recognized.\n"
            "cmd line option '' not recognized.\n" +
                usage);
}

TEST(Process, ReportsPerFrameOrOnAverageAndTheRegressionAsStatus) {
  expectOutput("$S -r 2; echo $?", " .+, .+\n([0-9.]+ MTri/sec\n){2,}0\n");
  expectOutput("$S -terse -p quads -r 2", " ([0-9.]+ MQuad/sec\n)+");
  expectOutput("$S -r 1 -o -avg -M drawArrays -d 256", " .+, .+\n[0-9.]+ MTri/sec\n");
  expectOutput("$S -r 1 -regress 1e6 0.5; echo $?", " [0-9.]+ MTri/sec\n1\n");
  expectOutput("$S -r -5 -avg; echo $?",
               " .+\nSorvanta: .* before a figure was recorded.*\n-?nan MTri/sec\n0\n");
}

TEST(Process, EveryMethodAndOptionRunsWithoutAGlError) {
  std::string methods;
  for (const DrawMethodWord& row : kDrawMethodWords) {
    methods.append(" ").append(row.word);
  }
  expectOutput("export MESA_DEBUG=1; for method in" + methods +
                   "; do $S -r -5 -t0 -t1 -t7 -l0 -l7 -c -s -m -T -p quadStrip -d 5 -z 2 "
                   "-A -u -n -o -M $method; echo $?; done",
               "( .*" + wantedRenderer() +
                   ".*, .+\n(Sorvanta: beside normals .*\n)?(Sorvanta: .* table of entry "
                   "points.*\n)?0\n){" +
                   std::to_string(kDrawMethodWords.size()) + "}");
}

TEST(Process, SaysWhatTheDriverLacks) {
  const std::string between = "( |Warning: .*\n)*";  // Mesa warns of the override
  expectOutput(
      "export MESA_EXTENSION_OVERRIDE=-GL_ARB_vertex_buffer_object; "
      "$S -r -5 -terse -M drawArraysWithVertArrayRng; $S -r -5 -M drawArraysWithStaticVBO; echo $?",
      between + "Sorvanta: a vertex array range covers at most 0 .*\n" + between +
          "Sorvanta: this OpenGL driver has no vertex buffer objects, .*\n" + between + "1\n");
}

TEST(Process, EscapeAndClosingEndTheRunOnce) {
  for (const std::string key : {"Escape; ", "alt+F4; "}) {
    expectOutput(
        "openbox > /dev/null 2>&1 & sleep 1; $S -r 600 -avg -M drawArrays -o & sleep 2; "
        "xdotool search --onlyvisible --name SorvantaTest windowfocus --sync key space; sleep 1; "
        "xdotool key " +
            key + "wait $!; echo $?",
        " .+\n[0-9.]+ MTri/sec\n0\n");
  }
}

TEST(Process, WindowHasTheSizeAskedFor) {
  const std::pair<std::string, std::string> sizes[] = {
      {"-w 300 -h 200", "300x200\n"},
      {"-h 200 -w 300", "300x200\n"},
      {"-w 300 -w 400", "400x400\n"},
      {"-h 0", "400x1\n.* 400 by 0 pixels cannot be made; it will be 400 by 1.\n"},
      {"-w -5", "1x400\n.* it will be 1 by 400.\n"},
      {"-w 4294967296", "8192x400\n.* it will be 8192 by 400.\n"}};
  for (const auto& [options, printed] : sizes) {
    expectOutput(
        started("-r 600 -d 1 -o " + options) +
            "xwininfo -name SorvantaTest | grep -o 'geometry [0-9x]*'; grep -h 'Sorvanta:' out",
        "geometry " + printed);
  }
}

/// A window manager, options, and how the window is hidden once it is up.
using Hiding = std::tuple<std::string, std::string, std::string>;
class Hidden : public testing::TestWithParam<Hiding> {};
const std::string kWindow = "xdotool search --name SorvantaTest ";
const std::string kTopmost =
    "xwininfo -root -tree | grep -Em1 'Obscuring|SorvantaTest' | grep -q ' 1280x1024+'";
INSTANTIATE_TEST_SUITE_P(Process, Hidden,
                         testing::Values(Hiding{"openbox", "", kWindow + "windowunmap"},
                                         Hiding{"openbox", "", kWindow + "windowminimize"},
                                         Hiding{"true", "-b", kTopmost},
                                         Hiding{"openbox", "-b", kTopmost},
                                         Hiding{"metacity", "-b", kTopmost}));

TEST_P(Hidden, FramesKeepComing) {
  const auto& [manager, options, hide] = GetParam();
  expectOutput(manager + " > /dev/null 2>&1 & sleep 1; " + started("-r 3 " + options) +
                   "sleep 1; " + hide +
                   " || echo no; before=$(wc -l < out); wait $!; echo $?; "
                   "[ $(wc -l < out) -gt $((before + 3)) ] && echo more",
               "0\nmore\n");
}

TEST(Process, LongRunsKeepTheirMemory) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer keeps freed memory";
#endif
  // All kinds of retained structure at once, off the screen: a driver that paints in software
  // queues what is on it, the longer the busier the machine is.
  expectOutput(
      "for method in immediateMode displayLists drawArraysWithVertArrayRng "
      "drawArraysWithVertArrayObjects drawArraysWithStaticVBO; do "
      "$S -r 600 -o -A -u -T -t0 -l0 -n -d 128 -M $method > $method & pids+=\" $!\"; done\n"
      "until [ $(grep -ls /sec * | wc -l) = 5 ]; do sleep 0.1; done\n"
      "size() { for p in $pids; do grep VmRSS /proc/$p/status; done |"
      " awk '{ kilobytes += $2 } END { print kilobytes }'; }\n"
      "before=$(size); sleep 5; echo $((before > 100000)) $(($(size) - before))",
      "1 (-?[0-9]{1,3}|1[0-9]{3})\n");
}

TEST(Process, EndsWithASentenceWhenItCannotGoOn) {
  expectOutput("DISPLAY=:none $S -r 1; echo $?", "Sorvanta: no OpenGL: .*':none'.*\n1\n");
  expectOutput("$S -indirect -r 1; echo $?", "Sorvanta: no OpenGL: .*\n1\n");
  expectOutput("MESA_GL_VERSION_OVERRIDE=3.3FC $S -r 1; echo $?",
               "Sorvanta: this OpenGL context .* has no fixed function.*\n1\n");
  const std::string lost = "Sorvanta: standard output cannot be written.*\n1\n";
  expectOutput("$S -r 600 -avg > /dev/full; echo $?", lost);
  expectOutput("$S -r -1 -terse > /dev/full; echo $?", lost);
  expectOutput("$S -r 600 >&-; echo $?", lost);
  expectOutput("$S -r 1 -terse -avg <&- 2>&-; echo $?", " [0-9.]+ MTri/sec\n0\n");
  expectOutput("$S -r 600 | head -1 | wc -l", "1\n");
  expectOutput("timeout --preserve-status -s INT 2 $S -r 600 > out; echo $?", "130\n");
  expectOutput(
      "Xvfb -displayfd 3 3> n 2> /dev/null & x=$!; until DISPLAY=:$(grep -s . n); do sleep 0.1; "
      "done; " +
          started("-r 600") + "kill $x; wait $!; echo $?; tail -n 1 out",
      "(.*Terminated.*\n)?1\nSorvanta: the connection to the X server is lost.\n");
}

}  // namespace
