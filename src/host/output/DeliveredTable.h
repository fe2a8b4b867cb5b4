// DeliveredTable.h - a finished pivot table as writers read it: texts resolved, notes marked
#pragma once

#include <ostream>
#include <string>
#include <vector>

/// One node of a delivered dimension tree. Categories without any cell are already gone.
struct DeliveredNode {
  std::string label;  // as a reader sees it
  bool isCategory = false;
  bool showLabel = true;  // false: a structural group that adds no header level
  int leafIndex = -1;     // categories: position among the dimension's leaves
  std::vector<DeliveredNode> children;
};

/// A dimension with its tree and, per leaf, the labels a reader sees around a cell.
struct DeliveredDimension {
  std::string name;
  int place = 0;  // BpDimension::Place
  int order = 1;  // 1 is the innermost nesting level of its place
  bool hideName = true;
  bool hideLabels = false;
  DeliveredNode root;
  /// For each leaf, the visible labels from outermost group to the category. Empty when
  /// the dimension hides its labels; groups with showLabel false contribute nothing.
  std::vector<std::vector<std::string>> leafPaths;
};

struct DeliveredCell {
  std::vector<int> leaves;  // leaf index in each dimension, in dimension creation order
  std::string text;
  bool hasNumber = false;  // the text came from this number
  double number = 0.0;
  std::vector<std::string> markers;
  std::vector<std::string> noteMarks;
};

struct DeliveredNote {
  std::string mark;
  std::string text;
};

/// Plain record of one delivered table.
struct DeliveredTable {
  std::string title;
  std::string subtype;
  bool titleHidden = false;
  std::string mergedTitle;  // kPropertyMergedTitle, empty when not set
  std::string caption;
  std::string corner;
  std::vector<std::string> captionNoteMarks;
  std::vector<std::string> tableNoteMarks;
  std::vector<DeliveredNote> notes;  // every note once, in order of first use
  int minDataColumnWidth = 0;        // points, 0 when not set
  int maxDataColumnWidth = 0;
  std::vector<DeliveredDimension> dimensions;  // creation order
  std::vector<DeliveredCell> cells;            // order of first write

  /// The cell at one leaf per dimension, or null.
  const DeliveredCell* FindCell(const std::vector<int>& leaves) const;
  /// Dimension indices of `place`, outermost first.
  std::vector<int> DimensionsAt(int place) const;
  const DeliveredNote* FindNote(const std::string& mark) const;
  void Dump(std::ostream& out, int indent = 0) const;
};
