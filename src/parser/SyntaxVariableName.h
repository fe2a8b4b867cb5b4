// SyntaxVariableName.h - one occurrence of a dictionary variable in a table expression
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/data/TARN_Format.h"
#include "host/engine/TableEncryptionCodes.h"
#include "parser/PresentationCodes.h"
#include "parser/SyntaxConverter.h"

class AggregationVariable;
class CategoryRange;
class CategoryToken;
class ParsedCategory;
class Statistics;
class SyntaxPComputeSubcommand;
class SyntaxPPropertiesSubcommand;
class SyntaxTotals;
class VLPair;
class VariableSet;
union OBS;

/// The leaf of a table expression. After a variable, an operator, a square bracket or BY
/// may follow, but not another variable or a parenthesis.
///
/// The node reads its dictionary entry once (storage type, format, measurement level,
/// label and value labels) and then collects what the command says about this occurrence:
/// statistics, totals, the CATEGORIES options, and the explicit category list in the form
/// the aggregation engine takes (ParsedCategory). Each setter validates as it is called.
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

  // --- Value labels -------------------------------------------------------------------
  /// Number of value-label pairs.
  virtual int GetVLPairCount() const;
  void SetVLPairCount(int count);
  /// The value labels, in the dictionary's order; null when there are none. The array is
  /// owned by the node; a set installs its merged array through the reference (new[]),
  /// deleting the one it replaces, and then sets the count.
  virtual VLPair*& GetValueLabelList();
  const VLPair* GetValueLabelList() const;

  // --- CATEGORIES options -------------------------------------------------------------
  // Each setter warns with DuplicateWarningFromVariable when a second CATEGORIES gives a
  // different answer (the later one wins); ORDER, MISSING and KEY are refused on a variable
  // with an explicit list.

  /// CATEGORIES TOTAL=NO|YES.
  virtual void SetIsTotalNo(bool isTotalNo);
  virtual bool GetIsTotalNo() const;
  bool HasSubTotal() const;
  /// ORDER=A|D.
  virtual void SetIsOrderA(bool isOrderA);
  virtual bool GetIsOrderA() const;
  /// ORDER was given (the engine must then sort rather than keep an explicit order).
  virtual bool GetOrderSet() const;
  /// MISSING=EXCLUDE|INCLUDE.
  virtual void SetIsMissingExclude(bool isMissingExclude);
  virtual bool GetIsMissingExclude() const;
  /// LABEL='text' of the total category.
  virtual void SetTotalLabel(const std::string& label);
  virtual std::string GetTotalLabel() const;
  /// No LABEL was given: the total shows the default "Total".
  virtual bool GetIsTotalLabelDefault() const;
  /// POSITION=AFTER|BEFORE of totals and subtotals.
  virtual void SetTotalPositionAfter(bool isAfter);
  virtual bool GetIsTotalPositionAfter() const;
  /// EMPTY=INCLUDE|EXCLUDE.
  virtual void SetIsEmptyInclude(bool isEmptyInclude);
  virtual bool GetIsEmptyInclude() const;
  /// KEY=VALUE|LABEL|statistic; kSortKeyNone changes nothing.
  virtual void SetSortKey(TableEncryptionCodes::SortKey key);
  virtual TableEncryptionCodes::SortKey GetSortKey() const;
  /// The statistic of a sort key and the variable it is computed on (null: this one's own
  /// categories; not owned).
  virtual void SetSortInfo(TableEncryptionCodes::StatisticCodes statistic, SyntaxVariableName* variable);
  virtual TableEncryptionCodes::StatisticCodes GetSortStatistic() const;
  virtual SyntaxVariableName* GetSortVariable() const;
  /// The percentile of a PTILE or UPTILE sort key; -1 without one.
  void SetCutPoint(double cutPoint);
  double GetCutPoint() const;
  /// VLABELS: how the variable's heading reads.
  virtual void SetVLabelsOption(PresentationCodes::VLabelOption option);
  virtual PresentationCodes::VLabelOption GetVLabelsOption() const;

  // --- The explicit category list -----------------------------------------------------
  /// Turns the elements of an explicit list into ParsedCategory records, replacing an
  /// earlier list with a warning. Subtotals and the categories they sum share a negative
  /// encoding (-101, -102, ...); a computed-category reference is checked against the list
  /// and takes its PPROPERTIES. `tokens` stay owned by the caller.
  virtual void SetParsedCategories(const std::vector<CategoryToken*>& tokens);
  /// A dichotomy set's members as its categories, in the given order (sets only).
  virtual void SetCategoriesList(const std::vector<int>& indices);
  /// The explicit list in engine form; owned by the node.
  virtual std::vector<ParsedCategory*>& GetParsedCategories();
  virtual const std::vector<ParsedCategory*>& GetParsedCategories() const;
  virtual bool GetIsExplicit() const;
  void SetIsExplicit(bool isExplicit);

  /// Same dictionary index, kind and measurement; for sets also the same name.
  virtual bool operator==(const SyntaxVariableName* other) const;

 protected:
  void DumpDetails(std::ostream& out) const override;

  /// Counts the subtotals of `tokens`, notes whether there is one, and returns the count.
  int CheckSubtotals(const std::vector<CategoryToken*>& tokens);
  /// Drops an earlier explicit list, with a warning.
  void CleanDuplicateExplicitList();

  /// Where the walk over one explicit list stands: the subtotal encoding in force.
  struct ExplicitListPass {
    int total = 0;             // subtotals in the list
    int encoding = -101;       // the code of the subtotal being filled
    int seen = 0;              // subtotals met so far
    bool sawSubtotal = false;  // a subtotal was met
  };
  /// The record of a SUBTOTAL or HSUBTOTAL element, advancing the encoding.
  ParsedCategory* MakeSubtotalCategory(const CategoryToken& token, ExplicitListPass& pass);
  /// The record of `&name`, checked against the whole list. `index` goes into the record
  /// (the dictionary index of a variable, -101 for a set).
  ParsedCategory* MakeComputedCategory(const CategoryToken& token, const std::vector<CategoryToken*>& tokens,
                                       int total, int index);
  /// Completes `category` with the value type and the encoding, and appends it (owned from
  /// then on).
  void AppendParsedCategory(ParsedCategory* category, bool isSubtotal, const ExplicitListPass& pass);

 private:
  /// Storage type, print format and measurement level from the dictionary entry.
  void ReadMeasurement();
  /// Label and value labels from the dictionary entry.
  void ReadLabels();
  /// The text of a list element as a value of this variable; DataReadError when it is none.
  std::vector<OBS> GetCategoryAsOBS(const CategoryToken& token) const;
  /// The record of a range element.
  ParsedCategory* ManageRange(const CategoryRange& range) const;
  /// Every category `pCompute`'s expression names must stand in the list `tokens` (with
  /// `total` subtotals); returns whether it uses the total or a subtotal.
  bool CheckComputedOperands(const SyntaxPComputeSubcommand& pCompute, const std::string& catName,
                             const std::vector<CategoryToken*>& tokens, int total) const;
  /// `computed` with the label, statistics and source hiding of `properties`; the totals an
  /// expression uses must carry the statistics it is shown with.
  std::unique_ptr<ParsedCategory> ApplyComputedProperties(const SyntaxPPropertiesSubcommand& properties,
                                                          const ParsedCategory& computed, bool usesTotals,
                                                          int index) const;

  struct VarData;
  VarData* _varData;
};
