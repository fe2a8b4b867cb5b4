// OutputDocument.h - the collected output of a run: headings, tables and messages in order
#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "host/output/OutputItem.h"

/// Where BpProcedure, BpPivotTable and BpError deliver. The program creates one and
/// installs it; tests install their own. Without an installed document, Current() is a
/// process-wide fallback document.
class OutputDocument {
 public:
  using SplitPairs = std::vector<std::pair<std::string, std::string>>;

  OutputDocument();
  ~OutputDocument();
  OutputDocument(const OutputDocument&) = delete;
  OutputDocument& operator=(const OutputDocument&) = delete;

  static OutputDocument& Current();
  /// Makes `document` current; null restores the fallback.
  static void Install(OutputDocument* document);

  /// Top-level items that are shown, in order.
  std::vector<const OutputItem*> Items() const;
  /// Every message at any depth, in document order.
  std::vector<const OutputItem*> Messages() const;
  /// Every delivered table at any depth, in document order.
  std::vector<const DeliveredTable*> Tables() const;
  bool HasMessageAtLeast(int level) const;
  /// Removes every item and debug line.
  void Clear();
  void Dump(std::ostream& out) const;

  /// The variable (label, else name) and value (label, else formatted) pairs of the split
  /// group now being read. The host program, or the driver at the first case of a group,
  /// sets them; split headings and BpComposite::SplitList read them.
  void SetSplitPairs(SplitPairs pairs);
  const SplitPairs& GetSplitPairs() const;

  void AddDebugLine(long channel, const std::string& text);
  const std::vector<std::string>& GetDebugLines() const;

  /// For the Bp classes. `parent` null means top level.
  std::shared_ptr<OutputItem> AddHeading(OutputItem* parent, const std::string& text);
  /// Reserves the place of a table now; it shows once delivered.
  std::shared_ptr<OutputItem> ReserveTable(OutputItem* parent);
  /// Appends a message where the innermost open procedure now puts its output (the heading
  /// of its current split group, when it has one), else at the top level.
  void AddMessage(int level, const std::string& key, std::vector<std::string> arguments,
                  const std::string& text);
  /// `container`, when given, says where the procedure's next item goes; it may open the
  /// heading of a new split group.
  void OpenProcedure(OutputItem* heading, std::function<OutputItem*()> container = {});
  void CloseProcedure(OutputItem* heading);

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
