// BpHeading.h - an outline heading under which tables and further headings stand
#pragma once

#include <memory>

#include "host/output/BpNode.h"

class BpCellText;
class BpPivotTable;

/// A heading of the output outline. Copies share the same heading.
class BpHeading : public BpNode {
 public:
  struct ImplData;

  BpHeading(const BpHeading& other) = default;
  BpHeading& operator=(const BpHeading& other) = default;
  ~BpHeading() override;

  /// A new heading under this one, after what is already there.
  BpHeading Heading(const BpCellText& text);
  /// A new pivot table under this heading. Its place among the items is fixed now, at
  /// creation; it appears there once its destructor delivers it. `flag` has no effect.
  BpPivotTable PivotTable(const BpCellText& title, const BpCellText& subtype, bool flag);

 protected:
  explicit BpHeading(std::shared_ptr<ImplData> data);
  std::shared_ptr<ImplData> _impl;
};
