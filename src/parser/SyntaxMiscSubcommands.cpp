// SyntaxMiscSubcommands.cpp - lines and parameters of a title, caption or corner text
#include "parser/SyntaxMiscSubcommands.h"

#include <ctime>
#include <ostream>
#include <vector>

#include "host/data/HostStrings.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxTitlesSubcommand.h"
#include "parser/TableScope.h"

namespace {

constexpr std::size_t kTimeBufferSize = 128;

// Replaces every occurrence of `parameter`, exactly as written, by `value`.
void ReplaceAll(std::string& text, const std::string& parameter, const std::string& value) {
  std::size_t at = text.find(parameter);
  while (at != std::string::npos) {
    text.replace(at, parameter.size(), value);
    at = text.find(parameter, at + value.size());
  }
}

std::string FormatLocalTime(const std::tm& moment, const char* pattern) {
  char buffer[kTimeBufferSize] = {};
  std::strftime(buffer, sizeof buffer, pattern, &moment);
  std::string generic;
  TARNMBCodePageToGeneric(nullptr, generic, buffer);
  return generic;
}

}  // namespace

struct SyntaxMiscSubcommands::Data {
  SyntaxTitlesSubcommand* _owner = nullptr;  // not owned
  std::vector<std::string> _lines;           // the literals in order
  std::string _text;                         // the finished text
};

SyntaxMiscSubcommands::SyntaxMiscSubcommands(SyntaxTitlesSubcommand* owner)
    : _data(std::make_unique<Data>()) {
  _data->_owner = owner;
}

SyntaxMiscSubcommands::~SyntaxMiscSubcommands() = default;

// keyword '=' 'line'...
SyntaxConverter* SyntaxMiscSubcommands::Literal(const std::string& text) {
  _data->_lines.push_back(text);
  return this;
}

SyntaxConverter* SyntaxMiscSubcommands::AttributeString(const std::string& text, TARN_TokenSequence* tokens) {
  ValidateAndCommit(text);
  return _data->_owner->AttributeString(text, tokens);
}

void SyntaxMiscSubcommands::ValidateAndCommit(const std::string& text) {
  if (_data->_lines.empty()) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  std::string joined;
  for (std::size_t i = 0; i < _data->_lines.size(); ++i) {
    joined += (i == 0 ? "" : "\n") + _data->_lines[i];
  }
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  if (const std::tm* converted = std::localtime(&now); converted != nullptr) {
    local = *converted;
  }
  const std::string date = FormatLocalTime(local, "%x");
  const std::string time = FormatLocalTime(local, "%X");
  // The expression is only asked for when it is used: a holder outside a table has none.
  std::string expression;
  if (joined.find(")TABLE") != std::string::npos) {
    expression = RequireTableScope().GetExpression();
  }
  ReplaceAll(joined, ")TIME", time);
  ReplaceAll(joined, ")DATE", date);
  ReplaceAll(joined, ")TABLE", expression);
  _data->_text = joined;
  _data->_owner->ResetAttribute();
}

std::string SyntaxMiscSubcommands::GetAttributeString() const {
  return _data->_text;
}

void SyntaxMiscSubcommands::DumpDetails(std::ostream& out) const {
  out << "lines=" << _data->_lines.size() << " text=\"" << _data->_text << "\"";
}
