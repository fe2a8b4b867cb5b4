// ParsedCategory.cpp - the engine's form of one item of an explicit category list
#include "host/engine/ParsedCategory.h"

#include <cstring>

#include "host/QuiltAssert.h"

namespace {

// Three-way comparison of two values of the same type: numbers by value, strings by bytes.
int CompareCells(const OBS* left, const OBS* right, int type) {
  if (type == 0) return left->number < right->number ? -1 : (left->number > right->number ? 1 : 0);
  const int cmp = std::memcmp(left, right, static_cast<std::size_t>(type));
  return cmp < 0 ? -1 : (cmp > 0 ? 1 : 0);
}

}  // namespace

ParsedCategory::ParsedCategory(const OBS* value, int dataType)
    : _type(kParsedValue), _low(dataType, value, -1), _high(dataType, value, -1), _valueType(dataType) {}

ParsedCategory::ParsedCategory(const OBS* low, const OBS* high, int dataType)
    : _type(kParsedRange), _low(dataType, low, -1), _high(dataType, high, -1), _valueType(dataType) {}

ParsedCategory::ParsedCategory(const OBS* value, int dataType, ParsedCatType type)
    : _type(type), _low(dataType, value, -1), _high(dataType, value, -1), _valueType(dataType) {
  QUILT_ASSERT(type == kParsedLo || type == kParsedHi, "a one-sided range must be LO or HI");
}

ParsedCategory::ParsedCategory(ParsedCatType type) : _type(type) {
  QUILT_ASSERT(
      type == kParsedAll || type == kParsedMissing || type == kParsedOtherNM || type == kParsedVariable,
      "this constructor makes ALL, MISSING, OTHERNM or a set member");
}

ParsedCategory::ParsedCategory(const std::string& label, bool isDefaultLabel, int encoding, bool isSubtotal)
    : _type(isSubtotal ? kParsedSubtotal : kParsedHSubtotal),
      _subtotalEncoding(encoding),
      _label(label),
      _isDefaultLabel(isDefaultLabel) {}

ParsedCategory::ParsedCategory(const std::string& catName, const std::vector<std::string>& labels,
                               bool hideSource, const std::vector<int>& statCodes,
                               const std::vector<int>& displayFormats, const std::vector<int>& formats,
                               ParsedCatType type, int index)
    : _type(type),
      _catName(catName),
      _labels(labels),
      _hideSource(hideSource),
      _statCodes(statCodes),
      _displayFormats(displayFormats),
      _formats(formats),
      _index(index) {
  QUILT_ASSERT(type == kParsedComputed, "this constructor makes a computed category");
}

void ParsedCategory::SetValueType(int type) {
  _valueType = type;
  if (_type <= kParsedHi) {
    _low.SetType(type);
    _high.SetType(type);
  }
}

bool ParsedCategory::operator==(const ParsedCategory& other) const {
  if (_type != other._type || _varIndex != other._varIndex || _catName != other._catName ||
      _label != other._label) {
    return false;
  }
  if (_type <= kParsedHi) {
    return _valueType == other._valueType && CompareCells(_low.Obs(), other._low.Obs(), _valueType) == 0 &&
           CompareCells(_high.Obs(), other._high.Obs(), _valueType) == 0;
  }
  return true;
}

bool ParsedCategory::Matches(const OBS* value) const {
  switch (_type) {
    case kParsedValue:
      return CompareCells(value, _low.Obs(), _valueType) == 0;
    case kParsedRange:
      return CompareCells(value, _low.Obs(), _valueType) >= 0 &&
             CompareCells(value, _high.Obs(), _valueType) <= 0;
    case kParsedLo:
      return CompareCells(value, _low.Obs(), _valueType) <= 0;
    case kParsedHi:
      return CompareCells(value, _low.Obs(), _valueType) >= 0;
    case kParsedAll:
      return true;
    default:
      return false;
  }
}
