// SignificanceMarkers.h - the subscript markers of one column in one row of a comparison test
#pragma once

#include <cstdint>
#include <memory>
#include <set>

/// One column of one row: the markers it carries, the columns marked similar to it, and
/// whether it takes part at all. Filled by the column tests, read by RowSignificanceMarkers.
/// A copy keeps the markers, the similar columns and `valid`; the working state of one
/// calculation (needsMarker, owners) starts afresh in the copy.
class SignificanceMarkers {
 public:
  SignificanceMarkers();
  ~SignificanceMarkers();
  SignificanceMarkers(const SignificanceMarkers& other);
  SignificanceMarkers& operator=(const SignificanceMarkers& other);

  std::set<std::uint64_t> getSigMarkers() const;
  void insertMarker(std::uint64_t marker);
  bool isSigMarkerPresent(std::uint64_t marker) const;
  const std::set<std::uint64_t>& getSimilarColumns() const;
  void addSimilarColumn(std::uint64_t column);
  /// False: the column takes no part in the row and gets no marker.
  void setValid(bool valid);
  bool getValid() const;
  /// Set while calculating: the column must open a marker of its own.
  void setNeedsMarker();
  bool getNeedsMarker() const;
  /// The columns with which this one has closed a marker, while calculating.
  void addOwner(std::uint64_t column);
  bool isOwner(std::uint64_t column) const;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
