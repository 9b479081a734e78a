// The whole program with its own workers, on the real driver.
#include <regex>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/support/Shell.h"

namespace {

/// Runs a script in which $S is the program; what is printed has to match from beginning to end,
/// and no worker may be left.
void expectOutput(const std::string& script, const std::string& pattern) {
  const std::string printed = shell(
      "S=$PWD/surveyor; ln -s " SURVEY_PROGRAM " $S\n" + script +
      "\nfor i in $(seq 50); do grep -ls \"^$S.worker\" /proc/[0-9]*/cmdline > left || break; "
      "sleep 0.1; done\n"
      "cat left");
  EXPECT_TRUE(std::regex_match(printed, std::regex(pattern))) << script << '\n' << printed;
}

TEST(SurveyOnDriver, CarriesAllCellsWithoutAnError) {
  expectOutput(
      "$S run --methods all --details 1,64 --frame 1 --seconds 30 --precision 100 --csv cells "
      "> table 2> errors; echo $?; grep '^On' table\n"
      "awk -F, 'NR > 1 && $8 > 0' cells | wc -l; grep failed errors",
      "0\nOn .*" + wantedRenderer() + ".*\n32\n");
}

TEST(SurveyOnDriver, AWorkerThatDiesOrStopsInsideTheDriverCostsItsCell) {
  const std::tuple<std::string, std::string, std::string> ends[] = {
      {"SIGABRT", "3", "died of SIGABRT \\(Aborted\\)"},
      {"SIGKILL", "3", "died of SIGKILL \\(Killed\\)"},
      {"SIGSTOP", "6", "did not answer within 2 s"}};
  for (const auto& [signal, seconds, reason] : ends) {
    expectOutput(
        "export ASAN_OPTIONS=verify_asan_link_order=0\n"
        "CALL_LIST_SIGNAL=$(kill -l " +
            signal +
            ") LD_PRELOAD=" SIGNAL_IN_CALL_LIST
            " $S run --methods drawArrays,displayLists --details 8 --seconds 6 "
            "--patience 2 --precision 100 2> /dev/null; echo $?",
        "(.*\n)*> +drawArrays +[0-9.]+ (.*\n)* +displayLists +- .*\\[1\\]\n\n\\[1\\] " + reason +
            ".*\n0\n");
  }
}

TEST(SurveyOnDriver, DrawsOnScreenOnlyWhenAskedTo) {
  // Where a software renderer has to fill pixels as well.
  expectOutput(
      "rate() { $S run --methods drawArrays --details 8 --seconds 2 --precision 100 --csv cells $1 "
      "> table 2>&1; awk -F, 'NR > 1 { print int($8) }' cells; }\n"
      "echo $(($(rate) > 2 * $(rate --on-screen)))",
      "1\n");
}

TEST(SurveyOnDriver, CellsThatSentLessAreRankedAmongTheirLikeAndSaySo) {
  expectOutput(
      "$S run --methods drawArrays,immediateMode,drawArraysWithStaticVBO --details 8 --with '-c "
      "-n' "
      "--with -m --frame 1 --seconds 20 --precision 100 2> /dev/null | "
      "grep -e ^Detail -e sends -e changes -e 'StaticVBO  '",
      "Detail 8, triStrip, with -n\n.*StaticVBO .*\\[.\\]\nDetail 8, triStrip, with -n -c\n"
      "Detail 8, triStrip, with -m\nDetail 8, triStrip, vertices alone\n.*StaticVBO .*\\[.\\]\n"
      "(.* method drawArrays.* sends no colours.*\n){2}.*-m changes nothing here.*\n");
}

}  // namespace
