// The generic emitter, the family of specialised ones, and the array operations' two paths.
#include <array>

#include "engine/ImmediateModeFamily.h"
#include "tests/support/EngineTest.h"

namespace {

TEST_F(EngineTest, GenericEmitterSendsAttributesInOrder) {
  test.setDetail(1);
  test.setNormals(true);
  test.setVertexColors(true);
  test.setSecColor(true);
  for (const unsigned int unit : {0U, 1U, 7U}) {
    test.setTexturing(unit, true);
  }
  const MeshArrays& a = test.getArrays();
  for (const bool macros : {false, true}) {
    const std::string prefix = macros ? "context " : "gl";
    const std::string sec = macros ? "context SecondaryColor3fv" : "glSecondaryColor3fvEXT";
    const std::string multi = macros ? "context MultiTexCoord2fv" : "glMultiTexCoord2fvARB";
    Calls pass = {call("glPushAttrib", 0x000FFFFF)};
    if (macros) {
      pass.push_back(call("CGLGetCurrentContext"));
    }
    pass.push_back(call("glBegin", GL_TRIANGLE_STRIP));
    for (int i = 0; i < 4; ++i) {
      pass = pass + Calls{call(prefix + "Normal3fv", a.normals + i),
                          call(prefix + "Color3fv", a.colors + i),
                          call(sec, a.secondaryColors + i),
                          call(multi, GL_TEXTURE0, a.texCoords[0] + i),
                          call(multi, GL_TEXTURE1, a.texCoords[1] + i),
                          call(multi, GL_TEXTURE7, a.texCoords[7] + i),
                          call(prefix + "Vertex3fv", a.vertices + i)};
    }
    pass = pass + Calls{call("glEnd"), call("glPopAttrib")};
    test.setMacros(macros);
    test.setThrash(true);
    takeCalls();
    test.drawImmediateMode(3);
    EXPECT_EQ(takeCalls(), repeat(3, pass));
  }
}

TEST_F(EngineTest, GenericEmitterDrawsTrianglesInOneStrip) {
  test.setDetail(2);
  test.setPrimitive(kTriangles);
  takeCalls();
  test.drawImmediateMode(0);
  EXPECT_EQ(takeCalls(), Calls());
  test.drawImmediateModeRep();
  const Calls made = takeCalls();
  EXPECT_EQ(made.size(), 26U);
  EXPECT_EQ(made.front(), call("glBegin", GL_TRIANGLES));
  EXPECT_EQ(made[24], call("glVertex3fv", test.getArrays().vertices + 23));
}

/// Two strips of six vertices, by the rule of the family's names.
Calls familyCalls(unsigned long variant, bool macro, const MeshArrays& a) {
  const std::string prefix = macro ? "context " : "gl";
  Calls all;
  if (macro) {
    all.push_back(call("CGLGetCurrentContext"));
  }
  for (int i = 0; i < 12; ++i) {
    if (i % 6 == 0) {
      all.push_back(call(prefix + "Begin", GL_LINE_STRIP));
    }
    const auto send = [&](unsigned int bit, const Call& sent) {
      if ((variant & bit) != 0) {
        all.push_back(sent);
      }
    };
    send(1, call(prefix + "Normal3fv", a.normals + i));
    send(2, call(prefix + "Color3fv", a.colors + i));
    send(4, call(prefix + "SecondaryColor3fv", a.secondaryColors + i));
    const bool plain = !macro || (variant & 48) == 0;
    send(8, plain ? call(prefix + "TexCoord2fv", a.texCoords[0] + i)
                  : call(prefix + "MultiTexCoord2fv", GL_TEXTURE0, a.texCoords[0] + i));
    send(16, call(prefix + "MultiTexCoord2fv", GL_TEXTURE1, a.texCoords[1] + i));
    send(32, call(prefix + "MultiTexCoord2fv", GL_TEXTURE2, a.texCoords[2] + i));
    all.push_back(call(prefix + "Vertex3fv", a.vertices + i));
    if (i % 6 == 5) {
      all.push_back(call(prefix + "End"));
    }
  }
  return all;
}

TEST_F(EngineTest, SpecialisedEmittersSendWhatTheirNamesSay) {
  test.setDetail(2);
  const MeshArrays& a = test.getArrays();
  std::array<GLCoord2*, 3> texCoords = {a.texCoords[0], a.texCoords[1], a.texCoords[2]};
  const auto run = [&](auto function, auto... variant) {
    takeCalls();
    return function(variant..., 2UL, static_cast<unsigned long>(GL_LINE_STRIP), a.vertices,
                    a.colors, a.secondaryColors, a.normals, texCoords.data());
  };
  for (unsigned long variant = 0; variant < 64; ++variant) {
    EXPECT_TRUE(run(DoImmediateMode, variant));
    EXPECT_EQ(takeCalls(), familyCalls(variant, false, a)) << variant;
    EXPECT_TRUE(run(DoImmediateModeMacro, variant));
    EXPECT_EQ(takeCalls(), familyCalls(variant, true, a)) << variant;
  }
  EXPECT_FALSE(run(DoImmediateMode, 64UL));
  EXPECT_FALSE(run(DoImmediateModeMacro, 64UL));
  EXPECT_EQ(takeCalls(), Calls());

  run(DrawImmediateModeNorSecT1);
  EXPECT_EQ(takeCalls(), familyCalls(1 + 4 + 16, false, a));
  run(DrawImmediateModeColT0T2Macro);
  EXPECT_EQ(takeCalls(), familyCalls(2 + 8 + 32, true, a));
}

TEST_F(EngineTest, ArrayOperationsOnBothPaths) {
  test.setDetail(2);
  test.setDrawMethod(kDrawDisplayLists);
  test.setThrash(true);
  takeCalls();
  for (const bool macros : {false, true}) {
    const std::string prefix = macros ? "context " : "gl";
    const Calls fetch = macros ? Calls{call("CGLGetCurrentContext")} : Calls{};
    const Calls push = {call("glPushAttrib", 0x000FFFFF)};
    const Calls pop = {call("glPopAttrib")};
    test.setMacros(macros);
    test.drawUsingArrays(2);
    EXPECT_EQ(takeCalls(),
              fetch + repeat(2, push +
                                    Calls{call(prefix + "DrawArrays", GL_TRIANGLE_STRIP, 0, 6),
                                          call(prefix + "DrawArrays", GL_TRIANGLE_STRIP, 6, 6)} +
                                    pop));
    Calls elements = push;
    for (int i = 0; i < 12; ++i) {
      elements = elements +
                 (i % 6 == 0 ? Calls{call(prefix + "Begin", GL_TRIANGLE_STRIP)} : Calls{}) +
                 Calls{call(prefix + "ArrayElement", i)} +
                 (i % 6 == 5 ? Calls{call(prefix + "End")} : Calls{});
    }
    test.drawUsingArrayElements(1);
    EXPECT_EQ(takeCalls(), fetch + elements + pop);
    test.drawDisplayList(2);
    const Calls replay = takeCalls();
    EXPECT_EQ(countOf(replay, prefix + "CallList"), 2U);
    EXPECT_EQ(replay.size(), 6U + fetch.size());
    test.drawUsingElements(0);
    test.drawUsingArrays(-1);
    EXPECT_EQ(countOf(takeCalls(), "glPushAttrib"), 0U);
  }
}

}  // namespace
