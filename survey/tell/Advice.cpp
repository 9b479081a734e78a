#include "survey/judge/Advice.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "survey/tell/Numbers.h"
#include "survey/tell/Sentences.h"
#include "survey/tell/Summary.h"
#include "words/DrawMethods.h"

namespace survey {
namespace {

/// "0.213 ms", "14.2 µs"
std::string timeInWords(double nanoseconds) {
  constexpr double kThousand = 1e3;
  return nanoseconds >= kMillion ? threeDigits(nanoseconds / kMillion) + " ms"
                                 : threeDigits(nanoseconds / kThousand) + " µs";
}

bool isInCoreProfile(const MethodAdvice& advice) {
  const DrawMethodWord* const row = drawMethodNamed(advice.method);
  return row != nullptr && row->inCoreProfile;
}

std::string meshInWords(const Question& question) {
  const double each = question.triangles / question.strips;
  const std::string size =
      question.strips == 1
          ? fmt::format("one strip of {:.0f} triangles", question.triangles)
          : fmt::format("{:.0f} strips of {:g} triangles", question.strips, std::round(each));
  return fmt::format("For {} that {}", size,
                     question.changes ? "change every time" : "never change");
}

std::string withSpread(const Interval& cost) {
  return cost.high <= 0              ? "0"
         : !std::isfinite(cost.high) ? "?"
         : cost.halfWidth() >= cost.middle
             ? fmt::format("up to {:.2f}", cost.high)
             : fmt::format("{:.2f} ± {:.2f}", cost.middle, cost.halfWidth());
}

/// Where the fit lies off by so much, other things than these three costs decide.
constexpr double kFarOff = 0.1;

Grid gridOf(const Question& question, const std::vector<MethodAdvice>& advice) {
  Grid grid{{false, false, true, true, true, true, true, true, false, false}, {}, {}};
  Section section{meshInWords(question),
                  {{"", "method", "a model", "±", "times", "ns/model", "ns/strip", "ns/vertex",
                    "core", "note"}}};
  for (const MethodAdvice& method : advice) {
    const std::string off =
        method.miss > kFarOff
            ? fmt::format("off by {:.0f} % at detail {}: the costs are not in proportion there",
                          kPercent * method.miss, method.detail)
            : "";
    section.add({method.leads ? (advice.size() > 1 && !advice[1].leads ? ">" : "=") : "",
                 method.method, timeInWords(method.time.middle), spreadOf(method.time),
                 fmt::format("{:.2f}", method.times.middle), withSpread(method.perModel),
                 withSpread(method.perStrip), withSpread(method.perVertex),
                 isInCoreProfile(method) ? "yes" : "no", grid.notes.numberOf(off)},
                method.leads ? Tint::kGood : Tint::kPlain);
  }
  grid.sections.push_back(std::move(section));
  return grid;
}

/// What a program calls, of those that lead.
Grid callsOf(const std::vector<MethodAdvice>& advice) {
  Grid grid{{false, false}, {{"What a program calls", {{"method", "calls"}}}}, {}};
  for (const MethodAdvice& method : advice) {
    const DrawMethodWord* const row = drawMethodNamed(method.method);
    if (method.leads && row != nullptr) {
      grid.sections.front().add({method.method, row->calls});
    }
  }
  return grid;
}

}  // namespace

std::string answerOf(const Question& question, const std::vector<MethodAdvice>& advice) {
  if (advice.empty()) {
    return "There is no answer, as no method was measured at enough details; give more time with "
           "--seconds.";
  }
  const MethodAdvice& best = advice.front();
  std::string answer = fmt::format("{}: {}, {} a model ± {}", meshInWords(question), best.method,
                                   timeInWords(best.time.middle), spreadOf(best.time));
  std::vector<std::string> likewise;
  bool anyOld = false;
  for (auto other = advice.begin() + 1; other != advice.end() && other->leads; ++other) {
    likewise.push_back(other->method);
    anyOld = anyOld || !isInCoreProfile(*other);
  }
  if (!likewise.empty()) {
    answer +=
        fmt::format("; {} cannot be told apart from it{}", listInWords(likewise),
                    anyOld && isInCoreProfile(best) ? ", though not all in a core profile" : "");
  }
  const auto next = std::find_if(advice.begin(), advice.end(),
                                 [](const MethodAdvice& other) { return !other.leads; });
  if (next != advice.end()) {
    answer += fmt::format("; then {}, {:.2f} times as long", next->method, next->times.middle);
    if (const MethodAdvice& last = advice.back(); last.method != next->method) {
      answer += fmt::format(", and last {}, {:.2f} times", last.method, last.times.middle);
    }
  }
  return answer + '.';
}

std::vector<Grid> gridsOf(const Question& question, const std::vector<MethodAdvice>& advice) {
  return {gridOf(question, advice), callsOf(advice)};
}

}  // namespace survey
