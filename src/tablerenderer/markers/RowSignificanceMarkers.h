// RowSignificanceMarkers.h - the subscript letters of one table row, from the relation of similar columns
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

/// One row of a comparison test. The test sets the number of columns, removes the columns
/// that took no part and marks each pair that does not differ; the first read of a
/// column's markers turns that relation into letters (a, b, ... z, aa, ...), one letter
/// per group of mutually similar columns, so that two columns share a letter exactly when
/// they were marked similar. The first calculation is final. Columns are indices from 0;
/// every row starts again at "a". A value type: copies carry the columns and the result.
class RowSignificanceMarkers {
 public:
  RowSignificanceMarkers();
  ~RowSignificanceMarkers();
  RowSignificanceMarkers(const RowSignificanceMarkers& other);
  RowSignificanceMarkers& operator=(const RowSignificanceMarkers& other);

  /// Grows the row to `count` columns; never shrinks it.
  void setNumColumns(std::size_t count);
  /// The column takes no part. False when the index is out of range.
  bool removeColumn(std::size_t column);
  /// The two columns do not differ. False, and no change, when an index is out of range.
  bool markColumnsSimilar(std::size_t first, std::size_t second);
  /// A copy of the column's similar columns; empty out of range.
  std::set<std::uint64_t> getSimilarColumnsForColumn(std::size_t column) const;
  /// The texts of the column's markers in the order of their numbers, calculating first
  /// if that has not been done. Empty out of range or for a removed column.
  std::vector<std::string> getMarkersForColumn(std::size_t column);
  void calculateSubscripts();
  /// The text of a marker number in bijective base 26: 0 "a", 25 "z", 26 "aa", 702 "aaa".
  static std::string makeMarker(std::uint64_t marker);

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
