/// Memory for the mesh and its copies, which can be gigabytes.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};

/// Elements of trivial types in memory from malloc.
template <typename T>
using Block = std::unique_ptr<T[], FreeMemory>;

/// Uninitialised memory, or the end of the program: where the system refuses, a sentence on
/// standard error says how many bytes were needed and for what, and the exit status is 1.
void* allocateOrExit(std::size_t bytes, const char* purpose);

template <typename T>
Block<T> allocateBlock(std::size_t count, const char* purpose) {
  return Block<T>(static_cast<T*>(allocateOrExit(count * sizeof(T), purpose)));
}
