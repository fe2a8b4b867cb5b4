// ColumnTestTableRenderer.cpp - the frame of a column comparison table, the walk over its tested variables,
// notes and markers
#include "tablerenderer/ColumnTestTableRenderer.h"

#include <algorithm>
#include <cctype>
#include <map>

#include "host/QuiltAssert.h"
#include "host/engine/AggregationCategory.h"
#include "host/engine/CubeAggregator.h"
#include "host/output/BpAnnotation.h"
#include "host/output/BpCategory.h"
#include "host/output/BpComposite.h"
#include "host/output/BpNumber.h"
#include "host/output/BpString.h"
#include "host/output/MessageKeys.h"
#include "parser/SigTestSettings.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxVariableName.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablebuilder/QuiltSigTests.h"
#include "tablebuilder/StatTreeNode.h"
#include "tablerenderer/AlphaFormat.h"
#include "tablerenderer/BPTreeNode.h"
#include "tablerenderer/TableAxis.h"
#include "tablerenderer/TableDeliveryData.h"
#include "tablerenderer/markers/RowSignificanceMarkers.h"

namespace {

using Node = HeaderTreeNode;

constexpr std::size_t kLongestPiece = 255;

/// The letter a column carries in the main table: the label of its letter node, without
/// the parentheses; empty where the column has none.
std::string MainTableLetter(const HeaderTreeNode* category) {
  for (const HeaderTreeNode* child : category->GetChildren()) {
    if (child->GetType() != Node::kHNodeTypeLetter) continue;
    std::string letter = child->GetLabel();
    letter.erase(std::remove(letter.begin(), letter.end(), '('), letter.end());
    letter.erase(std::remove(letter.begin(), letter.end(), ')'), letter.end());
    return letter;
  }
  return std::string();
}

std::string Lowered(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

/// Splits a text of letters at its blanks and line breaks.
std::vector<std::string> Words(const std::string& text) {
  std::vector<std::string> words;
  std::string word;
  for (char c : text) {
    if (c == ' ' || c == '\n') {
      if (!word.empty()) words.push_back(word);
      word.clear();
    } else {
      word += c;
    }
  }
  if (!word.empty()) words.push_back(word);
  return words;
}

}  // namespace

ColumnTestTableRenderer::Data::Data(BpProcedure* procedure, BpHeading heading,
                                    ProcedureDataSource* dataSource, QuiltTable* table)
    : _heading(std::move(heading)), _procedure(procedure), _table(table), _dataSource(dataSource) {}

ColumnTestTableRenderer::ColumnTestTableRenderer(BpProcedure* procedure, BpHeading heading,
                                                 ProcedureDataSource* dataSource, QuiltTable* table)
    : _data(std::make_unique<Data>(procedure, std::move(heading), dataSource, table)) {
  QUILT_ASSERT(table != nullptr, "a column test renders the tests of a table");
}

ColumnTestTableRenderer::~ColumnTestTableRenderer() = default;

void ColumnTestTableRenderer::mergeTable(BpPivotTable* pivot, const BpDimension& rowDimension,
                                         const BpDimension& columnDimension,
                                         const BpDimension* layerDimension, TableAxis* statAxis,
                                         BpDimension::Place statPlace) {
  Data& d = *_data;
  d._merged = true;
  d._pivot = pivot;
  d._rowDimension = rowDimension;
  d._columnDimension = columnDimension;
  if (layerDimension != nullptr) d._layerDimension = *layerDimension;
  d._statAxis = statAxis;
  d._statPlace = statPlace;
}

void ColumnTestTableRenderer::SetColumnWidths(int minPoints, int maxPoints) {
  _data->_minColumnWidth = minPoints;
  _data->_maxColumnWidth = maxPoints;
}

void ColumnTestTableRenderer::RenderTable(const std::vector<HeaderTreeNode*>& trees,
                                          const std::vector<CubeAggregator*>& cubes,
                                          const SigTestSettings& settings, bool captionFree) {
  Data& d = *_data;
  QUILT_ASSERT(trees.size() == 2 || trees.size() == 3,
               "a column test has a row, a column and maybe a layer tree");
  static const char* const kNames[3] = {"Row", "Column", "Layer"};
  static const BpDimension::Place kPlaces[3] = {BpDimension::kPlaceRow, BpDimension::kPlaceColumn,
                                                BpDimension::kPlaceLayer};
  std::optional<BpDimension>* dimensions[3] = {&d._rowDimension, &d._columnDimension, &d._layerDimension};
  if (!d._merged) {
    const BpString key(TitleKey(), true);
    d._ownPivot.emplace(d._heading.PivotTable(key, key, true));
    d._pivot = &*d._ownPivot;
    for (std::size_t k = 0; k < trees.size(); ++k) {
      *dimensions[k] = d._pivot->Dimension(BpString(kNames[k], true), BpPivotTable::kSortAsCreated);
      (*dimensions[k])->Position(kPlaces[k], 1, true, false);
    }
  }
  QUILT_ASSERT(trees.size() == 2 || d._layerDimension.has_value(),
               "a table with layers has a layer dimension");

  std::unique_ptr<TableAxis>* axes[3] = {&d._rowAxis, &d._columnAxis, &d._layerAxis};
  for (std::size_t k = 0; k < trees.size(); ++k) {
    *axes[k] = std::make_unique<TableAxis>(**dimensions[k], kPlaces[k], trees[k], d._dataSource);
    // Hidden statistics of the main table stand in a dimension of their own.
    (*axes[k])->BuildBPTree(/*showStats=*/d._statAxis == nullptr);
  }

  RenderTestTable(cubes, settings, captionFree);
  FinishTable();

  for (std::unique_ptr<TableAxis>* axis : axes) axis->reset();
  if (d._ownPivot.has_value()) {
    if (d._minColumnWidth > 0) d._ownPivot->MinDataColumnWidth(d._minColumnWidth);
    if (d._maxColumnWidth > 0) d._ownPivot->MaxDataColumnWidth(d._maxColumnWidth);
    d._ownPivot.reset();  // delivers the table, unless it was destroyed
  }
  d._pivot = nullptr;
}

std::unique_ptr<BpCellText> ColumnTestTableRenderer::DispatchLongString(const std::string& text) {
  if (text.size() <= kLongestPiece) return std::make_unique<BpString>(text, false);
  auto composite = std::make_unique<BpComposite>(msg::kJoinedText, true);
  composite->Sublist();
  for (std::size_t start = 0; start < text.size(); start += kLongestPiece) {
    composite->Add(BpString(text.substr(start, kLongestPiece), false));
  }
  composite->EndSublist();
  composite->Finish();
  return composite;
}

void ColumnTestTableRenderer::ForEachLayer(
    const std::function<void(const QuiltTable::CategoryKey& layerKey, int layerIndex)>& render) {
  if (_data->_layerAxis == nullptr) {
    render(QuiltTable::CategoryKey(), 0);
    return;
  }
  for (BPTreeNode* leaf : _data->_layerAxis->GetLeaves()) {
    if (!ShowsResult(leaf->GetHeaderTreeNode())) continue;
    SelectLeaf(leaf);
    SelectStatCategory(leaf, BpDimension::kPlaceLayer);
    const HeaderTreeNode* node = leaf->GetHeaderTreeNode();
    render(PathKey(node), node->GetCubeIndexInDim());
  }
}

QuiltTable::CategoryKey ColumnTestTableRenderer::PathKey(const HeaderTreeNode* node) {
  QuiltTable::CategoryKey key;
  for (; node != nullptr; node = node->GetParent()) {
    if (node->GetType() == Node::kHNodeTypeCategory) key.push_back(node->GetCategory());
  }
  std::reverse(key.begin(), key.end());
  return key;
}

std::vector<ColumnTestTableRenderer::Family> ColumnTestTableRenderer::CollectFamilies(TableAxis* axis) const {
  std::vector<Family> families;
  const std::vector<BPTreeNode*>& leaves = axis->GetLeaves();
  for (std::size_t i = 0; i < leaves.size(); ++i) {
    HeaderTreeNode* leaf = leaves[i]->GetHeaderTreeNode();
    // The nearest variable above the leaf is the one tested; the node just below it is the
    // category the leaf belongs to.
    HeaderTreeNode* below = nullptr;
    HeaderTreeNode* variable = leaf;
    while (variable != nullptr && variable->GetType() != Node::kHNodeTypeCatVariable) {
      below = variable;
      variable = variable->GetParent();
    }
    if (variable == nullptr || below == nullptr || below->GetType() != Node::kHNodeTypeCategory) continue;
    if (families.empty() || families.back().variable != variable) {
      Family family;
      family.variable = variable;
      family.outerKey = PathKey(variable);
      family.isMRSet =
          variable->GetVariable() != nullptr && variable->GetVariable()->GetType() == kConverterMRSet;
      for (HeaderTreeNode* child : variable->GetChildren()) {
        if (child->GetType() != Node::kHNodeTypeCategory) continue;
        family.categories.push_back(child->GetCategory());
        family.categoryNodes.push_back(child);
        family.cellLeaves.push_back(-1);
      }
      families.push_back(std::move(family));
    }
    Family& family = families.back();
    const auto found = std::find(family.categoryNodes.begin(), family.categoryNodes.end(), below);
    if (found == family.categoryNodes.end()) continue;
    int& cellLeaf = family.cellLeaves[static_cast<std::size_t>(found - family.categoryNodes.begin())];
    if (cellLeaf >= 0) continue;
    if (ShowsResult(leaf)) cellLeaf = static_cast<int>(i);
  }
  return families;
}

bool ColumnTestTableRenderer::ShowsResult(const HeaderTreeNode* node) const {
  if (node->GetType() != Node::kHNodeTypeStatistic) return true;
  auto tested = [this](const HeaderTreeNode* statistic) {
    return statistic->GetType() == Node::kHNodeTypeStatistic &&
           IsTestedStatistic(static_cast<const StatTreeNode*>(statistic)->GetStatType());
  };
  if (!tested(node) || node->GetParent() == nullptr) return tested(node);
  for (const HeaderTreeNode* sibling : node->GetParent()->GetChildren()) {
    if (tested(sibling)) return sibling == node;
  }
  return false;
}

BpCategory ColumnTestTableRenderer::SelectLeaf(BPTreeNode* leaf) const {
  std::unique_ptr<BpCellText> text = leaf->CreateCellText(_data->_dataSource);
  return leaf->GetParentGroup().Category(*text);
}

void ColumnTestTableRenderer::SelectStatCategory(BPTreeNode* leaf, BpDimension::Place place) const {
  const Data& d = *_data;
  if (d._statAxis == nullptr || d._statPlace != place) return;
  std::unique_ptr<BpCellText> label = getStatCategory(leaf);
  if (label != nullptr) d._statAxis->GetBpDimension().Category(*label);
}

std::unique_ptr<BpCellText> ColumnTestTableRenderer::getStatCategory(BPTreeNode* leaf) const {
  const HeaderTreeNode* statistics =
      _data->_statAxis != nullptr ? _data->_statAxis->GetHeaderTree() : leaf->GetHeaderTreeNode();
  if (statistics == nullptr) statistics = leaf->GetHeaderTreeNode();
  for (const HeaderTreeNode* child : statistics->GetChildren()) {
    if (child->GetType() != Node::kHNodeTypeStatistic) continue;
    if (IsTestedStatistic(static_cast<const StatTreeNode*>(child)->GetStatType())) {
      return TableDelivery::Data::MakeStatisticLabel(child);
    }
  }
  return nullptr;
}

int ColumnTestTableRenderer::WriteResult(BpCategory& cell, const std::string& text,
                                         RowSignificanceMarkers& markers, const Family& columns,
                                         std::size_t column, const SigTestSettings& settings) const {
  const Data& d = *_data;
  if (!d._merged) {
    // A p-value ends its line; the last needs no break after it.
    std::string shown = text;
    while (!shown.empty() && shown.back() == '\n') shown.pop_back();
    cell.Cell(*DispatchLongString(shown));
    return 0;
  }
  int written = 0;
  if (settings._styleApa) {
    for (const std::string& marker : markers.getMarkersForColumn(column)) {
      cell.Marker(BpString(marker, false));
      ++written;
    }
    return written;
  }
  // The test names a column by its place among the tested ones; the main table letters
  // every column it shows, so a column the test leaves out would shift the letters after it.
  const int count = static_cast<int>(columns.categories.size());
  std::map<std::string, std::size_t> placeOf;
  for (int k = 0; k < count; ++k) {
    placeOf.emplace(QuiltSigTests::CategoryKey(k, count, /*forceParens=*/false, /*upper=*/true),
                    static_cast<std::size_t>(k));
    placeOf.emplace(QuiltSigTests::CategoryKey(k, count, /*forceParens=*/false, /*upper=*/false),
                    static_cast<std::size_t>(k));
  }
  for (const std::string& word : Words(text)) {
    if (word == d._noTestMarker) continue;
    std::string letter = word;
    const auto found = placeOf.find(word);
    if (found != placeOf.end()) {
      const HeaderTreeNode* category = columns.categoryNodes[found->second];
      const std::string main = MainTableLetter(category);
      const bool lower = std::islower(static_cast<unsigned char>(word.back())) != 0;
      if (!main.empty()) {
        letter = lower ? Lowered(main) : main;
      } else {
        // A tested subtotal has no letter in the main table: its label names it.
        bool isDefault = true;
        letter = BPTreeNode::GetCategoryText(category->GetCategory(), d._dataSource, isDefault);
      }
    }
    cell.Marker(BpString(letter, false));
    ++written;
  }
  return written;
}

void ColumnTestTableRenderer::WriteNotes(const SigTestSettings& settings, bool captionFree,
                                         const char* subject, const char* oneLevelKey,
                                         const char* twoLevelsKey,
                                         const std::vector<const char*>& keys) const {
  const Data& d = *_data;
  BpPivotTable& pivot = *d._pivot;
  const BpFormatSpec alphaFormat = AlphaFormat(settings._alpha, settings._alphaText);
  std::unique_ptr<BpComposite> main;
  if (d._merged && settings._styleApa) {
    main = std::make_unique<BpComposite>(
        msg::kNoteSubscripts, true);
    main->Add(BpNumber(settings._alpha, alphaFormat));
    main->Add(BpString(subject, true));
  } else if (!settings._alpha2Text.empty()) {
    main = std::make_unique<BpComposite>(twoLevelsKey, true);
    main->Add(BpNumber(settings._alpha, alphaFormat));
    main->Add(BpNumber(settings._alpha2, AlphaFormat(settings._alpha2, settings._alpha2Text)));
  } else {
    main = std::make_unique<BpComposite>(oneLevelKey, true);
    main->Add(BpNumber(settings._alpha, alphaFormat));
  }
  main->Finish();
  if (captionFree) {
    pivot.Caption(*main);
  } else if (settings._merge) {
    pivot.CaptionNote(BpAnnotation(*main));
  } else {
    pivot.Note(BpAnnotation(*main));
  }

  std::vector<const char*> further;
  if (settings._adjustType == PresentationCodes::kAdjustBonferroni) {
    further.push_back(msg::kNoteBonferroni);
  } else if (settings._adjustType == PresentationCodes::kAdjustBH) {
    further.push_back(msg::kNoteBenjaminiHochberg);
  }
  further.insert(further.end(), keys.begin(), keys.end());
  for (const char* key : further) {
    const BpAnnotation note{BpString(key, true)};
    if (settings._merge) {
      pivot.CaptionNote(note);
    } else {
      pivot.Note(note);
    }
  }
}

CubeAggregator* ColumnTestTableRenderer::CubeAt(int rowIndex, int columnIndex, int layerIndex,
                                                const std::vector<CubeAggregator*>& cubes) const {
  const QuiltTable& table = *_data->_table;
  if (rowIndex < 0 || rowIndex >= table.GetNRows() || columnIndex < 0 || columnIndex >= table.GetNColumns() ||
      layerIndex < 0 || layerIndex >= table.GetNLayers()) {
    return nullptr;
  }
  const int index = table.GetCubeIndex(rowIndex, columnIndex, layerIndex);
  return index >= 0 && index < static_cast<int>(cubes.size()) ? cubes[static_cast<std::size_t>(index)]
                                                              : nullptr;
}
