#include "survey/worker/Worker.h"

#include <cstdlib>
#include <new>

#include <errno.h>  // NOLINT(modernize-deprecated-headers): the program's name is an extension of it
#include <sys/prctl.h>

#include "platform/headless/DeviceChoice.h"
#include "platform/process/Sentences.h"
#include "survey/worker/EngineSubject.h"

namespace survey {

int work(const Channel& channel) {
  prctl(PR_SET_NAME, program_invocation_short_name);  // or lists of processes call it "exe"
  std::set_new_handler([] { endWith("there is not enough memory."); });
  EngineSubject subject;
  serve(channel, subject);
  return EXIT_SUCCESS;
}

std::string deviceList() {
  std::vector<HeadlessDevice> found = listDevices();
  for (HeadlessDevice& device : found) {
    tryDevice(device);
  }
  return describeDevices(found);
}

}  // namespace survey
