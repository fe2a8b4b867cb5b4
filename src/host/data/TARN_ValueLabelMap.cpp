// TARN_ValueLabelMap.cpp - label lookup by value or text, and pair enumeration
#include "host/data/TARN_ValueLabelMap.h"

#include <cctype>
#include <charconv>
#include <cstring>
#include <utility>

namespace {

// Reads a number written as text, allowing surrounding blanks; false when it is not one.
bool ParseNumberText(const char* begin, const char* end, double& value) {
  while (begin < end && *begin == ' ') ++begin;
  while (end > begin && (end[-1] == ' ' || end[-1] == '\0')) --end;
  if (begin < end && *begin == '+') ++begin;
  if (begin == end) return false;
  const auto result = std::from_chars(begin, end, value);
  return result.ec == std::errc() && result.ptr == end;
}

// A numeric cell that holds printable text rather than a number: the bytes of a counted
// value handed over as blank-padded text.
bool LooksLikeText(const OBS& cell) {
  for (char byte : cell.bytes) {
    if (byte != ' ' && byte != '\0' && !std::isgraph(static_cast<unsigned char>(byte))) return false;
  }
  return cell.bytes[0] != ' ' && cell.bytes[0] != '\0';
}

}  // namespace

TARN_ValueLabelMap::TARN_ValueLabelMap(TARN_VLImplPointer labels) {
  _data._labels = std::move(labels);
}

TARN_ValueLabelMap::~TARN_ValueLabelMap() = default;

const char* TARN_ValueLabelMap::GetLabel(const OBS* value) const {
  if (!_data._labels || value == nullptr) return nullptr;
  const ValueLabelList& list = *_data._labels;
  // Compared in place: lookups happen per category and per split group, so no copies.
  for (std::size_t i = 0; i < list.values.size(); ++i) {
    const bool equal =
        list.type == 0 ? list.values[i].Number() == value->number
                       : std::memcmp(list.values[i].Obs(), value, static_cast<std::size_t>(list.type)) == 0;
    if (equal) return list.labels[i].c_str();
  }
  double number = 0;
  if (list.type == 0 && LooksLikeText(value[0]) &&
      ParseNumberText(value[0].bytes, value[0].bytes + sizeof(OBS), number)) {
    return GetLabel(ObsValue(number).Obs());
  }
  return nullptr;
}

const char* TARN_ValueLabelMap::GetLabel(const std::string& value) const {
  if (!_data._labels) return nullptr;
  const ValueLabelList& list = *_data._labels;
  if (list.type == 0) {
    double number = 0;
    if (!ParseNumberText(value.data(), value.data() + value.size(), number)) return nullptr;
    return GetLabel(ObsValue(number).Obs());
  }
  std::size_t length = value.size();
  while (length > 0 && value[length - 1] == ' ') --length;
  // A text longer than the variable's width cannot be one of its values.
  if (length > static_cast<std::size_t>(list.type)) return nullptr;
  ObsValue wanted(list.type, nullptr, -1);
  wanted = value.substr(0, length);
  return GetLabel(wanted.Obs());
}

int TARN_ValueLabelMap::Size() const {
  return _data._labels ? static_cast<int>(_data._labels->values.size()) : 0;
}

void TARN_ValueLabelMap::Reset() {
  _data._next = 0;
}

bool TARN_ValueLabelMap::GetNextPair(const OBS*& value, const char*& label) {
  if (!_data._labels || _data._next >= _data._labels->values.size()) return false;
  value = _data._labels->values[_data._next].Obs();
  label = _data._labels->labels[_data._next].c_str();
  ++_data._next;
  return true;
}
