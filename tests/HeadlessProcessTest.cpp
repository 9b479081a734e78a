// The real binary without a display: as in a window, but for what needs one.
#include <regex>

#include <gtest/gtest.h>

#include "tests/support/Shell.h"
#include "words/DrawMethods.h"

namespace {

/// Runs a script in which $S is the program. What it and the program print has to match.
void expectOutput(const std::string& script, const std::string& pattern) {
  unsetenv("DISPLAY");
  const std::string printed = shell("S=" SORVANTA_BINARY "\n" + script);
  EXPECT_TRUE(std::regex_match(printed, std::regex(pattern))) << script << '\n' << printed;
}

const std::string kSaid = "Sorvanta: there is no display; running headless on .+\n";

TEST(HeadlessProcess, ReportsAndEndsAsInAWindow) {
  expectOutput("$S -r 2 2> said; echo $?; cat said",
               " .+, .+\n([0-9.]+ MTri/sec\n){2,}0\n" + kSaid);
  expectOutput("DISPLAY= $S -r 1 -regress 1e6 0.5 -M drawArrays 2> said; echo $?",
               " [0-9.]+ MTri/sec\n1\n");
  expectOutput("timeout --preserve-status -s INT 2 $S -r 600 > out 2>&1; echo $?", "130\n");
  expectOutput("($S -r 600 -o 2> said; echo $? >&2) | head -1 | wc -l", "1\n141\n");
  expectOutput("$S -help 2> said | sha256sum",  // scripts compare it, to the byte
               "0db4780d1a6b724503aa8172f3bd90dd2611e82c20480e2aa0f5d6e2bc497825  -\n");
  expectOutput("$S -r 5 -geometry 1x1+5+5 -sync -a; echo $?",
               " cmd line option '-a' not recognized.\nError(.|\n)*\n1\n");
}

TEST(HeadlessProcess, EveryMethodAndOptionRunsWithoutAGlError) {
  std::string methods;
  for (const DrawMethodWord& row : kDrawMethodWords) {
    methods.append(" ").append(row.word);
  }
  expectOutput("export MESA_DEBUG=1; for method in" + methods +
                   "; do $S -r -5 -t0 -t1 -t7 -l0 -l7 -c -s -m -T -p quadStrip -d 5 -z 2 -A -u -n "
                   "-w 17 -h 5 -M $method 2> said; echo $?; "
                   "grep -v 'no display\\|beside normals\\|table of entry points' said; done",
               "( .+, .+\n0\n){" + std::to_string(kDrawMethodWords.size()) + "}");
}

TEST(HeadlessProcess, SizesAreCorrectedAsThoseOfWindows) {
  expectOutput(
      "$S -r -5 -terse -w 0 -h 99999",
      "Sorvanta: .* it will be 1 by 400.\nSorvanta: .* it will be 1 by 8192.\n" + kSaid + " ");
}

TEST(HeadlessProcess, EndsWithASentenceWhenItCannotGoOn) {
  expectOutput("$S -r 5 -b; echo $?", "Sorvanta: .* no window to draw behind; .*\n 1\n");
  expectOutput("mkdir bin; cp $S bin; bin/Sorvanta -r 5; echo $?",
               "Sorvanta: .* locate resource = OpenGLLogo.jpg .*\n1\n");
  expectOutput("SORVANTA_DEVICE=99 $S -r 5; echo $?",
               "Sorvanta: SORVANTA_DEVICE=99 fits no graphics device; .*\n(  [0-9]+: .+\n)+1\n");
  expectOutput(
      "echo '{\"file_format_version\": \"1.0.0\", \"ICD\": {\"library_path\": \"none\"}}' > f; "
      "__EGL_VENDOR_LIBRARY_FILENAMES=$PWD/f $S -r 5; echo $?",
      "Sorvanta: no EGL driver here offers the device platform, .*\n1\n");
  expectOutput("GALLIUM_DRIVER=none SORVANTA_DEVICE=0 $S -r 5; echo $?",
               "Sorvanta: the graphics device that SORVANTA_DEVICE chooses cannot be used:\n"
               "  0: .+ It said: .+\n1\n");
}

}  // namespace
