/// What a model can be drawn with beside its positions, and how: switches with a word each.
#pragma once

#include <array>
#include <optional>
#include <string_view>

enum class Attribute {
  kNormals,
  kColors,
  kSecondaryColors,
  kTexture,
  kLight,
  kMacros,
  kThrash,
  kRotation,
};

struct AttributeWord {
  Attribute attribute;
  std::string_view word;
  bool numbered;  ///< stands for eight: the word followed by 0 to 7
};

/// One row per attribute, at the index of its value.
inline constexpr std::array<AttributeWord, 8> kAttributeWords = {{
    {Attribute::kNormals, "-n", false},
    {Attribute::kColors, "-c", false},
    {Attribute::kSecondaryColors, "-s", false},
    {Attribute::kTexture, "-t", true},
    {Attribute::kLight, "-l", true},
    {Attribute::kMacros, "-m", false},
    {Attribute::kThrash, "-T", false},
    {Attribute::kRotation, "-A", false},
}};

/// An attribute as a word names it; `number` is that of a texture unit or light, else 0.
struct NamedAttribute {
  Attribute attribute;
  unsigned int number;
  bool operator==(const NamedAttribute&) const = default;
};

/// None for a word that names no attribute.
constexpr std::optional<NamedAttribute> attributeNamed(std::string_view word) {
  for (const AttributeWord& row : kAttributeWords) {
    if (!row.numbered && word == row.word) {
      return NamedAttribute{row.attribute, 0};
    }
    if (row.numbered && word.size() == row.word.size() + 1 && word.starts_with(row.word) &&
        word.back() >= '0' && word.back() <= '7') {
      return NamedAttribute{row.attribute, static_cast<unsigned int>(word.back() - '0')};
    }
  }
  return std::nullopt;
}
