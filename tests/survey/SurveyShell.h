/// Scripts around the survey's program with scripted workers.
#pragma once

#include <regex>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/Shell.h"

/// Runs a script in which $S is the program, $R a short survey of two methods at two details, and
/// $V a short comparison of the same; what is printed has to match from beginning to end, and no
/// worker may be left.
inline void expectOutput(const std::string& script, const std::string& pattern) {
  const std::string printed = shell(
      "S=" SURVEY_BINARY
      "\nexport WORKERS=$PWD/workers\n"
      "CELLS='--methods drawArrays,displayLists --details 8,64 --unoptimised'\n"
      "R=\"$S run $CELLS\"\n"
      "V=\"$S versus $CELLS\"\n" +
      script +
      "\nleft() { for p in $(cat $WORKERS); do grep -s '^State:.[^Z]' /proc/$p/status; done; }\n"
      "touch $WORKERS; for i in $(seq 50); do [ \"$(left)\" ] || break; sleep 0.1; done; left");
  EXPECT_TRUE(std::regex_match(printed, std::regex(pattern))) << script << '\n' << printed;
}
