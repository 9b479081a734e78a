// Verdicts and exit statuses of the whole program, with workers whose speed is made up.
#include "tests/survey/SurveyShell.h"

namespace {

TEST(VersusProcess, AnswersWithTheStatusForABisection) {
  const std::tuple<std::string, std::string, std::string> cases[] = {
      // The environment of the new side, what is printed first, and the status.
      {"", "new is the same as base within 5 %: 0\\.. % ± 0\\.. % (slower|faster) overall\\.", "0"},
      {"SPEED=all=0.93", "new is 7\\.0 % ± 0\\.. % slower; worst: .*, detail (8|64), 7\\.. %\\.",
       "1"},
      {"SPEED=all=1.2", "new is 2.\\.. % ± 0\\.. % faster; best: .*", "0"},
      {"SPEED=displayLists/triStrip/8=0.85",
       "new is slower in 1 of 4 cells; worst: displayLists, detail 8, 15\\.. %; overall .*", "1"},
      {"SCRIPT=displayLists/triStrip/8=abort",
       "new fails in 1 cell that base carries \\(displayLists/triStrip/8\\); new is the same .*",
       "1"},
      {"SCRIPT=begin=fail", "new fails in 4 cells that base carries .*", "1"}};
  for (const auto& [environment, answer, status] : cases) {
    expectOutput("$V --base '' --new '" + environment + "' > text 2> errors; echo $?; head -1 text",
                 status + "\n" + answer + "\n");
  }
}

TEST(VersusProcess, JudgesTheCellsOneByOne) {
  expectOutput(
      "$V --base '' --new 'SPEED=displayLists/triStrip/8=0.8 SCRIPT=displayLists/triStrip/64=abort'"
      " --new-name \"Karl's\" --markdown md 2> errors | grep -v '^ *$'; cat errors; grep -c '^| ' "
      "md",
      "Karl's fails in (.|\n)*base: scripted(.|\n)*Karl's: scripted .* \\(with SPEED=.*\n"
      "(.|\n)*SAME DRIVER(.|\n)*"
      "Detail 8, .*\nmethod +base MTri/s +Karl's MTri/s +ratio .*\n"
      "drawArrays +102 +102 +(1\\.00.|0\\.99.) +[01]\\.... to [01]\\.... +[0-9]+ +same\n"
      "displayLists +101 +80\\.. +0\\.8.. +0\\.... to 0\\.80. +[0-9]+ +slower\n"
      "Detail 64, .*\nmethod .*\ndrawArrays .* same\n"
      "displayLists + - +fails +\\[1\\]\n"
      "\\[1\\] Karl's: died of SIGABRT .*assertion failed.*\n"
      "(.|\n)*Slower by .* overall, or by .* in one cell, would (.|\n)*Fails in Karl's alone: .*\n"
      "8\n");
}

TEST(VersusProcess, SaysUndecidedRatherThanGuess) {
  // One block is no evidence, however large the change.
  expectOutput(
      "$V --base '' --new SPEED=all=0.5 --seconds 0.001 2> errors | head -1; "
      "echo ${PIPESTATUS[0]}",
      "undecided: the time did not suffice .*\n125\n");
}

TEST(VersusProcess, StopsABisectionWhereTheBaseSideOrTheCommandLineIsAtFault) {
  expectOutput("$V --base SCRIPT=begin=fail --new ''; echo $?",
               ".*the base side cannot be used, as no worker of it came up: found no device\\.\n"
               "255\n");
  // A library that does not load must not leave the driver as it was to be compared with itself.
  expectOutput(
      "$V --base LD_PRELOAD=/no.so --new A= > text; echo $?\n"
      "$V --base A= --new 'LD_PRELOAD=/no.so SCRIPT=begin=chatter' > text; echo $?; head -1 text\n"
      "LD_PRELOAD=/no.so $V --base '' --new LD_LIBRARY_PATH=/x 2> errors > text; head -1 text",
      ".*the base side cannot be used.*: object '/no.so' from LD_PRELOAD cannot be .*\n255\n"
      "(.|\n)*\n1\nnew fails in 4 cells that base carries .*\nnew is the same as base .*\n");
  expectOutput(
      "$S versus --unoptimised --methods drawArrays --details 8 --base "
      "SCRIPT=drawArrays/triStrip/8=refuse "
      "--new '' 2> errors | head -1; echo ${PIPESTATUS[0]}",
      "base has no figure to compare with\\.\n255\n");
  // What neither side can do is not the new side's fault, whoever is asked first: with these seeds
  // the one and the other.
  for (const char* const seed : {"1", "3"}) {
    expectOutput(
        std::string("V=\"$V --seed ") + seed +
            "\"; $V --base SCRIPT=begin=fail --new SCRIPT=begin=fail 2> errors; echo $?\n"
            "for deed in abort fail silence; do export "
            "SCRIPT=displayLists/triStrip/8=$deed\n"
            "$V --patience 1 --base '' --new '' 2> errors | head -1; "
            "echo ${PIPESTATUS[0]}; done\n"
            "export SCRIPT='displayLists/triStrip/8=drawing displayLists/triStrip/64=drawing "
            "drawArrays/triStrip/64=drawing'; $V --base '' --new '' 2> errors | head -1\n"
            "unset SCRIPT; $V --base SCRIPT=drawArrays/triStrip/8=fail --new '' 2> errors | "
            "grep -v same",
        "255\n(new is the same as base .*; 1 cell not compared\\.\n0\n){3}"
        "new is the same as base .*; 3 cells not compared\\.\n"
        "(.|\n)*drawArrays .* base fails .*\n(.|\n)*\\[1\\] base: lost its context\n");
  }
  const std::pair<std::string, std::string> lines[] = {
      {"--base 'LIBGL_DRIVERS_PATH /x' --new ''", "--base: 'LIBGL_DRIVERS_PATH' is no assignment"},
      {"--base '' --new 'A=$(date)'", "commands are not run"},
      {"--base '' --new 'A=\"'", "not closed"},
      {"--base ''", "--new is required"},
      {"--base '' --new '' --threshold 0", "--threshold"},
      {"--base '' --new '' --frame nan", "nan is no number"},
      {"--base '' --new '' --base-name new", "two names"},
      {"--base '' --new '' --methds all", "did you mean '--methods'"},
      {"--base '' --new '' --json /nonexistent/file --seconds 1", "cannot be written"}};
  for (const auto& [line, sentence] : lines) {
    expectOutput(
        "$V " + line + " 2>&1 > table | grep -o -e \"" + sentence + "\"; echo ${PIPESTATUS[0]}",
        "(.|\n)+\n255\n");
  }
  expectOutput(
      "$V --base '' --new SCRIPT=displayLists/triStrip/8=interrupt > text 2> errors; echo $?",
      "130\n");
}

TEST(VersusProcess, GivesEnvironmentsToTheirSidesAlone) {
  // The base side is slow by what is in the environment, the new side is not.
  expectOutput("SPEED=all=0.5 $V --base '' --new 'SPEED=\"all=1\"' 2> errors | head -1",
               "new is .* faster; .*\n");
}

/// The README's recipe: commits that change how fast it is, some of which cannot tell.
TEST(VersusProcess, LeadsABisectionToTheCommit) {
  expectOutput(
      "export HOME=$PWD GIT_CONFIG_NOSYSTEM=1; git init -q repo; cd repo\n"
      "git config user.email a@b; git config user.name a\n"
      "for speed in 1 1.001 0.999 skip 1 0.9 skip 0.9 0.9 0.9; do\n"
      "  echo $speed > speed; date +%N >> speed; git add speed; git commit -qm \"speed $speed\"\n"
      "done\n"
      "cat > ../judge <<'EOF'\n"
      "speed=$(head -1 speed); seconds=10; [ $speed = skip ] && speed=1 seconds=0.01\n"
      "exec $V --base '' --new SPEED=all=$speed --threshold 2 --seconds $seconds\n"
      "EOF\n"
      "export V; git bisect start HEAD HEAD~9 > ../log 2>&1\n"
      "git bisect run bash ../judge > ../log 2>&1; echo $?\n"
      "grep -A5 'is the first bad commit' ../log | grep speed | head -1\n"
      "grep -c -e undecided -e suffice ../log\n"
      "(git bisect reset; git bisect start HEAD HEAD~9) > ../log 2>&1\n"
      "git bisect run $V --base '' --nwe '' > ../log 2>&1; echo $?",
      "0\n +speed 0.9\n[1-9]\n[1-9][0-9]*\n");
}

TEST(CompareProcess, HoldsTwoFilesAgainstEachOther) {
  expectOutput(
      "$R --seconds 2 --json old.json > t 2>&1; SPEED=displayLists/triStrip/8=0.1 VERSION=2 $S run "
      "--methods drawArrays,displayLists,arrayElement --details 8 --unoptimised --json new.json "
      "--frame 10 > t 2>&1\n"
      "$S compare old.json old.json > text 2> errors; echo $?; head -1 text; grep -c DRIVER text\n"
      "$S compare old.json new.json --json both.json > text 2> errors; echo $?; head -1 text; "
      "grep -e missing -e added text; cat errors\n"
      "$S compare both.json old.json --threshold 60 > text 2> errors; echo $?; head -1 text",
      "0\nnew is the same as old within 5 %: .*\n1\n"
      "1\nnew is .*slower.*; worst: displayLists, detail 8, 90\\.. %.*\n"
      "arrayElement .* added .*\ndrawArrays .* missing .*\ndisplayLists .* missing .*\n"
      "(.|\n)*The sittings differ in the length of a frame: 15 ms and 10 ms\\.\n"
      "(.|\n)*Only in old: drawArrays/triStrip/64, displayLists/triStrip/64\\.\n"
      "(.|\n)*Only in new: arrayElement/triStrip/8\\.\n"
      "0\nnew is .* faster; best: displayLists, detail 8, (899|900)\\..*\n");
  expectOutput(
      "$R --seconds 0.2 --json a.json > t 2>&1; $S run --methods arrayElement --details 8 "
      "--seconds 0.2 --unoptimised --json b.json > t 2>&1; $S compare a.json b.json 2> t | head "
      "-1; "
      "echo "
      "${PIPESTATUS[0]}\n"
      "echo '{\"context\": {}, \"benchmarks\": []}' > google.json\n"
      "$S compare google.json google.json; echo $?; $S compare no.json b.json; echo $?",
      "old and new have no cell in common\\.\n255\n"
      ".*: google.json: this is a result of Google Benchmark, but not of .*\n255\n"
      ".*: no.json cannot be read: No such file or directory\n255\n");
}

}  // namespace
