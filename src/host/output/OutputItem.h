// OutputItem.h - one item of the output document: heading, table or message
#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "host/output/DeliveredTable.h"

/// A node of the document outline. Plain record; the Bp classes fill it.
struct OutputItem {
  enum Kind { kHeading, kTable, kMessage };

  Kind kind = kHeading;
  std::string text;                    // heading text; message text in English
  int level = 0;                       // messages: BpErrorLevel
  std::string key;                     // messages: catalogue key, or the plain text
  std::vector<std::string> arguments;  // messages: placeholder values as shown
  bool delivered = true;               // tables: false until delivered, or when destroyed
  std::shared_ptr<DeliveredTable> table;
  std::vector<std::shared_ptr<OutputItem>> children;  // headings

  Kind GetKind() const { return kind; }
  int GetLevel() const { return level; }
  const std::string& GetKey() const { return key; }
  const std::vector<std::string>& GetArguments() const { return arguments; }
  const std::string& GetText() const { return text; }
  const DeliveredTable* GetTable() const { return table.get(); }
  /// Children that are shown: delivered tables, messages and headings.
  std::vector<const OutputItem*> GetChildren() const;
  /// A heading that holds no delivered table and no message, at any depth.
  bool IsEmptyHeading() const;
  void Dump(std::ostream& out, int indent) const;
};
