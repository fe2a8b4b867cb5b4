// KeywordReader.h - the one reader of `keyword '=' value` lists that the subcommands share
#pragma once

#include <string>
#include <vector>

class SyntaxConverter;

/// What a keyword takes after its "=": one kind or several joined with |.
enum class KeywordValueKind {
  kWord = 1,    // one of the rule's choices
  kNumber = 2,  // a number, checked by the subcommand
  kText = 4,    // a quoted text
  kName = 8,    // any word (a variable's name), checked by the subcommand
};

constexpr KeywordValueKind operator|(KeywordValueKind left, KeywordValueKind right) {
  return static_cast<KeywordValueKind>(static_cast<int>(left) | static_cast<int>(right));
}

constexpr bool Takes(KeywordValueKind kinds, KeywordValueKind kind) {
  return (static_cast<int>(kinds) & static_cast<int>(kind)) != 0;
}

/// One word a keyword accepts, and the code the subcommand stores for it.
struct KeywordChoice {
  const char* word;
  int code;
};

/// One keyword of a subcommand: its name, the kind of value it takes and, for words, the
/// choices. A keyword given twice warns ("Duplicate warning") unless `warnsWhenRepeated` is
/// false, and the later value stands. A rule without keyword (nullptr) reads a word that
/// stands alone (SMISSING LISTWISE, CLABELS AUTO); its choices may be abbreviated as keywords.
struct KeywordRule {
  const char* keyword;
  KeywordValueKind kind;
  std::vector<KeywordChoice> choices;  // kWord only, in any order
  bool warnsWhenRepeated = true;
  /// Rules that set one and the same thing (CLABELS' three ways to move labels) name the
  /// first of them here: a repeat of any of them warns. -1: the rule stands alone.
  int sameAs = -1;
  /// The warning names the word as the user typed it rather than the rule's keyword.
  bool warnsWithTypedWord = false;
  /// For a number with `outOfRange` set: it must lie strictly between `above` and `below`,
  /// else `outOfRange` raises the subcommand's own error with the number as written.
  double above = 0.0;
  double below = 0.0;
  void (*outOfRange)(const SyntaxConverter*, const std::string&) = nullptr;
};

/// A keyword that takes a number strictly between `above` and `below`; `outOfRange` raises
/// the subcommand's own error for any other (ALPHA, CILEVEL).
inline KeywordRule NumberBetween(const char* keyword, double above, double below,
                                 void (*outOfRange)(const SyntaxConverter*, const std::string&)) {
  KeywordRule rule{keyword, KeywordValueKind::kNumber, {}};
  rule.above = above;
  rule.below = below;
  rule.outOfRange = outOfRange;
  return rule;
}

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
  /// A value of `kind` that is not a word of choices (a number, a quoted text, a name):
  /// returns the pending rule, which must take that kind, and counts it as given once the
  /// subcommand calls Finish. UnknownKeyword when no rule awaits such a value.
  int Take(KeywordValueKind kind, const std::string& text) const;
  /// A rule awaits its value and takes `kind`.
  bool PendingTakes(KeywordValueKind kind) const;
  /// The rule awaiting its value; -1 when none does.
  int Pending() const;
  /// Raises the rule's range error when `value` is outside its open range (if it has one).
  void CheckRange(int rule, double value, const std::string& text) const;
  /// Marks the pending rule as given, for values that are not words of choices, and keeps
  /// the number and its text as written.
  void Finish(double value = 0.0, const std::string& text = std::string());
  bool WasGiven(int rule) const;
  /// The code of the choice last read for `rule` (or the rule it is sameAs); `fallback` when
  /// none was read.
  int Code(int rule, int fallback) const;
  /// The number, and its text as written, last read for `rule`; `fallback` when none was.
  double Number(int rule, double fallback) const;
  std::string Text(int rule, const std::string& fallback) const;
  /// IncompleteSubcommand when a keyword still awaits its value.
  void CheckComplete(const std::string& text) const;
  /// 0, or the pending rule's index + 1: the state number dumps show.
  int GetState() const;

 private:
  const SyntaxConverter* _owner;
  const std::vector<KeywordRule>& _rules;
  std::size_t Slot(std::size_t rule) const;
  int ReadLoneWord(const std::string& text, int& rule);
  /// The warning for `rule`, typed as `text`, whose slot already has a value.
  void WarnRepeated(std::size_t rule, const std::string& text, const char* word) const;
  /// Counts `rule` as given, by `typed` (as the user wrote it, for a later warning).
  void Give(std::size_t rule, const std::string& typed);

  std::vector<bool> _given;  // per rule (or its sameAs rule): a value has been read
  std::vector<int> _codes;           // per rule (or its sameAs rule): the code of the last choice read
  std::vector<double> _numbers;      // per rule: the last number read
  std::vector<std::string> _texts;   // per rule: the last number or text read, as written
  std::vector<int> _givenBy;          // per slot: the rule that gave the value last
  std::vector<std::string> _givenAs;  // per slot: how that was typed ("ROWLABELS=OPPOSITE", "AUTO")
  std::string _pendingText;           // the keyword of the pending rule, as typed
  int _pending = -1;         // the rule whose value comes next
};
