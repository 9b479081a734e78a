// What settings change, in whatever order they come.
#include <algorithm>
#include <csignal>
#include <functional>
#include <random>

#include "engine/Memory.h"
#include "engine/Support.h"
#include "tests/support/EngineTest.h"

namespace {

class Settings : public EngineTest {
 protected:
  /// Calls with the addresses of the mesh made relative, and others left out.
  Calls relative(const Calls& made) const {
    const auto block = reinterpret_cast<std::uintptr_t>(test->getArrays().vertices);
    Calls text;
    std::size_t from = 0;
    for (auto at = made.find("0x"); at != Calls::npos; at = made.find("0x", from)) {
      std::size_t length = 0;
      const std::uintptr_t offset = std::stoul(made.substr(at, 18), &length, 16) - block;
      text += made.substr(from, at - from);
      text += offset < std::uintptr_t{kBytesPerVertex} * test->modelVertexCount()
                  ? std::to_string(offset)
                  : "?";
      from = at + length;
    }
    return text + made.substr(from);
  }

  /// What the next frame submits: the mesh, what the method retains of it, and the calls.
  std::string submitted() {
    const MeshArrays& a = test->getArrays();
    const std::uint32_t n = test->modelVertexCount();
    std::string all;
    const auto append = [&all](const void* data, std::size_t size) {
      all.append(static_cast<const char*>(data), size);
    };
    append(a.vertices, sizeof(GLCoord3) * n * (test->getColor() ? 2 : 1));
    append(a.secondaryColors, sizeof(GLCoord3) * n * 2 + sizeof(GLCoord2) * n * kTextureUnitCount);
    append(test->getIndices().data(), sizeof(GLuint) * n);
    const Calls settings = takeCalls();
    if (test->getDrawMethod() == kDrawDisplayLists) {
      const auto list = settings.rfind("glNewList");
      all += relative(settings.substr(list, settings.find("glEndList", list) - list));
    }
    for (const VertexArrayRecord& row : test->getVertexArrayObjects()) {
      append(&row.offsets, sizeof row.offsets);
      append(row.data.get(), row.byteSize);
    }
    const auto rows = test->getVertexBufferObjects();
    append(rows.data(), rows.size_bytes());
    all += relative(drawFrame());
    // Of the row or model that was mapped last; copies of rows lie where their addresses say.
    if (test->getVertexArrayObjects().empty()) {
      append(fakeDriver.buffer.data(), rows.empty() ? sizeof(GLCoord3) * n : rows[0].byteSize);
    }
    return all;
  }
};

TEST_F(Settings, TakeEffectInAnyOrderAndClearTheHistory) {
  std::mt19937 random(1);
  for (int round = 0; round < 64; ++round) {
    const DrawMethod method =
        kDrawMethodWords[static_cast<std::size_t>(round) % kDrawMethodWords.size()].method;
    const auto choices = random();
    const auto on = [=](unsigned int i) { return (choices >> i & 1) != 0; };
    const auto primitive = static_cast<Primitive>(choices / 65536 % 10);
    std::function<void()> setters[] = {
        [&] { test->setDetail(on(0) ? 32 : 33); }, [&] { test->setPrimitive(primitive); },
        [&] { test->setNormals(on(1)); },          [&] { test->setVertexColors(on(2)); },
        [&] { test->setSecColor(on(3)); },         [&] { test->setTexturing(0, on(4)); },
        [&] { test->setTexturing(5, on(5)); },     [&] { test->setLighting(2, on(6)); },
        [&] { test->setThrash(on(7)); },           [&] { test->setMacros(on(8)); },
        [&] { test->setDrawsOffscreen(on(9)); },   [&] { test->setZoom(2); },
        [&] { test->setRotate(false); },           [&] { test->setDrawMethod(method); }};
    const auto apply = [this](const auto& set) {
      history.addSample(1);
      set();
      EXPECT_EQ(history.getSampleCount(), 0);
    };
    std::string extensions = kNative;
    setUpOn(extensions);
    if (on(10) || supportOf(*test, method).as == RunsAs::kRefused) {
      extensions = FakeDriver().extensions;
      setUpOn(extensions);
    }
    std::for_each(std::begin(setters), std::end(setters), apply);
    const std::string expected = submitted();

    setUpOn(extensions);
    test->setDrawMethod(method);
    test->setVertexColors(on(11));
    test->setNormals(on(12));
    test->setTexturing(6, true);
    test->setTexturing(6, false);
    std::shuffle(std::begin(setters), std::end(setters), random);
    std::for_each(std::begin(setters), std::end(setters), apply);
    EXPECT_TRUE(submitted() == expected) << round << ' ' << rowOf(method)->word;
  }
  test->setDetail(test->getDetail());
  test->setTextureCopies();
  EXPECT_EQ(history.getSampleCount(), 1);  // of the frame drawn last
  test->setZoom(0);
  EXPECT_EQ(history.getSampleCount(), 0);
}

TEST_F(Settings, FlagsSetAsManyUnitsAndLightsAsTheDriverHas) {
  const bool flags[9] = {false, true, true, false, true, true, true, true, true};
  fakeDriver.integers[GL_MAX_TEXTURE_UNITS] = 5;
  fakeDriver.integers[GL_MAX_LIGHTS] = 3;
  test->setTexturing(0, true);
  test->setLighting(7, true);
  test->setDrawMethod(kDrawArrays);
  test->setTexturing(flags);
  test->setLighting(flags);
  const Calls frame = drawFrame();
  for (unsigned int i = 0; i < 8; ++i) {
    EXPECT_EQ(countOf(frame, gl("TexCoordPointer", 2, GL_FLOAT, 0, test->getArrays().texCoords[i])),
              i == 1 || i == 2 || i == 4);
    EXPECT_EQ(contains(frame, gl("Enable", GL_LIGHT0 + i)), i == 1 || i == 2 || i == 7);
  }
  fakeDriver.integers[GL_MAX_TEXTURE_UNITS] = 9;
  EXPECT_DEATH(test->setTexturing(flags),
               "Settings.cpp:[0-9]+: failed assertion `textureUnitCount.. <= kTextureUnitCount'");
  EXPECT_EXIT(SorvantaTest(nullptr), testing::KilledBySignal(SIGABRT),
              "failed assertion `perfHistory'");
  EXPECT_DEATH(test->setPrimitive(static_cast<Primitive>(10)), "");
  EXPECT_DEATH(test->setDrawMethod(static_cast<DrawMethod>(8)), "");
}

TEST_F(Settings, AMeshIsBuiltInOneBlockAndItsColorsFollowTheTerrain) {
  test->setVertexColors(true);
  for (const auto& [primitive, side] : {std::pair{kTriangles, 33U}, {kQuads, 2U}, {kLines, 64U}}) {
    test->setPrimitive(primitive);
    test->setDetail(side);
    EXPECT_NEAR(test->getTriArea(), 39200.0F / static_cast<float>(side * side), 4);
  }
  srand(129);
  for (int i = 0; i < 128; ++i) {
    rand();  // for the terrain's faults, none of which is repeated at this detail
  }
  for (std::size_t i = 0; i < 300; ++i) {
    EXPECT_EQ((&test->getArrays().colors->x)[i], static_cast<float>((rand() % 100) * 0.01));
  }
  test->getArrays().colors[0].x = 7;
  test->setColor(true);
  test->setDetail(0);
  test->setDetail(64);
  EXPECT_LT(test->getArrays().colors[0].x, 1);  // written anew
  test->setVertexColors(false);
  EXPECT_FALSE(test->getColor());
  EXPECT_EXIT(allocateOrExit(SIZE_MAX / 4, "a wish"), testing::ExitedWithCode(1),
              "refuses 4611686018427387903 bytes of memory for a wish");
}

}  // namespace
