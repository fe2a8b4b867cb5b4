// TableBuilderTestSupport.h - parses a whole command on a small survey and builds its table, with or without data
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class HeaderTreeNode;
class QuiltTable;
class SyntaxTableSubcommand;

/// What the builder needs of one command: the parsed table, the engine's table declared the
/// way the dispatcher declares it (each categorical variable in a cube of its own), and the
/// QuiltTable with its preliminary trees and axis cubes.
class BuiltTable {
 public:
  ~BuiltTable();
  BuiltTable(const BuiltTable&) = delete;
  BuiltTable& operator=(const BuiltTable&) = delete;

  /// What CATEGORIES would have said for every categorical variable of the table.
  /// Unset options keep what the command's own CATEGORIES said.
  struct Options {
    std::optional<bool> emptyInclude;  // EMPTY=INCLUDE or EXCLUDE
    bool totals = false;               // TOTAL=YES
  };

  /// Parses `command` against the test survey and builds its first table with `options`. A
  /// parse error fails the calling test and gives null.
  static std::unique_ptr<BuiltTable> Build(const std::string& command, Options options);
  static std::unique_ptr<BuiltTable> Build(const std::string& command) { return Build(command, Options()); }

  /// Reads all cases into the engine and builds the final trees.
  void RunData();
  /// What CreateAxisCubes returned.
  int GetAxisCubeResult() const;

  QuiltTable& Table();
  SyntaxTableSubcommand& Syntax();
  /// The table's dump: preliminary trees, slots, and final trees once data ran.
  std::string Dump() const;

 private:
  BuiltTable();
  struct Data;
  std::unique_ptr<Data> _data;
};

/// The survey: region (1 North, 2 South, 3 West), gender (1 Male, 2 Female), agegrp (1 Young,
/// 2 Middle, 3 Old), late (1 Late), all nominal; score and income scale. Cases are chosen so that agegrp 3
/// never occurs with region 2, gender 2 never with region 2 and agegrp 1, and no gender at all
/// with region 3, the only case that has late. $media is a dichotomy set of tv and web.
extern const char* const kBuilderCsv;
extern const char* const kBuilderDictionary;

/// One case of a file in tests/tablebuilder/cases/: the golden's name, its settings (the words
/// KEY=VALUE after the name on its "== NAME" line) and the command on the line after it.
struct BuilderCase {
  std::string name;
  std::string command;
  std::map<std::string, std::string> settings;

  /// The value of a setting, or "" where the case does not give it.
  std::string Setting(const std::string& key) const;
};

/// Every case of tests/tablebuilder/cases/`fileName`; lines starting with "#" are comments.
std::vector<BuilderCase> ReadBuilderCases(const std::string& fileName);

/// The labels of a tree's leaves, left to right: a statistic's or a category's label, the text
/// of a label or letter node, else the name of the node's type.
std::vector<std::string> LeafLabels(const HeaderTreeNode* node);
