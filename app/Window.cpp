#include "app/Window.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <optional>

#include <GL/freeglut.h>
#include <X11/Xlib.h>

#include "app/Application.h"
#include "app/Reporting.h"
#include "perf/Clock.h"
#include "platform/desktop/ObscuringWindow.h"

namespace {

constexpr unsigned char kEscape = 27;

/// GLUT calls no display callback while the window is covered whole, minimised or unmapped.
bool hidden = false;

/// The process is ending, which closes the window.
bool exiting = false;

std::optional<ObscuringWindow> obscuringWindow;
bool firstPass = false;  ///< the next idle call raises the obscuring window once more

struct Size {
  int width, height;
  bool operator==(const Size&) const = default;
};

/// The nearest size that X and GL can make. X wraps sizes around at 16 bits and ends the program
/// for a side of 0.
Size usableSize(Size asked) {
  GLint most[2] = {};
  glGetIntegerv(GL_MAX_VIEWPORT_DIMS, most);
  constexpr int kLargestSide = 8192;
  return {std::clamp(asked.width, 1, std::min(most[0], kLargestSide)),
          std::clamp(asked.height, 1, std::min(most[1], kLargestSide))};
}

void display() {
  vpt->draw();
  recordPerf();
  if (report.timedBenchmark && getTime() > report.benchmarkEndTime) {
    quit();
  }
  glutSwapBuffers();
}

/// Passes a request on only when it corrected the size: GLUT announces the initial size after the
/// command line has asked for another one, and asking for the initial one again would undo that.
void reshape(int width, int height) {
  const Size given{width, height};
  const Size size = usableSize(given);
  vpt->setBounds(static_cast<unsigned int>(size.width), static_cast<unsigned int>(size.height));
  if (size != given) {
    glutReshapeWindow(size.width, size.height);
  }
}

void keyboard(unsigned char key, int /*x*/, int /*y*/) {
  if (key == kEscape) {
    quit();
  }
}

/// Closing the window ends the run, as Escape does. GLUT also reports the close at exit, when the
/// run has ended already.
void windowClosed() {
  if (!exiting) {
    quit();
  }
}

void windowStatus(int status) {
  hidden = status == GLUT_HIDDEN || status == GLUT_FULLY_COVERED;
}

void idle() {
  if (hidden) {
    display();
  } else {
    glutPostRedisplay();
  }
  if (firstPass) {
    firstPass = false;
    obscuringWindow->orderFront();
  } else if (obscuringWindow) {
    obscuringWindow->processEvents();
  }
}

/// In place of Xlib's handler, whose exit runs GL's and GLUT's clean-up, which waits for the server
/// that is gone.
int connectionLost(Display* /*display*/) {
  std::cout.flush();
  std::cerr << "Sorvanta: the connection to the X server is lost.\n";
  std::_Exit(EXIT_FAILURE);
}

}  // namespace

void openWindow(int* argc, char** argv) {
  XSetIOErrorHandler(connectionLost);
  glutInit(argc, argv);
  std::atexit([] { exiting = true; });
  glutInitDisplayString("rgba double depth=32");
  glutInitWindowSize(kInitialWindowSide, kInitialWindowSide);
  glutCreateWindow("SorvantaTest");
  glutShowWindow();
}

void connectCallbacks() {
  glutDisplayFunc(display);
  glutReshapeFunc(reshape);
  glutKeyboardFunc(keyboard);
  glutIdleFunc(idle);
  glutWindowStatusFunc(windowStatus);
  glutCloseFunc(windowClosed);
}

void requestWindowSize(int width, int height) {
  const Size asked{width, height};
  const Size size = usableSize(asked);
  if (size != asked) {
    std::cerr << "Sorvanta: a window of " << width << " by " << height
              << " pixels cannot be made; it will be " << size.width << " by " << size.height
              << ".\n";
  }
  vpt->setBounds(static_cast<unsigned int>(size.width), static_cast<unsigned int>(size.height));
  glutReshapeWindow(size.width, size.height);
}

void createObscuringWindow() {
  obscuringWindow.emplace();
  firstPass = true;
}
