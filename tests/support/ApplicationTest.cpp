#include "tests/support/ApplicationTest.h"

#include <iterator>
#include <sstream>

View* view = nullptr;
SorvantaTest* vpt = nullptr;
PerformanceHistory* perfHistory = nullptr;

bool ApplicationTest::parse(std::vector<std::string> words) {
  std::vector<char*> argv = {nullptr};
  for (std::string& word : words) {
    argv.push_back(word.data());
  }
  return applyArguments(static_cast<int>(argv.size()), argv.data());
}

std::vector<std::string> ApplicationTest::split(const std::string& words) {
  std::istringstream stream(words);
  return {std::istream_iterator<std::string>(stream), {}};
}

Calls ApplicationTest::apply(const std::string& options) {
  EXPECT_TRUE(parse(split("-r 1 " + options))) << options;
  return takeCalls();
}
