/// The test object's side of a retained model.
#include "engine/methods/RetainedModel.h"

#include "engine/SorvantaTest.h"
#include "platform/gl/Driver.h"

ModelSource SorvantaTest::modelSource() const {
  return {layout, arrays, rowLayout(), primitiveMode};
}

void SorvantaTest::rebuildRetainedModel() {
  deleteRetainedModel();
  retainedModel = traitsOf(drawMethod).makeRetained(modelSource());
  retainedModel->release();
  driver().vertexArrayObjects.bind(0);
}

void SorvantaTest::bindRetainedModel() {
  retainedModel->bind();
}

void SorvantaTest::drawRetainedModel(int reps) {
  if (retainedModel != nullptr) {
    retainedModel->draw(reps, thrash);
  }
}

void SorvantaTest::releaseRetainedModel() {
  retainedModel->release();
}

void SorvantaTest::deleteRetainedModel() {
  retainedModel.reset();
}
