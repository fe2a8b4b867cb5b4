// KeywordReader.cpp - keyword look-up, value choices, duplicate warnings and the errors of a keyword list
#include "parser/KeywordReader.h"

#include "host/data/HostStrings.h"
#include "parser/SyntaxParserUtility.h"

KeywordReader::KeywordReader(const SyntaxConverter* owner, const std::vector<KeywordRule>& rules)
    : _owner(owner), _rules(rules), _given(rules.size(), false),
      _codes(rules.size(), 0),
      _numbers(rules.size(), 0.0),
      _texts(rules.size()),
      _givenBy(rules.size(), -1),
      _givenAs(rules.size()) {}

void KeywordReader::WarnRepeated(std::size_t rule, const std::string& text, const char* word) const {
  const std::size_t slot = Slot(rule);
  // "ROWLABELS=OPPOSITE COLLABELS=LAYER": two keywords for one setting; saying that COLLABELS
  // came twice would send the user looking for a second COLLABELS.
  if (_givenBy[slot] >= 0 && static_cast<std::size_t>(_givenBy[slot]) != rule) {
    SyntaxParserUtility::SameOptionWarning(_owner, text, _givenAs[slot]);
    return;
  }
  SyntaxParserUtility::DuplicateWarning(_owner, _rules[rule].warnsWithTypedWord ? text : std::string(word));
}

void KeywordReader::Give(std::size_t rule, const std::string& typed) {
  const std::size_t slot = Slot(rule);
  _given[slot] = true;
  _givenBy[slot] = static_cast<int>(rule);
  _givenAs[slot] = typed;
}

int KeywordReader::Start(const std::string& text) {
  if (_pending >= 0) {
    _pending = -1;
    SyntaxParserUtility::UnknownKeyword(_owner, text);
  }
  for (std::size_t index = 0; index < _rules.size(); ++index) {
    const KeywordRule& rule = _rules[index];
    if (rule.keyword == nullptr || !KeywordMatch(text.c_str(), rule.keyword)) {
      continue;
    }
    if (_given[Slot(index)] && rule.warnsWhenRepeated) {
      WarnRepeated(index, text, rule.keyword);
    }
    _pending = static_cast<int>(index);
    _pendingText = text;
    return _pending;
  }
  SyntaxParserUtility::UnknownKeyword(_owner, text);
}

int KeywordReader::ReadWord(const std::string& text, int& rule) {
  if (_pending < 0) {
    return ReadLoneWord(text, rule);
  }
  rule = _pending;
  _pending = -1;
  if (!Takes(_rules[static_cast<std::size_t>(rule)].kind, KeywordValueKind::kWord)) {
    SyntaxParserUtility::UnknownKeyword(_owner, text);
  }
  for (const KeywordChoice& choice : _rules[static_cast<std::size_t>(rule)].choices) {
    if (SyntaxParserUtility::ExactWordMatch(text, choice.word)) {
      Give(static_cast<std::size_t>(rule), _pendingText + "=" + text);
      _codes[Slot(static_cast<std::size_t>(rule))] = choice.code;
      return choice.code;
    }
  }
  SyntaxParserUtility::UnknownKeyword(_owner, text);
}

int KeywordReader::ReadLoneWord(const std::string& text, int& rule) {
  for (std::size_t index = 0; index < _rules.size(); ++index) {
    const KeywordRule& lone = _rules[index];
    if (lone.keyword != nullptr) {
      continue;
    }
    for (const KeywordChoice& choice : lone.choices) {
      if (!KeywordMatch(text.c_str(), choice.word)) {
        continue;
      }
      if (_given[Slot(index)] && lone.warnsWhenRepeated) {
        WarnRepeated(index, text, choice.word);
      }
      Give(index, text);
      _codes[Slot(index)] = choice.code;
      rule = static_cast<int>(index);
      return choice.code;
    }
  }
  SyntaxParserUtility::UnknownKeyword(_owner, text);
}

int KeywordReader::Take(KeywordValueKind kind, const std::string& text) const {
  if (_pending < 0 || !Takes(_rules[static_cast<std::size_t>(_pending)].kind, kind)) {
    SyntaxParserUtility::UnknownKeyword(_owner, text);
  }
  return _pending;
}

bool KeywordReader::PendingTakes(KeywordValueKind kind) const {
  return _pending >= 0 && Takes(_rules[static_cast<std::size_t>(_pending)].kind, kind);
}

int KeywordReader::Pending() const {
  return _pending;
}

void KeywordReader::CheckRange(int rule, double value, const std::string& text) const {
  const KeywordRule& entry = _rules.at(static_cast<std::size_t>(rule));
  if (entry.outOfRange != nullptr && !(value > entry.above && value < entry.below)) {
    entry.outOfRange(_owner, text);
  }
}

void KeywordReader::Finish(double value, const std::string& text) {
  if (_pending >= 0) {
    const std::size_t slot = Slot(static_cast<std::size_t>(_pending));
    Give(static_cast<std::size_t>(_pending), text.empty() ? _pendingText : _pendingText + "=" + text);
    _numbers[slot] = value;
    _texts[slot] = text;
  }
  _pending = -1;
}

bool KeywordReader::WasGiven(int rule) const {
  return _given.at(Slot(static_cast<std::size_t>(rule)));
}

int KeywordReader::Code(int rule, int fallback) const {
  return WasGiven(rule) ? _codes.at(Slot(static_cast<std::size_t>(rule))) : fallback;
}

double KeywordReader::Number(int rule, double fallback) const {
  return WasGiven(rule) ? _numbers.at(Slot(static_cast<std::size_t>(rule))) : fallback;
}

std::string KeywordReader::Text(int rule, const std::string& fallback) const {
  return WasGiven(rule) ? _texts.at(Slot(static_cast<std::size_t>(rule))) : fallback;
}

std::size_t KeywordReader::Slot(std::size_t rule) const {
  const int sameAs = _rules[rule].sameAs;
  return sameAs < 0 ? rule : static_cast<std::size_t>(sameAs);
}

void KeywordReader::CheckComplete(const std::string& text) const {
  if (_pending >= 0) {
    SyntaxParserUtility::IncompleteSubcommand(_owner, text);
  }
}

int KeywordReader::GetState() const {
  return _pending + 1;
}
