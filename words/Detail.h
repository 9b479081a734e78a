/// How fine a mesh is: the grid cells on each of its sides.
#pragma once

constexpr unsigned int kLeastDetail = 1;
constexpr unsigned int kMostDetail = 2048;
