// SyntaxKeywordSubcommand.cpp - one dispatch of keyword-list events to the reader and the subclass
#include "parser/SyntaxKeywordSubcommand.h"

SyntaxKeywordSubcommand::SyntaxKeywordSubcommand(const char* name, int type,
                                                 const std::vector<KeywordRule>& rules)
    : NamedConverter(name, type), _keywords(this, rules) {}

SyntaxKeywordSubcommand::~SyntaxKeywordSubcommand() = default;

SyntaxConverter* SyntaxKeywordSubcommand::AttributeString(const std::string& text, TARN_TokenSequence* /*tokens*/) {
  return OnKeyword(_keywords.Start(text));
}

SyntaxConverter* SyntaxKeywordSubcommand::String(const std::string& text) {
  const int pending = _keywords.Pending();
  if (pending >= 0 && !_keywords.PendingTakes(KeywordValueKind::kWord)) {
    OnName(_keywords.Take(KeywordValueKind::kName, text), text);
    _keywords.Finish(0.0, text);
    return this;
  }
  int rule = -1;
  const int code = _keywords.ReadWord(text, rule);
  OnWord(rule, code);
  return this;
}

SyntaxConverter* SyntaxKeywordSubcommand::Number(double value, const std::string& text) {
  const int rule = _keywords.Take(KeywordValueKind::kNumber, text);
  _keywords.CheckRange(rule, value, text);
  OnNumber(rule, value, text);
  _keywords.Finish(value, text);
  return this;
}

SyntaxConverter* SyntaxKeywordSubcommand::Literal(const std::string& text) {
  OnText(_keywords.Take(KeywordValueKind::kText, text), text);
  _keywords.Finish(0.0, text);
  return this;
}

void SyntaxKeywordSubcommand::ValidateAndCommit(const std::string& text) {
  _keywords.CheckComplete(text);
  Commit(text);
}

SyntaxConverter* SyntaxKeywordSubcommand::OnKeyword(int /*rule*/) {
  return this;
}

void SyntaxKeywordSubcommand::OnWord(int /*rule*/, int /*code*/) {}

void SyntaxKeywordSubcommand::OnNumber(int /*rule*/, double /*value*/, const std::string& /*text*/) {}

void SyntaxKeywordSubcommand::OnText(int /*rule*/, const std::string& /*text*/) {}

void SyntaxKeywordSubcommand::OnName(int /*rule*/, const std::string& /*text*/) {}

void SyntaxKeywordSubcommand::Commit(const std::string& /*text*/) {}
