// ObsValue.h - an owned value of case data: a number or a blank-filled string with its width
#pragma once

#include <string>
#include <vector>

#include "host/data/Obs.h"

/// One value of case data that owns its cells. The type is 0 for a number, otherwise the
/// string width in bytes; a string occupies ObsLength(width) cells, blank-filled past its
/// text. Used for value labels, counted values and category values.
class ObsValue {
 public:
  /// The number 0.
  ObsValue();
  /// A number.
  ObsValue(double value);  // NOLINT(google-explicit-constructor): numbers convert freely
  /// Copies ObsLength(type) cells from `data` (one cell for a number). A null `data` gives
  /// the system-missing value for a number and a blank string for a string. `length` is
  /// accepted for the host's signature and must be -1 (the length follows from the type).
  ObsValue(int type, const OBS* data, int length);
  ObsValue(const ObsValue& other);
  ObsValue(ObsValue&& other) noexcept;
  ObsValue& operator=(const ObsValue& other);
  ObsValue& operator=(ObsValue&& other) noexcept;
  ~ObsValue();

  /// Stores the text blank-filled at the value's width, cut at the width if longer. On a
  /// numeric value the text is read as a number instead; text that is not one gives the
  /// system-missing value.
  ObsValue& operator=(const std::string& text);
  ObsValue& operator=(double value);

  /// The cells: one for a number, ObsLength(Type()) for a string. Valid until the value
  /// changes type or is destroyed.
  OBS* Obs();
  const OBS* Obs() const;
  int Type() const;
  /// Changes the type: a number becomes a blank string and a string becomes the number 0;
  /// a string changing width keeps its text, cut or blank-filled to the new width.
  void SetType(int type);

  /// The number (meaningful for numeric values only).
  double Number() const;
  /// The text of a string value without its trailing blanks; empty for a number.
  std::string Text() const;

  /// Three-way ordering of numeric values: -1, 0 or 1.
  int Compare(const ObsValue& other) const;
  /// Three-way ordering of string values by bytes, the shorter blank-padded: -1, 0 or 1.
  int FastCompare(const ObsValue& other) const;
  /// Numbers are equal when their doubles are; strings when their texts are equal once the
  /// shorter one is blank-padded; a number never equals a string.
  bool operator==(const ObsValue& other) const;
  bool operator!=(const ObsValue& other) const { return !(*this == other); }

 private:
  struct Data {
    int _type = 0;            // 0 numeric, else string width in bytes
    std::vector<OBS> _cells;  // ObsLength(_type) cells, or one for a number
  };
  Data _data;
};
