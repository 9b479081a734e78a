#include "platform/gl/Fence.h"

#include <utility>

#include "platform/process/Sentences.h"

void Fence::set() {
  remove();
  sync_ = glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
}

void Fence::pass() {
  if (sync_ == nullptr) {
    return;
  }
  constexpr GLuint64 kOneSecond = 1'000'000'000;  // nanoseconds
  GLenum found = GL_TIMEOUT_EXPIRED;
  while (found == GL_TIMEOUT_EXPIRED) {
    found = glClientWaitSync(sync_, GL_SYNC_FLUSH_COMMANDS_BIT, kOneSecond);
  }
  if (found == GL_WAIT_FAILED) {
    endWith("waiting for the driver to finish drawing failed.");
  }
  remove();
}

void Fence::remove() {
  if (sync_ != nullptr) {
    glDeleteSync(std::exchange(sync_, nullptr));
  }
}
