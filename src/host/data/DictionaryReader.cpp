// DictionaryReader.cpp - the JSON dictionary: shape checks, details by type, sets
#include "host/data/DictionaryReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>

#include "host/Utf8Text.h"
#include "host/data/DataError.h"
#include "host/data/Dataset.h"
#include "host/data/FormatText.h"
#include "host/data/HostStrings.h"
#include "host/data/TARN_Variable.h"
#include "host/data/VariableSet.h"

// Ordered, so value labels keep the order in which the dictionary lists them.
using json = nlohmann::ordered_json;

struct DictionaryReader::Data {
  std::string _sourceName;
  json _root;                                      // the whole document
  std::vector<VariableDeclaration> _declarations;  // dictionary order
};

namespace {

const char* kVariableKeys[] = {"name", "label", "type", "width", "format", "measure", "values", "missing"};
const char* kSetKeys[] = {"name", "label", "type", "counted", "variables", "labels"};
const char* kRootKeys[] = {"variables", "mrsets", "weight", "split"};

// A compact text of a JSON scalar for messages: strings without quotes.
std::string Show(const json& value) {
  return value.is_string() ? value.get<std::string>() : value.dump();
}

bool ParseNumber(const std::string& text, double& value) {
  const char* begin = text.data();
  const char* end = begin + text.size();
  while (begin < end && *begin == ' ') ++begin;
  while (end > begin && end[-1] == ' ') --end;
  if (begin < end && *begin == '+') ++begin;
  if (begin == end) return false;
  const auto result = std::from_chars(begin, end, value);
  return result.ec == std::errc() && result.ptr == end && std::isfinite(value);
}

// Deeper nesting than any dictionary needs is refused, so no input can make the reader or
// the messages that show a value (which recurse) run out of stack.
constexpr std::size_t kMaximumNesting = 64;

// Builds the document through nlohmann's own DOM builder while keeping the JSON path of the
// value being read, so that a value the parser refuses (a number out of range, nesting too
// deep, a syntax error) is reported at its path and line.
class PathTrackingBuilder {
 public:
  using Dom = nlohmann::detail::json_sax_dom_parser<json>;

  explicit PathTrackingBuilder(json& root) : _dom(root, /*allow_exceptions_=*/false) {}

  bool null() { return Value(_dom.null()); }
  bool boolean(bool value) { return Value(_dom.boolean(value)); }
  bool number_integer(json::number_integer_t value) { return Value(_dom.number_integer(value)); }
  bool number_unsigned(json::number_unsigned_t value) { return Value(_dom.number_unsigned(value)); }
  bool number_float(json::number_float_t value, const json::string_t& text) {
    return Value(_dom.number_float(value, text));
  }
  bool string(json::string_t& value) { return Value(_dom.string(value)); }
  bool binary(json::binary_t& value) { return Value(_dom.binary(value)); }
  bool key(json::string_t& name) {
    _frames.back().key = name;
    return _dom.key(name);
  }
  bool start_object(std::size_t count) { return Open(/*isArray=*/false) && _dom.start_object(count); }
  bool start_array(std::size_t count) { return Open(/*isArray=*/true) && _dom.start_array(count); }
  bool end_object() { return Close(_dom.end_object()); }
  bool end_array() { return Close(_dom.end_array()); }
  bool parse_error(std::size_t position, const std::string& lastToken,
                   const nlohmann::detail::exception& error) {
    _errorPosition = position;
    _errorId = error.id;
    _lastToken = lastToken;
    _errorText = error.what();
    const std::size_t bracket = _errorText.find("] ");
    if (bracket != std::string::npos) _errorText = _errorText.substr(bracket + 2);
    return _dom.parse_error(position, lastToken, error);
  }

  /// The JSON path of the value being read, in the form of the reader's messages:
  /// `variables[3].values['1']` has the keys of the top level bare, deeper ones after a
  /// point, and value-label keys in brackets.
  std::string Path() const {
    std::string path;
    for (const Frame& frame : _frames) {
      if (frame.isArray) {
        path += "[" + std::to_string(frame.index) + "]";
      } else if (frame.key.has_value()) {
        if (path.size() >= 7 && path.compare(path.size() - 7, 7, ".values") == 0) {
          path += "['" + *frame.key + "']";
        } else {
          path += (path.empty() ? "" : ".") + *frame.key;
        }
      }
    }
    return path;
  }

  bool TooDeep() const { return _tooDeep; }
  std::size_t ErrorPosition() const { return _errorPosition; }
  int ErrorId() const { return _errorId; }
  const std::string& LastToken() const { return _lastToken; }
  const std::string& ErrorText() const { return _errorText; }

 private:
  struct Frame {
    bool isArray = false;
    std::size_t index = 0;           // arrays: the element being read
    std::optional<std::string> key;  // objects: the latest key read
  };

  bool Value(bool result) {
    if (!_frames.empty() && _frames.back().isArray) ++_frames.back().index;
    return result;
  }
  bool Open(bool isArray) {
    if (_frames.size() >= kMaximumNesting) {
      _tooDeep = true;
      return false;
    }
    _frames.push_back({isArray, 0, std::nullopt});
    return true;
  }
  bool Close(bool result) {
    _frames.pop_back();
    return Value(result);
  }

  Dom _dom;
  std::vector<Frame> _frames;  // the open objects and arrays, outermost first
  bool _tooDeep = false;
  std::size_t _errorPosition = 0;
  int _errorId = 0;
  std::string _lastToken;
  std::string _errorText;
};

// "line 3, column 14" of a byte offset, for messages.
std::string LineAndColumn(const std::string& text, std::size_t offset) {
  offset = std::min(offset, text.size());
  std::size_t line = 1;
  std::size_t lineStart = 0;
  for (std::size_t index = 0; index < offset; ++index) {
    if (text[index] == '\n') {
      ++line;
      lineStart = index + 1;
    }
  }
  return "line " + std::to_string(line) + ", column " + std::to_string(offset - lineStart + 1);
}

}  // namespace

namespace {

// What went wrong where, for a dictionary that is not valid JSON or is nested too deep.
[[noreturn]] void ThrowJsonError(const std::string& jsonText, const std::string& sourceName,
                                 PathTrackingBuilder& builder) {
  const std::string path = builder.Path();
  const std::string where = sourceName + ": " + (path.empty() ? "" : path + ": ");
  if (builder.TooDeep()) {
    throw DataError(where + "nested more than " + std::to_string(kMaximumNesting) + " levels deep");
  }
  // Error 406 is a number out of range ("2e555"); the others are syntax errors, whose text
  // carries line and column already.
  if (builder.ErrorId() == 406) {
    // The parser stands just past the number; the message points at its first digit.
    const std::size_t length = builder.LastToken().size();
    const std::size_t position = builder.ErrorPosition();
    throw DataError(where + Utf8Text::Quoted(builder.LastToken()) + " is out of the range of numbers (" +
                    LineAndColumn(jsonText, position >= length ? position - length : 0) + ")");
  }
  // The parser's text shows what it last read, which may be the very bytes at fault.
  throw DataError(where + "not valid JSON: " + Utf8Text::Escaped(builder.ErrorText()));
}

// Every known key, no other.
void CheckKeys(const DictionaryReader& reader, const json& entry, const std::string& path,
               std::span<const char* const> keys) {
  for (const auto& [key, value] : entry.items()) {
    bool known = false;
    for (const char* name : keys) known = known || key == name;
    if (!known) throw DataError(reader.Where(path) + "unknown key '" + key + "'");
  }
}

}  // namespace

DictionaryReader::DictionaryReader(const std::string& jsonText, const std::string& sourceName)
    : _data(std::make_unique<Data>()) {
  _data->_sourceName = sourceName;
  PathTrackingBuilder builder(_data->_root);
  if (!json::sax_parse(jsonText, &builder)) ThrowJsonError(jsonText, sourceName, builder);
  const json& root = _data->_root;
  if (!root.is_object()) throw DataError(sourceName + ": the dictionary is not a JSON object");
  for (const auto& [key, value] : root.items()) {
    bool known = false;
    for (const char* name : kRootKeys) known = known || key == name;
    if (!known) throw DataError(Where(key) + "unknown key");
  }
  if (!root.contains("variables")) return;
  const json& variables = root["variables"];
  if (!variables.is_array()) throw DataError(Where("variables") + "expected a list");
  for (std::size_t i = 0; i < variables.size(); ++i) {
    _data->_declarations.push_back(ReadDeclaration(variables[i], "variables[" + std::to_string(i) + "]"));
  }
}

VariableDeclaration DictionaryReader::ReadDeclaration(const json& entry, const std::string& path) const {
  VariableDeclaration declaration;
  declaration.path = path;
  if (!entry.is_object()) throw DataError(Where(path) + "expected an object");
  CheckKeys(*this, entry, path, kVariableKeys);
  if (!entry.contains("name")) throw DataError(Where(path) + "the variable has no name");
  if (!entry["name"].is_string()) throw DataError(Where(path + ".name") + "expected a string");
  declaration.name = entry["name"].get<std::string>();
  if (ValidateTARNName(declaration.name.c_str()) != kNameValid) {
    throw DataError(Where(path + ".name") + "'" + declaration.name + "' is not a valid variable name");
  }
  for (const VariableDeclaration& earlier : _data->_declarations) {
    if (TARNMBstricmp_A(earlier.name.c_str(), declaration.name.c_str()) == 0) {
      throw DataError(Where(path + ".name") + "'" + declaration.name + "' is listed twice");
    }
  }
  if (entry.contains("label") && !entry["label"].is_string()) {
    throw DataError(Where(path + ".label") + "expected a string");
  }
  if (entry.contains("type")) {
    const json& type = entry["type"];
    const std::string text = type.is_string() ? type.get<std::string>() : "";
    if (text == "numeric") {
      declaration.declaredType = 0;
    } else if (text == "string") {
      declaration.declaredType = 1;
    } else {
      throw DataError(Where(path + ".type") + "'" + Show(type) + "' is not numeric or string");
    }
  }
  if (entry.contains("width")) {
    const json& width = entry["width"];
    if (!width.is_number_integer() || width.get<long long>() < 1 || width.get<long long>() > 32767) {
      throw DataError(Where(path + ".width") + "'" + Show(width) + "' is not a width from 1 to 32767");
    }
    if (declaration.declaredType == 0) {
      throw DataError(Where(path + ".width") + "a numeric variable has no width");
    }
    declaration.declaredType = 1;
    declaration.width = width.get<int>();
  }
  if (entry.contains("format")) {
    const json& format = entry["format"];
    std::string reason;
    if (!format.is_string() || !ParseFormatText(format.get<std::string>(), declaration.format, reason)) {
      throw DataError(Where(path + ".format") + "'" + Show(format) + "' is not a format" +
                      (reason.empty() ? "" : " (" + reason + ")"));
    }
    declaration.hasFormat = true;
    const bool stringFormat = declaration.format.IsString();
    if (declaration.declaredType == 0 && stringFormat) {
      throw DataError(Where(path + ".format") + "'" + Show(format) +
                      "' is a string format for a numeric variable");
    }
    if (declaration.declaredType == 1 && !stringFormat) {
      throw DataError(Where(path + ".format") + "'" + Show(format) +
                      "' is a numeric format for a string variable");
    }
    declaration.declaredType = stringFormat ? 1 : 0;
  }
  if (entry.contains("measure")) {
    const json& measure = entry["measure"];
    const std::string text = measure.is_string() ? measure.get<std::string>() : "";
    if (text != "nominal" && text != "ordinal" && text != "scale") {
      throw DataError(Where(path + ".measure") + "'" + Show(measure) +
                      "' is not nominal, ordinal or scale");
    }
  }
  if (entry.contains("values") && !entry["values"].is_object()) {
    throw DataError(Where(path + ".values") + "expected an object of value: label pairs");
  }
  if (entry.contains("missing") && !entry["missing"].is_object()) {
    throw DataError(Where(path + ".missing") + "expected an object with values or range");
  }
  return declaration;
}

DictionaryReader::~DictionaryReader() = default;

const std::vector<VariableDeclaration>& DictionaryReader::GetDeclarations() const {
  return _data->_declarations;
}

std::string DictionaryReader::Where(const std::string& path) const {
  return _data->_sourceName + ": " + path + ": ";
}

void DictionaryReader::ApplyDetails(std::size_t index, TARN_Variable& variable) const {
  const VariableDeclaration& declaration = _data->_declarations[index];
  const json& entry = _data->_root["variables"][index];
  const std::string& path = declaration.path;
  const int type = variable.GetType();
  if (entry.contains("label")) variable.SetLabel(entry["label"].get<std::string>().c_str());
  if (entry.contains("measure")) {
    const std::string measure = entry["measure"].get<std::string>();
    variable.SetMeasurementLevel(measure == "nominal"   ? kMeasureNominal
                                 : measure == "ordinal" ? kMeasureOrdinal
                                                        : kMeasureScale);
  }

  // Reads a value of the variable's type from a JSON key or scalar; `what` names it in errors.
  const auto readValue = [&](const json& source, const std::string& itemPath, ObsValue& value) {
    if (type == 0) {
      double number = 0;
      const bool ok = source.is_number()
                          ? (number = source.get<double>(), std::isfinite(number))
                          : source.is_string() && ParseNumber(source.get<std::string>(), number);
      if (!ok) throw DataError(Where(itemPath) + "'" + Show(source) + "' is not a number");
      value = ObsValue(number);
      return;
    }
    if (!source.is_string() && !source.is_number()) {
      throw DataError(Where(itemPath) + "'" + Show(source) + "' is not a value of a string variable");
    }
    std::string text = Show(source);
    while (!text.empty() && text.back() == ' ') text.pop_back();
    if (text.size() > static_cast<std::size_t>(type)) {
      throw DataError(Where(itemPath) + "'" + text + "' is longer than the width " + std::to_string(type));
    }
    value = ObsValue(type, nullptr, -1);
    value = text;
  };

  if (entry.contains("values")) {
    for (const auto& [key, label] : entry["values"].items()) {
      const std::string itemPath = path + ".values['" + key + "']";
      if (!label.is_string()) throw DataError(Where(itemPath) + "a value label must be a string");
      ObsValue value;
      readValue(json(key), itemPath, value);
      variable.AddValueLabel(value, label.get<std::string>());
    }
  }

  if (!entry.contains("missing")) return;
  const json& missing = entry["missing"];
  const std::string missingPath = path + ".missing";
  for (const auto& [key, value] : missing.items()) {
    if (key != "values" && key != "range") throw DataError(Where(missingPath) + "unknown key '" + key + "'");
  }
  std::vector<ObsValue> values;
  if (missing.contains("values")) {
    const json& list = missing["values"];
    if (!list.is_array()) throw DataError(Where(missingPath + ".values") + "expected a list");
    for (std::size_t i = 0; i < list.size(); ++i) {
      ObsValue value;
      readValue(list[i], missingPath + ".values[" + std::to_string(i) + "]", value);
      values.push_back(value);
    }
  }
  if (!missing.contains("range")) {
    if (values.size() > 3) throw DataError(Where(missingPath + ".values") + "at most three missing values");
    variable.SetMissingValues(values.data(), static_cast<int>(values.size()));
    return;
  }
  const std::string rangePath = missingPath + ".range";
  if (type != 0) throw DataError(Where(rangePath) + "a string variable has no missing range");
  const json& range = missing["range"];
  if (!range.is_array() || range.size() != 2) throw DataError(Where(rangePath) + "expected [low, high]");
  const auto readEnd = [&](const json& end, std::size_t slot, const char* word, double infinity) {
    if (end.is_string() && TARNMBstricmp_A(end.get<std::string>().c_str(), word) == 0) return infinity;
    ObsValue value;
    readValue(end, rangePath + "[" + std::to_string(slot) + "]", value);
    return value.Number();
  };
  const double low = readEnd(range[0], 0, "LO", -std::numeric_limits<double>::infinity());
  const double high = readEnd(range[1], 1, "HI", std::numeric_limits<double>::infinity());
  if (low > high) throw DataError(Where(rangePath) + "the low end is above the high end");
  if (values.size() > 1) {
    throw DataError(Where(missingPath + ".values") + "at most one missing value beside a range");
  }
  const double extra = values.empty() ? 0.0 : values[0].Number();
  variable.SetMissingRange(low, high, values.empty() ? nullptr : &extra);
}

namespace {

// The member variables of the set at `path`, by their names in the data set, all numeric or
// all strings; the index of the first.
std::vector<std::string> ReadSetMembers(const DictionaryReader& reader, const Dataset& dataset, const json& members,
                                        const std::string& path, int& firstIndex) {
  std::vector<std::string> memberNames;
  for (std::size_t m = 0; m < members.size(); ++m) {
    const std::string memberPath = path + ".variables[" + std::to_string(m) + "]";
    if (!members[m].is_string()) throw DataError(reader.Where(memberPath) + "expected a variable name");
    const std::string member = members[m].get<std::string>();
    const int index = dataset.FindVariable(member);
    if (index < 0) throw DataError(reader.Where(memberPath) + "'" + member + "' is not a variable");
    for (const std::string& earlier : memberNames) {
      if (TARNMBstricmp_A(earlier.c_str(), member.c_str()) == 0) {
        throw DataError(reader.Where(memberPath) + "'" + member + "' is listed twice");
      }
    }
    if (firstIndex < 0) {
      firstIndex = index;
    } else if ((dataset.GetVariable(index).GetType() == 0) !=
               (dataset.GetVariable(firstIndex).GetType() == 0)) {
      throw DataError(reader.Where(memberPath) + "'" + member + "' is " +
                      (dataset.GetVariable(index).GetType() == 0 ? "numeric" : "a string") + " but '" +
                      dataset.GetVariable(firstIndex).GetName() + "' is " +
                      (dataset.GetVariable(firstIndex).GetType() == 0 ? "numeric" : "a string"));
    }
    memberNames.push_back(dataset.GetVariable(index).GetName());
  }
  return memberNames;
}

// The counted value of a dichotomy set at `path`, as text; a number when the members are.
std::string ReadCountedValue(const DictionaryReader& reader, const json& entry, const std::string& path,
                             bool numericMembers) {
  if (!entry.contains("counted"))
    throw DataError(reader.Where(path + ".counted") + "a dichotomy set needs a counted value");
  const json& counted = entry["counted"];
  std::string text;
  double number = 0;
  if (counted.is_number()) {
    text = counted.dump();
  } else if (counted.is_string()) {
    text = counted.get<std::string>();
  } else {
    throw DataError(reader.Where(path + ".counted") + "expected a number or a string");
  }
  if (numericMembers && !ParseNumber(text, number)) {
    throw DataError(reader.Where(path + ".counted") + "'" + text +
                    "' is not a number, but the variables are numeric");
  }
  if (text.find_first_not_of(' ') == std::string::npos) {
    throw DataError(reader.Where(path + ".counted") + "the counted value is empty");
  }
  return text;
}

}  // namespace

void DictionaryReader::AddSets(Dataset& dataset) const {
  const json& root = _data->_root;
  if (!root.contains("mrsets")) return;
  const json& sets = root["mrsets"];
  if (!sets.is_array()) throw DataError(Where("mrsets") + "expected a list");
  std::vector<std::string> names;
  for (std::size_t i = 0; i < sets.size(); ++i) {
    const json& entry = sets[i];
    const std::string path = "mrsets[" + std::to_string(i) + "]";
    if (!entry.is_object()) throw DataError(Where(path) + "expected an object");
    CheckKeys(*this, entry, path, kSetKeys);
    VariableSet set;
    if (!entry.contains("name") || !entry["name"].is_string()) {
      throw DataError(Where(path + ".name") + "the set needs a name beginning with '$'");
    }
    const std::string name = entry["name"].get<std::string>();
    if (name.size() < 2 || name[0] != '$' || ValidateTARNName(name.c_str()) != kNameValid) {
      throw DataError(Where(path + ".name") + "'" + name +
                      "' is not a valid set name (a name beginning with '$')");
    }
    for (const std::string& earlier : names) {
      if (TARNMBstricmp_A(earlier.c_str(), name.c_str()) == 0) {
        throw DataError(Where(path + ".name") + "'" + name + "' is defined twice");
      }
    }
    names.push_back(name);
    set.SetName(name);
    if (entry.contains("label")) {
      if (!entry["label"].is_string()) throw DataError(Where(path + ".label") + "expected a string");
      set.SetLabel(entry["label"].get<std::string>());
    }
    const std::string type =
        entry.contains("type") && entry["type"].is_string() ? entry["type"].get<std::string>() : "";
    if (type == "dichotomies") {
      set.SetType(VariableSet::kMR_Dichotomy);
    } else if (type == "categories") {
      set.SetType(VariableSet::kMR_Category);
    } else {
      throw DataError(Where(path + ".type") + "'" + (entry.contains("type") ? Show(entry["type"]) : "") +
                      "' is not dichotomies or categories");
    }
    if (!entry.contains("variables") || !entry["variables"].is_array()) {
      throw DataError(Where(path + ".variables") + "expected a list of variable names");
    }
    const json& members = entry["variables"];
    if (members.size() < 2)
      throw DataError(Where(path + ".variables") + "a set needs at least two variables");
    int firstIndex = -1;
    const std::vector<std::string> memberNames = ReadSetMembers(*this, dataset, members, path, firstIndex);
    set.SetVariableNames(memberNames);
    const bool numericMembers = dataset.GetVariable(firstIndex).GetType() == 0;
    if (set.GetType() == VariableSet::kMR_Dichotomy) {
      const std::string text = ReadCountedValue(*this, entry, path, numericMembers);
      set.SetValue(text);
      if (entry.contains("labels")) {
        const json& labels = entry["labels"];
        const std::string mode = labels.is_string() ? labels.get<std::string>() : "";
        if (mode == "countedvaluelabels") {
          set.SetUseVariableCategoryLabels(true);
        } else if (mode != "varlabels") {
          throw DataError(Where(path + ".labels") + "'" + Show(labels) +
                          "' is not varlabels or countedvaluelabels");
        }
      }
    } else {
      if (entry.contains("counted"))
        throw DataError(Where(path + ".counted") + "a categories set has no counted value");
      if (entry.contains("labels"))
        throw DataError(Where(path + ".labels") + "a categories set takes its members' value labels");
    }
    dataset.AddVariableSet(set);
  }
}

std::string DictionaryReader::GetWeight() const {
  const json& root = _data->_root;
  if (!root.contains("weight") || root["weight"].is_null()) return "";
  if (!root["weight"].is_string()) throw DataError(Where("weight") + "expected a variable name");
  return root["weight"].get<std::string>();
}

std::vector<std::string> DictionaryReader::GetSplitVariables() const {
  const json& root = _data->_root;
  std::vector<std::string> names;
  if (!root.contains("split")) return names;
  const json& split = root["split"];
  if (!split.is_object()) throw DataError(Where("split") + "expected an object with variables and layout");
  for (const auto& [key, value] : split.items()) {
    if (key != "variables" && key != "layout") throw DataError(Where("split") + "unknown key '" + key + "'");
  }
  if (!split.contains("variables") || !split["variables"].is_array()) {
    throw DataError(Where("split.variables") + "expected a list of variable names");
  }
  const json& list = split["variables"];
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (!list[i].is_string()) {
      throw DataError(Where("split.variables[" + std::to_string(i) + "]") + "expected a variable name");
    }
    names.push_back(list[i].get<std::string>());
  }
  return names;
}

std::string DictionaryReader::GetSplitLayout() const {
  const json& root = _data->_root;
  if (!root.contains("split") || !root["split"].is_object() || !root["split"].contains("layout")) return "";
  const json& layout = root["split"]["layout"];
  const std::string text = layout.is_string() ? layout.get<std::string>() : "";
  if (text != "separate" && text != "layered") {
    throw DataError(Where("split.layout") + "'" + Show(layout) + "' is not separate or layered");
  }
  return text;
}
