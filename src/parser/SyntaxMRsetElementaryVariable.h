// SyntaxMRsetElementaryVariable.h - one member variable of a multiple-response set, read from the dictionary
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/data/TARN_Format.h"
#include "parser/SyntaxConverter.h"

class SyntaxMRVariableSet;
class TARN_Variable;
class VLPair;
union OBS;

/// A member of a set node: what the set needs of the member's dictionary entry, read once
/// when the set is made. For a category set all its value labels and its user-missing
/// definition; for a dichotomy set only the label of the counted value.
class SyntaxMRsetElementaryVariable : public SyntaxConverter {
 public:
  /// Reads member `name` of `owner`, a set of `setType` (VariableSet::kMR_Category or
  /// kMR_Dichotomy) whose counted value reads `countedText` (empty for a category set).
  /// A name the dictionary does not know raises MRNonExistentElemVar.
  SyntaxMRsetElementaryVariable(SyntaxMRVariableSet* owner, const std::string& name, int setType,
                                const std::string& countedText);
  ~SyntaxMRsetElementaryVariable() override;

  SyntaxMRVariableSet* GetOwner() const;
  /// As TARN_Variable::GetMissingValues returns it: 0 none, 1 to 3 values, -2 a range, -3 a
  /// range and a value (category sets only; 0 otherwise).
  int GetMissingValueType() const;
  /// The user-missing slots; null where unused. Valid while the dictionary is.
  const OBS* GetUserMissingData1() const;
  const OBS* GetUserMissingData2() const;
  const OBS* GetUserMissingData3() const;
  int GetIndex() const;
  const std::string& GetName() const;
  /// Empty when the variable has no label.
  const std::string& GetLabel() const;
  /// 0 numeric, else the string width.
  int GetWidth() const;
  const TARN_Variable* GetVariable() const;
  FormatType GetFormatType() const;
  const std::vector<VLPair>& GetVLData() const;
  int GetVLPairCount() const;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
