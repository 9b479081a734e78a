/// Construction, settings and the rebuilds that they trigger.
#include <algorithm>
#include <cstdlib>

#include "engine/Assertion.h"
#include "engine/SorvantaTest.h"
#include "engine/Support.h"
#include "platform/gl/Driver.h"

namespace {

unsigned int limit(GLenum name) {
  GLint value = 0;
  glGetIntegerv(name, &value);
  return static_cast<unsigned int>(value);
}

}  // namespace

SorvantaTest::SorvantaTest(PerformanceHistory* history) : perfHistory(history) {
  SORVANTA_ASSERT(perfHistory);
  updateVertices();
}

void SorvantaTest::setDetail(unsigned int d) {
  const unsigned int clamped = std::clamp(d, minDetail(), maxDetail());
  if (clamped == detail) {
    return;
  }
  detail = clamped;
  updateVertices();
}

void SorvantaTest::setZoom(float z) {
  if (z != 0.0F) {
    zoomSetting = z;
  }
  if (glInitialized) {
    updateVertices();
  }
}

void SorvantaTest::setPrimitive(Primitive p) {
  const auto index = static_cast<std::size_t>(p);
  if (index >= kPrimitiveModes.size()) {
    std::abort();
  }
  primitiveMode = kPrimitiveModes[index];
  updateVertices();
  updateDataStructures();
}

void SorvantaTest::setDrawMethod(DrawMethod m) {
  drawMethod = m;
  updateDataStructures();
}

void SorvantaTest::setNormals(bool on) {
  useNormals = on;
  updateDataStructures();
}

void SorvantaTest::setColor(bool on) {
  useColor = on;
  updateDataStructures();
}

void SorvantaTest::setSecColor(bool on) {
  useSecColor = on;
  updateDataStructures();
}

void SorvantaTest::setVertexColors(bool on) {
  vertexColors = on;
  useColor = on;
  updateDataStructures();
  updateVertices();
  perfHistory->clearSamples();
}

void SorvantaTest::setTexturing(unsigned int slot, bool on) {
  textureEnabled[slot] = on;
  updateDataStructures();
}

void SorvantaTest::setTexturing(const bool* flags) {
  SORVANTA_ASSERT(textureUnitCount() <= kTextureUnitCount);
  for (unsigned int i = 0; i < textureUnitCount(); ++i) {
    textureEnabled[i] = flags[i];
  }
  updateDataStructures();
}

void SorvantaTest::setLighting(unsigned int light, bool on) {
  lightEnabled[light] = on;
  updateDataStructures();
}

void SorvantaTest::setLighting(const bool* flags) {
  SORVANTA_ASSERT(lightCount() <= kLightCount);
  for (unsigned int i = 0; i < lightCount(); ++i) {
    lightEnabled[i] = flags[i];
  }
  updateDataStructures();
}

void SorvantaTest::setThrash(bool on) {
  thrash = on;
  perfHistory->clearSamples();
}

void SorvantaTest::setRotate(bool on) {
  rotate = on;
  perfHistory->clearSamples();
}

void SorvantaTest::setMacros(bool on) {
  useMacros = on;
  perfHistory->clearSamples();
}

void SorvantaTest::setLeastMeasuredTime(std::uint64_t microseconds) {
  leastMeasuredTime = microseconds;
  perfHistory->clearSamples();
}

void SorvantaTest::setTextureCopies() {
  textureCopies = !textureCopies;
}

unsigned int SorvantaTest::lightCount() const {
  return limit(GL_MAX_LIGHTS);
}

unsigned int SorvantaTest::textureUnitCount() const {
  return limit(GL_MAX_TEXTURE_UNITS_ARB);
}

unsigned int SorvantaTest::maxVertexArraySize() const {
  return driver().vertexArrayRange->maximumVertices(kBytesPerVertex);
}

void SorvantaTest::updateDataStructures() {
  deleteRetainedModel();
  deleteVertexBufferObjects();
  deleteVertexArrayObjects();
  deleteDisplayList();
  driver().vertexArrayRange->releaseKeptStorage();
  const auto rebuild = traitsOf(drawMethod).rebuild;
  if (rebuild != nullptr && supportOf(*this, drawMethod).as != RunsAs::kRefused) {
    (this->*rebuild)();
  }
  perfHistory->clearSamples();
}
