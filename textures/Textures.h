/// Textures made from computed stripes, drawn text and pictures.
///
/// All functions need the GL context current. They leave the texture bound to GL_TEXTURE_2D with
/// linear filters and level 0 only, and do not set the wrap modes. Where `texture` points to 0 a
/// new name is generated and stored there.
#pragma once

#include "platform/gl/GL.h"
#include "platform/services/Services.h"

/// Uploads vertical stripes 8 texels wide: of every four, the one chosen by `phase` has the given
/// colour (the low 8 bits of each argument), the others are mid-grey; alpha is 128 everywhere.
void GenerateStripeTexture(unsigned long texture, int phase, int width, int height, int red,
                           int green, int blue);

/// Uploads `text`, drawn in the given font (size in points at 72 dpi) and colour (0 to 1), on a
/// transparent width x height canvas.
void StringToTexture(const char* text, const char* fontName, int fontSize, GLuint* texture,
                     unsigned int width, unsigned int height, float red, float green, float blue);

/// Uploads the bottom-left part of `image` whose sides are the largest powers of two that fit and
/// that the driver takes, and stores that size. Pictures that are neither 24-bit RGB nor 32-bit
/// RGBA are left alone: no GL call is made and the sizes are not written.
void TextureFromNSImage(const Bitmap& image, GLuint* texture, int* width, int* height);

/// Uploads the resource `name`. Where it is missing the user is asked to locate it, and where that
/// fails is warned and gets a drawn label instead; the sizes are not written then.
void TextureFromResource(const char* name, GLuint* texture, int* width, int* height);
