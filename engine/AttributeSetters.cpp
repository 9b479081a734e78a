#include "engine/AttributeSetters.h"

#include <algorithm>
#include <variant>

#include "engine/SorvantaTest.h"

namespace {

using Setter = void (SorvantaTest::*)(bool on);
using NumberedSetter = void (SorvantaTest::*)(unsigned int number, bool on);

struct AttributeSetter {
  Attribute attribute;
  std::variant<Setter, NumberedSetter> set;
};

constexpr std::array<AttributeSetter, kAttributeWords.size()> kSetters = {{
    {Attribute::kNormals, &SorvantaTest::setNormals},
    {Attribute::kColors, &SorvantaTest::setVertexColors},
    {Attribute::kSecondaryColors, &SorvantaTest::setSecColor},
    {Attribute::kTexture, NumberedSetter{&SorvantaTest::setTexturing}},
    {Attribute::kLight, NumberedSetter{&SorvantaTest::setLighting}},
    {Attribute::kMacros, &SorvantaTest::setMacros},
    {Attribute::kThrash, &SorvantaTest::setThrash},
    {Attribute::kRotation, &SorvantaTest::setRotate},
}};

static_assert(std::equal(kSetters.begin(), kSetters.end(), kAttributeWords.begin(),
                         [](const AttributeSetter& setter, const AttributeWord& row) {
                           return setter.attribute == row.attribute &&
                                  std::holds_alternative<NumberedSetter>(setter.set) ==
                                      row.numbered;
                         }));

}  // namespace

void setAttribute(SorvantaTest& test, NamedAttribute named, bool on) {
  const auto& set = kSetters[static_cast<std::size_t>(named.attribute)].set;
  if (const auto* const setNumbered = std::get_if<NumberedSetter>(&set)) {
    (test.**setNumbered)(named.number, on);
  } else {
    (test.*std::get<Setter>(set))(on);
  }
}
