// SyntaxVariableName.h - one occurrence of a dictionary variable in a table expression
#pragma once

#include <string>

#include "parser/SyntaxConverter.h"

class VariableSet;

/// The leaf of a table expression. After a variable, an operator, a square bracket or BY
/// may follow, but not another variable or a parenthesis.
// TODO(#5): the variable-node work reads the dictionary entry (label, format, value
// labels, measurement level) and adds statistics, totals and the CATEGORIES options.
class SyntaxVariableName : public SyntaxConverter {
 public:
  /// The variable at dictionary index `index`, as written: `name`.
  SyntaxVariableName(int index, const std::string& name);
  /// A multiple-response set: index -100 and the set's name as defined.
  explicit SyntaxVariableName(VariableSet& set);
  ~SyntaxVariableName() override;

  std::string GetSubcommandName() const override;
  int GetType() const override;
  void SetIsLeafNode(bool isLeaf) override;

  virtual int GetIndex() const;
  virtual std::string GetNameToken() const;
  virtual std::string GetLabel() const;
  void SetLabel(const std::string& label);
  /// Records how many BY stand before this occurrence: its axis.
  virtual void SetCountOfBy(int count);
  /// 0 rows, 1 columns, 2 layers.
  virtual int GetAxis() const;
  virtual bool GetIsLeafNode() const;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  struct VarData;
  VarData* _varData;
};
