#include "survey/worker/Sampler.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>

#include <linux/perf_event.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/process/Descriptor.h"

namespace survey {
namespace {

/// Of samples, beside the page that describes them: a second's.
constexpr std::size_t kPages = 16;

/// The clock that the kernel keeps for each thread: it works in virtual machines, where counters
/// of the processor often do not, and for ordinary users.
Descriptor opened(pid_t thread) {
  perf_event_attr attributes{};
  attributes.size = sizeof attributes;
  attributes.type = PERF_TYPE_SOFTWARE;
  attributes.config = PERF_COUNT_SW_CPU_CLOCK;
  attributes.sample_period = Sampler::kPeriod;
  attributes.sample_type = PERF_SAMPLE_IP;
  attributes.disabled = 1;
  attributes.exclude_kernel = 1;
  attributes.exclude_hv = 1;
  return Descriptor(static_cast<int>(
      syscall(SYS_perf_event_open, &attributes, thread, -1, -1, PERF_FLAG_FD_CLOEXEC)));
}

std::string reasonFor(int error) {
  return error == EACCES || error == EPERM
             ? "the kernel lets this user take no samples; allow them with `sysctl "
               "kernel.perf_event_paranoid=2`, or in a container, with the capability CAP_PERFMON"
             : std::string("the kernel takes no samples: ") + std::strerror(error);
}

}  // namespace

class Sampler::Thread {
 public:
  /// Check isOpen, and errno where it is not.
  explicit Thread(pid_t thread) : event(opened(thread)) {
    if (event.get() < 0) {
      return;
    }
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    mapped = (1 + kPages) * page;
    memory = mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_SHARED, event.get(), 0);
    if (memory == MAP_FAILED) {
      memory = nullptr;
      return;
    }
    data = static_cast<std::byte*>(memory) + page;
    size = kPages * page;
  }
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;
  ~Thread() {
    if (memory != nullptr) {
      munmap(memory, mapped);
    }
  }

  bool isOpen() const { return memory != nullptr; }
  void start() const { ioctl(event.get(), PERF_EVENT_IOC_ENABLE, 0); }
  void stop() const { ioctl(event.get(), PERF_EVENT_IOC_DISABLE, 0); }

  void take(const std::function<void(std::uint64_t)>& each) {
    auto* const page = static_cast<perf_event_mmap_page*>(memory);
    const std::uint64_t end = __atomic_load_n(&page->data_head, __ATOMIC_ACQUIRE);
    std::uint64_t place = page->data_tail;
    while (place < end) {
      const auto header = read<perf_event_header>(place);
      if (header.type == PERF_RECORD_SAMPLE) {
        each(read<std::uint64_t>(place + sizeof header));
      }
      place += header.size;
    }
    __atomic_store_n(&page->data_tail, end, __ATOMIC_RELEASE);
  }

 private:
  /// Records go on at the beginning where the end of the memory cuts them.
  template <typename Value>
  Value read(std::uint64_t place) const {
    Value value;
    std::byte bytes[sizeof value];
    for (std::size_t i = 0; i < sizeof value; ++i) {
      bytes[i] = data[(place + i) % size];
    }
    std::memcpy(&value, bytes, sizeof value);
    return value;
  }

  Descriptor event;
  void* memory = nullptr;
  std::size_t mapped = 0;
  std::byte* data = nullptr;
  std::size_t size = 0;
};

Sampler::Sampler() {
  const auto own = static_cast<pid_t>(syscall(SYS_gettid));
  threads_.push_back(std::make_unique<Thread>(own));
  if (!threads_.front()->isOpen()) {
    whyNot_ = reasonFor(errno);
    threads_.clear();
    return;
  }
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task", ignored)) {
    const pid_t thread = std::atoi(entry.path().filename().c_str());
    // The kernel has a limit of memory for samples: the submitting thread's come first.
    if (auto other = thread != own ? std::make_unique<Thread>(thread) : nullptr;
        other && other->isOpen()) {
      threads_.push_back(std::move(other));
    }
  }
}

Sampler::~Sampler() = default;

void Sampler::start() {
  for (const auto& thread : threads_) {
    thread->start();
  }
}

void Sampler::stop() {
  for (const auto& thread : threads_) {
    thread->stop();
  }
}

Sampler::Samples Sampler::take() {
  Samples samples;
  for (const auto& thread : threads_) {
    thread->take([&](std::uint64_t address) {
      if (thread == threads_.front()) {
        samples.ofThisThread.push_back(address);
      } else {
        ++samples.ofOthers;
      }
    });
  }
  return samples;
}

}  // namespace survey
