/// GL set-up, once per object, and the projection.
#include <array>
#include <iostream>

#include "engine/Assertion.h"
#include "engine/SorvantaTest.h"
#include "platform/gl/Driver.h"
#include "textures/Textures.h"

namespace {

struct Label {
  const char* text;
  float red, green, blue;
};

/// Slots 1 to 7.
constexpr std::array<Label, kTextureUnitCount - 1> kLabels = {{
    {"1  1  1\n  1  1  1\n 1  1  1", 1, 0, 0},
    {" 2 2 2 2 2 2 2 2 2 2 2 2 2 2", 0, 0, 1},
    {"3 3 3 3\n 3 3 3 3\n3 3 3 3 3 3 3 3 3 3 3 3", 0, 1, 0},
    {"  4  4  4\n  4  4  4\n 4  4  4", 1, 0, 0},
    {" 5 5 5 5 5 5 5 5 5 5 5 5 5 5", 0, 0, 1},
    {"6 6 6 6\n 6 6 6 6\n6 6 6 6 6 6 6 6 6 6 6 6", 0, 1, 0},
    {"7  7  7\n  7  7  7\n 7  7  7", 1, 0, 0},
}};

constexpr GLfloat kLightDiffuse[kLightCount][4] = {
    {0.8F, 0.8F, 0.8F, 1}, {0.8F, 0, 0, 1}, {0, 0, 0.8F, 1}, {0, 0.8F, 0, 1},
    {0.8F, 0, 0, 1},       {0, 0, 0.8F, 1}, {0, 0.8F, 0, 1}, {0.8F, 0, 0, 1},
};

}  // namespace

void SorvantaTest::initGL() {
  SORVANTA_ASSERT(!glInitialized);
  detectDriver();
  glClearColor(0, 0, 0, 1);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glFinish();
  createTextures();
  glDisable(GL_DEPTH_TEST);
  for (unsigned int i = 0; i < kLightCount; ++i) {
    glLightfv(GL_LIGHT0 + i, GL_DIFFUSE, kLightDiffuse[i]);
  }
  glInitialized = true;
  rotationA[1] = 1;
  rotationB[1] = 1;
  std::cout << ' ';
}

void SorvantaTest::createTextures() {
  glGenTextures(kTextureUnitCount, textures);
  glGenTextures(kTextureUnitCount, copyTextures);
  int pictureWidth = 0;
  int pictureHeight = 0;
  TextureFromResource("OpenGLLogo.jpg", &textures[0], &pictureWidth, &pictureHeight);
  for (std::size_t slot = 1; slot < kTextureUnitCount; ++slot) {
    const Label& label = kLabels[slot - 1];
    StringToTexture(label.text, "Helvetica", 36, &textures[slot], 128, 128, label.red, label.green,
                    label.blue);
  }
  for (int i = 0; i < static_cast<int>(kTextureUnitCount); ++i) {
    const int grey = 32 * i;
    GenerateStripeTexture(copyTextures[i], i / 2, 512, 512, grey, grey, grey);
  }
}

void SorvantaTest::reshape() {
  if (!glInitialized) {
    initGL();
  }
  glViewport(0, 0, static_cast<GLsizei>(width), static_cast<GLsizei>(height));
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
  gluPerspective(53.2F - static_cast<float>(zoom), 1.0, 0.1F, 1000.0);
  gluLookAt(200, 200, 400, 200, 200, 0, 0, 1, 0);
  if (drawsOffscreen) {
    // 100 units behind the eye, where the whole mesh is clipped.
    glTranslatef(0, 0, 500);
  }
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
}

void SorvantaTest::setBounds(unsigned int newWidth, unsigned int newHeight) {
  width = newWidth;
  height = newHeight;
  reshape();
}

void SorvantaTest::setDrawsOffscreen(bool on) {
  drawsOffscreen = on;
  perfHistory->clearSamples();
  reshape();
}
