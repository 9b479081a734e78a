#include <algorithm>
#include <map>
#include <vector>

#include <fmt/format.h>

#include "survey/tell/Files.h"
#include "survey/tell/Html.h"
#include "survey/tell/Numbers.h"
#include "survey/tell/Sentences.h"

namespace survey {
namespace {

enum class Outcome { kPassed, kFailed, kSkipped };

struct Case {
  std::string name;
  Outcome outcome;
  std::string sentence;  ///< why, or what was found
};

/// In the order in which they were first named.
class Suites {
 public:
  void add(const std::string& suite, Case one) {
    const auto place = std::find_if(suites_.begin(), suites_.end(),
                                    [&](const auto& known) { return known.first == suite; });
    std::vector<Case>& cases = place == suites_.end()
                                   ? suites_.emplace_back(suite, std::vector<Case>()).second
                                   : place->second;
    cases.push_back(std::move(one));
  }

  std::string text() const {
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n";
    for (const auto& [name, cases] : suites_) {
      xml += fmt::format(
          "<testsuite name=\"{}\" tests=\"{}\" failures=\"{}\" skipped=\"{}\" errors=\"0\">\n",
          escaped(name), cases.size(), count(cases, Outcome::kFailed),
          count(cases, Outcome::kSkipped));
      for (const Case& one : cases) {
        xml += textOf(one, name);
      }
      xml += "</testsuite>\n";
    }
    return xml + "</testsuites>\n";
  }

 private:
  static std::ptrdiff_t count(const std::vector<Case>& cases, Outcome outcome) {
    return std::count_if(cases.begin(), cases.end(),
                         [=](const Case& one) { return one.outcome == outcome; });
  }

  static std::string textOf(const Case& one, const std::string& suite) {
    const std::string sentence = escaped(one.sentence);
    const std::string inside =
        one.outcome == Outcome::kFailed    ? fmt::format("<failure message=\"{}\"/>", sentence)
        : one.outcome == Outcome::kSkipped ? fmt::format("<skipped message=\"{}\"/>", sentence)
                                           : fmt::format("<system-out>{}</system-out>", sentence);
    return fmt::format("<testcase classname=\"{}\" name=\"{}\">{}</testcase>\n", escaped(suite),
                       escaped(one.name), inside);
  }

  std::vector<std::pair<std::string, std::vector<Case>>> suites_;
};

std::string suiteOf(const Cell& cell) {
  return groupInWords(cell.detail, cell.primitive, cell.with);
}

}  // namespace

std::string junitOf(const SideView& side, const Figures& figures) {
  std::map<std::size_t, std::string> rates;
  for (const Group& group : figures.groups) {
    for (const CellFigure& figure : group.ranking) {
      rates[figure.cell] = fmt::format("{} {}, ± {}", threeDigits(figure.rate.middle / kMillion),
                                       unitOf(group.primitive), spreadOf(figure.rate));
    }
  }
  Suites suites;
  for (std::size_t cell = 0; cell < side.record->cells.size(); ++cell) {
    const auto rate = rates.find(cell);
    const bool hasFigure = rate != rates.end();
    const std::string remark = remarkOn(side, cell, hasFigure);
    suites.add(suiteOf(side.cell(cell)),
               {nameOf(side.cell(cell)),
                !side.state(cell).faults.empty() ? Outcome::kFailed
                : hasFigure                      ? Outcome::kPassed
                                                 : Outcome::kSkipped,
                hasFigure && side.state(cell).faults.empty() ? rate->second : remark});
  }
  return suites.text();
}

std::string junitOf(const std::vector<Changes>& changes) {
  Suites suites;
  for (const Changes& ofSide : changes) {
    const auto add = [&](const Cell& cell, Outcome outcome, const std::string& sentence) {
      suites.add(ofSide.newer.name() + ": " + suiteOf(cell), {nameOf(cell), outcome, sentence});
    };
    for (const CellChange& cell : ofSide.cells) {
      const Verdict verdict = cell.change.verdict;
      add(ofSide.base.cell(cell.base),
          verdict == Verdict::kSlower      ? Outcome::kFailed
          : verdict == Verdict::kUndecided ? Outcome::kSkipped
                                           : Outcome::kPassed,
          fmt::format("{}: {}", inWords(verdict), changeInWords(cell.change.ratio)));
    }
    for (const std::size_t cell : ofSide.newFails) {
      add(ofSide.newer.cell(cell), Outcome::kFailed,
          fmt::format("fails in {} alone: {}", ofSide.newer.name(),
                      ofSide.newer.side().started() ? remarkOn(ofSide.newer, cell, false)
                                                    : ofSide.newer.side().whyNoWorker));
    }
    for (const std::size_t cell : ofSide.newDies) {
      add(ofSide.newer.cell(cell), Outcome::kSkipped,
          "given up after it had been drawn: " + remarkOn(ofSide.newer, cell, false));
    }
    for (const auto* const cells : {&ofSide.baseFails, &ofSide.withoutFigures}) {
      for (const std::size_t cell : *cells) {
        add(ofSide.base.cell(cell), Outcome::kSkipped, remarkOn(ofSide.base, cell, false));
      }
    }
  }
  return suites.text();
}

}  // namespace survey
