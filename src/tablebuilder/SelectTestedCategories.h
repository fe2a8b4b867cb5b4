// SelectTestedCategories.h - which categories of one variable a significance test treats
#pragma once

#include <cstddef>
#include <deque>
#include <vector>

#include "host/engine/AggregationCategory.h"

/// The categories of one variable that a test treats, in display order, picked from `all`
/// (header nodes or engine categories; `typeOf` gives an element's AggregationCategory
/// type). Totals, the empty-stack label and computed categories never count. Without
/// `useSubtotals` subtotals are left out too; with it a subtotal replaces the categories it
/// sums, those before it back to the previous subtotal or total in the order the totals
/// face (`positionAfter`: totals stand after what they sum). A hidden subtotal is kept
/// either way, as the one category the table shows in place of its own, which are not in
/// `all`: nothing is counted twice, and what waits to be summed is not summed by it.
template <typename T, typename TypeOf>
std::vector<T> SelectTestedCategories(const std::vector<T>& all, bool useSubtotals, bool positionAfter,
                                      const TypeOf& typeOf) {
  // The scan runs from the categories towards their subtotal, holding the categories met in a
  // buffer until it is clear whether a subtotal takes their place; scanned backwards,
  // everything goes in at the front.
  std::deque<T> result;
  std::deque<T> buffer;
  auto take = [&](const T& element) {
    if (positionAfter) {
      result.push_back(element);
    } else {
      result.push_front(element);
    }
  };
  auto flush = [&]() {
    if (positionAfter) {
      result.insert(result.end(), buffer.begin(), buffer.end());
    } else {
      result.insert(result.begin(), buffer.begin(), buffer.end());
    }
    buffer.clear();
  };
  const std::size_t count = all.size();
  for (std::size_t step = 0; step < count; ++step) {
    const T& element = all[positionAfter ? step : count - 1 - step];
    switch (typeOf(element)) {
      case AggregationCategory::kNone:
      case AggregationCategory::kPcompute:
        break;
      case AggregationCategory::kHSubtotal:
        flush();
        take(element);
        break;
      case AggregationCategory::kSubtotal:
        if (!useSubtotals) {
          flush();
          break;
        }
        buffer.clear();
        take(element);
        break;
      case AggregationCategory::kTotal:
        flush();
        break;
      default:
        if (positionAfter) {
          buffer.push_back(element);
        } else {
          buffer.push_front(element);
        }
        break;
    }
  }
  flush();
  return std::vector<T>(result.begin(), result.end());
}
