/// Looking things up in tables.
#pragma once

#include <algorithm>

/// The first row whose `field` has that value; null where there is none.
template <typename Table, typename Field, typename Value>
constexpr const typename Table::value_type* rowWith(const Table& rows, Field field,
                                                    const Value& value) {
  const auto row = std::ranges::find(rows, value, field);
  return row != rows.end() ? &*row : nullptr;
}
