/// The benchmark itself: every setting of a run, the mesh and what is derived from it, and the
/// measured frame.
///
/// One object, one context, one process: the object belongs to the thread and the GL context that
/// initGL finds, what it knows of the driver is the process's, and of GL's objects only a retained
/// model's are given back at its end. Order of use: construct, initGL once, setters, setBounds from
/// every reshape, draw for every frame. A setter that changes the mesh rebuilds it, which also
/// rebuilds what the draw method retains and clears the performance history, so that averages never
/// mix configurations.
///
/// Each group of declarations names the source that implements it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "engine/FrameObserver.h"
#include "engine/Memory.h"
#include "engine/Primitives.h"
#include "engine/methods/MethodTable.h"
#include "engine/methods/RetainedModel.h"
#include "engine/methods/RowLayout.h"
#include "model/Mesh.h"
#include "perf/PerformanceHistory.h"
#include "platform/gl/GL.h"
#include "words/Detail.h"

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

/// What one frame drew and how long that took.
struct FrameMeasurement {
  std::uint64_t primitives = 0;    ///< triangles, or quads where countsQuads
  std::uint64_t microseconds = 0;  ///< by getTime, from the first submission to the end of glFinish
};

class SorvantaTest {
 public:
  /// Builds the default mesh; makes no GL call. The history, which must not be null, receives one
  /// sample per frame and stays the caller's.
  explicit SorvantaTest(PerformanceHistory* perfHistory);
  SorvantaTest(const SorvantaTest&) = delete;
  SorvantaTest& operator=(const SorvantaTest&) = delete;

  // Setup.cpp: GL set-up and projection. They need the context current.

  /// Set-up of textures, lights and the driver's providers; once per object.
  void initGL();
  /// Sets viewport and projection; runs initGL first if it has not run.
  void reshape();
  /// Sets the view's size in pixels, and reshapes.
  void setBounds(unsigned int width, unsigned int height);
  /// Places the mesh behind the viewer: everything is submitted and transformed, nothing drawn.
  void setDrawsOffscreen(bool on);

  // Settings.cpp. A change clears the history, but for setTextureCopies, whose work is not
  // measured.

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
  /// How long a frame draws at least; 100,000 unless set.
  void setLeastMeasuredTime(std::uint64_t microseconds);

  unsigned int getDetail() const { return detail; }
  static constexpr unsigned int minDetail() { return kLeastDetail; }
  static constexpr unsigned int maxDetail() { return kMostDetail; }
  int getZoom() const { return zoom; }  ///< what the projection uses: 0, whatever was recorded
  static constexpr int minZoom() { return -110; }
  static constexpr int maxZoom() { return 50; }
  GLenum getPrimitive() const { return primitiveMode; }  ///< the GL mode
  DrawMethod getDrawMethod() const { return drawMethod; }
  bool getNormals() const { return useNormals; }
  bool getThrash() const { return thrash; }
  bool getRotate() const { return rotate; }
  bool getMacros() const { return useMacros; }
  bool getColor() const { return useColor; }
  bool getSecColor() const { return useSecColor; }

  /// Limits of the driver. The first two need the context current, the third initGL to have run.
  unsigned int lightCount() const;
  unsigned int textureUnitCount() const;
  /// The most vertices that a vertex array range may cover; 0 where there are no ranges.
  unsigned int maxVertexArraySize() const;

  /// Drops all retained structures, builds those of the draw method from the current mesh unless
  /// supportOf it is kRefused, and clears the history.
  void updateDataStructures();

  // MeshArrays.cpp.

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

  // Frame.cpp.

  /// Draws and measures one frame, and adds its figure to the history: millions of triangles (of
  /// quads where countsQuads) per second. Does nothing before initGL. Ends the program with the
  /// sentence of supportOf where the method draws from a model of a class of its own and that
  /// cannot be made.
  void draw();
  /// The history's mean without the two highest and the two lowest samples.
  float performance() const;
  /// Of the frame drawn last.
  const FrameMeasurement& lastFrame() const { return measurement; }
  /// Told of every frame's measured region from now on; null for none. It stays the caller's.
  void setFrameObserver(FrameObserver* newObserver) { observer = newObserver; }

  // The draw methods. Drawing operations draw the whole model `reps` times, between a frame's
  // client-array binding and release. What a method retains is rebuilt and deleted by
  // updateDataStructures.

  // methods/ImmediateMode.cpp.
  void drawImmediateMode(unsigned int reps);
  void drawImmediateModeRep();
  void compileImmediateModeRep();  ///< into the display list being made
  void submitImmediateMode(int reps);

  // methods/DisplayLists.cpp.
  void rebuildDisplayList();
  void drawDisplayList(int reps);
  void deleteDisplayList();

  // methods/ClientArrays.cpp, with what array locks and the range over all arrays add to a frame.
  void drawUsingArrays(int reps);
  void drawUsingElements(int reps);
  void drawUsingArrayElements(int reps);
  void lockArrays();
  void unlockArrays();
  void declareVertexArrayRange();
  void withdrawVertexArrayRange();

  // methods/RangeRows.cpp, with what the rows' ranges add to a frame.
  void rebuildVertexArrayObjects();
  void drawUsingVertexArrayObjects(int reps);
  void deleteVertexArrayObjects();
  void enableRowRanges();
  void disableRowRanges();
  std::span<const VertexArrayRecord> getVertexArrayObjects() const { return vertexArrayObjects; }

  // methods/BufferRows.cpp.
  /// `usage` is the buffers' usage hint. A buffer that the driver refuses or cannot unmap ends the
  /// program with status 1.
  void rebuildVertexBufferObjects(unsigned long usage);
  void rebuildStaticBuffers();
  void rebuildStreamBuffers();
  void drawUsingVertexBufferObjects(int reps);
  void deleteVertexBufferObjects();
  void unbindRowBuffers();
  std::span<const VertexBufferRecord> getVertexBufferObjects() const { return vertexBufferObjects; }

  // methods/RetainedModel.cpp: the methods that have a class of their own.
  ModelSource modelSource() const;
  void rebuildRetainedModel();
  void bindRetainedModel();  ///< needs one to have been made
  void drawRetainedModel(int reps);
  void releaseRetainedModel();
  void deleteRetainedModel();

 private:
  // Setup.cpp.
  void createTextures();

  float rotationA[4] = {};  ///< angle in degrees, which nothing sets, and the axis x, y, z
  float rotationB[4] = {};
  GLuint textures[kTextureUnitCount] = {};      ///< slot 0 a picture, the others digits
  GLuint copyTextures[kTextureUnitCount] = {};  ///< the first three receive copies of the frame
  bool glInitialized = false;
  unsigned int width = 0;
  unsigned int height = 0;

  // Settings.cpp.
  float zoomSetting = 1.0F;
  unsigned int detail = 64;
  int zoom = 0;
  DrawMethod drawMethod = kDrawImmediateMode;
  GLenum primitiveMode = GL_TRIANGLE_STRIP;
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
  bool textureCopies = false;
  std::uint64_t leastMeasuredTime = 100000;  ///< microseconds
  PerformanceHistory* perfHistory;

  // MeshArrays.cpp.
  Block<std::byte> vertexData;  ///< holds all of `arrays`
  std::uint32_t vertexDataSize = 0;
  MeshLayout layout{};
  MeshArrays arrays{};
  Block<GLuint> indices;  ///< 0, 1, 2, ...
  float triArea = 0;

  // Frame.cpp.
  void setModelView();
  void switchLightsOn();
  void switchLightsOff();
  void setMaterialAndLightPositions();
  void setCurrentColor();
  int repsPerPass() const;
  void measure(const DrawMethodTraits& method, int reps);
  void copyFrameToTextures();

  float spinAngles[3] = {};  ///< degrees
  FrameMeasurement measurement;
  FrameObserver* observer = nullptr;

  // FrameArrays.cpp.
  void bindTextureUnits();
  void releaseTextureUnits();
  void bindNormals();
  void bindColors();
  void bindVertices();
  void releaseAttributeArrays();

  // What the draw methods retain, each in its own source.
  unsigned int vertexAttributes() const;
  RowLayout rowLayout() const {
    return layoutRow(useNormals, useColor, useSecColor, textureEnabled);
  }

  GLuint displayList = 0;
  std::vector<VertexArrayRecord> vertexArrayObjects;
  std::vector<VertexBufferRecord> vertexBufferObjects;
  std::vector<VertexBufferRecord> extraVertexBufferObjects;  ///< nothing fills it yet
  std::unique_ptr<RetainedModel> retainedModel;
};
