// Result files that nobody wrote: the reader refuses them with a sentence, or what it lets pass can
// be judged and shown in every form.
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>

#include "survey/judge/Changes.h"
#include "survey/tell/Files.h"
#include "survey/tell/Page.h"
#include "survey/tell/Sentences.h"
#include "survey/tell/Summary.h"

namespace {

using namespace survey;

void showAll(const Result& result) {
  const std::vector<SideView> sides = sidesOf(result);
  for (const SideView& side : sides) {
    const Figures figures = figuresOf(side);
    asText(summaryOf(side, figures), true);
    csvOf(side, figures);
    junitOf(side, figures);
  }
  if (result.isComparison()) {
    const std::vector<Changes> changes = changesOf(sides, result.threshold);
    asMarkdown(summaryOf(sides, changes, result.threshold));
    junitOf(changes);
    linesOf(changes);
    decidedSoFar(result.sittings.front(), result.threshold);
  }
  if (result.question) {
    asMarkdown(summaryOf(*result.question, sides.front(), figuresOf(sides.front())));
  }
  pageOf({{"fuzz", result}});
  resultOf(resultJson(result));  // what is written is read again
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Result result;
  try {
    result = resultOf({reinterpret_cast<const char*>(data), size});
  } catch (const std::runtime_error&) {
    return 0;
  }
  showAll(result);
  return 0;
}
