// A program that measures with the libraries alone, without a window: all methods in one process.
#include <iostream>

#include "engine/SorvantaTest.h"
#include "engine/Support.h"
#include "platform/headless/DeviceChoice.h"
#include "platform/headless/HeadlessContext.h"

int main() {
  std::vector<HeadlessDevice> devices = listDevices();
  const HeadlessContext context(chooseDevice(devices, wantedDevice()).number, 400, 400);
  PerformanceHistory history;
  SorvantaTest test(&history);
  test.setLeastMeasuredTime(5000);
  test.initGL();
  test.setBounds(400, 400);
  test.setDrawsOffscreen(true);
  test.setMacros(true);
  bool good = true;
  std::cout << context.name() << '\n';
  for (const DrawMethodWord& row : kDrawMethodWords) {
    if (hasFigure(supportOf(test, row.method).as)) {
      test.setDrawMethod(row.method);
      test.draw();
      const FrameMeasurement frame = test.lastFrame();
      std::cout << row.word << ": " << frame.primitives << " in " << frame.microseconds << " us\n";
      good = good && frame.primitives > 0 && frame.microseconds >= 5000;
    }
  }
  return good && glGetError() == GL_NO_ERROR ? 0 : 1;
}
