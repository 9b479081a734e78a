/// An OpenGL context without a window.
#pragma once

#include <functional>
#include <memory>
#include <string>

/// A context of the compatibility profile on one device of EGL's list, current from its making on
/// to its end. What it draws lands in a pixel buffer of its own, whose pixels have the format of a
/// GLUT window's: 8 bits a component, no more alpha, stencil or samples than the device forces on
/// it, and its deepest depth buffer. One at a time in a process.
class HeadlessContext {
 public:
  /// `device` counts from 0. Throws HeadlessTrouble.
  HeadlessContext(unsigned int device, int width, int height);
  ~HeadlessContext();
  HeadlessContext(const HeadlessContext&) = delete;
  HeadlessContext& operator=(const HeadlessContext&) = delete;

  /// Gives it a new buffer of that size in pixels; what was drawn is gone, the context's state,
  /// viewport included, stays. Throws HeadlessTrouble and leaves all as it was.
  void resize(int width, int height);

  /// GL_RENDERER.
  const std::string& name() const { return name_; }
  /// Whether it draws on the processor.
  bool software() const { return software_; }

 private:
  /// What EGL makes, ended by the function that comes with it.
  using Made = std::unique_ptr<void, std::function<void(void*)>>;

  Made makeBuffer(int width, int height) const;

  Made display_;
  void* config_ = nullptr;
  Made context_;
  Made buffer_;
  std::string name_;
  bool software_ = false;
};
