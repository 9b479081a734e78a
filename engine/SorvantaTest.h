/// The benchmark itself: every setting of a run, the mesh and what is derived from it, and the
/// measured frame.
///
/// One object per process, on the thread that has the window's GL context current. Order of use:
/// construct, initGL, setters, setBounds from every reshape, draw for every frame. A setter that
/// changes the mesh rebuilds it, which also rebuilds what the draw method retains and clears the
/// performance history, so that averages never mix configurations.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "engine/DrawMethods.h"
#include "engine/Memory.h"
#include "engine/Primitives.h"
#include "engine/RowLayout.h"
#include "model/Mesh.h"
#include "perf/PerformanceHistory.h"
#include "platform/gl/GL.h"

constexpr unsigned int kLightCount = 8;

/// A grid row drawn from a private interleaved copy in client memory.
struct VertexArrayRecord {
  RowOffsets offsets;
  GLuint vertexArrayObject;
  std::uint32_t byteSize;
  Block<std::byte> data;
};

/// A grid row drawn from a buffer object.
struct VertexBufferRecord {
  RowOffsets offsets;
  GLuint vertexArrayObject;
  GLuint buffer;
  std::uint32_t stride;
  std::uint32_t byteSize;
};

class SorvantaTest {
 public:
  /// Builds the default mesh; makes no GL call. The history, which must not be null, receives one
  /// sample per frame and stays the caller's.
  explicit SorvantaTest(PerformanceHistory* perfHistory);
  SorvantaTest(const SorvantaTest&) = delete;
  SorvantaTest& operator=(const SorvantaTest&) = delete;

  // GL set-up and projection.

  /// One-time set-up of textures, lights and the driver's providers.
  void initGL();
  /// Sets viewport and projection; runs initGL first if it has not run.
  void reshape();
  /// Sets the view's size in pixels, and reshapes.
  void setBounds(unsigned int width, unsigned int height);
  /// Places the mesh behind the viewer: everything is submitted and transformed, nothing drawn.
  void setDrawsOffscreen(bool on);

  // Settings. A change clears the history, but for setTextureCopies, whose work is not measured.

  void setDetail(unsigned int d);  ///< clamped to minDetail() .. maxDetail(); does nothing if equal
  void setZoom(float z);           ///< recorded unless 0; the projection does not use it
  void setPrimitive(Primitive p);
  void setDrawMethod(DrawMethod m);
  void setNormals(bool on);
  void setColor(bool on);  ///< sends the colour array, filled or not
  void setSecColor(bool on);
  void setVertexColors(bool on);                  ///< fills the colour array and sends it
  void setTexturing(unsigned int slot, bool on);  ///< slot below kTextureUnitCount
  void setTexturing(const bool* flags);           ///< textureUnitCount() of them
  void setLighting(unsigned int light, bool on);  ///< light below kLightCount
  void setLighting(const bool* flags);            ///< lightCount() of them
  void setThrash(bool on);
  void setRotate(bool on);
  void setMacros(bool on);
  void setTextureCopies();  ///< inverts the setting

  unsigned int getDetail() const { return detail; }
  static constexpr unsigned int minDetail() { return 1; }
  static constexpr unsigned int maxDetail() { return 2048; }
  int getZoom() const { return zoom; }  ///< what the projection uses: 0, whatever was recorded
  static constexpr int minZoom() { return -110; }
  static constexpr int maxZoom() { return 50; }
  GLenum getPrimitive() const { return primitiveMode; }  ///< the GL mode
  DrawMethod getDrawMethod() const { return drawMethod; }
  bool getThrash() const { return thrash; }
  bool getRotate() const { return rotate; }
  bool getMacros() const { return useMacros; }
  bool getColor() const { return useColor; }
  bool getSecColor() const { return useSecColor; }

  // Limits of the driver; need the context current.

  unsigned int lightCount() const;
  unsigned int textureUnitCount() const;
  /// The most vertices that a vertex array range may cover; 0 where there are no ranges.
  unsigned int maxVertexArraySize() const;

  // The mesh.

  /// Rebuilds all per-vertex arrays and whatever is derived from them.
  void updateVertices();
  unsigned int modelTriangleCount() const { return 2 * detail * detail; }
  unsigned int modelVertexCount() const { return layout.vertexCount; }
  unsigned int modelTriangleCountPerStrip() const { return 2 * detail; }
  float getTriArea() const { return triArea; }  ///< of the mesh's first triangle
  /// The area of a triangle in the plane by Heron's formula.
  static float computeTriArea(float x0, float y0, float x1, float y1, float x2, float y2);
  const MeshLayout& getLayout() const { return layout; }
  const MeshArrays& getArrays() const { return arrays; }
  std::span<const GLuint> getIndices() const { return {indices.get(), layout.vertexCount}; }

  // Retained structures: those of the current draw method exist, built from the current mesh.

  /// Drops all of them, builds those of the draw method, and clears the history.
  void updateDataStructures();
  void rebuildDisplayList();
  void deleteDisplayList();
  void rebuildVertexArrayObjects();
  void deleteVertexArrayObjects();
  /// `usage` is the buffers' usage hint. A buffer that the driver refuses or cannot unmap ends the
  /// program with status 1.
  void rebuildVertexBufferObjects(unsigned long usage);
  void deleteVertexBufferObjects();
  std::span<const VertexArrayRecord> getVertexArrayObjects() const { return vertexArrayObjects; }
  std::span<const VertexBufferRecord> getVertexBufferObjects() const { return vertexBufferObjects; }

  // Drawing operations: each draws the whole model `reps` times, between a frame's client-array
  // binding and release.

  void drawImmediateMode(unsigned int reps);
  void drawImmediateModeRep();
  void drawDisplayList(int reps);
  void drawUsingArrays(int reps);
  void drawUsingElements(int reps);
  void drawUsingArrayElements(int reps);
  void drawUsingVertexArrayObjects(int reps);
  void drawUsingVertexBufferObjects(int reps);

  // A draw method's own steps around them: its range over all arrays, the ranges of its rows, and
  // what its rows leave bound.

  void declareVertexArrayRange();
  void withdrawVertexArrayRange();
  void enableRowRanges();
  void disableRowRanges();
  void unbindRowBuffers();

  // The frame.

  /// Draws and measures one frame, and adds its figure to the history: millions of triangles (of
  /// quads where countsQuads) per second. Does nothing before initGL.
  void draw();
  /// The history's mean without the two highest and the two lowest samples.
  float performance() const;

 private:
  using DrawRows = void (SorvantaTest::*)(int reps) const;

  RowLayout rowLayout() const {
    return layoutRow(useNormals, useColor, useSecColor, textureEnabled);
  }
  void createTextures();
  void setModelView();
  void bindTextureUnits();
  void releaseTextureUnits();
  void switchLightsOn();
  void switchLightsOff();
  void setMaterialAndLightPositions();
  void bindNormals();
  void bindColors();
  void bindVertices();
  void releaseAttributeArrays();
  void setCurrentColor();
  int repsPerPass() const;
  void measure(const DrawMethodTraits& method, int reps);
  void copyFrameToTextures();
  template <typename Calls>
  void emitModel(Calls calls) const;
  template <RowAttributes has>
  void drawRowBuffers(int reps) const;

  float rotationA[4] = {};  ///< angle in degrees, axis x, y, z
  float rotationB[4] = {};
  float zoomSetting = 1.0F;
  float triArea = 0;
  float spinAngles[3] = {};  ///< degrees
  unsigned int detail = 64;
  int zoom = 0;
  DrawMethod drawMethod = kDrawImmediateMode;
  GLenum primitiveMode = GL_TRIANGLE_STRIP;

  Block<std::byte> vertexData;  ///< holds all of `arrays`
  std::uint32_t vertexDataSize = 0;
  MeshLayout layout{};
  MeshArrays arrays{};
  Block<GLuint> indices;  ///< 0, 1, 2, ...

  GLuint displayList = 0;
  std::vector<VertexArrayRecord> vertexArrayObjects;
  std::vector<VertexBufferRecord> vertexBufferObjects;
  std::vector<VertexBufferRecord> extraVertexBufferObjects;  ///< nothing fills it yet

  GLuint textures[kTextureUnitCount] = {};      ///< slot 0 a picture, the others digits
  GLuint copyTextures[kTextureUnitCount] = {};  ///< the first three receive copies of the frame
  bool textureEnabled[kTextureUnitCount] = {};
  bool lightEnabled[kLightCount] = {};
  bool useNormals = false;
  bool rotate = false;
  bool drawsOffscreen = false;
  bool useMacros = false;
  bool vertexColors = false;
  bool thrash = false;
  bool useColor = false;
  bool useSecColor = false;
  bool glInitialized = false;
  bool textureCopies = false;
  unsigned int width = 0;
  unsigned int height = 0;
  PerformanceHistory* perfHistory;
};
