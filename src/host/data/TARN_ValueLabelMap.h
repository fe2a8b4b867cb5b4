// TARN_ValueLabelMap.h - lookup and enumeration of a variable's value labels
#pragma once

#include <cstddef>
#include <string>

#include "host/data/Obs.h"
#include "host/data/ValueLabelList.h"

/// Reads the value labels behind a TARN_VLImplPointer: label of a value, and an enumeration
/// of the pairs in definition order. Returned texts stay valid while the map lives.
class TARN_ValueLabelMap {
 public:
  /// A null handle gives an empty map.
  explicit TARN_ValueLabelMap(TARN_VLImplPointer labels);
  ~TARN_ValueLabelMap();
  TARN_ValueLabelMap(const TARN_ValueLabelMap&) = delete;
  TARN_ValueLabelMap& operator=(const TARN_ValueLabelMap&) = delete;

  /// The label of a value given as cells of the variable's type; null without a label.
  /// For a numeric variable a cell that holds a number written as blank-padded text (as a
  /// counted value is sometimes handed over) is read as that number.
  const char* GetLabel(const OBS* value) const;
  /// The label of a value given as text: a string value as written (trailing blanks do not
  /// matter), a numeric value as a number ("1", "1.0" and "1e0" are the same). Null when
  /// the text has no label or is not a number for a numeric variable.
  const char* GetLabel(const std::string& value) const;
  /// Number of labelled values.
  int Size() const;
  /// Restarts the enumeration of GetNextPair.
  void Reset();
  /// Gives the next value and its label in definition order; false (leaving both
  /// untouched) after the last pair.
  bool GetNextPair(const OBS*& value, const char*& label);

 private:
  struct Data {
    TARN_VLImplPointer _labels;  // shared with the variable; null when it has none
    std::size_t _next = 0;       // index of the pair GetNextPair gives next
  };
  Data _data;
};
