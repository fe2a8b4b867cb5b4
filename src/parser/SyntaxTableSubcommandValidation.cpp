// SyntaxTableSubcommandValidation.cpp - the table's final checks: label-moving CLABELS requests and which tests can run
#include <string>
#include <vector>

#include "parser/SigTestSettings.h"
#include "parser/SubTableCube.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxVariableName.h"
#include "parser/TableSettings.h"

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
};

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
  std::string lastName;
  std::vector<SyntaxVariableName*> sources;
  for (SyntaxVariableName* variable : GetTableVarList()) {
    lastName = variable->GetNameToken();
    if (variable->GetIsLeafNode() && variable->GetAxis() == sourceAxis) {
      if (variable->GetVariableType() == TableEncryptionCodes::kVariableScale) {
        scaleFound = true;
      } else {
        sources.push_back(variable);
      }
    }
    // TODO(#5): a sort by a statistic anywhere in the table (DataSortingInComperimeter), the
    // dichotomy count and the category lists of sets, once variables carry their CATEGORIES
    // options.
    if (scaleFound) {
      break;
    }
  }
  if (scaleFound) {
    SyntaxParserUtility::ScaleInComperimeterDim(this, lastName);
  }
  if (sources.empty()) {
    SyntaxParserUtility::MissingSourceDimInComperimeter(this);
  }
  // The moved labels stand for the categories of every source variable at once, so the
  // variables must agree on what their categories are.
  const SyntaxVariableName* reference = sources.front();
  for (size_t index = 1; index < sources.size(); ++index) {
    if (sources[index]->GetIsTotalNo() != reference->GetIsTotalNo()) {
      SyntaxParserUtility::DissimilarCatAttribsInComperimeter(this);
    }
  }
  return true;
}

void SyntaxTableSubcommand::ValidateStatisticalTests() {
  std::vector<SigTestSettings>& tests = GetTableSettings().GetSigTestSettings();
  for (auto at = tests.begin(); at != tests.end();) {
    bool runs = true;
    switch (at->_type) {
      case TableEncryptionCodes::kSigTestChiSquare:
        runs = ValidateChiSquareTest(at->_includeMRSets);
        break;
      case TableEncryptionCodes::kSigTestProportions:
        runs = ValidateColPropTest(at->_includeMRSets);
        break;
      case TableEncryptionCodes::kSigTestMeans:
        runs = ValidateMeanPropTest(at->_includeMRSets);
        break;
      default:
        break;
    }
    at = runs ? at + 1 : tests.erase(at);
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
    SyntaxParserUtility::SigTestNoCubeWarning(title, type);
    return false;
  }
  return true;
}

}  // namespace

bool SyntaxTableSubcommand::ValidateChiSquareTest(bool includeMRSets) {
  const SignificanceTestType type = TableEncryptionCodes::kSigTestChiSquare;
  if (RefusedForMovedLabels(*this, type)) {
    return false;
  }
  const bool weighted = IsDataWeighted();
  TestReasons reasons;
  for (int position = 0; position < CubeCount(); ++position) {
    switch ((*this)[position]->GetChiSquareValidity(weighted, includeMRSets)) {
      case 0:
        ++reasons.eligible;
        break;
      case 1:
        ++reasons.eligible;
        reasons.mixed = true;
        break;
      case 6:
        reasons.sameVariable = true;
        break;
      case 7:
        reasons.unweight = true;
        break;
      case 8:
        reasons.weight = true;
        break;
      default:
        break;  // the cube is just not tested
    }
  }
  return ReportReasons(reasons, GetTitle(), type);
}

bool SyntaxTableSubcommand::ValidateColPropTest(bool includeMRSets) {
  const SignificanceTestType type = TableEncryptionCodes::kSigTestProportions;
  if (RefusedForMovedLabels(*this, type)) {
    return false;
  }
  const bool weighted = IsDataWeighted();
  TestReasons reasons;
  for (int position = 0; position < CubeCount(); ++position) {
    switch ((*this)[position]->GetColPropValidity(weighted, includeMRSets)) {
      case 0:
        ++reasons.eligible;
        break;
      case 1:
        ++reasons.eligible;
        reasons.mixed = true;
        break;
      case 6:
        reasons.unweight = true;
        break;
      case 7:
        reasons.weight = true;
        break;
      default:
        break;
    }
  }
  return ReportReasons(reasons, GetTitle(), type);
}

bool SyntaxTableSubcommand::ValidateMeanPropTest(bool includeMRSets) {
  const SignificanceTestType type = TableEncryptionCodes::kSigTestMeans;
  if (RefusedForMovedLabels(*this, type)) {
    return false;
  }
  const bool weighted = IsDataWeighted();
  TestReasons reasons;
  for (int position = 0; position < CubeCount(); ++position) {
    switch ((*this)[position]->GetMeanPropValidity(weighted, reasons.weight, reasons.unweight, reasons.mixed,
                                                   includeMRSets)) {
      case 0:
        ++reasons.eligible;
        break;
      case 4:
        reasons.scaleInColumn = true;
        break;
      default:
        break;
    }
  }
  return ReportReasons(reasons, GetTitle(), type);
}
