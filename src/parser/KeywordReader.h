// KeywordReader.h - the one reader of `keyword '=' value` lists that the subcommands share
#pragma once

#include <string>
#include <vector>

class SyntaxConverter;

/// What a keyword takes after its "=".
enum class KeywordValueKind {
  kWord,    // one of the rule's choices
  kNumber,  // a number, checked by the subcommand
};

/// One word a keyword accepts, and the code the subcommand stores for it.
struct KeywordChoice {
  const char* word;
  int code;
};

/// One keyword of a subcommand: its name, the kind of value it takes and, for words, the
/// choices. A keyword given twice warns ("Duplicate warning") unless `warnsWhenRepeated` is
/// false, and the later value stands.
struct KeywordRule {
  const char* keyword;
  KeywordValueKind kind;
  std::vector<KeywordChoice> choices;  // kWord only, in any order
  bool warnsWhenRepeated = true;
};

/// Runs the `keyword '=' value` state machine for a subcommand described by a table of
/// rules, with its catalogue errors and duplicate warnings in this one place: an unknown
/// keyword, a keyword before the previous one has its value, or a value no keyword awaits is
/// UnknownKeyword; a keyword left without its value at "/" or "." is IncompleteSubcommand.
/// Rules are named by their index in the table, which subcommands give as an enum.
class KeywordReader {
 public:
  /// `owner` names the subcommand in messages; `rules` must outlive the reader (a static
  /// table). Neither is owned.
  KeywordReader(const SyntaxConverter* owner, const std::vector<KeywordRule>& rules);

  /// `keyword '='`. Returns the index of the rule that now awaits its value.
  int Start(const std::string& text);
  /// A word after the "=": returns the code of the choice and sets `rule` to the rule it
  /// answered. The rule counts as given.
  int ReadWord(const std::string& text, int& rule);
  /// The rule awaiting its value; -1 when none does.
  int Pending() const;
  /// Marks the pending rule as given, for values the subcommand reads itself (numbers).
  void Finish();
  bool WasGiven(int rule) const;
  /// IncompleteSubcommand when a keyword still awaits its value.
  void CheckComplete(const std::string& text) const;
  /// 0, or the pending rule's index + 1: the state number dumps show.
  int GetState() const;

 private:
  const SyntaxConverter* _owner;
  const std::vector<KeywordRule>& _rules;
  std::vector<bool> _given;  // per rule: a value has been read
  int _pending = -1;         // the rule whose value comes next
};
