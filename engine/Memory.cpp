#include "engine/Memory.h"

#include <cstdio>

void* allocateOrExit(std::size_t bytes, const char* purpose) {
  void* const memory = std::malloc(bytes);
  if (memory == nullptr) {
    std::fprintf(stderr, "Sorvanta: the system refuses %zu bytes of memory for %s.\n", bytes,
                 purpose);
    std::exit(EXIT_FAILURE);
  }
  return memory;
}
