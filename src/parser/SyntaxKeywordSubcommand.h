// SyntaxKeywordSubcommand.h - the base of the subcommands made of `keyword '=' value` pairs
#pragma once

#include <string>
#include <vector>

#include "parser/KeywordReader.h"
#include "parser/NamedConverter.h"
#include "parser/SyntaxComposite.h"

/// A subcommand described by a table of KeywordRules. The events of a keyword list (a
/// keyword, a word, a number, a quoted text) go through one KeywordReader, which raises the
/// catalogue errors and the duplicate warnings; the subclass only stores what each value
/// means, checks what is its own (a range, a variable) and commits at the end.
class SyntaxKeywordSubcommand : public NamedConverter<SyntaxComposite> {
 public:
  ~SyntaxKeywordSubcommand() override;

  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;
  SyntaxConverter* String(const std::string& text) final;
  SyntaxConverter* Number(double value, const std::string& text) override;
  SyntaxConverter* Literal(const std::string& text) final;
  /// Refuses a keyword left without value, then calls Commit.
  void ValidateAndCommit(const std::string& text) final;

 protected:
  /// `name` is the subcommand's word; `type` what GetType answers; `rules` a static table.
  SyntaxKeywordSubcommand(const char* name, int type, const std::vector<KeywordRule>& rules);

  KeywordReader& Keywords() { return _keywords; }
  const KeywordReader& Keywords() const { return _keywords; }

  /// `keyword '='` was read for `rule`; returns the converter that reads the value.
  virtual SyntaxConverter* OnKeyword(int rule);
  /// A word of `rule`'s choices, with the choice's code.
  virtual void OnWord(int rule, int code);
  /// The value of a rule that takes a number, a quoted text or a name; the rule counts as
  /// given when these return.
  virtual void OnNumber(int rule, double value, const std::string& text);
  virtual void OnText(int rule, const std::string& text);
  virtual void OnName(int rule, const std::string& text);
  /// The whole subcommand was read: hand what it holds on.
  virtual void Commit(const std::string& text);

 private:
  KeywordReader _keywords;
};
