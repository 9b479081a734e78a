#include "platform/gl/BufferMemory.h"

#include <cstdlib>
#include <iostream>

void endWithoutBuffer(std::size_t bytes) {
  std::cerr << "Sorvanta: the driver has no memory for a buffer of " << bytes << " bytes.\n";
  std::exit(EXIT_FAILURE);
}
