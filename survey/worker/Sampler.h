/// Where a process spends its time while it draws: the kernel interrupts its threads at regular
/// times of theirs and notes which instruction each is at.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace survey {

class Sampler {
 public:
  /// Of the threads that live now; off at first.
  Sampler();
  Sampler(const Sampler&) = delete;
  Sampler& operator=(const Sampler&) = delete;
  ~Sampler();

  /// Why there will be no samples, with the cure; empty where there will be.
  const std::string& whyNot() const { return whyNot_; }

  void start();
  void stop();

  /// Instructions' addresses, in user space.
  struct Samples {
    std::vector<std::uint64_t> ofThisThread;
    std::size_t ofOthers = 0;
  };
  /// Those since the last time.
  Samples take();

  /// Processor time between two samples of a thread, in nanoseconds.
  static constexpr std::uint64_t kPeriod = 200'000;

 private:
  class Thread;
  std::vector<std::unique_ptr<Thread>> threads_;  ///< this one first
  std::string whyNot_;
};

}  // namespace survey
