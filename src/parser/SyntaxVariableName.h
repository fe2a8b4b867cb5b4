// SyntaxVariableName.h - one occurrence of a dictionary variable in a table expression
#pragma once

#include <string>
#include <vector>

#include "host/data/TARN_Format.h"
#include "host/engine/TableEncryptionCodes.h"
#include "parser/SyntaxConverter.h"

class AggregationVariable;
class Statistics;
class SyntaxTotals;
class VariableSet;

/// The leaf of a table expression. After a variable, an operator, a square bracket or BY
/// may follow, but not another variable or a parenthesis.
// TODO(#5): the variable-node work reads the rest of the dictionary entry (value
// labels) and adds the CATEGORIES options. The storage type, format and measurement level,
// which decide the statistics a variable may take, are read here already.
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

  /// The engine's object for this occurrence, made by the table's dispatcher at the first
  /// cube that holds the node and shared by later cubes. Not owned; never reset to null.
  virtual void SetAggregationVariable(AggregationVariable* variable);
  virtual AggregationVariable* GetAggregationVariable() const;

  virtual int GetIndex() const;
  virtual std::string GetNameToken() const;
  virtual std::string GetLabel() const;
  void SetLabel(const std::string& label);
  /// Records how many BY stand before this occurrence: its axis.
  virtual void SetCountOfBy(int count);
  /// 0 rows, 1 columns, 2 layers.
  virtual int GetAxis() const;
  virtual bool GetIsLeafNode() const;

  /// 0 for a numeric variable, else the width of a string variable.
  virtual int GetVarDataType() const;
  void SetVarDataType(int dataType);
  /// The variable's print format type; a string format never takes summary statistics.
  void SetFormat(FormatType formatType);
  /// kVariableCategorical or kVariableScale.
  virtual TableEncryptionCodes::VariableCodes GetVariableType() const;
  /// The [S] and [C] marks: refuses a string variable as scale and a mark written after
  /// statistics; a set takes the mark but stays categorical.
  virtual void SetVariableType(TableEncryptionCodes::VariableCodes code);

  /// The statistics of one bracket (not owned). A statistic given again moves to the end,
  /// so the later request wins; a default or totals-derived list is replaced entirely.
  virtual void AddStatistics(const std::vector<Statistics*>* statistics);
  virtual bool HasStatistics() const;
  /// Whether a statistic of `code` (and, for percentiles, of cut point `cutPoint`) is asked for.
  virtual bool HasThisStat(int code, double cutPoint) const;
  virtual const std::vector<Statistics*>& GetStatistics() const;
  /// Attaches a TOTALS clause: its statistics become those of the total category.
  virtual void SetTotals(SyntaxTotals* totals);
  virtual const std::vector<Statistics*>& GetTotalStats() const;
  /// A totals clause is attached and holds statistics.
  bool GetHasTotalStats() const;
  /// Only a default COUNT stands in the list, which the first real list replaces.
  virtual bool GetIsStatRemovable() const;
  /// Gives a categorical variable without statistics a removable COUNT.
  void SetDefaultStats();
  /// Once the expression is complete: a scale variable without statistics gets MEAN, and a
  /// variable with a total category (or subtotals) but no TOTALS clause shows in it the
  /// statistics of its categories (COUNT when it has none).
  virtual void CompleteStatistics();
  /// Passes the confidence level to every statistic this variable shows.
  void SetCILevel(double level, const std::string& text);

  /// CATEGORIES TOTAL=NO|YES; a different second answer warns, the later one wins.
  virtual void SetIsTotalNo(bool isTotalNo);
  virtual bool GetIsTotalNo() const;
  bool HasSubTotal() const;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  /// Storage type, print format and measurement level from the dictionary entry.
  void ReadMeasurement();

  struct VarData;
  VarData* _varData;
};
