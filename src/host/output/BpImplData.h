// BpImplData.h - the shared records behind headings, tables, dimensions, groups and categories
#pragma once

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/output/BpCellText.h"
#include "host/output/BpDimension.h"
#include "host/output/BpGroup.h"
#include "host/output/BpHeading.h"
#include "host/output/BpPivotTable.h"

class OutputDocument;
struct OutputItem;

struct BpHeading::ImplData {
  OutputDocument* document = nullptr;
  std::shared_ptr<OutputItem> item;
  bool isProcedure = false;
  bool splitPending = false;              // the next table or heading opens a split heading
  bool splitChanged = false;              // SplitChange was called at least once
  int splitCount = 0;                     // split headings made so far
  std::shared_ptr<OutputItem> splitItem;  // the current split group's heading, if any
};

/// The item under which a new child of `data` goes: for a procedure whose split group
/// changed, the group's heading, opened on first use.
OutputItem* HeadingContainer(BpHeading::ImplData& data);

/// A group or category node. Categories carry an id unique within their dimension.
struct BpGroup::ImplData {
  std::unique_ptr<BpCellText> label;
  std::string identity;
  bool isCategory = false;
  bool showLabel = true;
  int categoryId = -1;
  BpDimension::ImplData* dimension = nullptr;
  std::vector<std::shared_ptr<ImplData>> children;
  // Children by kind (group 0, category 1) and identity, so that finding one again costs
  // the same for the 50,000th category of a dimension as for the first.
  std::unordered_map<std::string, std::size_t> childIndex[2];
};

struct BpDimension::ImplData {
  BpPivotTable::TableData* table = nullptr;  // null once the table is gone
  int index = 0;                             // creation order in the table
  std::unique_ptr<BpCellText> name;
  int place = 0;
  int order = 1;
  bool hideName = true;
  bool hideLabels = false;
  int nextCategoryId = 0;
  int current = -1;  // category id of the current category
  std::shared_ptr<BpGroup::ImplData> root;
};

struct BpPivotTable::TableData {
  struct Cell {
    std::unique_ptr<BpCellText> text;
    std::vector<std::unique_ptr<BpCellText>> markers;
    std::vector<int> notes;
    int order = 0;
  };
  struct Note {
    std::string text;
    std::string mark;  // explicit or assigned
  };

  OutputDocument* document = nullptr;
  std::shared_ptr<OutputItem> slot;
  std::unique_ptr<BpCellText> title;
  std::unique_ptr<BpCellText> subtype;
  bool titleHidden = false;
  std::unique_ptr<BpCellText> mergedTitle;
  std::unique_ptr<BpCellText> caption;
  std::unique_ptr<BpCellText> corner;
  std::vector<int> captionNotes;
  std::vector<int> tableNotes;
  std::vector<Note> notes;
  int nextMark = 0;
  int minWidth = 0;
  int maxWidth = 0;
  bool destroyed = false;
  std::vector<std::shared_ptr<BpDimension::ImplData>> dimensions;
  std::map<std::vector<int>, Cell> cells;
  int cellCount = 0;

  /// The note index for `text` with `mark` (empty: assign the next letter); equal notes share.
  int AddNote(const std::string& text, const std::string& mark);
  /// The cell at the current categories; asserts every dimension has one.
  Cell& CurrentCell();
  /// Builds the record writers read.
  std::shared_ptr<struct DeliveredTable> Deliver() const;
  ~TableData();
};
