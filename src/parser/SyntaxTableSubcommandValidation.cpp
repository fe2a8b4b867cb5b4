// SyntaxTableSubcommandValidation.cpp - the table's final checks: label-moving CLABELS requests and which tests can run
#include <algorithm>
#include <string>
#include <vector>

#include "host/data/VariableSet.h"
#include "host/engine/AggregationCube.h"
#include "host/engine/ParsedCategory.h"
#include "parser/SigTestSettings.h"
#include "parser/SubTableCube.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxMRVariableSet.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxVariableName.h"
#include "parser/TableSettings.h"
#include "parser/VLPair.h"

namespace {

using SignificanceTestType = TableEncryptionCodes::SignificanceTestType;

// The reasons a cube gave for not taking part in a test, each reported once per table.
struct TestReasons {
  int eligible = 0;            // cubes the test can run on
  bool sameVariable = false;   // row and column are one variable
  bool weight = false;         // a weighted table without weighted counts or means
  bool unweight = false;       // an unweighted table without any counts or means
  bool mixed = false;          // weighted and unweighted statistics side by side
  bool scaleInColumn = false;  // a summarized variable outside the rows
  bool setsExcluded = false;   // a multiple response set to test, left out by INCLUDEMRSETS=NO
};

// Counts one cube's answer into the reasons a test reports; answers without a reason of
// their own (no row variable, say) leave the cube untested and say nothing.
void Tally(TestEligibility eligibility, TestReasons& reasons) {
  switch (eligibility) {
    case TestEligibility::kEligible:
      ++reasons.eligible;
      break;
    case TestEligibility::kEligibleMixedCounts:
      ++reasons.eligible;
      reasons.mixed = true;
      break;
    case TestEligibility::kSameRowAndColumn:
      reasons.sameVariable = true;
      break;
    case TestEligibility::kNoCount:
      reasons.unweight = true;
      break;
    case TestEligibility::kNoWeightedCount:
      reasons.weight = true;
      break;
    case TestEligibility::kInnerSetExcluded:
      reasons.setsExcluded = true;
      break;
    case TestEligibility::kScaleOutsideRows:
      reasons.scaleInColumn = true;
      break;
    default:
      break;
  }
}

// Whether `source` has the categories of `reference` (the first source) and shows them the
// same way; an explicit list must equal that of `previous`, the source before it.
bool CategoriesAgree(const SyntaxVariableName& source, const SyntaxVariableName& reference,
                     const SyntaxVariableName& previous) {
  if (source.GetIsExplicit() != reference.GetIsExplicit() || source.GetIsTotalNo() != reference.GetIsTotalNo() ||
      source.GetIsEmptyInclude() != reference.GetIsEmptyInclude() || source.GetSortKey() != reference.GetSortKey() ||
      source.GetIsMissingExclude() != reference.GetIsMissingExclude() ||
      source.GetIsOrderA() != reference.GetIsOrderA()) {
    return false;
  }
  if (!reference.GetIsTotalNo() && (source.GetIsTotalPositionAfter() != reference.GetIsTotalPositionAfter() ||
                                    source.GetTotalLabel() != reference.GetTotalLabel())) {
    return false;
  }
  if (!source.GetIsExplicit()) {
    return true;
  }
  const std::vector<ParsedCategory*>& mine = source.GetParsedCategories();
  const std::vector<ParsedCategory*>& theirs = previous.GetParsedCategories();
  return mine.size() == theirs.size() &&
         std::equal(mine.begin(), mine.end(), theirs.begin(),
                    [](const ParsedCategory* left, const ParsedCategory* right) { return *left == *right; });
}

}  // namespace

bool SyntaxTableSubcommand::ValidateComperimeterRequest() {
  const TableEncryptionCodes::CLabelOption option = GetTableSettings().GetCLabelOption();
  if (option == TableEncryptionCodes::kCLabelAuto) {
    return true;
  }
  // ROWLABELS moves the row categories, COLLABELS the column ones.
  const int sourceAxis =
      option == TableEncryptionCodes::kCLabelRowOpposite || option == TableEncryptionCodes::kCLabelRowLayer ? 0 : 1;
  bool scaleFound = false;
  bool sortFound = false;
  std::string lastName;
  std::vector<SyntaxVariableName*> sources;
  size_t dichotomies = 0;  // dichotomy sets among the sources
  for (SyntaxVariableName* variable : GetTableVarList()) {
    lastName = variable->GetNameToken();
    if (variable->GetIsLeafNode() && variable->GetAxis() == sourceAxis) {
      if (variable->GetVariableType() == TableEncryptionCodes::kVariableScale) {
        scaleFound = true;
      } else {
        sources.push_back(variable);
        if (variable->GetType() == kConverterMRSet) {
          auto* set = static_cast<SyntaxMRVariableSet*>(variable);
          if (set->GetMRSetType() == VariableSet::kMR_Dichotomy) {
            ++dichotomies;
            // A dichotomy set's categories are its members unless CATEGORIES ordered or
            // listed them; the comparison below needs them as a list.
            if (!set->GetOrderSet() && !set->GetIsExplicit()) {
              set->SetCategoriesList();
            }
          }
        }
      }
    }
    // The moved labels are laid out once for all cells, before any data: an order that
    // depends on the data could differ between the sub-tables sharing them.
    if (variable->GetSortKey() == TableEncryptionCodes::kSortKeyStatistic) {
      sortFound = true;
    }
    if (scaleFound || sortFound) {
      break;
    }
  }
  if (scaleFound) {
    SyntaxParserUtility::ScaleInComperimeterDim(this, lastName);
  }
  if (sortFound) {
    SyntaxParserUtility::DataSortingInComperimeter(this, lastName);
  }
  if (sources.empty()) {
    SyntaxParserUtility::MissingSourceDimInComperimeter(this);
  }
  // The categories of a dichotomy set are its members, those of other variables their
  // values: the two kinds cannot share one set of labels.
  if (dichotomies != 0 && dichotomies != sources.size()) {
    SyntaxParserUtility::DissimilarValueLabelPairInComperimeter(this);
  }
  // The moved labels stand for the categories of every source variable at once, so the
  // variables must agree on what their categories are and how they are shown.
  const SyntaxVariableName* reference = sources.front();
  std::vector<VLPair> merged;
  if (!reference->GetIsExplicit()) {
    const VLPair* pairs = reference->GetValueLabelList();
    merged.assign(pairs, pairs + reference->GetVLPairCount());
  }
  for (size_t index = 1; index < sources.size(); ++index) {
    const SyntaxVariableName* source = sources[index];
    if (!CategoriesAgree(*source, *reference, *sources[index - 1])) {
      SyntaxParserUtility::DissimilarCatAttribsInComperimeter(this);
    }
    if (source->GetIsExplicit()) {
      continue;
    }
    // One value must carry one label across all source variables; new values join the list.
    const VLPair* pairs = source->GetValueLabelList();
    for (int pairIndex = 0; pairIndex < source->GetVLPairCount(); ++pairIndex) {
      const VLPair& pair = pairs[pairIndex];
      bool known = false;
      for (const VLPair& entry : merged) {
        const int comparison = pair.VLPairCompare(entry);
        if (comparison == -1) {
          SyntaxParserUtility::DissimilarValueLabelPairInComperimeter(this);
        }
        known = known || comparison == 0;
      }
      if (!known) {
        merged.push_back(pair);
      }
    }
  }
  return true;
}

void SyntaxTableSubcommand::ValidateCubeSizes() {
  const VariableComposite& composite = *this;
  for (int index = 0; index < composite.CubeCount(); ++index) {
    const SubTableCube& cube = *composite[index];
    // As the dispatcher declares it: the categorical variables, and a multiple-response
    // column set once more when a test must tell its columns apart.
    const int positions =
        cube.GetCatVarCount() + (cube.NeedExtraDim() && cube.GetInnerColMRforTest() ? 1 : 0);
    if (positions > AggregationCube::kMaxVariables) {
      SyntaxParserUtility::TooManyCubeVariables(GetTableNumber(), positions, AggregationCube::kMaxVariables);
    }
  }
}

void SyntaxTableSubcommand::ValidateStatisticalTests() {
  std::vector<SigTestSettings>& tests = GetTableSettings().GetSigTestSettings();
  for (auto at = tests.begin(); at != tests.end();) {
    at = ValidateTest(at->_type, at->_includeMRSets) ? at + 1 : tests.erase(at);
  }
}

namespace {

// The steps every test shares before its cubes are asked: a table whose labels move has no
// column structure left to test.
bool RefusedForMovedLabels(SyntaxTableSubcommand& table, SignificanceTestType type) {
  if (table.GetTableSettings().GetCLabelOption() == TableEncryptionCodes::kCLabelAuto) {
    return false;
  }
  SyntaxParserUtility::SigTestInComperimeterTable(table.GetTitle(), type);
  return true;
}

// Reports the reasons in the order the messages should read, then whether any cube is left.
bool ReportReasons(const TestReasons& reasons, const std::string& title, SignificanceTestType type) {
  if (reasons.sameVariable) {
    SyntaxParserUtility::SigTestRowColVarSame(title, type);
  }
  if (reasons.scaleInColumn) {
    SyntaxParserUtility::SigTestScaleVarInCol(title, type);
  }
  if (reasons.weight) {
    SyntaxParserUtility::SigTestWeightWarning(title, type);
  }
  if (reasons.unweight) {
    SyntaxParserUtility::SigTestUnWeightWarning(title, type);
  }
  if (reasons.mixed) {
    SyntaxParserUtility::SigTestMixedStatWarning(title, type);
  }
  if (reasons.eligible == 0) {
    // Sets that INCLUDEMRSETS=NO leaves out are the reason the reader can act on.
    if (reasons.setsExcluded) {
      SyntaxParserUtility::SigTestOnlyExcludedSets(title, type);
    } else {
      SyntaxParserUtility::SigTestNoCubeWarning(title, type);
    }
    return false;
  }
  return true;
}

}  // namespace

namespace {

// What one cube allows the test of `type`; the means test also notes which means it missed.
TestEligibility JudgeCube(SubTableCube& cube, SignificanceTestType type, bool weighted, bool includeMRSets,
                          TestReasons& reasons) {
  switch (type) {
    case TableEncryptionCodes::kSigTestChiSquare:
      return cube.GetChiSquareValidity(weighted, includeMRSets);
    case TableEncryptionCodes::kSigTestProportions:
      return cube.GetColPropValidity(weighted, includeMRSets);
    default:
      return cube.GetMeanPropValidity(weighted, reasons.weight, reasons.unweight, reasons.mixed, includeMRSets);
  }
}

}  // namespace

bool SyntaxTableSubcommand::ValidateTest(SignificanceTestType type, bool includeMRSets) {
  const bool known = type == TableEncryptionCodes::kSigTestChiSquare ||
                     type == TableEncryptionCodes::kSigTestProportions || type == TableEncryptionCodes::kSigTestMeans;
  if (!known) {
    return true;
  }
  if (RefusedForMovedLabels(*this, type)) {
    return false;
  }
  const bool weighted = IsDataWeighted();
  TestReasons reasons;
  for (int position = 0; position < CubeCount(); ++position) {
    Tally(JudgeCube(*(*this)[position], type, weighted, includeMRSets, reasons), reasons);
  }
  return ReportReasons(reasons, GetTitle(), type);
}
