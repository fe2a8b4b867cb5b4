// DictionaryReader.h - reads the JSON data dictionary and checks it, naming JSON paths in errors
#pragma once

#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "host/data/TARN_Format.h"

class Dataset;
class TARN_Variable;

/// What the dictionary says about one variable's storage, known before the data is read.
/// Plain value type.
struct VariableDeclaration {
  std::string name;        // as written in the dictionary
  std::string path;        // JSON path of the entry, "variables[3]"
  int declaredType = -1;   // -1 not stated (inferred from the data), 0 numeric, 1 string
  int width = 0;           // string width in bytes; 0 when not stated
  bool hasFormat = false;  // `format` holds a stated format
  TARN_Format format;      // the stated format
};

/// Reads a dictionary (the JSON format of docs/data.md). The constructor checks the JSON
/// and every entry's shape; the details that depend on a variable's final type (value
/// labels, missing values) and the sets, weight and split, which depend on the whole
/// dictionary, are checked when they are applied. Every problem is a DataError of the form
/// `NAME: path: what is wrong`.
class DictionaryReader {
 public:
  DictionaryReader(const std::string& jsonText, const std::string& sourceName);
  ~DictionaryReader();
  DictionaryReader(const DictionaryReader&) = delete;
  DictionaryReader& operator=(const DictionaryReader&) = delete;

  /// The listed variables in dictionary order.
  const std::vector<VariableDeclaration>& GetDeclarations() const;
  /// Sets label, measurement level, value labels and missing values of declaration
  /// `index` on `variable`, whose type and format are already final.
  void ApplyDetails(std::size_t index, TARN_Variable& variable) const;
  /// Adds the multiple-response sets to `dataset`, checking members against its dictionary.
  void AddSets(Dataset& dataset) const;
  /// The weight variable's name; empty when the dictionary names none.
  std::string GetWeight() const;
  /// The split variables' names; empty when there are none.
  std::vector<std::string> GetSplitVariables() const;
  /// "separate", "layered", or empty when not stated.
  std::string GetSplitLayout() const;
  /// `NAME: path: ` for messages about the dictionary.
  std::string Where(const std::string& path) const;

 private:
  /// The declaration of entry `path` of "variables", checked against the earlier ones.
  VariableDeclaration ReadDeclaration(const nlohmann::ordered_json& entry, const std::string& path) const;

  struct Data;
  std::unique_ptr<Data> _data;
};
