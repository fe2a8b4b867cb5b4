// VariableComposite.h - the list of sub-table cubes that one node of a table expression stands for
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

class SubTableCube;
class SyntaxConverter;
class SyntaxVariableName;

/// Mixed into the table and the expression nodes that combine operands (`>`, `BY`, `+` and
/// parentheses). After DissectTableInCubes each such node holds the cubes its part of the
/// expression stands for, in order; the table's list is what the dispatcher aggregates.
///
/// Dissection runs bottom-up: a node combines the lists of its two children by nesting,
/// crossing or stacking. A cube taken over from a child stays owned by that child and only
/// stands in this list; a cube made here (a variable's own cube, or a copy made for
/// crossing) is owned here and deleted with the composite. Stacking is also where default
/// statistics are handed out, so that a stack never mixes a statistics list with nothing.
class VariableComposite {
 public:
  VariableComposite();
  virtual ~VariableComposite();
  VariableComposite(const VariableComposite&) = delete;
  VariableComposite& operator=(const VariableComposite&) = delete;

  int CubeCount() const;
  /// The cube at `position`, below CubeCount(). Not owned by the caller.
  SubTableCube*& operator[](int position);
  SubTableCube* operator[](int position) const;

  /// Takes over what `child` stands for: a variable (or set) gets a cube of its own, a
  /// composite's cubes are appended. A placeholder for an empty axis adds nothing.
  void ImitateChildComposite(SyntaxConverter* child);
  /// Nests (`cross` false) or crosses (`cross` true) the two `children`: every cube of the
  /// first combined with every cube of the second, first operand outermost. Raises
  /// IncorrectCrossing when two statistics sources would meet in one cube.
  void NestChildren(std::vector<SyntaxConverter*>* children, bool cross);
  /// Stacks the two `children`, deciding which operands share a cube and giving default
  /// statistics to one side when the other has statistics.
  void StackChildren(std::vector<SyntaxConverter*>* children);

  /// The stat type of the first cube that has statistics; 4 (none) when no cube has any.
  int GetFirstStatType() const;
  /// Default statistics on every cube that has none.
  void SetDefaultStats();

  /// Names of the categorical variables over all cubes, first occurrence only, in order.
  std::vector<std::string> GetCatVarNameList() const;
  /// Every categorical (scale) variable node of that name over all cubes, each once.
  std::vector<SyntaxVariableName*> GetCategoricalVariables(const std::string& name) const;
  std::vector<SyntaxVariableName*> GetScaleVariables(const std::string& name) const;
  bool CatVarNameExist(const std::string& name) const;
  bool ScaleVarNameExist(const std::string& name) const;

  /// Writes each cube (SubTableCube::Print) under a numbered line, `indent` blanks deep.
  void PrintCubes(std::ostream& out, int indent = 0) const;

 private:
  // The four cases of StackChildren, by the kinds of the two operands.
  void StackVariables(SyntaxVariableName* a, SyntaxVariableName* b);
  void StackCompositeAndVariable(VariableComposite& c, SyntaxVariableName* v);
  void StackVariableAndComposite(SyntaxVariableName* v, VariableComposite& c);
  void StackComposites(VariableComposite& c1, VariableComposite& c2);

  struct Data;
  Data* _compositeData;
};
