// What a worker's clocks say of a frame.
#include <atomic>
#include <chrono>
#include <cstring>
#include <ctime>
#include <thread>

#include <sched.h>

#include "platform/gl/WindowSystem.h"
#include "survey/worker/FrameClocks.h"
#include "tests/support/EngineTest.h"

namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
constexpr std::int64_t kWhile = 20'000'000;  // more than the rest of a frame takes
constexpr GLuint64 kOfTheQuery = 123456;

std::int64_t now(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return time.tv_sec * kNanosecondsPerSecond + time.tv_nsec;
}

/// Returns when the clock has advanced by so much; how much that was.
std::int64_t spin(clockid_t clock) {
  const std::int64_t start = now(clock);
  std::int64_t passed = 0;
  while (passed < kWhile) {
    passed = now(clock) - start;
  }
  return passed;
}

std::string queries;  ///< the calls of timer queries

class FrameClocks : public EngineTest {
 protected:
  FrameClocks() { test->setDrawMethod(kMultiDrawArrays); }  // ten calls, whose recording is quick

  survey::Frame measured() {
    queries.clear();
    survey::FrameClocks clocks(std::nullopt);
    test->setFrameObserver(&clocks);
    drawFrame();
    test->setFrameObserver(nullptr);
    return clocks.lastFrame();
  }
};

TEST_F(FrameClocks, AFrameEndsWhenItIsDrawnEvenWhereFinishingDoesNotWait) {
  std::int64_t took = 0;
  const auto wait = [&] { took = spin(CLOCK_MONOTONIC); };
  fakeDriver.meanwhile["glFinish"] = wait;
  const survey::Frame punctual = measured();
  EXPECT_GE(punctual.wall, took);
  EXPECT_EQ(punctual.late, 0);

  fakeDriver.meanwhile = {{"glReadPixels", wait}};
  const survey::Frame late = measured();
  EXPECT_GE(late.wall, took);
  EXPECT_GT(late.late, punctual.time() / 4);
}

TEST_F(FrameClocks, WaitingForAProcessorIsNoPartOfTheTime) {
  cpu_set_t before;
  ASSERT_EQ(sched_getaffinity(0, sizeof before, &before), 0);
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(sched_getcpu(), &one);
  ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
  std::atomic<bool> ended = false;
  std::thread rival([&] {  // on the same processor, as it is this thread's child
    while (!ended) {
    }
  });
  std::int64_t spent = 0;
  fakeDriver.meanwhile["glFinish"] = [&] { spent = spin(CLOCK_THREAD_CPUTIME_ID); };
  const survey::Frame frame = measured();
  ended = true;
  rival.join();
  sched_setaffinity(0, sizeof before, &before);
  EXPECT_LT(frame.time(), frame.wall);
  EXPECT_GE(frame.time(), spent);
  EXPECT_EQ(frame.late, 0);
}

TEST_F(FrameClocks, ProcessorTimeIsTheSubmittingThreadsOwn) {
  std::int64_t spent = 0;
  fakeDriver.meanwhile["glFlush"] = [&] { spent = spin(CLOCK_THREAD_CPUTIME_ID); };
  EXPECT_GE(measured().cpu, spent);
  fakeDriver.meanwhile["glFlush"] = [&] {
    std::thread([&] { spent = spin(CLOCK_THREAD_CPUTIME_ID); }).join();
  };
  const survey::Frame frame = measured();
  EXPECT_GE(frame.wall, spent);
  EXPECT_LT(frame.cpu, spent);
}

TEST_F(FrameClocks, TimerQueriesEncloseTheFrameWhereTheDriverHasThem) {
  EXPECT_EQ(measured().gpu, std::nullopt);
  setUpOn(FakeDriver().extensions + " GL_ARB_timer_query");
  fakeDriver.meanwhile["glFlush"] = [] { queries += "flush "; };
  fakeDriver.meanwhile["glFinish"] = [] { queries += "finish "; };
  EXPECT_EQ(measured().gpu, kOfTheQuery);
  EXPECT_EQ(queries, "make begin flush finish end read ");
}

}  // namespace

/// Knows the functions of timer queries alone.
const WindowSystem& windowSystem() {
  using Function = void (*)();
  static const WindowSystem system = {
      nullptr,
      [](const char* name) {
        if (std::strcmp(name, "glGenQueries") == 0) {
          return reinterpret_cast<Function>(+[](GLsizei, GLuint* query) {
            queries += "make ";
            *query = 1;
          });
        }
        if (std::strcmp(name, "glBeginQuery") == 0) {
          return reinterpret_cast<Function>(+[](GLenum, GLuint) { queries += "begin "; });
        }
        if (std::strcmp(name, "glEndQuery") == 0) {
          return reinterpret_cast<Function>(+[](GLenum) { queries += "end "; });
        }
        return reinterpret_cast<Function>(+[](GLuint, GLenum, GLuint64* result) {
          queries += "read ";
          *result = kOfTheQuery;
        });
      },
      nullptr};
  return system;
}
