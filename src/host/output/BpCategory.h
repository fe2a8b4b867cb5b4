// BpCategory.h - a category; writes go to the cell at the current categories
#pragma once

#include <memory>

#include "host/output/BpGroup.h"

class BpAnnotation;
class BpCellText;

/// A leaf of a dimension. Every operation acts on the cell at the current category of every
/// dimension of the table, whichever category object it goes through.
class BpCategory {
 public:
  explicit BpCategory(std::shared_ptr<BpGroup::ImplData> node);
  BpCategory(const BpCategory& other) = default;
  BpCategory& operator=(const BpCategory& other) = default;

  /// Sets the cell's contents (a later call replaces the earlier).
  void Cell(const BpCellText& text);
  /// Adds a marker after those the cell has.
  void Marker(const BpCellText& text);
  void CellNote(const BpAnnotation& annotation);

 private:
  std::shared_ptr<BpGroup::ImplData> _node;
};
