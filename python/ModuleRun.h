// ModuleRun.h - one call of the Python module: load the data, run the commands, collect the results
#pragma once

#include <string>
#include <utility>
#include <vector>

/// What a call of quilt.run asks for. Either `csvPath` or `csvText` names the data.
struct ModuleRunOptions {
  std::string commands;                     // one or more commands, as in a command file
  std::string origin;                       // how messages name the command text
  std::string csvPath;                      // a CSV file; empty: `csvText` holds the data
  std::string csvText;                      // CSV text (a DataFrame written out by the Python side)
  std::string csvName;                      // how messages name `csvText`
  std::string dictionaryPath;               // a dictionary file; empty: `dictionaryJson`, else beside the CSV
  std::string dictionaryJson;               // a dictionary as JSON text; empty: none
  std::string weightVariable;               // overrides the dictionary's weight when not empty
  std::vector<std::string> splitVariables;  // override the dictionary's split when not empty
};

/// One cell of a delivered table, at its place in the layout.
struct ModuleCell {
  int layer = 0;
  int row = 0;
  int column = 0;
  std::string text;
  bool hasNumber = false;
  double number = 0.0;
  std::vector<std::string> markers;
  std::vector<std::string> notes;
};

/// A delivered table with its labels as the writers lay them out, and its drawings.
struct ModuleTable {
  int command = 0;                    // index of the command that delivered it
  std::vector<std::string> headings;  // the headings above it, outermost first
  std::string title;
  std::string subtype;
  std::string mergedTitle;
  std::string caption;
  std::string corner;
  std::vector<std::string> titleNotes;
  std::vector<std::string> captionNotes;
  std::vector<std::pair<std::string, std::string>> notes;  // (mark, text)
  /// Label path of each row, column and layer combination, outermost first.
  std::vector<std::vector<std::string>> rows;
  std::vector<std::vector<std::string>> columns;
  std::vector<std::vector<std::string>> layers;
  int rowLevels = 0;              // header levels of the rows (the longest label path)
  int columnLevels = 0;           // and of the columns
  std::vector<ModuleCell> cells;  // present cells only
  std::string html;               // the <table> elements the HTML writer draws
  std::string text;               // the text writer's drawing
};

struct ModuleMessage {
  int command = 0;    // -1: the command text could not be cut into commands
  std::string level;  // "warning", "error" or "fatal"
  std::string text;
  std::vector<std::string> headings;
  std::string place;  // "origin:line:column" where the message knows it, else empty
};

/// Everything one call delivered, in order.
struct ModuleRunResult {
  std::vector<ModuleTable> tables;
  std::vector<ModuleMessage> messages;
  std::vector<std::pair<std::string, int>> commandPlaces;  // (origin, first line) per command
};

/// Runs the commands of one call against a data set loaded for it alone. The procedure's
/// active data set and output document are process-wide, so a call installs its own and
/// removes them before it returns, whatever happens. Every text it hands back is valid UTF-8.
class ModuleRun {
 public:
  /// Throws DataError for data or a dictionary that cannot be loaded. Command text that cannot
  /// be cut into commands gives one fatal message with its place, and runs nothing; a
  /// command's own errors are its messages.
  static ModuleRunResult Run(const ModuleRunOptions& options);
};
