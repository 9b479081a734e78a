/// The application's globals over a test object on the recording GL, and a view that keeps what it
/// is asked.
#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include "app/Application.h"
#include "app/CommandLine.h"
#include "app/Reporting.h"
#include "app/View.h"
#include "tests/support/EngineTest.h"

struct FakeView : View {
  std::vector<std::pair<int, int>> sizes;
  int covers = 0;
  std::string cannotCover;

  void requestSize(int width, int height) override { sizes.emplace_back(width, height); }
  std::string cover() override {
    ++covers;
    return cannotCover;
  }
  void run() override {}
  std::string remark() const override { return ""; }
  Services& services() override { return fakeServices; }
  const WindowSystem& windowSystem() const override { std::abort(); }
};

class ApplicationTest : public EngineTest {
 protected:
  ApplicationTest() {
    vpt = &*test;
    perfHistory = &history;
    view = &fakeView;
    report = {};
  }

  /// Parses these words as the command line; whether they are good.
  static bool parse(std::vector<std::string> words);
  static std::vector<std::string> split(const std::string& words);
  /// Sets what these options say. The calls that it takes.
  static Calls apply(const std::string& options);

  FakeView fakeView;
};
