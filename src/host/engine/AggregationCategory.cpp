// AggregationCategory.cpp - one displayed category of a table dimension
#include "host/engine/AggregationCategory.h"

#include <cstring>

AggregationCategory::AggregationCategory(int catType, int encoding, int varIndex)
    : _catType(catType), _encoding(encoding), _varIndex(varIndex) {}

bool AggregationCategory::IsSameAs(const AggregationCategory& other) const {
  if (_catType != other._catType || _label != other._label) return false;
  // A computed category's encoding is its variable's, so the name of the computation tells.
  if (_catType == kPcompute) return _pcatName == other._pcatName;
  if (_catType != kValue) return _encoding == other._encoding;
  if (_valueType != other._valueType) return false;
  const std::size_t bytes = _valueType == 0 ? sizeof(double) : static_cast<std::size_t>(_valueType);
  return std::memcmp(GetCatValue(), other.GetCatValue(), bytes) == 0;
}

void AggregationCategory::SetPCFormats(const std::vector<int>& statCodes, const std::vector<int>& displayFormats,
                                       const std::vector<int>& packedFormats) {
  _pcStatCodes = statCodes;
  _pcDisplayFormats = displayFormats;
  _pcFormats.clear();
  _pcFormatGiven.clear();
  for (int packed : packedFormats) {
    _pcFormats.emplace_back(static_cast<long>(packed));
    _pcFormatGiven.push_back(packed != 0);
  }
}

std::vector<const TARN_Format*> AggregationCategory::GetPCDecimal() const {
  std::vector<const TARN_Format*> formats;
  formats.reserve(_pcFormats.size());
  for (std::size_t i = 0; i < _pcFormats.size(); ++i) formats.push_back(_pcFormatGiven[i] ? &_pcFormats[i] : nullptr);
  return formats;
}
