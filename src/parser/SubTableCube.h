// SubTableCube.h - one sub-table of a table expression: the variables counted together and who carries the statistics
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

class AggregationCube;
class SyntaxVariableName;


/// Whether a cube can take part in a significance test, and if not why: one set of codes
/// for the chi-square, column proportions and column means tests.
enum class TestEligibility {
  kEligible,             // the test runs on the cube
  kEligibleMixedCounts,  // it runs, and the cube has weighted and unweighted counts both
  kInnerSetExcluded,     // an innermost multiple-response set is left out (INCLUDEMRSETS=NO)
  kScaleVariable,        // a scale variable stands where the test wants categories only
  kNoScaleVariable,      // the means test finds no scale variable to compare
  kNoRowVariable,        // no categorical variable in the rows
  kNoColumnVariable,     // no categorical variable in the columns
  kSameRowAndColumn,     // chi-square: the rows and columns are one variable
  kScaleOutsideRows,     // means: a summarized variable stands outside the rows
  kNoMean,               // means: no scale variable has the mean the test needs
  kNoCount,              // no count at all for an unweighted test
  kNoWeightedCount,      // no weighted count for a weighted test
};
/// One combination of a stacked term in the rows, the columns and the layers: `(a + b) BY c`
/// stands for the sub-tables `a BY c` and `b BY c`. The cube lists the categorical
/// variables (and multiple-response sets) in expression order, rows then columns then
/// layers, and the scale variables apart. One categorical variable, the computational
/// variable, carries the statistics of a cube without scale variables.
///
/// Cubes are made and combined by VariableComposite while the table expression is
/// dissected; AddVariable and AddCube refuse crossings that would ask two variables for
/// statistics in one cell (IncorrectCrossing, which ends the command). After the parse the
/// dispatcher reads the variables to define the engine's cube and stores it here.
///
/// Nothing a cube points to is owned by it: the variable nodes belong to the converter tree
/// and the engine cube to the table's dispatcher.
class SubTableCube {
 public:
  /// How a variable or cube joins the cube so far.
  enum ALGEBRATYPE { kAlgebraStack = 0, kAlgebraNest = 1, kAlgebraBy = 2 };

  /// What GetCubeStatType answers: which kind of statistics the cube computes.
  enum CubeStatType {
    kCubeStatScale = 0,        // a scale variable is summarized
    kCubeStatCategorical = 1,  // a categorical computational variable
    kCubeStatRemovable = 2,    // the computational variable holds only its default COUNT
    kCubeStatMRSet = 3,        // the computational variable is a multiple-response set
    kCubeStatNone = 4,         // no statistics yet: the cube accepts anything
  };

  /// A cube of one variable: a scale variable becomes a stat var, a categorical one a
  /// categorical variable (and the computational one when it has statistics).
  explicit SubTableCube(SyntaxVariableName* var);
  /// A copy of `other` without its engine cube, for crossing one cube with several.
  explicit SubTableCube(SubTableCube*& other);
  virtual ~SubTableCube();
  SubTableCube(const SubTableCube&) = delete;
  SubTableCube& operator=(const SubTableCube&) = delete;

  /// Empties both lists and forgets the computational variable, the inner sets and the
  /// extra-dimension flag.
  void Reset();
  /// Joins `var` by `op`; raises IncorrectCrossing when the cube's statistics forbid it.
  /// A variable that is neither categorical nor scale is dropped.
  void AddVariable(SyntaxVariableName* var, ALGEBRATYPE op);
  /// Joins every variable of `other` by `op`; raises IncorrectCrossing when the two cubes'
  /// statistics cannot meet in one cell. `other` is not changed.
  void AddCube(SubTableCube* other, ALGEBRATYPE op);

  /// The categorical variables first, then the scale variables; `pos` below GetVarCount().
  SyntaxVariableName* operator[](int pos) const;
  int GetVarCount() const;
  int GetCatVarCount() const;
  SyntaxVariableName* GetCatVar(int index) const;
  /// Scale variables are the cube's stat vars.
  int GetStatVarCount() const;
  SyntaxVariableName* GetStatVar(int index) const;

  /// The categorical variable whose statistics the cube computes; null until one is known.
  SyntaxVariableName* GetComputationalVariable() const;
  /// The multiple-response set innermost in the rows (columns) that a test marked; null
  /// when none was marked.
  SyntaxVariableName* GetInnerRowMRforTest() const;
  SyntaxVariableName* GetInnerColMRforTest() const;
  /// The engine cube needs the extra dimension for the overlaps of the inner column set.
  bool NeedExtraDim() const;
  AggregationCube* GetAggregationCube() const;
  /// Set once by the dispatcher; `cube` must not be null. Not owned.
  void SetAggregationCube(AggregationCube* cube);

  /// A multiple-response set is among the categorical variables.
  bool HasMRSet() const;
  /// The computational variable has a totals clause with statistics.
  bool GetHasTotals() const;
  /// One of CubeStatType; see the enumeration.
  int GetCubeStatType() const;

  /// Distinct names of the categorical variables, in order of first appearance.
  std::vector<std::string> GetCatVarNameList() const;
  /// Every categorical (scale) variable of the cube with that name, in cube order.
  std::vector<SyntaxVariableName*> GetCategoricalVariables(const std::string& name) const;
  std::vector<SyntaxVariableName*> GetScaleVariables(const std::string& name) const;
  bool CatVarNameExist(const std::string& name) const;
  bool ScaleVarNameExist(const std::string& name) const;
  /// The computational variable exists and bears `name`.
  bool CatVarNameIsComputational(const std::string& name) const;
  /// The computational variable bears `name` and asks for the statistic `code`.
  bool CatVarWithStatExists(const std::string& name, int code) const;
  /// A scale variable named `name` asks for `code` (at `cutPoint` for a percentile).
  bool ScaleVarWithStatExists(const std::string& name, int code, double cutPoint) const;

  /// Gives a cube without any statistics its default: COUNT on the innermost categorical
  /// variable of the first axis that is followed by another axis, or on the last variable
  /// (`a > b BY c > d`: b; `a BY b`: b; `a > b`: b). A cube with a scale or computational
  /// variable is left alone.
  void SetDefaultStats();

  /// A multiple-response set stands innermost in the rows or the columns.
  bool HasMRSetInner() const;
  /// Marks the set that a test must treat specially (columns always, rows when
  /// `includeRows`); `forPairs` asks for the extra dimension for a column set. Returns
  /// whether a set was marked.
  bool MarkInnermostMRSets(bool includeRows, bool forPairs);

  /// Whether the chi-square test can run on this cube. May mark inner sets.
  TestEligibility GetChiSquareValidity(bool weighted, bool includeMR);
  /// Whether the column proportions test can run on this cube. May mark inner sets.
  TestEligibility GetColPropValidity(bool weighted, bool includeMR);
  /// Whether the column means test can run on this cube; the flags report which means were
  /// missing or mixed. May mark inner sets.
  TestEligibility GetMeanPropValidity(bool weighted, bool& needWeighted, bool& needUnweighted, bool& mixed,
                                      bool includeMR);

  /// One line per field, `indent` blanks before each, for debugging and the parse dump.
  void Print(std::ostream& out, int indent = 0) const;

 private:
  /// Whether `var`, joining by `op`, would give a cell two sources of statistics or split
  /// them other than across axes (IncorrectCrossing).
  bool RefusesVariable(SyntaxVariableName* var, ALGEBRATYPE op) const;
  /// The same for a whole cube joining this one.
  bool RefusesCube(const SubTableCube& other, ALGEBRATYPE op) const;
  /// What the chi-square and column proportions tests both need of the layout: no scale
  /// variable, an inner set only when asked for, a row and a column variable, and for
  /// `distinctRowAndColumn` not the same one. kEligible when all hold.
  TestEligibility CheckCountTestLayout(bool includeMR, bool distinctRowAndColumn) const;

  struct Data;
  Data* _data;
};
