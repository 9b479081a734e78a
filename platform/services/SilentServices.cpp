#include "platform/services/WindowlessServices.h"

Services& services() {
  static WindowlessServices instance;
  return instance;
}
