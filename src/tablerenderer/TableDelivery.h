// TableDelivery.h - delivers one finished table of one split group as a pivot table
#pragma once

#include <memory>
#include <string>

class BpProcedure;
class ProcedureDataSource;
class QuiltTable;
class SyntaxTableSubcommand;

/// Turns a table whose data pass is over into output: builds the final header trees, lays
/// out the pivot table (title, caption, corner text, dimensions) and writes every cell. The
/// dispatcher makes one at each split group's end for every table, also an empty one, and
/// calls RenderTable once; the table is delivered when the call returns.
class TableDelivery {
 public:
  struct Data;

  /// None is owned; all must outlive the delivery. `subcommand` may be null in tests that
  /// build a table by hand: the presentation settings then keep their defaults.
  TableDelivery(SyntaxTableSubcommand* subcommand, BpProcedure* procedure, ProcedureDataSource* dataSource);
  ~TableDelivery();
  TableDelivery(const TableDelivery&) = delete;
  TableDelivery& operator=(const TableDelivery&) = delete;

  /// `tableIndex` numbers the default title; `splitText` is empty without split groups;
  /// `controlPackage` names the outline entry "Results".
  void RenderTable(QuiltTable* table, int tableIndex, const std::string& splitText, bool controlPackage);

 private:
  std::unique_ptr<Data> _data;
};
