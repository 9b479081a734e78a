#include "engine/Memory.h"

#include <string>

#include "platform/process/Sentences.h"

void* allocateOrExit(std::size_t bytes, const char* purpose) {
  void* const memory = std::malloc(bytes);
  if (memory == nullptr) {
    endWith("the system refuses " + std::to_string(bytes) + " bytes of memory for " + purpose +
            '.');
  }
  return memory;
}
