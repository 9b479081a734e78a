/// The benchmark's mesh: a flat square grid of `detail` x `detail` cells in the plane z = 0, from
/// 60 to 340 in x and y, computed in single precision.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "model/Coordinates.h"

constexpr std::size_t kTextureUnitCount = 8;  ///< texture slots and units

/// How the grid is cut into vertices. Whatever is neither triangles nor quads is drawn from strips.
enum class Topology { kStrips, kTriangles, kQuads };

/// Vertex counts of the mesh. Strip s starts at vertex s * verticesPerStrip.
struct MeshLayout {
  Topology topology;
  std::uint32_t detail;            ///< d: rows, and cells per row
  std::uint32_t vertexCount;       ///< strips d(2d + 2), triangles 6d^2, quads 4d^2
  std::uint32_t stripCount;        ///< strips d, else 1
  std::uint32_t verticesPerStrip;  ///< strips 2d + 2, else all vertices
  std::uint32_t verticesPerRow;    ///< vertices of one grid row: 2d + 2, 6d or 4d
};

/// The counts for `detail` cells per side, 1 or more.
MeshLayout layoutMesh(Topology topology, std::uint32_t detail);

/// The per-vertex arrays, each of `vertexCount` elements, in the order in which they follow each
/// other in one block.
struct MeshArrays {
  GLCoord3* vertices;
  GLCoord3* colors;
  GLCoord3* secondaryColors;
  GLCoord3* normals;
  std::array<GLCoord2*, kTextureUnitCount> texCoords;
  float* fogCoords;  ///< reserved: nothing writes or sends it
};

/// Of all arrays together: 116.
constexpr std::uint32_t kBytesPerVertex =
    4 * sizeof(GLCoord3) + kTextureUnitCount * sizeof(GLCoord2) + sizeof(float);

/// The places of the arrays in a block of kBytesPerVertex * vertexCount bytes.
MeshArrays placeArrays(void* block, std::uint32_t vertexCount);

/// Writes positions and the texture coordinates of unit 0.
void buildGrid(const MeshLayout& layout, const MeshArrays& arrays);

/// Copies unit 0's texture coordinates to all other units.
void copyTexCoords(const MeshLayout& layout, const MeshArrays& arrays);

/// Writes secondary colours (1 - s, 0.5, t), after unit 0's texture coordinates.
void buildSecondaryColors(const MeshLayout& layout, const MeshArrays& arrays);

/// Writes random colours, each component 0.00 to 0.99: three draws from rand() per vertex.
void buildRandomColors(const MeshLayout& layout, const MeshArrays& arrays);

/// Gives every vertex the normal of the first three vertices' plane.
void buildNormals(const MeshLayout& layout, const MeshArrays& arrays);

/// Advances rand() as the mesh's terrain run does, from a fixed seed. `scratch` holds
/// (detail + 1)^2 floats. The terrain is flat, but the run decides where in the random sequence
/// the vertex colours begin.
void runTerrain(const MeshLayout& layout, float* scratch);

/// The unit normal (a - b) x (b - c). Not a number for three points in a line.
GLCoord3 calcNormal(GLCoord3 a, GLCoord3 b, GLCoord3 c);
