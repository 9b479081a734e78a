// Pages, by the whole program with scripted workers.
#include "tests/survey/SurveyShell.h"

namespace {

/// Checks that a page is valid, holds words and needs nothing beside itself; prints its charts.
const std::string kCheck =
    "check() { /usr/bin/python3 " SORVANTA_SOURCE_DIR "/tests/survey/check-page.py \"$@\"; }\n";

TEST(Report, IsOneValidPageThatHoldsEveryCell) {
  expectOutput(
      kCheck +
          "export VERSION='<b>&\"'\n"
          "$R --seconds 1 --json a.json > t 2>&1; SCRIPT=displayLists/triStrip/8=refuse $R "
          "--seconds 1 --json b.json > t 2>&1\n"
          "$V --base '' --new SPEED=displayLists/triStrip/8=0.85 --json c.json > t 2>&1\n"
          "$S report a.json --html a.html; echo $?\n"
          "check a.html 'Fastest for' '<b>&\"' 'Detail 8, triStrip' 'Detail 64, triStrip' "
          "drawArrays "
          "displayLists 'Rates over detail'\n"
          "$S report a.json b.json --html ab.html && check ab.html 'Side by side' a b 'no lists "
          "here'\n"
          "$S report c.json --html c.html && check c.html 'slower in 1 of 4' 'geometric mean' "
          "'SAME DRIVER'\n"
          "$S report a.json b.json c.json --html abc.html && check abc.html",
      // Rates of two details and their lines; the same side by side, with lines for each; ratios of
      // two details and of all.
      "0\n3 charts\n4 charts\n3 charts\n7 charts\n");
}

TEST(Report, SaysWhatItLacks) {
  expectOutput(
      "$R --seconds 1 --json a.json > t 2>&1\n"
      "echo old > page; PATH=/nonexistent $S report a.json --html page; echo $?; cat page\n"
      "$S report b.json --html page; echo $?; $S report a.json --html /nonexistent/p; echo $?",
      ".*install the package gnuplot-nox\n1\nold\n.*b.json cannot be read.*\n255\n"
      ".*/nonexistent/p cannot be written.*\n1\n");
}

}  // namespace
