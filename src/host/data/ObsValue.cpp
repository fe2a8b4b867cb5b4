// ObsValue.cpp - owned numeric and string values with their orderings
#include "host/data/ObsValue.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "host/QuiltAssert.h"

namespace {

int CellCount(int type) {
  return type == 0 ? 1 : ObsLength(type);
}

// Bytes of a string value, blank-padded to `width` past its stored width.
unsigned char ByteAt(const std::vector<OBS>& cells, int storedWidth, int position) {
  if (position >= storedWidth) return ' ';
  return static_cast<unsigned char>(reinterpret_cast<const char*>(cells.data())[position]);
}

}  // namespace

ObsValue::ObsValue() : ObsValue(0.0) {}

ObsValue::ObsValue(double value) {
  _data._type = 0;
  _data._cells.resize(1);
  _data._cells[0].number = value;
}

ObsValue::ObsValue(int type, const OBS* data, int length) {
  QUILT_ASSERT(type >= 0, "a value type is 0 or a string width");
  QUILT_ASSERT(length == -1, "the length of a value follows from its type");
  _data._type = type;
  _data._cells.resize(CellCount(type));
  if (data != nullptr) {
    std::memcpy(_data._cells.data(), data, _data._cells.size() * sizeof(OBS));
  } else if (type == 0) {
    _data._cells[0].number = TARN_SystemMissing();
  } else {
    std::memset(_data._cells.data(), ' ', _data._cells.size() * sizeof(OBS));
  }
}

ObsValue::ObsValue(const ObsValue& other) = default;
ObsValue::ObsValue(ObsValue&& other) noexcept = default;
ObsValue& ObsValue::operator=(const ObsValue& other) = default;
ObsValue& ObsValue::operator=(ObsValue&& other) noexcept = default;
ObsValue::~ObsValue() = default;

ObsValue& ObsValue::operator=(const std::string& text) {
  if (_data._type == 0) {
    const char* begin = text.c_str();
    char* end = nullptr;
    const double value = std::strtod(begin, &end);
    while (end != nullptr && *end == ' ') ++end;
    const bool isNumber = end != begin && end != nullptr && *end == '\0';
    _data._cells[0].number = isNumber ? value : TARN_SystemMissing();
    return *this;
  }
  char* bytes = reinterpret_cast<char*>(_data._cells.data());
  const std::size_t capacity = _data._cells.size() * sizeof(OBS);
  std::memset(bytes, ' ', capacity);
  std::memcpy(bytes, text.data(), std::min<std::size_t>(text.size(), static_cast<std::size_t>(_data._type)));
  return *this;
}

ObsValue& ObsValue::operator=(double value) {
  _data._type = 0;
  _data._cells.assign(1, OBS{});
  _data._cells[0].number = value;
  return *this;
}

OBS* ObsValue::Obs() {
  return _data._cells.data();
}
const OBS* ObsValue::Obs() const {
  return _data._cells.data();
}
int ObsValue::Type() const {
  return _data._type;
}

void ObsValue::SetType(int type) {
  QUILT_ASSERT(type >= 0, "a value type is 0 or a string width");
  if (type == _data._type) return;
  if (type == 0) {
    *this = 0.0;
    return;
  }
  const std::string text = _data._type == 0 ? std::string() : Text();
  _data._type = type;
  _data._cells.assign(CellCount(type), OBS{});
  *this = text;
}

double ObsValue::Number() const {
  return _data._cells[0].number;
}

std::string ObsValue::Text() const {
  if (_data._type == 0) return std::string();
  const char* bytes = reinterpret_cast<const char*>(_data._cells.data());
  std::size_t length = static_cast<std::size_t>(_data._type);
  while (length > 0 && bytes[length - 1] == ' ') --length;
  return std::string(bytes, length);
}

int ObsValue::Compare(const ObsValue& other) const {
  const double left = Number();
  const double right = other.Number();
  if (left < right) return -1;
  if (left > right) return 1;
  return 0;
}

int ObsValue::FastCompare(const ObsValue& other) const {
  const int width = std::max(_data._type, other._data._type);
  for (int position = 0; position < width; ++position) {
    const unsigned char left = ByteAt(_data._cells, _data._type, position);
    const unsigned char right = ByteAt(other._data._cells, other._data._type, position);
    if (left != right) return left < right ? -1 : 1;
  }
  return 0;
}

bool ObsValue::operator==(const ObsValue& other) const {
  if ((_data._type == 0) != (other._data._type == 0)) return false;
  if (_data._type == 0) return Number() == other.Number();
  return FastCompare(other) == 0;
}
