// ParserTestSupport.h - the one parse harness of the parser tests: a command lexed and parsed against a data
// set, the converter tree kept for inspection, and the messages read back
#pragma once

#include <memory>
#include <string>
#include <vector>

class BpComposite;
class Dataset;
class ParsedCategory;
class SubTableCube;
class SyntaxTableSubcommand;
class SyntaxTablesCommand;
class SyntaxVariableName;

/// One catalogue message as the parser built it: the key, its arguments in order, and the
/// level it was reported at (0 for a thrown composite that nobody reported).
struct CatalogueMessage {
  std::string key;
  std::vector<std::string> arguments;
  int level = 0;
};

/// The key and arguments of a composite.
CatalogueMessage DescribeComposite(const BpComposite& composite);

/// While alive, collects every message reported through BpError, in order.
class MessageCapture {
 public:
  MessageCapture();
  ~MessageCapture();
  MessageCapture(const MessageCapture&) = delete;
  MessageCapture& operator=(const MessageCapture&) = delete;

  std::vector<CatalogueMessage> GetReported() const;

 private:
  struct Data;
  Data* _data;
};

/// The parser tests' dictionary, in this order: categorical a, b (nominal, labelling 1 "Low",
/// 2 "High"), c (nominal, 1 "Low", 2 "Top"), d (ordinal, labelling only 3), e (ordinal, no
/// labels); scale x, y and w (w labelled "Weight factor"); the string s; then the undeclared
/// numeric d1, d2 (the dichotomy set $dich, "Media used", counted value 1) and m1, m2 (the
/// category set $cats). Positions: a 0, b 1, c 2, d 3, e 4, x 5, y 6, w 7, s 8.
std::shared_ptr<const Dataset> TestDataset();
/// The sample survey of examples/.
std::shared_ptr<const Dataset> SurveyDataset();
/// A small dictionary whose sets provoke every check of a multiple-response set: string
/// members of widths 4 and 8 ($wide, $over), members whose labels or user-missing values
/// agree or contradict ($labels, $agree, $disagree, $samevar, $yesja), counted values that
/// are no number ($countedbad, $countedhalf), a member called MISSING ($withmissing) and a
/// member the dictionary lacks ($broken).
std::shared_ptr<const Dataset> SetsDataset();

/// A whole command (such as "QUILT /TABLE a.") parsed and kept: the converter tree stays
/// alive so a test can read the tables, the variable nodes and their lists.
class KeptParse {
 public:
  explicit KeptParse(const std::string& command, std::shared_ptr<const Dataset> dataset = TestDataset());
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
  /// The tables, in order.
  std::vector<SyntaxTableSubcommand*>& Tables() const;
  /// The `occurrence`-th node named `name` in table `tableIndex` (0-based); null if none.
  SyntaxVariableName* Variable(const std::string& name, int tableIndex = 0, int occurrence = 0) const;
  /// The converter tree as Dump writes it.
  std::string Dump() const;
  /// The tables as ParseDump writes them (expressions, settings, tests, cubes).
  std::string ParseDump() const;
  /// What the parse committed that neither dump shows, one line each: "command hidesmallcounts=5
  /// weight=w@7", then per table "table 1 title=.. caption=.. corner=.. missing=.. empty=0"
  /// ..." slabels=2/1 clabels=0 cilevel=95/95 pairwise=1 minwidth=- maxwidth=- tests=[<test>;...]"
  /// and "table 1 vlabels a=0 ..." (each variable's VLABELS option). A test reads "<type>:<alpha>/
  /// <text>,<alpha2>/<text> adjust=<code> flags=<origin column, sets, subtotals, variance over
  /// all categories, merge, p-values shown, APA style, each 0 or 1> digits=<n>".
  std::string Settings() const;
  /// Per table, SummarizeCube of each cube.
  std::vector<std::vector<std::string>> Cubes() const;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};

/// A cube as "rows BY columns BY layers {scale}": nested variables joined by ">", an empty
/// axis as "-", the computational variable marked "*", scale variables in braces.
/// `a > b BY c` with the default on c reads "a>b BY c*"; `x + y` reads "{x,y}".
std::string SummarizeCube(const SubTableCube& cube);

/// A compact text of one ParsedCategory, for comparisons in tests: "value 3", "range 1..3",
/// "lo ..2", "hi 4..", "all", "missing", "othernm", "subtotal 'x'", "hsubtotal 'x'",
/// "variable #12", "computed &name", each followed by " @code" when it carries a subtotal
/// encoding.
std::string Describe(const ParsedCategory& category);
/// Describe of every entry of `variable`'s list.
std::vector<std::string> DescribeList(const SyntaxVariableName& variable);
