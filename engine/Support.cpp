#include "engine/Support.h"

#include "engine/SorvantaTest.h"
#include "platform/gl/ContextTable.h"
#include "platform/gl/Driver.h"
#include "platform/gl/DriverMemory.h"

Support supportOf(const SorvantaTest& test, DrawMethod method) {
  const DrawMethodTraits& traits = traitsOf(method);
  if (const char* const missing = traits.missing != nullptr ? traits.missing(driver()) : nullptr) {
    return {RunsAs::kRefused, std::string("this OpenGL driver has no ") + missing +
                                  ", which the method " + rowOf(method)->word + " needs."};
  }
  const std::size_t bytes = traits.modelsInBuffer * test.modelSource().byteSize();
  if (bytes > kLargestBuffer) {
    return {RunsAs::kRefused, "the method " + std::string(rowOf(method)->word) +
                                  " would need a buffer of " + std::to_string(bytes) +
                                  " bytes for this model, and buffers above " +
                                  std::to_string(kLargestBuffer) +
                                  " are never made, because drivers fail with them; use a smaller "
                                  "detail or fewer attributes."};
  }
  const unsigned int most = test.maxVertexArraySize();
  if (traits.rangeVertices != nullptr && (test.*traits.rangeVertices)() > most) {
    return {RunsAs::kOther, "a vertex array range covers at most " + std::to_string(most) +
                                " vertices here, too few for this model; it is drawn from " +
                                traits.drawnWithoutRange + '.'};
  }
  if (const char* const standIn = traits.standIn != nullptr ? traits.standIn(driver()) : nullptr) {
    return {RunsAs::kStandIn, standIn};
  }
  return {};
}

Support supportOfColors(const SorvantaTest& test) {
  const bool wanted = test.getNormals() && (test.getColor() || test.getSecColor());
  if (!wanted || !traitsOf(test.getDrawMethod()).sendsArrays) {
    return {};
  }
  return {
      RunsAs::kOther,
      std::string("beside normals the method ") + rowOf(test.getDrawMethod())->word +
          " sends no colours, like all array methods; immediateMode and displayLists send them, "
          "so their figures cannot be compared with this one's."};
}

Support supportOfMacros() {
  const char* const lookedUpWith = CGLGetCurrentContext()->lookedUpWith;
  if (lookedUpWith == nullptr) {
    return {};
  }
  return {RunsAs::kOther,
          std::string("this OpenGL driver does not expose its table of entry points; -m calls the "
                      "functions of ") +
              lookedUpWith + '.'};
}
