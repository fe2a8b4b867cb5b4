// TARN_Variable.h - one variable of the data dictionary: name, label, type, format, level, labels, missing
// values
#pragma once

#include <memory>
#include <string>

#include "host/data/Obs.h"
#include "host/data/ObsValue.h"
#include "host/data/TARN_Format.h"
#include "host/data/ValueLabelList.h"

/// Measurement levels as GetMeasurementLevel reports them.
enum MeasurementLevel : int {
  kMeasureUnknown = 0,  // not stated; AdjustMeasurementLevels settles it from the data
  kMeasureNominal = 1,
  kMeasureOrdinal = 2,
  kMeasureScale = 3,
};

/// Kinds of user-missing definition, as GetMissingValues returns them.
enum MissingValueKind : int {
  kMissingNone = 0,            // no user-missing values
  kMissingOneValue = 1,        // slot 1 holds a value
  kMissingTwoValues = 2,       // slots 1 and 2 hold values
  kMissingThreeValues = 3,     // slots 1 to 3 hold values
  kMissingRange = -2,          // slot 1 is the low end, slot 2 the high end (inclusive)
  kMissingRangeAndValue = -3,  // a range in slots 1 and 2, and a value in slot 3
};

/// One variable of the dictionary. Also built free-standing (SetName, SetLabel) as a
/// display-only variable. Copies are independent, except that they share the immutable
/// value label list.
class TARN_Variable {
 public:
  /// A numeric variable with no name, format F8.2 and unknown level.
  TARN_Variable();
  /// A variable of `type`: 0 numeric (format F8.2), otherwise a string of that width in
  /// bytes (format A width).
  explicit TARN_Variable(int type);
  TARN_Variable(const TARN_Variable& other);
  TARN_Variable& operator=(const TARN_Variable& other);
  TARN_Variable(TARN_Variable&& other) noexcept;
  TARN_Variable& operator=(TARN_Variable&& other) noexcept;
  ~TARN_Variable();

  const char* GetName() const;
  /// The name folded to upper case (ASCII letters).
  const char* GetUpperCaseName() const;
  /// The label; empty when there is none.
  const char* GetLabel() const;
  /// 0 numeric, otherwise the string width in bytes.
  int GetType() const;
  TARN_Format GetFormat() const;
  void GetFormatEx(FormatType& type, int& width, int& decimals) const;
  /// A MeasurementLevel value.
  int GetMeasurementLevel() const;
  /// Null when the variable has no value labels.
  TARN_VLImplPointer GetValueLabels() const;
  /// Points the three slots at the user-missing values (null for unused slots) and returns
  /// the MissingValueKind. The pointers stay valid while the variable is unchanged.
  int GetMissingValues(const OBS*& first, const OBS*& second, const OBS*& third) const;
  /// True for the system-missing value of a numeric variable and for any user-missing
  /// value or value inside a user-missing range. `value` holds cells of the variable's type.
  bool IsMissing(const OBS* value) const;
  /// True only for a user-missing value (not for the system-missing value).
  bool IsUserMissing(const OBS* value) const;

  void SetName(const char* name);
  void SetLabel(const char* label);
  /// Changes the type; the format follows (F8.2 for numeric, A width for strings), and
  /// value labels and missing values are dropped because they no longer fit.
  void SetType(int type);
  void SetFormat(const TARN_Format& format);
  void SetMeasurementLevel(int level);
  /// Replaces the value labels; every value must have the variable's type.
  void SetValueLabels(const ValueLabelList& labels);
  /// Adds one value label, replacing the label of a value already labelled.
  void AddValueLabel(const ObsValue& value, const std::string& label);
  /// Discrete user-missing values: at most three, of the variable's type.
  void SetMissingValues(const ObsValue* values, int count);
  /// A numeric user-missing range [low, high] (low may be -infinity for LO, high +infinity
  /// for HI), with an optional extra value.
  void SetMissingRange(double low, double high, const double* extraValue);
  void ClearMissingValues();

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
