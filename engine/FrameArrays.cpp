/// The client arrays and texture units of a frame, bound for every draw method.
#include "engine/SorvantaTest.h"

namespace {

void activateUnit(unsigned int unit) {
  glActiveTextureARB(GL_TEXTURE0_ARB + unit);
  glClientActiveTextureARB(GL_TEXTURE0_ARB + unit);
}

}  // namespace

void SorvantaTest::bindTextureUnits() {
  for (unsigned int i = 0; i < kTextureUnitCount; ++i) {
    glColor4f(1, 1, 1, 1);
    if (!textureEnabled[i]) {
      continue;
    }
    activateUnit(i);
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glBindTexture(GL_TEXTURE_2D, textures[i]);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, i == 0 ? GL_MODULATE : GL_DECAL);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glEnable(GL_TEXTURE_2D);
    glTexCoordPointer(2, GL_FLOAT, 0, arrays.texCoords[i]);
  }
  activateUnit(0);
}

void SorvantaTest::releaseTextureUnits() {
  for (unsigned int i = 0; i < kTextureUnitCount; ++i) {
    if (textureEnabled[i]) {
      activateUnit(i);
      glDisableClientState(GL_TEXTURE_COORD_ARRAY);
      glDisable(GL_TEXTURE_2D);
    }
  }
  activateUnit(0);
}

void SorvantaTest::bindNormals() {
  glEnableClientState(GL_NORMAL_ARRAY);
  glNormalPointer(GL_FLOAT, 0, arrays.normals);
}

void SorvantaTest::bindColors() {
  if (useColor) {
    glEnableClientState(GL_COLOR_ARRAY);
    glColorPointer(3, GL_FLOAT, 0, arrays.colors);
  }
  if (useSecColor) {
    glEnable(GL_COLOR_SUM_EXT);
    glEnableClientState(GL_SECONDARY_COLOR_ARRAY_EXT);
    glSecondaryColorPointer(3, GL_FLOAT, 0, arrays.secondaryColors);
  }
}

void SorvantaTest::bindVertices() {
  glEnableClientState(GL_VERTEX_ARRAY);
  glVertexPointer(3, GL_FLOAT, 0, arrays.vertices);
}

void SorvantaTest::releaseAttributeArrays() {
  if (useNormals) {
    glDisableClientState(GL_NORMAL_ARRAY);
  }
  if (useColor) {
    glDisableClientState(GL_COLOR_ARRAY);
  }
  if (useSecColor) {
    glDisable(GL_COLOR_SUM_EXT);
    glDisableClientState(GL_SECONDARY_COLOR_ARRAY_EXT);
  }
}
