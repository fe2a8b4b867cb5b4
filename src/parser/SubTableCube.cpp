// SubTableCube.cpp - building sub-table cubes, refusing crossings of two statistics sources, and test eligibility
#include "parser/SubTableCube.h"

#include <algorithm>
#include <initializer_list>
#include <ostream>

#include "host/QuiltAssert.h"
#include "host/engine/TableEncryptionCodes.h"
#include "parser/Statistics.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxMRVariableSet.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxVariableName.h"

struct SubTableCube::Data {
  std::vector<SyntaxVariableName*> _catVars;              // categorical variables and sets, rows, columns, layers
  std::vector<SyntaxVariableName*> _scaleVars;            // scale variables (stat vars)
  AggregationCube* _aggregationCube = nullptr;            // the engine's cube; set once
  SyntaxVariableName* _computationalVariable = nullptr;   // carries the statistics; null until known
  SyntaxVariableName* _innerRowMRforTest = nullptr;       // set innermost in the rows, marked by a test
  SyntaxVariableName* _innerColMRforTest = nullptr;       // set innermost in the columns, marked by a test
  bool _needExtraDim = false;                             // the engine cube needs kDimensionExtra

  /// The first categorical variable with statistics carries them for the whole cube.
  void AddCatVarToCube(SyntaxVariableName* var) {
    if (var->HasStatistics() && _computationalVariable == nullptr) {
      _computationalVariable = var;
    }
    _catVars.push_back(var);
  }

  /// The inner column set of a test: pairwise tests compare its overlapping responses in an
  /// extra dimension.
  void MarkColumnSet(SyntaxVariableName* set, bool forPairs) {
    static_cast<SyntaxMRVariableSet*>(set)->SetInnermost(true);
    _innerColMRforTest = set;
    if (forPairs) {
      _needExtraDim = true;
    }
  }
};

namespace {

bool IsScale(const SyntaxVariableName* var) {
  return var->GetVariableType() == TableEncryptionCodes::kVariableScale;
}

bool IsCategorical(const SyntaxVariableName* var) {
  return var->GetVariableType() == TableEncryptionCodes::kVariableCategorical;
}

bool IsSet(const SyntaxVariableName* var) {
  return var->GetType() == kConverterMRSet;
}

// The last leaf categorical variable on `axis`: the variable whose categories form the
// rows (0) or the columns (1) of the innermost sub-table.
SyntaxVariableName* LastLeafOnAxis(const std::vector<SyntaxVariableName*>& variables, int axis) {
  for (auto at = variables.rbegin(); at != variables.rend(); ++at) {
    if ((*at)->GetIsLeafNode() && (*at)->GetAxis() == axis) {
      return *at;
    }
  }
  return nullptr;
}

// Which counts a statistic list asks for, as the count-based tests need to know.
struct CountKinds {
  bool weighted = false;    // a weighted count or percentage
  bool unweighted = false;  // an unweighted one
  bool both = false;        // an unweighted one after a weighted one
};

// The counts `computational` shows: `weightedCodes` are weighted counts or percentages,
// `unweightedCodes` their unweighted forms. `primary`: a statistic is judged by its
// primary code (a percentage of any base counts), else by its own.
CountKinds ReadCountKinds(const SyntaxVariableName* computational, bool primary,
                          std::initializer_list<int> weightedCodes,
                          std::initializer_list<int> unweightedCodes) {
  CountKinds kinds;
  if (computational == nullptr) {
    return kinds;
  }
  const auto holds = [](std::initializer_list<int> codes, int code) {
    return std::find(codes.begin(), codes.end(), code) != codes.end();
  };
  for (const Statistics* statistic : computational->GetStatistics()) {
    const int code = primary ? statistic->GetPrimaryStatistic() : statistic->GetStatType();
    if (holds(weightedCodes, code)) {
      kinds.weighted = true;
    } else if (holds(unweightedCodes, code)) {
      if (kinds.weighted) {
        kinds.both = true;
      }
      kinds.unweighted = true;
    }
  }
  return kinds;
}

// A count-based test on `cube`: refused for its layout, or else judged by the counts shown.
// Marks the cube's inner sets when the test may run.
TestEligibility JudgeCounts(SubTableCube& cube, TestEligibility layout, const CountKinds& kinds, bool weighted,
                            bool includeMR, bool forPairs) {
  if (layout != TestEligibility::kEligible) {
    return layout;
  }
  if (weighted && !kinds.weighted) {
    return TestEligibility::kNoWeightedCount;
  }
  if (!weighted && !kinds.weighted && !kinds.unweighted) {
    return TestEligibility::kNoCount;
  }
  if (includeMR) {
    cube.MarkInnermostMRSets(/*includeRows=*/true, forPairs);
  }
  return weighted && kinds.both ? TestEligibility::kEligibleMixedCounts : TestEligibility::kEligible;
}

}  // namespace

SubTableCube::SubTableCube(SyntaxVariableName* var) : _data(new Data) {
  Reset();
  if (IsScale(var)) {
    _data->_scaleVars.push_back(var);
  } else if (IsCategorical(var)) {
    _data->AddCatVarToCube(var);
  }
}

SubTableCube::SubTableCube(SubTableCube*& other) : _data(new Data) {
  const Data& source = *other->_data;
  for (SyntaxVariableName* var : source._catVars) {
    _data->AddCatVarToCube(var);
  }
  _data->_scaleVars = source._scaleVars;
  _data->_computationalVariable = source._computationalVariable;
  _data->_innerRowMRforTest = source._innerRowMRforTest;
  _data->_innerColMRforTest = source._innerColMRforTest;
  _data->_needExtraDim = source._needExtraDim;
}

SubTableCube::~SubTableCube() {
  delete _data;
}

void SubTableCube::Reset() {
  _data->_catVars.clear();
  _data->_scaleVars.clear();
  _data->_computationalVariable = nullptr;
  _data->_innerRowMRforTest = nullptr;
  _data->_innerColMRforTest = nullptr;
  _data->_needExtraDim = false;
}

// Each cell has one source of statistics: a scale variable, or the computational variable. A
// newcomer is refused when it would bring a second one, or would split the statistics'
// categories other than across axes.
bool SubTableCube::RefusesVariable(SyntaxVariableName* var, ALGEBRATYPE op) const {
  const bool scale = IsScale(var);
  const bool categorical = IsCategorical(var);
  switch (GetCubeStatType()) {
    case kCubeStatScale:
      return (scale && op != kAlgebraStack) || (categorical && var->HasStatistics());
    case kCubeStatCategorical:
      return scale || (categorical && (var->HasStatistics() || op != kAlgebraBy));
    case kCubeStatRemovable:
      return scale || (categorical && var->HasStatistics());
    case kCubeStatMRSet:
      return scale || (categorical && (var->HasStatistics() || (IsSet(var) && op != kAlgebraBy)));
    case kCubeStatNone:
      return false;
    default:
      SyntaxParserUtility::UnexpectedError(__FILE__, __LINE__);
  }
}

// The same rule for a whole cube joining this one: only a cube without statistics may join
// one that has them, and a scale cube only by stacking on a scale cube.
bool SubTableCube::RefusesCube(const SubTableCube& other, ALGEBRATYPE op) const {
  const int otherType = other.GetCubeStatType();
  switch (GetCubeStatType()) {
    case kCubeStatScale:
      return otherType != kCubeStatNone && (otherType != kCubeStatScale || op != kAlgebraStack);
    case kCubeStatCategorical:
      return otherType != kCubeStatNone || op != kAlgebraBy;
    case kCubeStatRemovable:
      return otherType != kCubeStatNone;
    case kCubeStatMRSet:
      return otherType != kCubeStatNone || (other.HasMRSet() && op != kAlgebraBy);
    case kCubeStatNone:
      return false;
    default:
      SyntaxParserUtility::UnexpectedError(__FILE__, __LINE__);
  }
}

void SubTableCube::AddVariable(SyntaxVariableName* var, ALGEBRATYPE op) {
  if (RefusesVariable(var, op)) {
    SyntaxParserUtility::IncorrectCrossing();
  }
  if (IsScale(var)) {
    _data->_scaleVars.push_back(var);
  } else if (IsCategorical(var)) {
    _data->AddCatVarToCube(var);
  }
}

void SubTableCube::AddCube(SubTableCube* other, ALGEBRATYPE op) {
  if (RefusesCube(*other, op)) {
    SyntaxParserUtility::IncorrectCrossing();
  }
  const int count = other->GetVarCount();
  for (int pos = 0; pos < count; ++pos) {
    SyntaxVariableName* var = (*other)[pos];
    if (IsScale(var)) {
      _data->_scaleVars.push_back(var);
    } else {
      _data->AddCatVarToCube(var);
    }
  }
}

SyntaxVariableName* SubTableCube::operator[](int pos) const {
  const int catCount = GetCatVarCount();
  if (pos < catCount) {
    return GetCatVar(pos);
  }
  return GetStatVar(pos - catCount);
}

int SubTableCube::GetVarCount() const {
  return GetCatVarCount() + GetStatVarCount();
}

int SubTableCube::GetCatVarCount() const {
  return static_cast<int>(_data->_catVars.size());
}

SyntaxVariableName* SubTableCube::GetCatVar(int index) const {
  QUILT_ASSERT(index >= 0 && index < GetCatVarCount(), "categorical variable index within the cube");
  return _data->_catVars[static_cast<size_t>(index)];
}

int SubTableCube::GetStatVarCount() const {
  return static_cast<int>(_data->_scaleVars.size());
}

SyntaxVariableName* SubTableCube::GetStatVar(int index) const {
  QUILT_ASSERT(index >= 0 && index < GetStatVarCount(), "scale variable index within the cube");
  return _data->_scaleVars[static_cast<size_t>(index)];
}

SyntaxVariableName* SubTableCube::GetComputationalVariable() const {
  return _data->_computationalVariable;
}

SyntaxVariableName* SubTableCube::GetInnerRowMRforTest() const {
  return _data->_innerRowMRforTest;
}

SyntaxVariableName* SubTableCube::GetInnerColMRforTest() const {
  return _data->_innerColMRforTest;
}

bool SubTableCube::NeedExtraDim() const {
  return _data->_needExtraDim;
}

AggregationCube* SubTableCube::GetAggregationCube() const {
  return _data->_aggregationCube;
}

void SubTableCube::SetAggregationCube(AggregationCube* cube) {
  QUILT_ASSERT(cube != nullptr, "a sub-table is linked to an engine cube");
  _data->_aggregationCube = cube;
}

bool SubTableCube::HasMRSet() const {
  return std::any_of(_data->_catVars.begin(), _data->_catVars.end(), IsSet);
}

bool SubTableCube::GetHasTotals() const {
  return _data->_computationalVariable != nullptr && _data->_computationalVariable->GetHasTotalStats();
}

int SubTableCube::GetCubeStatType() const {
  if (!_data->_scaleVars.empty()) {
    return kCubeStatScale;
  }
  const SyntaxVariableName* computational = _data->_computationalVariable;
  if (computational == nullptr) {
    return kCubeStatNone;
  }
  int type = kCubeStatCategorical;
  if (IsSet(computational)) {
    type = kCubeStatMRSet;
  }
  // A default COUNT gives way to any real list, so such a cube is as open as it can be
  // short of having no statistics; this outranks the set.
  if (computational->GetIsStatRemovable()) {
    type = kCubeStatRemovable;
  }
  return type;
}

std::vector<std::string> SubTableCube::GetCatVarNameList() const {
  std::vector<std::string> names;
  for (const SyntaxVariableName* var : _data->_catVars) {
    SyntaxParserUtility::AppendDistinctName(names, var->GetNameToken());
  }
  return names;
}

namespace {

std::vector<SyntaxVariableName*> Named(const std::vector<SyntaxVariableName*>& variables,
                                       const std::string& name) {
  std::vector<SyntaxVariableName*> found;
  for (SyntaxVariableName* var : variables) {
    if (SyntaxParserUtility::ExactWordMatch(var->GetNameToken(), name)) {
      found.push_back(var);
    }
  }
  return found;
}

}  // namespace

std::vector<SyntaxVariableName*> SubTableCube::GetCategoricalVariables(const std::string& name) const {
  return Named(_data->_catVars, name);
}

std::vector<SyntaxVariableName*> SubTableCube::GetScaleVariables(const std::string& name) const {
  return Named(_data->_scaleVars, name);
}

bool SubTableCube::CatVarNameExist(const std::string& name) const {
  return !GetCategoricalVariables(name).empty();
}

bool SubTableCube::ScaleVarNameExist(const std::string& name) const {
  return !GetScaleVariables(name).empty();
}

bool SubTableCube::CatVarNameIsComputational(const std::string& name) const {
  const SyntaxVariableName* computational = _data->_computationalVariable;
  return computational != nullptr && SyntaxParserUtility::ExactWordMatch(computational->GetNameToken(), name);
}

bool SubTableCube::CatVarWithStatExists(const std::string& name, int code) const {
  return CatVarNameIsComputational(name) && _data->_computationalVariable->HasThisStat(code, -1.0);
}

bool SubTableCube::ScaleVarWithStatExists(const std::string& name, int code, double cutPoint) const {
  const std::vector<SyntaxVariableName*> scales = GetScaleVariables(name);
  return std::any_of(scales.begin(), scales.end(),
                     [&](const SyntaxVariableName* var) { return var->HasThisStat(code, cutPoint); });
}

void SubTableCube::SetDefaultStats() {
  Data& data = *_data;
  if (!data._scaleVars.empty() || data._computationalVariable != nullptr || data._catVars.empty()) {
    return;
  }
  const std::vector<SyntaxVariableName*>& vars = data._catVars;
  const size_t count = vars.size();
  if (count == 1) {
    data._computationalVariable = vars[0];
  }
  // The statistics go on the innermost variable of the first axis that has another axis
  // after it, or on the very last variable when the first axis runs to the end or is
  // followed only by the last variable's axis.
  const int axis0 = vars[0]->GetAxis();
  for (size_t i = 1; i < count && data._computationalVariable == nullptr; ++i) {
    if (vars[i]->GetAxis() != axis0) {
      data._computationalVariable = vars[i - 1];
    }
    if (i == count - 1) {
      data._computationalVariable = vars[i];
    }
  }
  data._computationalVariable->SetDefaultStats();
}

bool SubTableCube::HasMRSetInner() const {
  const std::vector<SyntaxVariableName*>& vars = _data->_catVars;
  if (vars.size() < 2) {
    return false;
  }
  bool found = false;
  for (size_t i = 1; i < vars.size(); ++i) {
    if (vars[i]->GetAxis() != vars[i - 1]->GetAxis() && IsSet(vars[i - 1])) {
      found = true;
    }
  }
  const SyntaxVariableName* last = vars.back();
  if (last->GetAxis() == 2) {
    return found;
  }
  return IsSet(last) || found;
}

bool SubTableCube::MarkInnermostMRSets(bool includeRows, bool forPairs) {
  Data& data = *_data;
  const std::vector<SyntaxVariableName*>& vars = data._catVars;
  bool marked = false;
  if (vars.size() >= 2) {
    for (size_t i = 1; i < vars.size(); ++i) {
      SyntaxVariableName* prev = vars[i - 1];
      if (vars[i]->GetAxis() == prev->GetAxis() || !IsSet(prev)) {
        continue;
      }
      const int axis = prev->GetAxis();
      if (axis == 1) {
        marked = true;
        data.MarkColumnSet(prev, forPairs);
      } else if (axis == 0 && includeRows) {
        marked = true;
        static_cast<SyntaxMRVariableSet*>(prev)->SetInnermost(true);
        data._innerRowMRforTest = prev;
      }
    }
    SyntaxVariableName* last = vars.back();
    if (last->GetAxis() == 1 && IsSet(last)) {
      marked = true;
      data.MarkColumnSet(last, forPairs);
    }
  } else if (vars.size() == 1 && forPairs && vars[0]->GetAxis() == 1 && IsSet(vars[0])) {
    marked = true;
    data.MarkColumnSet(vars[0], forPairs);
  }
  return marked;
}

TestEligibility SubTableCube::CheckCountTestLayout(bool includeMR, bool distinctRowAndColumn) const {
  const Data& data = *_data;
  if (!data._scaleVars.empty()) {
    return TestEligibility::kScaleVariable;
  }
  if (!includeMR && HasMRSetInner()) {
    return TestEligibility::kInnerSetExcluded;
  }
  const SyntaxVariableName* row = LastLeafOnAxis(data._catVars, 0);
  if (row == nullptr) {
    return TestEligibility::kNoRowVariable;
  }
  const SyntaxVariableName* column = LastLeafOnAxis(data._catVars, 1);
  if (column == nullptr) {
    return TestEligibility::kNoColumnVariable;
  }
  if (distinctRowAndColumn && SyntaxParserUtility::ExactWordMatch(row->GetNameToken(), column->GetNameToken())) {
    return TestEligibility::kSameRowAndColumn;
  }
  return TestEligibility::kEligible;
}

// A percentage of any base counts as its count: statistics are judged by their primary code.
TestEligibility SubTableCube::GetChiSquareValidity(bool weighted, bool includeMR) {
  using Codes = TableEncryptionCodes;
  const CountKinds kinds =
      ReadCountKinds(_data->_computationalVariable, /*primary=*/true,
                     {Codes::kStatCount, Codes::kStatRowPctCount, Codes::kStatColPctCount},
                     {Codes::kStatUCount, Codes::kStatURowPctCount, Codes::kStatUColPctCount});
  const TestEligibility layout = CheckCountTestLayout(includeMR, /*distinctRowAndColumn=*/true);
  return JudgeCounts(*this, layout, kinds, weighted, includeMR, /*forPairs=*/false);
}

// Only counts and column percentages show the proportions the test compares.
TestEligibility SubTableCube::GetColPropValidity(bool weighted, bool includeMR) {
  using Codes = TableEncryptionCodes;
  const CountKinds kinds =
      ReadCountKinds(_data->_computationalVariable, /*primary=*/false, {Codes::kStatCount, Codes::kStatColPctCount},
                     {Codes::kStatUCount, Codes::kStatUColPctCount});
  const TestEligibility layout = CheckCountTestLayout(includeMR, /*distinctRowAndColumn=*/false);
  return JudgeCounts(*this, layout, kinds, weighted, includeMR, /*forPairs=*/true);
}

TestEligibility SubTableCube::GetMeanPropValidity(bool weighted, bool& needWeighted, bool& needUnweighted,
                                                  bool& mixed, bool includeMR) {
  const Data& data = *_data;
  if (data._scaleVars.empty()) {
    return TestEligibility::kNoScaleVariable;
  }
  if (!includeMR && HasMRSetInner()) {
    return TestEligibility::kInnerSetExcluded;
  }
  const bool hasColumn = std::any_of(data._catVars.begin(), data._catVars.end(), [](const SyntaxVariableName* var) {
    return var->GetIsLeafNode() && var->GetAxis() == 1;
  });
  if (!hasColumn) {
    return TestEligibility::kNoColumnVariable;
  }
  int lackingWeighted = 0;    // scale variables of a weighted table without MEAN
  int lackingUnweighted = 0;  // scale variables of an unweighted table without any mean
  for (const SyntaxVariableName* scale : data._scaleVars) {
    // The means are compared across columns, so the summarized variable must stand in the rows.
    if (scale->GetAxis() != 0) {
      return TestEligibility::kScaleOutsideRows;
    }
    bool hasMean = false;
    bool hasUMean = false;
    for (const Statistics* statistic : scale->GetStatistics()) {
      hasMean = hasMean || statistic->GetStatType() == TableEncryptionCodes::kStatMean;
      hasUMean = hasUMean || statistic->GetStatType() == TableEncryptionCodes::kStatUMean;
    }
    if (weighted && !hasMean) {
      needWeighted = true;
      ++lackingWeighted;
    } else if (!weighted && !hasUMean && !hasMean) {
      needUnweighted = true;
      ++lackingUnweighted;
    } else if (weighted && hasMean && hasUMean) {
      mixed = true;
    }
  }
  if (lackingWeighted + lackingUnweighted == GetStatVarCount()) {
    return TestEligibility::kNoMean;
  }
  if (includeMR) {
    MarkInnermostMRSets(/*includeRows=*/false, /*forPairs=*/true);
  }
  return TestEligibility::kEligible;
}

namespace {

std::string NameOrNone(const SyntaxVariableName* var) {
  return var == nullptr ? "none" : var->GetNameToken();
}

}  // namespace

void SubTableCube::Print(std::ostream& out, int indent) const {
  const Data& data = *_data;
  const std::string pad(static_cast<size_t>(indent), ' ');
  static const char* const kTypeNames[] = {"scale", "categorical", "removable", "mrset", "none"};
  out << pad << "stattype=" << kTypeNames[GetCubeStatType()]
      << " computational=" << NameOrNone(data._computationalVariable)
      << " innerRowMR=" << NameOrNone(data._innerRowMRforTest)
      << " innerColMR=" << NameOrNone(data._innerColMRforTest) << " extraDim=" << data._needExtraDim
      << " totals=" << GetHasTotals() << "\n";
  for (const SyntaxVariableName* var : data._catVars) {
    out << pad << "  cat " << var->GetNameToken() << " axis=" << var->GetAxis() << " leaf=" << var->GetIsLeafNode()
        << "\n";
  }
  for (const SyntaxVariableName* var : data._scaleVars) {
    out << pad << "  scale " << var->GetNameToken() << " axis=" << var->GetAxis() << "\n";
  }
}
