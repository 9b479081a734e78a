// What the libraries ask their surroundings for, as the view has it that main chose.

#include "app/Application.h"

Services& services() {
  return view->services();
}

const WindowSystem& windowSystem() {
  return view->windowSystem();
}
