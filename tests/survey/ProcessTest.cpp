// The whole program, with workers that misbehave on command.
#include "tests/survey/SurveyShell.h"
#include "words/DrawMethods.h"

namespace {

const std::string kAnything = "(.|\n)*";

TEST(SurveyProcess, PrintsTheAnswerTheTableAndNothingElse) {
  expectOutput(
      "$R --precision 5; echo $?",
      "Fastest for triStrip, vertices alone: at detail 8 drawArrays \\(102 MTri/s at 18 vertices a "
      "call; 1\\.01 times displayLists\\), at detail 64 drawArrays \\(102 .*\\)\\.\n"
      "On scripted .* renderer, 1\\.0[;,].*\n\n"
      "Detail 8, triStrip, vertices alone\n *method +MTri/s .*\n"
      "> +drawArrays +102 +0\\.. % +1\\.000 +18 +157 +50 % +itself +yes\n"
      " +displayLists +101 +0\\.. % +0\\.99. +0\\.. % .*\n\nDetail 64(.|\n)*\n0\n");
}

TEST(SurveyProcess, AFaultCostsItsCellWithTheReason) {
  const std::pair<std::string, std::string> faults[] = {
      {"SIGKILL", "died of SIGKILL \\(Killed\\)"},
      {"SIGSTOP", "did not answer within 1 s"},
      {"silence", "did not answer within 1 s"},
      {"abort", R"(died of SIGABRT \(Aborted\), after "driver: assertion failed")"},
      {"garbage", "sent what is no answer"},
      {"memory", "there is not enough memory"},
      {"fail", "lost its context"}};
  for (const auto& [deed, reason] : faults) {
    expectOutput("SCRIPT=displayLists/triStrip/8=" + deed +
                     " $R --patience 1 2> errors; echo $?; "
                     "grep -c failed errors",
                 kAnything +
                     "> +drawArrays +102(.|\n)* displayLists +- .*\\[1\\]\n(.|\n)*"
                     "displayLists +101(.|\n)*\n\\[1\\] " +
                     reason + "\n0\n1\n");
  }
}

TEST(SurveyProcess, ACellGetsASecondChanceButNoThird) {
  expectOutput("SCRIPT=displayLists/triStrip/8=once $R 2> errors | grep -e '101.*]' -e '^\\['",
               " +displayLists +101 .*\\[1\\]\n\\[1\\] cost a worker once: died of SIGKILL .*\n");
  // Six blocks, and two workers that it cost.
  expectOutput(
      "SCRIPT=displayLists/triStrip/8=SIGKILL $R 2> errors | grep -c 101; "
      "[ $(grep -c . $WORKERS) -le 8 ] && echo few",
      "1\nfew\n");
}

TEST(SurveyProcess, ACellThatIsNotCarriedIsARowThatSaysSo) {
  expectOutput(
      "SCRIPT=displayLists/triStrip/8=refuse $R --seconds 1 --csv table --markdown md"
      " > /dev/null; echo $?; grep '^\"displayLists.*/8\"' table; grep '^| .*-' md",
      ".*does not carry 1 cell(.|\n)*0\n\"displayLists/triStrip/8\",displayLists,triStrip,"
      "8,\"\",\"\",MTri/s,{13},\"there are no lists here\"\n"
      "(\\| --- .*\n)?\\|  \\| displayLists \\| - \\|.* refused \\|.*\\[1\\] \\|\n(.*\n)*");
}

TEST(SurveyProcess, DisturbedFramesAreRepeatedAndCounted) {
  expectOutput("SCRIPT=drawArrays/triStrip/8=disturb $R --precision 5 | grep '^>'",
               ".* [1-9][0-9]* of [1-9][0-9]* frames were disturbed by other work\\.\n"
               "(> +drawArrays +102 .*\n){2}");
  expectOutput(
      "SCRIPT='drawArrays/triStrip/8=busy drawArrays/triStrip/64=busy' "
      "$R --seconds 1 > /dev/null",
      ".* The machine is too busy for sure figures.*\n(.*\n)*");
}

TEST(SurveyProcess, EndsEarlyWithWhatIsKnown) {
  expectOutput(
      "SCRIPT=displayLists/triStrip/64=interrupt $R --json known --quiet > table; echo $?; "
      "grep -c Detail table; grep -c sorvanta known",
      ".*Interrupted by a signal(.|\n)*130\n2\n[1-9]\n");
  // That its worker is gone afterwards, expectOutput sees to.
  expectOutput(
      "SCRIPT=drawArrays/triStrip/64=silence $R & disown; until [ -s $WORKERS ]; do sleep 0.1; "
      "done; sleep 1; kill -KILL $!; grep -c . $WORKERS",
      "1\n");
  expectOutput("SCRIPT=begin=fail $R; echo $?", ".*no worker came up: found no device\\.\n1\n");
  expectOutput("SCRIPT=begin=later $R 2>&1 > table | grep Broken; echo ${PIPESTATUS[0]}",
               ".*Broken off .* no further worker came up: it found no device\\.\n0\n");
}

TEST(SurveyProcess, WritesWholeFilesOrNone) {
  expectOutput(
      "for file in '--json /nowhere/a.json' '--csv .'; do\n"
      "$R --markdown table $file; echo $?; done; ls",
      ".*/nowhere/a.json cannot be written: No such file or directory\\.\n1\n"
      ".* \\. cannot be written: Is a directory\\.\n1\n");
  expectOutput(
      "echo before > a.json; trap '' XFSZ; ulimit -f 1; $R --json a.json > /dev/null; "
      "echo $?; ls; cat a.json",
      ".* a.json cannot be written: File too large\\.\n1\na.json\nworkers\nbefore\n");
  expectOutput("$R --seconds 1 > /dev/full; echo $?",
               kAnything + "standard output cannot be written to\\.\n(.*\n)*1\n");
}

TEST(SurveyProcess, WritesFilesThatToolsForGoogleBenchmarkRead) {
  expectOutput(
      "for file in a b; do SCRIPT=displayLists/triStrip/8=refuse $R --precision 20 --json $file "
      "> /dev/null 2>&1; done\n"
      "/usr/bin/python3 /usr/share/benchmark/compare.py --no-color benchmarks a b |"
      " grep -o -e '^[^ ]*_median  *.0.00' -e '^[^ ]*MEAN  *.0.00'",
      "drawArrays/triStrip/8_median +.0.00\n(.*/triStrip/64_median +.0.00\n){2}"
      "OVERALL_GEOMEAN +.0.00\n");
}

TEST(SurveyProcess, NamesTheCulpritAndTheNearestWord) {
  const std::pair<std::string, std::string> culprits[] = {
      {"run --methods drawArray", "'drawArray' is no method; did you mean 'drawArrays'\\?"},
      {"run --primitives TriStrip", "'TriStrip' .* 'triStrip'\\?"},
      {"run --with '-n -l9'", "'-l9' is no attribute; did you mean '-l0'\\?"},
      {"run --details 8,4096", "'4096' is no detail.*"},
      {"run --metods all", "'--metods' is no option; did you mean '--methods'\\?"},
      {"run 5", "'5' has no meaning here"},
      {"rum", "'rum' is no command; did you mean 'run'\\?"},
      {"run --seconds soon", ".*--seconds.*"},
      {"", ".*"}};
  for (const auto& [arguments, sentence] : culprits) {
    expectOutput("$S " + arguments + "; echo $?",
                 "survey_of_scripted_workers: " + sentence + "\n255\n");
  }
  expectOutput("$S --version; $S run --help > help; echo $?; grep -o -e '--[a-z-]*' help | wc -l",
               "sorvanta-survey [0-9.]+( \\(.*\\))?\n0\n1[5-9]\n");
}

TEST(SurveyDocuments, NameEveryOptionAndMethod) {
  const std::string packaging = SORVANTA_SOURCE_DIR "/packaging/sorvanta-survey";
  expectOutput(
      "for c in run versus compare report; do $S $c --help; done | grep -o -e '--[a-z-]*' | "
      "grep -v help | sort -u > options\n"
      "sed -n '/^.SH OPTIONS/,/^.SH TABLE/s/\\\\-/-/gp' " +
          packaging +
          ".1 | grep -o -e '--[a-z-]*' | sort -u | diff options -\n"
          "source " +
          packaging +
          ".bash; COMP_CWORD=2; for c in run versus compare report; do\n"
          "COMP_WORDS=(sorvanta-survey $c ''); _sorvanta_survey; printf '%s\\n' ${COMPREPLY[@]}\n"
          "done | grep -v help | sort -u | diff options -",
      "");
  std::string words = "all\nten\n";
  for (const DrawMethodWord& row : kDrawMethodWords) {
    words += row.word + std::string("\n");
  }
  expectOutput("source " + packaging +
                   ".bash; COMP_WORDS=(sorvanta-survey run --methods ''); COMP_CWORD=3\n"
                   "_sorvanta_survey; printf '%s\\n' ${COMPREPLY[@]} | sort > offered\n"
                   "sort <<< '" +
                   words + "' | sed /^$/d | diff offered -",
               "");
}

TEST(SurveyProcess, AttributeSetsKeepToTheirGroups) {
  expectOutput("$R --with '' --with '-l0 -n' --precision 5 | grep -E '^(Det|>)'",
               "(Detail (8|64), triStrip, (vertices alone|with -n -l0)\n> .*\n){4}");
}

}  // namespace
