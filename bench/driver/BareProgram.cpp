// The least program that makes a method's calls: one window, a mesh of positions, and the calls
// written out. bare_program METHOD DETAIL SECONDS draws offscreen and prints the average as
// Sorvanta makes it, in millions of triangles per second; bare_program clear opens the window,
// clears it once and ends.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <GL/freeglut.h>
#include <GL/glu.h>
#include <unistd.h>

#include "model/Mesh.h"
#include "perf/Clock.h"
#include "perf/PerformanceHistory.h"

namespace {

struct Position {
  float x, y, z;
};

unsigned int detail = 64;
GLsizei stripLength = 0;
std::span<Position> positions;
std::vector<GLuint> indices;
std::vector<GLuint> objects, buffers;
std::vector<GLint> firsts;    ///< of the strips, once for every place of a ring
std::vector<GLsizei> counts;  ///< of the same
void* written = nullptr;      ///< where streams write
constexpr GLuint kRestart = 0xFFFFFFFF;
constexpr std::size_t kPlaces = 3;

/// The positions lie at the start of a block as large as Sorvanta's, which holds all attributes:
/// what an array costs to read depends on where the allocator puts it.
void buildMesh() {
  stripLength = static_cast<GLsizei>(2 * detail + 2);
  const std::size_t count = detail * static_cast<std::size_t>(stripLength);
  positions = {static_cast<Position*>(std::malloc(kBytesPerVertex * count)), count};
  auto position = positions.begin();
  const float width = 280.0F / static_cast<float>(detail);
  for (unsigned int row = 0; row < detail; ++row) {
    for (unsigned int j = 0; j < 2 * detail + 2; ++j) {
      const unsigned int line = row + (j & 1);
      const unsigned int column = j / 2;
      *position++ = {width * static_cast<float>(line) + 60, width * static_cast<float>(column) + 60,
                     0};
    }
  }
  for (std::size_t i = 0; i < positions.size(); ++i) {
    indices.push_back(static_cast<GLuint>(i));
  }
}

/// Makes a buffer of the client's memory, in whole pages, and returns the memory's offset in it.
std::uintptr_t pin(const void* memory, std::size_t size, GLuint buffer) {
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const auto address = reinterpret_cast<std::uintptr_t>(memory);
  const std::uintptr_t first = address & ~(page - 1);
  const std::uintptr_t end = (address + size + page - 1) & ~(page - 1);
  glBindBuffer(GL_EXTERNAL_VIRTUAL_MEMORY_BUFFER_AMD, buffer);
  glBufferData(GL_EXTERNAL_VIRTUAL_MEMORY_BUFFER_AMD, static_cast<GLsizeiptr>(end - first),
               reinterpret_cast<const void*>(first), GL_STREAM_DRAW);
  glBindBuffer(GL_EXTERNAL_VIRTUAL_MEMORY_BUFFER_AMD, 0);
  return address - first;
}

const void* offset(std::uintptr_t bytes) {
  return reinterpret_cast<const void*>(bytes);
}

/// Points the bound object's array into the bound buffer.
void pointRow(std::uintptr_t at) {
  glVertexPointer(3, GL_FLOAT, sizeof(Position), offset(at));
  glEnableClientState(GL_VERTEX_ARRAY);
}

/// A vertex array object and a buffer per row, made row by row: where the driver puts the rows in
/// memory, and so what they cost to draw, depends on what is made between them. `fill` puts a row's
/// data into its buffer and points the object there.
void makeRows(void (*fill)(const Position*, std::size_t, GLuint)) {
  objects.resize(detail);
  buffers.resize(detail);
  for (unsigned int row = 0; row < detail; ++row) {
    const Position* const first = &positions[row * static_cast<std::size_t>(stripLength)];
    glGenVertexArrays(1, &objects[row]);
    glBindVertexArray(objects[row]);
    glGenBuffers(1, &buffers[row]);
    fill(first, static_cast<std::size_t>(stripLength) * sizeof(Position), buffers[row]);
  }
  glBindBuffer(GL_ARRAY_BUFFER, 0);
  glBindVertexArray(0);
}

template <GLenum usage>
void upload(const Position* first, std::size_t size, GLuint buffer) {
  glBindBuffer(GL_ARRAY_BUFFER, buffer);
  pointRow(0);
  glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(size), nullptr, usage);
  std::memcpy(glMapBuffer(GL_ARRAY_BUFFER, GL_WRITE_ONLY), first, size);
  glUnmapBuffer(GL_ARRAY_BUFFER);
}

/// Each row copied to memory of its own, and that pinned.
void copyAndPin(const Position* first, std::size_t size, GLuint buffer) {
  void* const copy = std::malloc(size);
  std::memcpy(copy, first, size);
  const std::uintptr_t at = pin(copy, size, buffer);
  glBindBuffer(GL_ARRAY_BUFFER, buffer);
  pointRow(at);
}

/// One object and one buffer for the whole mesh, which `store` gives its memory.
template <typename Store>
void makeModel(std::size_t bufferCount, Store store) {
  objects.resize(1);
  buffers.resize(bufferCount);
  glGenVertexArrays(1, objects.data());
  glBindVertexArray(objects[0]);
  glGenBuffers(static_cast<GLsizei>(bufferCount), buffers.data());
  glBindBuffer(GL_ARRAY_BUFFER, buffers[0]);
  pointRow(0);
  for (std::size_t vertex = 0; vertex < kPlaces * positions.size();
       vertex += static_cast<std::size_t>(stripLength)) {
    firsts.push_back(static_cast<GLint>(vertex));
    counts.push_back(stripLength);
  }
  store(static_cast<GLsizeiptr>(positions.size_bytes()));
  glBindBuffer(GL_ARRAY_BUFFER, 0);
  glBindVertexArray(0);
}

void storeModel(GLsizeiptr size) {
  glBufferData(GL_ARRAY_BUFFER, size, nullptr, GL_STATIC_DRAW);
  std::memcpy(glMapBuffer(GL_ARRAY_BUFFER, GL_WRITE_ONLY), positions.data(),
              positions.size_bytes());
  glUnmapBuffer(GL_ARRAY_BUFFER);
}

void storeModelAndDraws(GLsizeiptr size) {
  storeModel(size);
  std::vector<GLuint> draws;
  for (unsigned int row = 0; row < detail; ++row) {
    const auto n = static_cast<GLuint>(stripLength);
    draws.insert(draws.end(), {n, 1, row * n, 0});
  }
  glBindBuffer(GL_DRAW_INDIRECT_BUFFER, buffers[1]);
  glBufferData(GL_DRAW_INDIRECT_BUFFER, static_cast<GLsizeiptr>(draws.size() * sizeof(GLuint)),
               draws.data(), GL_STATIC_DRAW);
  glBindBuffer(GL_DRAW_INDIRECT_BUFFER, 0);
}

void storeModelAndIndices(GLsizeiptr size) {
  storeModel(size);
  for (std::size_t at = positions.size() - static_cast<std::size_t>(stripLength); at > 0;
       at -= static_cast<std::size_t>(stripLength)) {
    indices.insert(indices.begin() + static_cast<std::ptrdiff_t>(at), kRestart);
  }
  glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers[1]);
  glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(indices.size() * sizeof(GLuint)),
               indices.data(), GL_STATIC_DRAW);
}

void storeStream(GLsizeiptr size) {
  written = std::malloc(positions.size_bytes());
  glBufferData(GL_ARRAY_BUFFER, size, nullptr, GL_STREAM_DRAW);
}

void storePersistentStream(GLsizeiptr size) {
  const GLbitfield access = GL_MAP_WRITE_BIT | GL_MAP_PERSISTENT_BIT | GL_MAP_COHERENT_BIT;
  glBufferStorage(GL_ARRAY_BUFFER, kPlaces * size, nullptr, access);
  written = glMapBufferRange(GL_ARRAY_BUFFER, 0, kPlaces * size, access);
}

void bindModel() {
  glBindVertexArray(objects[0]);
  glBindBuffer(GL_ARRAY_BUFFER, buffers[0]);
}

void bindModelAndDraws() {
  bindModel();
  glBindBuffer(GL_DRAW_INDIRECT_BUFFER, buffers[1]);
}

void unbindDraws() {
  glBindBuffer(GL_DRAW_INDIRECT_BUFFER, 0);
}

void bindModelAndRestart() {
  bindModel();
  glPrimitiveRestartIndex(kRestart);
  glEnable(GL_PRIMITIVE_RESTART);
}

void endRestart() {
  glDisable(GL_PRIMITIVE_RESTART);
}

void nothing() {}

void lock() {
  glLockArraysEXT(0, static_cast<GLsizei>(positions.size()));
}

void unlock() {
  glUnlockArraysEXT();
}

void pinFrame() {
  buffers.resize(1);
  glGenBuffers(1, buffers.data());
  const std::uintptr_t at = pin(positions.data(), positions.size() * sizeof(Position), buffers[0]);
  glBindBuffer(GL_ARRAY_BUFFER, buffers[0]);
  glVertexPointer(3, GL_FLOAT, 0, offset(at));
  glBindBuffer(GL_ARRAY_BUFFER, 0);
}

void unpinFrame() {
  glVertexPointer(3, GL_FLOAT, 0, positions.data());
  glDeleteBuffers(1, buffers.data());
}

void compileList() {
  glNewList(1, GL_COMPILE);
  std::size_t i = 0;
  for (unsigned int row = 0; row < detail; ++row) {
    glBegin(GL_TRIANGLE_STRIP);
    for (GLsizei v = 0; v < stripLength; ++v) {
      glVertex3fv(&positions[i++].x);
    }
    glEnd();
  }
  glEndList();
}

/// A test that the compiler can neither leave out nor merge with others.
void testAttribute(unsigned int& attributes, unsigned int bit) {
  asm volatile("" : "+r"(attributes));
  if ((attributes & bit) != 0) {
    std::abort();
  }
}

/// With the eleven attribute tests per vertex that this method is defined to make.
void drawImmediateWithTests() {
  unsigned int attributes = 0;
  const Position* position = positions.data();
  for (unsigned int row = 0; row < detail; ++row) {
    glBegin(GL_TRIANGLE_STRIP);
    for (GLsizei v = 0; v < stripLength; ++v) {
      [&]<unsigned int... bits>(std::integer_sequence<unsigned int, bits...>) {
        (testAttribute(attributes, 1U << bits), ...);
      }
      (std::make_integer_sequence<unsigned int, 11>());
      glVertex3fv(&position++->x);
    }
    glEnd();
  }
}

void drawImmediate() {
  const Position* position = positions.data();
  for (unsigned int row = 0; row < detail; ++row) {
    glBegin(GL_TRIANGLE_STRIP);
    for (GLsizei v = 0; v < stripLength; ++v) {
      glVertex3fv(&position++->x);
    }
    glEnd();
  }
}

void drawArrayElements() {
  GLint i = 0;
  for (unsigned int row = 0; row < detail; ++row) {
    glBegin(GL_TRIANGLE_STRIP);
    for (GLsizei v = 0; v < stripLength; ++v) {
      glArrayElement(i++);
    }
    glEnd();
  }
}

void drawArrays() {
  for (unsigned int row = 0; row < detail; ++row) {
    glDrawArrays(GL_TRIANGLE_STRIP, static_cast<GLint>(row) * stripLength, stripLength);
  }
}

void drawElements() {
  for (unsigned int row = 0; row < detail; ++row) {
    glDrawElements(GL_TRIANGLE_STRIP, stripLength, GL_UNSIGNED_INT,
                   indices.data() + row * static_cast<std::size_t>(stripLength));
  }
}

void drawList() {
  glCallList(1);
}

void drawObjects() {
  for (const GLuint object : objects) {
    glBindVertexArray(object);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, stripLength);
  }
}

void drawBuffers() {
  for (const GLuint buffer : buffers) {
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glVertexPointer(3, GL_FLOAT, sizeof(Position), nullptr);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, stripLength);
  }
}

void drawStrips() {
  glMultiDrawArrays(GL_TRIANGLE_STRIP, firsts.data(), counts.data(), static_cast<GLsizei>(detail));
}

void drawIndirect() {
  glMultiDrawArraysIndirect(GL_TRIANGLE_STRIP, nullptr, static_cast<GLsizei>(detail), 0);
}

void drawWithRestart() {
  glDrawElements(GL_TRIANGLE_STRIP, static_cast<GLsizei>(indices.size()), GL_UNSIGNED_INT, nullptr);
}

void streamSubData() {
  std::memcpy(written, positions.data(), positions.size_bytes());
  glBufferSubData(GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(positions.size_bytes()), written);
  drawStrips();
}

void streamMapRange() {
  std::memcpy(glMapBufferRange(GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(positions.size_bytes()),
                               GL_MAP_WRITE_BIT | GL_MAP_INVALIDATE_BUFFER_BIT),
              positions.data(), positions.size_bytes());
  glUnmapBuffer(GL_ARRAY_BUFFER);
  drawStrips();
}

void streamPersistent() {
  static GLsync drawn[kPlaces] = {};
  static std::size_t place = 0;
  if (drawn[place] != nullptr) {
    while (glClientWaitSync(drawn[place], GL_SYNC_FLUSH_COMMANDS_BIT, 1000000000) ==
           GL_TIMEOUT_EXPIRED) {
    }
    glDeleteSync(drawn[place]);
  }
  std::memcpy(static_cast<char*>(written) + place * positions.size_bytes(), positions.data(),
              positions.size_bytes());
  glMultiDrawArrays(GL_TRIANGLE_STRIP, &firsts[place * detail], counts.data(),
                    static_cast<GLsizei>(detail));
  drawn[place] = glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
  place = (place + 1) % kPlaces;
}

struct Method {
  void (*draw)();
  void (*prepare)() = nothing;
  void (*begin)() = nothing;  ///< of a frame, before what is measured
  void (*end)() = nothing;    ///< of a frame, after it
};

const std::map<std::string, Method> kMethods = {
    {"immediateMode", {drawImmediateWithTests}},
    {"immediateModeUntested", {drawImmediate}},
    {"arrayElement", {drawArrayElements}},
    {"drawArrays", {drawArrays}},
    {"compiledVertArray", {drawElements, nothing, lock, unlock}},
    {"displayLists", {drawList, compileList}},
    {"drawArraysWithVertArrayRng", {drawArrays, nothing, pinFrame, unpinFrame}},
    {"drawArraysWithVertArrayObjects", {drawObjects, [] { makeRows(copyAndPin); }}},
    {"drawArraysWithDynVertBufferObjectsVAO",
     {drawObjects, [] { makeRows(upload<GL_STREAM_DRAW>); }}},
    {"drawArraysWithStatVertBufferObjectsVAO",
     {drawObjects, [] { makeRows(upload<GL_STATIC_DRAW>); }}},
    {"drawArraysWithStaticVBO", {drawBuffers, [] { makeRows(upload<GL_STATIC_DRAW>); }}},
    {"multiDrawArrays", {drawStrips, [] { makeModel(1, storeModel); }, bindModel}},
    {"multiDrawArraysIndirect",
     {drawIndirect, [] { makeModel(2, storeModelAndDraws); }, bindModelAndDraws, unbindDraws}},
    {"drawElementsWithRestart",
     {drawWithRestart, [] { makeModel(2, storeModelAndIndices); }, bindModelAndRestart,
      endRestart}},
    {"streamSubData", {streamSubData, [] { makeModel(1, storeStream); }, bindModel}},
    {"streamMapRange", {streamMapRange, [] { makeModel(1, storeStream); }, bindModel}},
    {"streamPersistent",
     {streamPersistent, [] { makeModel(1, storePersistentStream); }, bindModel}},
};

/// Draws models for at least 100 ms and returns millions of triangles per second.
[[gnu::noinline]] double measure(void (*draw)()) {
  const double triangles = 2.0 * detail * detail;
  int reps = static_cast<int>(20000 / triangles);
  reps = reps < 10 ? 10 : reps > 2000 ? 2000 : reps;
  std::uint64_t models = 0;
  const std::uint64_t start = getTime();
  do {
    for (int r = 0; r < reps; ++r) {
      draw();
    }
    glFlush();
    models += static_cast<std::uint64_t>(reps);
  } while (getTime() - start < 100000);
  glFinish();
  const std::uint64_t elapsed = getTime() - start;
  return triangles * static_cast<double>(models) / static_cast<double>(elapsed);
}

double frame(const Method& method) {
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
  glBindVertexArray(0);
  glEnableClientState(GL_VERTEX_ARRAY);
  glVertexPointer(3, GL_FLOAT, 0, positions.data());
  glColor4f(0.7F, 0.7F, 0.7F, 1);
  method.begin();
  glClearColor(1, 1, 1, 1);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  const double figure = measure(method.draw);
  glBindVertexArray(0);
  glDisableClientState(GL_VERTEX_ARRAY);
  glDisable(GL_BLEND);
  method.end();
  glBindBuffer(GL_ARRAY_BUFFER, 0);
  glutSwapBuffers();
  return figure;
}

}  // namespace

int main(int argc, char** argv) {
  glutInit(&argc, argv);
  glutInitDisplayString("rgba double depth=32");
  glutInitWindowSize(400, 400);
  glutCreateWindow("bare program");
  glutShowWindow();
  if (argc == 2) {
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glFinish();
    _exit(0);
  }
  if (argc != 4 || !kMethods.contains(argv[1])) {
    std::fputs("usage: bare_program METHOD DETAIL SECONDS | bare_program clear\n", stderr);
    return 1;
  }
  const Method& method = kMethods.at(argv[1]);
  detail = static_cast<unsigned int>(std::atoi(argv[2]));
  buildMesh();
  glDisable(GL_DEPTH_TEST);
  glMatrixMode(GL_PROJECTION);
  gluPerspective(53.2, 1, 0.1, 1000);
  gluLookAt(200, 200, 400, 200, 200, 0, 0, 1, 0);
  glTranslatef(0, 0, 500);
  glMatrixMode(GL_MODELVIEW);
  method.prepare();

  // Until the window is on the screen, and one frame more, is warming up.
  glutDisplayFunc([] {});
  glutMainLoopEvent();
  frame(method);
  PerformanceHistory history;
  double sum = 0;
  int frames = 0;
  const std::uint64_t end = getTime() + static_cast<std::uint64_t>(std::atof(argv[3]) * 1e6);
  while (getTime() < end) {
    history.addSample(static_cast<float>(frame(method)));
    sum += history.meanDiscardingHighLow(2);
    ++frames;
    glutMainLoopEvent();
  }
  std::printf("%g MTri/sec\n", sum / frames);
  _exit(std::fflush(stdout));
}
