// TableDeliveryCellText.cpp - what one cell says: value, format, decoration, empty and missing texts
#include <cmath>

#include "host/QuiltAssert.h"
#include "host/data/ProcedureDataSource.h"
#include "host/data/TARN_Format.h"
#include "host/data/TARN_Variable.h"
#include "host/engine/AggregationResult.h"
#include "host/engine/AggregationStatistic.h"
#include "host/engine/CellStatistics.h"
#include "host/engine/TableEncryptionCodes.h"
#include "host/output/BpAnnotation.h"
#include "host/output/BpCategory.h"
#include "host/output/BpComposite.h"
#include "host/output/BpFormatSpec.h"
#include "host/output/BpGroup.h"
#include "host/output/BpNumber.h"
#include "host/output/BpProcedure.h"
#include "host/output/BpString.h"
#include "host/output/MessageKeys.h"
#include "parser/Statistics.h"
#include "parser/SyntaxCategoriesSubcommand.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxMRVariableSet.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxVariableName.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablebuilder/StatTreeNode.h"
#include "tablerenderer/BPTreeNode.h"
#include "tablerenderer/TableAxis.h"
#include "tablerenderer/TableDeliveryData.h"

namespace {

using Codes = TableEncryptionCodes;

const StatTreeNode& AsStatistic(const HeaderTreeNode* node) {
  QUILT_ASSERT(node->GetType() == HeaderTreeNode::kHNodeTypeStatistic, "a statistic node is a StatTreeNode");
  return *static_cast<const StatTreeNode*>(node);
}

bool IsPercentileCode(int code) {
  int prime = 0;
  int conf = 0;
  if (!AggregationStatistic::GetStatPrimeAndConf(code, prime, conf)) return false;
  return prime == Codes::kStatPtile || prime == Codes::kStatUPtile;
}

/// The dictionary variable whose print format gives a statistic's decimals: the variable
/// itself, or a set's first member.
int FormatVariableIndex(const SyntaxVariableName* statVar) {
  if (statVar == nullptr) return -1;
  int index = statVar->GetIndex();
  if (index < 0 && statVar->GetType() == kConverterMRSet) {
    const std::vector<int> members = static_cast<const SyntaxMRVariableSet*>(statVar)->GetIndexList();
    QUILT_ASSERT(!members.empty() && members.front() >= 0, "a multiple-response set has dictionary members");
    index = members.front();
  }
  return index;
}

}  // namespace

const std::vector<HeaderTreeNode*>& TableDelivery::Data::HiddenStatistics(BPTreeNode* leaf) const {
  HeaderTreeNode* tree = _statAxis != nullptr ? _statAxis->GetHeaderTree() : nullptr;
  if (tree != nullptr) return tree->GetChildren();
  return leaf->GetHeaderTreeNode()->GetChildren();
}

std::unique_ptr<BpCellText> TableDelivery::Data::MakeStatisticLabel(const HeaderTreeNode* node) {
  const StatTreeNode& statistic = AsStatistic(node);
  if (!statistic.HasLabelParameter()) {
    return std::make_unique<BpString>(statistic.GetLabel(), statistic.IsLabelDefault());
  }
  auto composite = std::make_unique<BpComposite>(statistic.GetLabel(), statistic.IsLabelDefault());
  composite->Add(BpNumber(statistic.GetCILevelValue(), BpProcedure::Percent()));
  composite->Finish();
  return composite;
}

int TableDelivery::Data::GetStatisticIndex(bool useTotal, const CellStatistics* cellStats,
                                           const CellStatistics* totalStats, SyntaxVariableName* statVar,
                                           int statType, double ptile) const {
  if (useTotal) {
    if (totalStats == nullptr) return -1;
    AggregationStatistic statistic(statType);
    statistic.SetPTileCutPoint(ptile);
    return totalStats->GetIndex(statistic, true);
  }
  if (cellStats == nullptr) return -1;
  if (statVar != nullptr && statVar->GetVariableType() == Codes::kVariableScale) {
    AggregationStatistic statistic(statVar->GetIndex(), statType);
    statistic.SetPTileCutPoint(ptile);
    return cellStats->GetIndex(statistic, false);
  }
  return cellStats->GetIndex(AggregationStatistic(statType), true);
}

bool TableDelivery::Data::ProcessStatValues(const StatValues& values, const CellStatistics* cellStats,
                                            const CellStatistics* totalStats, SyntaxVariableName* statVar,
                                            int statType, double ptile, int statFormat, BPTreeNode* leaf) {
  if (_statsVisible) {
    std::unique_ptr<BpCellText> leafText = leaf->CreateCellText(_dataSource);
    const int index = GetStatisticIndex(values.IsTotalStats(), cellStats, totalStats, statVar, statType, ptile);
    if (index < 0) return false;
    WriteStatDataInCell(statVar, values.IsTotalStats(), statType, ptile, statFormat, leaf->GetParentGroup(),
                        *leafText, values.GetStatValue(index));
    return true;
  }
  return ForEachHiddenStatistic(leaf, [&](const StatTreeNode& statistic, BpGroup& dimension, const BpCellText& label) {
    const int type = statistic.GetStatType();
    const double cutPoint = statistic.GetPtileValue();
    const int index = GetStatisticIndex(values.IsTotalStats(), cellStats, totalStats, statVar, type, cutPoint);
    if (index < 0) return false;
    WriteStatDataInCell(statVar, values.IsTotalStats(), type, cutPoint, statistic.GetStatFormatCode(), dimension,
                        label, values.GetStatValue(index));
    return true;
  });
}

bool TableDelivery::Data::ProcessEmptyCell(bool isTotal, const CellStatistics* cellStats,
                                           const CellStatistics* totalStats, SyntaxVariableName* statVar,
                                           int statType, double ptile, int statFormat, BPTreeNode* leaf) {
  if (_statsVisible) {
    std::unique_ptr<BpCellText> leafText = leaf->CreateCellText(_dataSource);
    WriteDataInCell(statVar, isTotal, statType, ptile, statFormat, leaf->GetParentGroup(), *leafText);
    return true;
  }
  return ForEachHiddenStatistic(leaf, [&](const StatTreeNode& statistic, BpGroup& dimension, const BpCellText& label) {
    const int type = statistic.GetStatType();
    const double cutPoint = statistic.GetPtileValue();
    // A statistic the cube does not hold for this kind of cell gets no cell at all.
    if (GetStatisticIndex(isTotal, cellStats, totalStats, statVar, type, cutPoint) < 0) return false;
    WriteDataInCell(statVar, isTotal, type, cutPoint, statistic.GetStatFormatCode(), dimension, label);
    return true;
  });
}

bool TableDelivery::Data::ForEachHiddenStatistic(
    BPTreeNode* leaf,
    const std::function<bool(const StatTreeNode& statistic, BpGroup& dimension, const BpCellText& label)>& write) {
  // One cell per statistic of the "Statistics" dimension; the leaf stays selected.
  std::unique_ptr<BpCellText> leafText = leaf->CreateCellText(_dataSource);
  leaf->GetParentGroup().Category(*leafText);
  BpGroup& dimension = _statAxis->GetBpDimension();
  bool written = false;
  for (const HeaderTreeNode* node : HiddenStatistics(leaf)) {
    std::unique_ptr<BpCellText> label = MakeStatisticLabel(node);
    written = write(AsStatistic(node), dimension, *label) || written;
  }
  return written;
}

void TableDelivery::Data::WriteStatDataInCell(SyntaxVariableName* statVar, bool useTotal, int statType, double ptile,
                                              int statFormat, BpGroup& group, const BpCellText& label,
                                              const AggregationResult& result) {
  DisplayFormat display = PresentationCodes::kDisplayPlain;
  const TARN_Format* format = GetCustomFormat(statVar, useTotal, display, statType, ptile);
  WriteFormattedCell(statVar, statFormat, group, label, result, format, display);
}

void TableDelivery::Data::WriteFormattedCell(SyntaxVariableName* statVar, int statFormat, BpGroup& group,
                                             const BpCellText& label, const AggregationResult& result,
                                             const TARN_Format* format, DisplayFormat display) {
  const int vIndex = FormatVariableIndex(statVar);
  int decimals = 0;
  if (vIndex >= 0 && _dataSource != nullptr && _dataSource->GetVariable(vIndex) != nullptr) {
    FormatType type = kFormatF;
    int width = 0;
    _dataSource->GetVariable(vIndex)->GetFormatEx(type, width, decimals);
  }
  RenderCell(group, label, result, statFormat, format, display, vIndex, decimals);
}

const Statistics* TableDelivery::Data::FindTableStatistic(SyntaxVariableName* statVar, bool useTotal, int statType,
                                                          double ptile) const {
  if (statVar == nullptr) return nullptr;
  const std::vector<Statistics*>& statistics =
      useTotal && statVar->GetHasTotalStats() ? statVar->GetTotalStats() : statVar->GetStatistics();
  for (const Statistics* statistic : statistics) {
    if (statistic->GetStatType() != statType) continue;
    if (IsPercentileCode(statType) && statistic->GetCutPoint() != ptile) continue;
    return statistic;
  }
  return nullptr;
}

const TARN_Format* TableDelivery::Data::GetCustomFormat(SyntaxVariableName* statVar, bool useTotal,
                                                        DisplayFormat& display, int statType, double ptile) const {
  const Statistics* statistic = FindTableStatistic(statVar, useTotal, statType, ptile);
  if (statistic == nullptr) return nullptr;
  display = statistic->GetStatDisplayFormat();
  return statistic->GetFormat();
}

bool TableDelivery::Data::IfUseEmptyString(int statType) const {
  Statistics::StatisticsGroup group{};
  std::string label;
  std::string keyword;
  int prime = 0;
  int conf = 0;
  if (SyntaxParserUtility::GetStatisticsDetail(statType, group, label, keyword, prime, conf) &&
      (conf == Codes::kConfLcl || conf == Codes::kConfUcl || conf == Codes::kConfSe)) {
    return false;
  }
  switch (statType) {
    case 178: case 179: case 182: case 183: case 186: case 187: case 191: case 197:  // NOLINT
    case 200: case 201: case 202: case 203: case 204: case 205: case 209:           // NOLINT
    case 231: case 232: case 468: case 472:                                         // NOLINT
      return false;  // values of the variable: an empty cell has none, so it is missing
    default:
      return true;  // counts and percentages: an empty cell counts nothing
  }
}

bool TableDelivery::Data::IsEmptyIncluded(SyntaxVariableName* statVar) const {
  if (statVar == nullptr || _subcommand == nullptr) return false;
  const std::string name = statVar->GetNameToken();
  for (SyntaxConverter* child : _subcommand->Children()) {
    if (child->GetType() != kConverterCategories) continue;
    const auto* categories = dynamic_cast<const SyntaxCategoriesSubcommand*>(child);
    if (categories == nullptr) continue;
    for (const std::string& listed : categories->GetVariableList()) {
      if (SyntaxParserUtility::ExactWordMatch(listed, name)) return categories->IsEmptyIncluded();
    }
  }
  return false;
}

void TableDelivery::Data::WriteDataInCell(SyntaxVariableName* statVar, bool useTotal, int statType, double ptile,
                                          int statFormat, BpGroup& group, const BpCellText& label) {
  if (!IfUseEmptyString(statType)) {
    BpCategory category = group.Category(label);
    if (_useMissingString) {
      category.Cell(BpString(_missingString, false));
    } else {
      category.Cell(BpNumber(_sysmis, BpProcedure::Count()));
    }
    return;
  }
  switch (_emptyStringType) {
    case PresentationCodes::kEmptyFormatBlank:
      group.Category(label).Cell(BpString(" ", false));
      return;
    case PresentationCodes::kEmptyFormatZero: {
      DisplayFormat display = PresentationCodes::kDisplayPlain;
      const TARN_Format* format = GetCustomFormat(statVar, useTotal, display, statType, ptile);
      RenderCell(group, label, AggregationResult(0.0), statFormat, format, display, FormatVariableIndex(statVar), 0);
      return;
    }
    case PresentationCodes::kString:
      // An empty user text leaves the cell without text, unless the variable asks for its
      // empty categories: then the cell exists and shows the (empty) text.
      if (_emptyString.empty() && !IsEmptyIncluded(statVar)) return;
      group.Category(label).Cell(BpString(_emptyString, false));
      return;
    default:
      return;
  }
}

void TableDelivery::Data::RenderCell(BpGroup& group, const BpCellText& label, const AggregationResult& result,
                                     int statFormat, const TARN_Format* format, DisplayFormat display, int vIndex,
                                     int decimals) {
  BpCategory category = group.Category(label);
  double value1 = result.GetValue1();
  double value2 = result.GetValue2();
  const SmallCount smallCount = ClassifySmallCount(statFormat, value1, value2);
  const bool hidden = smallCount == SmallCount::kMissing;
  if ((_useMissingString && (value1 == _sysmis || hidden)) || value1 == _infinity) {
    // Positive infinity marks a value that cannot be shown; it takes the missing text
    // whether or not the user set one.
    if (!_missingString.empty()) category.Cell(BpString(_missingString, false));
    return;
  }

  if (format == nullptr) {
    TARN_Format family;
    bool takesDecimals = vIndex >= 0;
    switch (statFormat) {
      case StatTreeNode::kStatFormatCount:
        family = BpProcedure::Count().GetFormat();
        takesDecimals = false;
        break;
      case StatTreeNode::kStatFormatPercent:
        family = BpProcedure::Percent().GetFormat();
        takesDecimals = false;
        break;
      case StatTreeNode::kStatFormatMean:
        family = _procedure->Mean(vIndex).GetFormat();
        break;
      case StatTreeNode::kStatFormatVariable:
        family = _procedure->Variable(vIndex).GetFormat();
        break;
      case StatTreeNode::kStatFormatStdDev:
        family = _procedure->StdDev(vIndex).GetFormat();
        break;
      case StatTreeNode::kStatFormatSum:
        family = _procedure->Sum(vIndex, value1).GetFormat();
        break;
      case StatTreeNode::kStatFormatDifference:
        family = _procedure->Difference(vIndex).GetFormat();
        break;
      case StatTreeNode::kStatFormatSignificance:
        family = BpProcedure::Significance().GetFormat();
        takesDecimals = false;
        break;
      default:
        family = BpProcedure::GeneralStat().GetFormat();
        takesDecimals = false;
        break;
    }
    if (takesDecimals) family.Decimals(static_cast<unsigned char>(decimals));
    if (_blankNextCell) {
      category.Cell(BpString("  ", false));
      _blankNextCell = false;
      return;
    }
    RenderNumericCell(category, statFormat, &family, value1, value2);
    return;
  }

  if (display == PresentationCodes::kDisplayPlain || (display == PresentationCodes::kDisplayNegParen && value1 >= 0)) {
    if (_blankNextCell) {
      category.Cell(BpString("  ", false));
      _blankNextCell = false;
      return;
    }
    RenderNumericCell(category, statFormat, format, value1, value2);
    return;
  }

  // A decorated number.
  const BpFormatSpec numberFormat(*format);
  if (display == PresentationCodes::kDisplayNegParen && value1 != _sysmis) {
    value1 = -value1;
    if (value2 != _sysmis) value2 = -value2;
  }
  const char* decoration = display == PresentationCodes::kDisplayNEqual ? "N=^1" : "(^1)";
  if (_blankNextCell) {
    category.Cell(BpString("  ", false));
    _blankNextCell = false;
    return;
  }
  if (smallCount == SmallCount::kBelow) {
    BpComposite below("<(^1)", false);
    below.Add(BpNumber(_hideSmallCountsValue, numberFormat));
    below.Finish();
    category.Cell(below);
    return;
  }
  BpComposite decorated(decoration, false);
  decorated.Add(BpNumber(hidden ? _sysmis : value1, numberFormat));
  decorated.Finish();
  category.Cell(decorated);
  if (statFormat == StatTreeNode::kStatFormatVariable && !hidden && value1 != _sysmis && value2 != _sysmis &&
      value1 != value2) {
    category.CellNote(BpAnnotation(BpString(msg::kMultipleModes, true)));
  }
}

TableDelivery::Data::SmallCount TableDelivery::Data::ClassifySmallCount(int statFormat, double value1,
                                                                        double value2) const {
  if (statFormat != StatTreeNode::kStatFormatCount || !_hideSmallCounts) return SmallCount::kShown;
  // The companion is the cell's unweighted count, which the engine gives every count that
  // has cases (an unweighted count is its own companion). Only the zero written into an
  // empty cell has none, and that alone can be stated as "<n" without showing a number.
  if (value2 == _sysmis) {
    return value1 >= 0 && value1 < _hideSmallCountsValue ? SmallCount::kBelow : SmallCount::kShown;
  }
  return value2 >= 0 && value2 < _hideSmallCountsValue ? SmallCount::kMissing : SmallCount::kShown;
}

void TableDelivery::Data::RenderNumericCell(BpCategory& category, int statFormat, const TARN_Format* format,
                                            double value1, double value2) {
  switch (ClassifySmallCount(statFormat, value1, value2)) {
    case SmallCount::kBelow:
      category.Cell(BpString(_hideSmallCountsText, false));
      return;
    case SmallCount::kMissing:
      category.Cell(BpNumber(_sysmis, BpFormatSpec(*format)));
      return;
    case SmallCount::kShown:
      break;
  }
  category.Cell(BpNumber(value1, BpFormatSpec(*format)));
  if (statFormat == StatTreeNode::kStatFormatVariable && value2 != _sysmis && value1 != value2) {
    category.CellNote(BpAnnotation(BpString(msg::kMultipleModes, true)));
  }
}
