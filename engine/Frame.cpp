/// The measured frame.
#include <iostream>

#include "engine/SorvantaTest.h"
#include "engine/Support.h"
#include "perf/Clock.h"
#include "platform/gl/Driver.h"
#include "platform/process/Sentences.h"

namespace {

/// Which of the two jitters the next rotating frame takes, and which background it has.
int frameNum = 0;

}  // namespace

void SorvantaTest::draw() {
  if (!glInitialized) {
    return;
  }
  if (arrays.vertices == nullptr) {
    std::cout << "NULL == verticies\n";
    return;
  }
  const DrawMethodTraits& method = traitsOf(drawMethod);
  if (method.makeRetained != nullptr && retainedModel == nullptr) {
    endWith(supportOf(*this, drawMethod).sentence);
  }

  setModelView();
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  driver().vertexArrayObjects.bind(0);
  bindTextureUnits();
  switchLightsOn();
  if (useNormals) {
    setMaterialAndLightPositions();
    bindNormals();
  } else {
    bindColors();
  }
  setCurrentColor();
  bindVertices();
  if (method.bind != nullptr) {
    (this->*method.bind)();
  }

  const GLclampf background = frameNum != 0 ? 0 : 1;
  glClearColor(background, background, background, 1);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  measure(method, repsPerPass());
  copyFrameToTextures();

  driver().vertexArrayObjects.bind(0);
  glDisableClientState(GL_VERTEX_ARRAY);
  glDisable(GL_BLEND);
  releaseTextureUnits();
  switchLightsOff();
  releaseAttributeArrays();
  if (method.release != nullptr) {
    (this->*method.release)();
  }
}

void SorvantaTest::setModelView() {
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  if (!rotate) {
    return;
  }
  constexpr float kSpinSteps[] = {0.25F, 0.5F, 1.5F};
  for (int i = 0; i < 3; ++i) {
    spinAngles[i] += kSpinSteps[i];
    if (spinAngles[i] > 360) {
      spinAngles[i] -= 360;
    }
  }
  glTranslatef(200, 200, 0);
  glRotatef(rotationB[0], rotationB[1], rotationB[2], rotationB[3]);
  glRotatef(rotationA[0], rotationA[1], rotationA[2], rotationA[3]);
  const GLfloat jitter = frameNum != 0 ? 10 : -10;
  glRotatef(jitter, 1, 1, 1);
  glTranslatef(jitter, jitter, jitter);
  frameNum = frameNum == 0 ? 1 : 0;
  glRotatef(spinAngles[2], 0, 0, 1);
  glTranslatef(-200, -200, 0);
}

void SorvantaTest::switchLightsOn() {
  for (unsigned int i = 0; i < kLightCount; ++i) {
    if (lightEnabled[i]) {
      glEnable(GL_LIGHTING);
      glEnable(GL_LIGHT0 + i);
    }
  }
}

void SorvantaTest::switchLightsOff() {
  for (unsigned int i = 0; i < kLightCount; ++i) {
    if (lightEnabled[i]) {
      glDisable(GL_LIGHT0 + i);
    }
  }
  glDisable(GL_LIGHTING);
}

void SorvantaTest::setMaterialAndLightPositions() {
  constexpr GLfloat kSpecular[] = {1, 1, 1, 1};
  constexpr GLfloat kShininess = 50;
  glMaterialfv(GL_FRONT, GL_SPECULAR, kSpecular);
  glMaterialfv(GL_FRONT, GL_SHININESS, &kShininess);

  // Directional lights from a circle of radius 15 around the line of sight.
  constexpr GLfloat kRadius = 15;
  constexpr GLfloat kDiagonal = 10.60660171508789F;  // 15 cos 45 degrees
  constexpr GLfloat kPlaces[kLightCount][2] = {
      {kRadius, 0},  {kDiagonal, kDiagonal},   {0, kRadius},  {-kDiagonal, kDiagonal},
      {-kRadius, 0}, {-kDiagonal, -kDiagonal}, {0, -kRadius}, {kDiagonal, -kDiagonal},
  };
  for (unsigned int i = 0; i < kLightCount; ++i) {
    const GLfloat position[] = {kPlaces[i][0], kPlaces[i][1], 800, 0};
    glLightfv(GL_LIGHT0 + i, GL_POSITION, position);
  }
}

void SorvantaTest::setCurrentColor() {
  glColor4f(0.7F, 0.7F, 0.7F, 1);
  bool textured = false;
  for (const bool enabled : textureEnabled) {
    textured = textured || enabled;
  }
  if (useColor || useNormals) {
    glColor4f(1, 1, 1, 1);
  } else if (useSecColor && !textured) {
    glColor4f(0, 0, 0, 1);
  }
}

/// So many that one pass of the timing loop submits about 20,000 triangles, but at least ten, which
/// is more from detail 32 on, and at most 2000, which is less below detail 3.
int SorvantaTest::repsPerPass() const {
  constexpr float kTriangleBudget = 20000;
  constexpr int kFewest = 10;
  constexpr int kMost = 2000;
  const auto reps = static_cast<int>(kTriangleBudget / static_cast<float>(modelTriangleCount()));
  return reps < kFewest ? kFewest : reps > kMost ? kMost : reps;
}

void SorvantaTest::measure(const DrawMethodTraits& method, int reps) {
  const auto submit = method.submit;
  const std::uint64_t leastTime = leastMeasuredTime;
  std::uint64_t repetitions = 0;

  if (observer != nullptr) {
    observer->measuringBegins();
  }
  const std::uint64_t start = getTime();
  std::uint64_t now = 0;
  do {
    (this->*submit)(reps);
    glFlush();
    now = getTime();
    repetitions += static_cast<std::uint64_t>(reps);
  } while (now - start < leastTime);
  glFinish();
  const std::uint64_t elapsed = getTime() - start;
  if (observer != nullptr) {
    observer->measuringEnded();
  }

  const std::uint64_t primitivesPerModel =
      countsQuads(primitiveOf(primitiveMode)) ? modelTriangleCount() / 2 : modelTriangleCount();
  measurement = {primitivesPerModel * repetitions, elapsed};
  perfHistory->addSample(static_cast<float>(static_cast<double>(measurement.primitives) /
                                            static_cast<double>(elapsed)));
}

void SorvantaTest::copyFrameToTextures() {
  if (!textureCopies) {
    return;
  }
  for (int k = 0; k < 3; ++k) {
    glBindTexture(GL_TEXTURE_2D, copyTextures[k]);
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 0, 0, 512, 512, 0);
  }
}

float SorvantaTest::performance() const {
  return perfHistory->meanDiscardingHighLow(2);
}
