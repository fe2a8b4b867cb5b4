// ParsedCategory.h - the engine's form of one item of an explicit category list
#pragma once

#include <string>
#include <vector>

#include "host/data/Obs.h"
#include "host/data/ObsValue.h"

/// One item of CATEGORIES. The system creates it and completes it with SetVarIndex,
/// SetValueType and SetSubtotalEncoding; the engine assigns cases to it.
class ParsedCategory {
 public:
  enum ParsedCatType {
    kParsedValue = 0,
    kParsedRange = 1,
    kParsedLo = 2,
    kParsedHi = 3,
    kParsedAll = 4,
    kParsedMissing = 5,
    kParsedOtherNM = 6,
    kParsedSubtotal = 7,
    kParsedHSubtotal = 8,
    kParsedVariable = 9,
    kParsedComputed = 10,
  };

  /// One value of `dataType` (0 numeric, else the string width).
  ParsedCategory(const OBS* value, int dataType);
  /// A closed range [low, high].
  ParsedCategory(const OBS* low, const OBS* high, int dataType);
  /// LO THRU value (kParsedLo) or value THRU HI (kParsedHi).
  ParsedCategory(const OBS* value, int dataType, ParsedCatType type);
  /// kParsedAll, kParsedMissing, kParsedOtherNM or kParsedVariable.
  explicit ParsedCategory(ParsedCatType type);
  /// A subtotal (isSubtotal) or hidden subtotal with its label and encoding.
  ParsedCategory(const std::string& label, bool isDefaultLabel, int encoding, bool isSubtotal);
  /// A computed category: its name, labels, whether its sources are hidden, and per
  /// statistic the codes, display formats and formats; `index` is its place in the list.
  ParsedCategory(const std::string& catName, const std::vector<std::string>& labels, bool hideSource,
                 const std::vector<int>& statCodes, const std::vector<int>& displayFormats,
                 const std::vector<int>& formats, ParsedCatType type, int index);

  void SetVarIndex(int index) { _varIndex = index; }
  void SetValueType(int type);
  /// The negative code of the subtotal this item belongs to (or is), -101 and below.
  void SetSubtotalEncoding(int encoding) { _subtotalEncoding = encoding; }

  ParsedCatType GetPCType() const { return _type; }
  /// The value (kParsedValue, kParsedLo, kParsedHi) or the low end of a range.
  const OBS* GetCatValue() const { return _low.Obs(); }
  const OBS* GetHighValue() const { return _high.Obs(); }
  int GetValueType() const { return _valueType; }
  int GetVarIndex() const { return _varIndex; }
  int GetSubtotalEncoding() const { return _subtotalEncoding; }
  const std::string& GetLabel() const { return _label; }
  bool IsLabelDefault() const { return _isDefaultLabel; }
  const std::string& GetPCatName() const { return _catName; }
  /// The labels of a computed category.
  const std::vector<std::string>& GetCategories() const { return _labels; }
  bool GetHideSource() const { return _hideSource; }
  const std::vector<int>& GetStatCodes() const { return _statCodes; }
  const std::vector<int>& GetDisplayFormats() const { return _displayFormats; }
  const std::vector<int>& GetFormats() const { return _formats; }
  int GetIndex() const { return _index; }
  bool operator==(const ParsedCategory& other) const;

  /// Whether a non-missing-tested value falls in this value item (value, range, LO, HI,
  /// ALL); other kinds match nothing here.
  bool Matches(const OBS* value) const;

 private:
  ParsedCatType _type;
  ObsValue _low;
  ObsValue _high;
  int _valueType = 0;
  int _varIndex = -1;
  int _subtotalEncoding = 0;
  std::string _label;
  bool _isDefaultLabel = true;
  std::string _catName;
  std::vector<std::string> _labels;
  bool _hideSource = false;
  std::vector<int> _statCodes;
  std::vector<int> _displayFormats;
  std::vector<int> _formats;
  int _index = -1;
};
