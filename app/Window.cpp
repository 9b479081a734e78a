#include "app/Window.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

#include <GL/freeglut.h>
#include <X11/Xlib.h>

#include "app/Application.h"
#include "app/Reporting.h"
#include "platform/desktop/GtkServices.h"
#include "platform/desktop/ObscuringWindow.h"
#include "platform/gl/GlxWindowSystem.h"
#include "platform/headless/DeviceNames.h"
#include "platform/headless/HeadlessDevice.h"
#include "platform/process/Sentences.h"

namespace {

constexpr unsigned char kEscape = 27;

/// GLUT calls no display callback while the window is covered whole, minimised or unmapped.
bool hidden = false;

/// The process is ending, which closes the window.
bool exiting = false;

std::optional<ObscuringWindow> obscuringWindow;
bool firstPass = false;  ///< the next idle call raises the obscuring window once more

void display() {
  drawFrame();
  glutSwapBuffers();
}

/// Passes a request on only when it corrected the size: GLUT announces the initial size after the
/// command line has asked for another one, and asking for the initial one again would undo that.
void reshape(int width, int height) {
  const ViewSize given{width, height};
  const ViewSize size = usableSize(given);
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
  warn("the connection to the X server is lost.");
  std::_Exit(EXIT_FAILURE);
}

/// At once: clean-up would talk to the server, and meet the errors of the requests that failed.
[[noreturn]] void endWithoutOpenGL(const std::string& reason) {
  warn("no OpenGL: " + reason +
       ". Name an X server that offers it with DISPLAY or -display, or leave DISPLAY empty to run "
       "without a window; install a driver (on Debian libgl1-mesa-dri), and unset "
       "LIBGL_DRIVERS_PATH, GALLIUM_DRIVER and LIBGL_ALWAYS_INDIRECT "
       "where they lead nowhere.");
  std::_Exit(EXIT_FAILURE);
}

/// In place of GLUT's own end of the program.
void glutFailed(const char* format, va_list arguments) {
  std::array<char, 256> reason{};
  std::vsnprintf(reason.data(), reason.size(), format, arguments);
  endWithoutOpenGL(reason.data());
}

/// A context that cannot be made arrives as an error of one of the requests that make it.
int windowFailed(Display* display, XErrorEvent* error) {
  std::array<char, 256> reason{};
  XGetErrorText(display, error->error_code, reason.data(), reason.size());
  endWithoutOpenGL(std::string("the X server refuses a window for it with ") + reason.data());
}

/// What an X server draws with that does not use the card.
std::string softwareBesideACard() {
  const std::string renderer = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
  if (!isSoftwareRenderer(renderer) || !hasHardwareDevice()) {
    return "";
  }
  return renderer +
         " is a software renderer, though this machine has a graphics card; to draw on the card, "
         "run without a display (DISPLAY=) or on an X server that uses it.";
}

class WindowView final : public View {
 public:
  WindowView() : remark_(softwareBesideACard()) {}

  void requestSize(int width, int height) override {
    const ViewSize size = adoptSize({width, height});
    glutReshapeWindow(size.width, size.height);
  }

  std::string cover() override {
    obscuringWindow.emplace();
    firstPass = true;
    return "";
  }

  void run() override { glutMainLoop(); }

  std::string remark() const override { return remark_; }
  Services& services() override { return gtkServices(); }
  const WindowSystem& windowSystem() const override { return glxWindowSystem(); }

 private:
  std::string remark_;
};

}  // namespace

bool displayNamed(int argc, const char* const* argv) {
  const char* const named = std::getenv("DISPLAY");
  const auto namesOne = [](const char* argument) {
    return std::string_view(argument) == "-display";
  };
  return (named != nullptr && *named != '\0') || std::any_of(argv, argv + argc, namesOne);
}

View* openWindow(int* argc, char** argv) {
  XSetIOErrorHandler(connectionLost);
  glutInitErrorFunc(glutFailed);
  glutInitWarningFunc([](const char* /*format*/, va_list /*arguments*/) {});
  glutInit(argc, argv);
  const XErrorHandler handlerBefore = XSetErrorHandler(windowFailed);
  std::atexit([] { exiting = true; });
  glutInitDisplayString("rgba double depth=32");
  glutInitWindowSize(kInitialViewSide, kInitialViewSide);
  glutCreateWindow("SorvantaTest");
  glutShowWindow();
  if (glGetString(GL_VERSION) == nullptr) {
    endWithoutOpenGL("the window has no context");
  }
  XSetErrorHandler(handlerBefore);
  glutInitWarningFunc(nullptr);
  glutDisplayFunc(display);
  glutReshapeFunc(reshape);
  glutKeyboardFunc(keyboard);
  glutIdleFunc(idle);
  glutWindowStatusFunc(windowStatus);
  glutCloseFunc(windowClosed);
  return new WindowView;
}
