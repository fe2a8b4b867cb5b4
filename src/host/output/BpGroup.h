// BpGroup.h - a group of a dimension's category tree
#pragma once

#include <memory>

#include "host/output/BpNode.h"
#include "host/output/BpPivotTable.h"

class BpCategory;
class BpCellText;

/// A group node. Children are identified by their text: asking again for an equal text
/// returns the existing child. Copies share.
class BpGroup : public BpNode {
 public:
  struct ImplData;

  BpGroup(const BpGroup& other) = default;
  BpGroup& operator=(const BpGroup& other) = default;
  ~BpGroup() override;

  /// The child group with this text, made at the end of the children if there is none.
  /// `showLabel` false: a structural group that adds no header level (fixed at creation).
  BpGroup Group(const BpCellText& text, bool showLabel, BpPivotTable::Sort sort);
  /// The child category with this text, made at the end if there is none; it becomes the
  /// current category of the dimension.
  BpCategory Category(const BpCellText& text);

  explicit BpGroup(std::shared_ptr<ImplData> data);

 protected:
  std::shared_ptr<ImplData> _group;
};
