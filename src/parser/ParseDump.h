// ParseDump.h - a stable text form of what a parsed command asks for: trees, expressions and sub-table cubes
#pragma once

#include <iosfwd>
#include <vector>

class SyntaxTableSubcommand;

/// Writes parsed tables for tests and for `quilt --dump-parse`. For each table: its number
/// and title, the expression text, the operator tree (operators and variable names), the table
/// settings that decide what is delivered, and the sub-table cubes with their variables,
/// axes, statistics and totals. The form is stable (no addresses, fixed field order) so
/// that golden files can hold it; it is for developers and is not a user-facing report.
class ParseDump {
 public:
  /// Every table in order, separated by a blank line.
  static void Write(std::ostream& out, const std::vector<SyntaxTableSubcommand*>& tables);
  /// One table. Asks for the title and the expression text, which the table caches.
  static void WriteTable(std::ostream& out, SyntaxTableSubcommand& table);
};
