// CategoriesTestSupport.h - parses a command against the sample survey (or given data) and keeps the tree for
// inspection
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ParserTestSupport.h"

class Dataset;
class ParsedCategory;
class SyntaxTablesCommand;
class SyntaxVariableName;

/// A whole command parsed and kept: unlike ParseCommand, the converter tree stays alive so a
/// test can read the variable nodes and their ParsedCategory lists.
class KeptParse {
 public:
  /// Parses `command` against the sample survey of examples/.
  explicit KeptParse(const std::string& command);
  /// Parses `command` against `dataset`.
  KeptParse(const std::string& command, std::shared_ptr<const Dataset> dataset);
  ~KeptParse();
  KeptParse(const KeptParse&) = delete;
  KeptParse& operator=(const KeptParse&) = delete;

  bool Succeeded() const;
  /// The thrown message when the parse failed.
  const CatalogueMessage& Error() const;
  /// Everything reported through BpError on the way, in order.
  const std::vector<CatalogueMessage>& Reported() const;
  /// The root of the converter tree.
  SyntaxTablesCommand* Root() const;
  /// The `occurrence`-th node named `name` in table `tableIndex` (0-based); null if none.
  SyntaxVariableName* Variable(const std::string& name, int tableIndex = 0, int occurrence = 0) const;
  /// The converter tree as Dump writes it.
  std::string Dump() const;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};

/// The sample survey, loaded once.
std::shared_ptr<const Dataset> SurveyDataset();
/// A small dictionary whose sets provoke every check of a multiple-response set: string
/// members of widths 4 and 8 ($wide, $over), members whose labels or user-missing values
/// agree or contradict ($labels, $agree, $disagree, $samevar, $yesja), counted values that
/// are no number ($countedbad, $countedhalf), a member called MISSING ($withmissing) and a
/// member the dictionary lacks ($broken). Loaded once.
std::shared_ptr<const Dataset> SetsDataset();

/// A compact text of one ParsedCategory, for comparisons in tests: "value 3", "range 1..3",
/// "lo ..2", "hi 4..", "all", "missing", "othernm", "subtotal 'x'", "hsubtotal 'x'",
/// "variable #12", "computed &name", each followed by " @code" when it carries a subtotal
/// encoding.
std::string Describe(const ParsedCategory& category);
/// Describe of every entry of `variable`'s list.
std::vector<std::string> DescribeList(const SyntaxVariableName& variable);
