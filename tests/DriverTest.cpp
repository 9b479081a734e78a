// What the driver offers, and what runs in place of what it lacks.
#include "engine/Support.h"
#include "platform/gl/Driver.h"
#include "tests/support/EngineTest.h"

namespace {

class DriverLimits : public EngineTest {
 protected:
  void expectSupport(DrawMethod method, RunsAs as, const std::string& part) {
    const Support support = supportOf(*test, method);
    EXPECT_EQ(support.as, as) << method;
    EXPECT_EQ(support.sentence.empty(), part.empty()) << support.sentence;
    EXPECT_NE(support.sentence.find(part), std::string::npos) << support.sentence;
  }
};

TEST_F(DriverLimits, ChooseTheRangeProvider) {
  const std::tuple<const char*, RangeProvider, unsigned int> drivers[] = {
      {kNative, RangeProvider::kNative, 1 << 20},
      {"GL_AMD_pinned_memory GL_ARB_vertex_buffer_object", RangeProvider::kPinned, 18512790},
      {"GL_AMD_pinned_memory_ GL_ARB_vertex_buffer_object", RangeProvider::kFilled, 18512790},
      {"GL_APPLE_vertex_array_range", RangeProvider::kNative, 1 << 20},
      // Rows in native ranges would be client memory, which these objects do not take.
      {"GL_APPLE_vertex_array_range GL_ARB_vertex_array_object GL_ARB_vertex_buffer_object",
       RangeProvider::kFilled, 18512790},
      {"", RangeProvider::kNone, 0}};
  for (const auto& [extensions, provider, most] : drivers) {
    setUpOn(extensions);
    EXPECT_EQ(driver().rangeProvider, provider) << extensions;
    EXPECT_EQ(test->maxVertexArraySize(), most) << extensions;
  }
  test->setDrawMethod(kDrawArraysWithVertArrayRng);
  EXPECT_EQ(countOf(drawFrame(), "glGenBuffersARB"), 0);
  for (const auto& [extensions, provider, most] : {drivers[0], drivers[1]}) {
    fakeDriver.extensions = extensions;  // and then refuses to do what they say
    fakeDriver.errors = {{"glGetIntegerv", GL_INVALID_ENUM}, {"glBufferDataARB", GL_INVALID_ENUM}};
    detectDriver();
    const bool native = provider == RangeProvider::kNative;
    EXPECT_EQ(driver().rangeProvider, native ? provider : RangeProvider::kFilled);
    EXPECT_EQ(test->maxVertexArraySize(), native ? 0 : most);
  }
  fakeDriver.errors.clear();
  fakeDriver.integers[GL_BUFFER_SIZE] = 0;
  EXPECT_EXIT(drawFrame(), testing::ExitedWithCode(1), "no memory for a buffer of 965120 bytes");
}

TEST_F(DriverLimits, AreToldAsWhatCannotRunAndWhatRunsAsSomethingElse) {
  expectSupport(kDrawCompiledVertArray, RunsAs::kItself, "");
  expectSupport(kDrawArraysWithVertArrayRng, RunsAs::kStandIn,
                "a buffer object filled at the flush");
  expectSupport(kDrawArraysWithVertArrayObjects, RunsAs::kStandIn, "filled at the flush");
  expectSupport(kDrawArraysWithStaticVBO, RunsAs::kStandIn, "GL_ARB_vertex_array_object");
  const std::string plain = ", too few for this model; it is drawn from plain client arrays.";
  setUpOn("");
  expectSupport(kDrawArraysWithStaticVBO, RunsAs::kRefused, "vertex buffer objects");
  expectSupport(kDrawArraysWithVertArrayObjects, RunsAs::kRefused, "vertex array objects");
  expectSupport(kDrawArraysWithVertArrayRng, RunsAs::kOther, "at most 0 vertices here" + plain);
  expectSupport(kDrawCompiledVertArray, RunsAs::kRefused,
                "this OpenGL driver has no compiled vertex arrays, which the method "
                "compiledVertArray needs.");
  test->setNormals(true);
  EXPECT_EQ(supportOfColors(*test).as, RunsAs::kItself);
  test->setSecColor(true);
  EXPECT_EQ(supportOfColors(*test).as, RunsAs::kItself);  // of immediate mode
  test->setDrawMethod(kDrawArrayElement);
  EXPECT_TRUE(
      contains(supportOfColors(*test).sentence, "the method arrayElement sends no colours"));
  setUpOn("GL_ARB_vertex_array_object");
  expectSupport(kDrawArraysWithVertArrayObjects, RunsAs::kRefused, "vertex array ranges");
  expectSupport(kDrawArraysWithDynVertBufferObjectsVAO, RunsAs::kRefused, "vertex buffer objects");
  setUpOn("GL_ARB_vertex_buffer_object");
  expectSupport(kDrawArraysWithDynVertBufferObjectsVAO, RunsAs::kRefused, "vertex array objects");
  setUpOn(kNative);
  fakeDriver.integers[0x8520] = 128;
  detectDriver();
  expectSupport(kDrawArraysWithVertArrayObjects, RunsAs::kItself, "");
  test->setDrawMethod(kDrawArraysWithVertArrayObjects);
  const Calls enable = gl("EnableClientState", GL_VERTEX_ARRAY_RANGE_APPLE);
  takeCalls();
  EXPECT_TRUE(contains(drawFrame(), enable));
  test->setDetail(65);
  expectSupport(kDrawArraysWithVertArrayObjects, RunsAs::kOther, "rows' own copies");
  expectSupport(kDrawArraysWithVertArrayRng, RunsAs::kOther, "at most 128 vertices here" + plain);
  takeCalls();
  EXPECT_FALSE(contains(drawFrame(), enable));
  test->setDrawMethod(kDrawArraysWithVertArrayRng);
  takeCalls();
  EXPECT_FALSE(contains(drawFrame(), "glFlushVertexArrayRange"));
}

}  // namespace
