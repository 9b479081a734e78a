#include "platform/process/Sentences.h"

#include <cstdio>
#include <cstdlib>

#include <errno.h>  // NOLINT(modernize-deprecated-headers): the program's name is an extension of it

#include "platform/process/ForeignText.h"

void warn(std::string_view sentence) {
  std::fprintf(stderr, "%s: %s\n", program_invocation_short_name,
               harmless(sentence, LineEnds::kKept).c_str());
}

void endWith(std::string_view sentence) {
  warn(sentence);
  std::exit(EXIT_FAILURE);
}
