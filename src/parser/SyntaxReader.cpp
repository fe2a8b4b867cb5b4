// SyntaxReader.cpp - walks the token stream and feeds one event per token to the converters
#include "parser/SyntaxReader.h"

#include <cstring>

#include "host/data/HostStrings.h"
#include "host/tokens/TARN_TokenSequence.h"
#include "parser/SyntaxConverter.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxTablesCommand.h"

namespace {

using TokenType = TokenSequenceBase::TokenType;
using OperatorCode = TokenSequenceBase::OperatorCode;

// The working buffer of one token's text. A longer token is cut at a character boundary
// (see CopyTokenText), so no input can overrun it.
constexpr int kTokenBufferSize = 1024;

// Parentheses and brackets nest at most this deep, together. Real commands stay within a
// handful of levels; the bound keeps every recursive walk of the tree shallow, whatever the
// input.
constexpr int kMaximumNesting = 100;

// What the host is asked for when it does not say otherwise.
constexpr int kInitialTextLength = 255;

// Copies at most kTokenBufferSize - 1 bytes of `text` and terminates; true when the text
// was cut. A cut never falls inside a UTF-8 sequence: continuation bytes (10xxxxxx) before
// the cut are dropped with the character they belong to.
bool CopyTokenText(const char* text, int length, char* buffer) {
  std::memset(buffer, 0, kTokenBufferSize);
  int kept = length;
  const bool cut = kept > kTokenBufferSize - 1;
  if (cut) {
    kept = kTokenBufferSize - 1;
    while (kept > 0 && (static_cast<unsigned char>(text[kept]) & 0xC0) == 0x80) {
      --kept;
    }
  }
  std::memcpy(buffer, text, static_cast<std::size_t>(kept));
  return cut;
}

}  // namespace

struct SyntaxReader::ReaderData {
  bool _tableSeen = false;                                       // a TABLE subcommand has begun
  OperatorCode _prevOperator = OperatorCode(0);                  // operator code of the previous token
  TokenType _prevTokenType = TokenSequenceBase::kTokenOperator;  // type of the previous token
  int _parenDepth = 0;                                           // open "(" minus ")"
  int _bracketDepth = 0;                                         // open "[" minus "]"
  int _outerGroupPosition = -1;  // token position before the outermost open "(" or "[", for messages
  SyntaxTablesCommand* _root = nullptr;                          // the command; owns the whole tree
  SyntaxConverter* _current = nullptr;                           // the converter that receives the next event
  std::string _lastWord;          // the last word read, to say where a text stands
  bool _textCutReported = false;  // a cut text has been warned about
};

SyntaxReader::SyntaxReader() : _readerData(new ReaderData) {
  _readerData->_root = new SyntaxTablesCommand;
  _readerData->_current = _readerData->_root;
}

SyntaxReader::~SyntaxReader() {
  // The root owns every converter, whichever of them a parse error left current.
  delete _readerData->_root;
  delete _readerData;
}

void SyntaxReader::ReadTokens(TARN_TokenSequence* tokens) {
  ReaderData& data = *_readerData;
  SyntaxParserUtility::InitStatistics();
  tokens->Prepare();
  data._parenDepth = 0;
  data._bracketDepth = 0;
  SyntaxTableSubcommand* expressionTable = nullptr;
  bool writing = false;

  // The first token is the command word itself.
  tokens->Next();
  data._lastWord.clear();
  data._textCutReported = false;
  {
    char* commandWord = nullptr;
    int length = kInitialTextLength;
    tokens->GetText(&commandWord, &length);
    if (commandWord != nullptr && length > 0)
      data._lastWord.assign(commandWord, static_cast<std::size_t>(length));
  }

  char text[kTokenBufferSize];
  text[0] = '\0';
  while (tokens->Next()) {
    GetStringFromTokens(tokens, text);
    const TokenType type = tokens->GetTokenType();
    const OperatorCode op = tokens->GetOperatorCode();
    const std::string tokenText(text);
    if (type == TokenSequenceBase::kTokenWord) data._lastWord = tokenText;
    writing = WriteTableExpression(expressionTable, writing, tokenText, op, type);

    switch (type) {
      case TokenSequenceBase::kTokenNumber:
        data._current = data._current->Number(tokens->GetNumber(), tokenText);
        break;
      case TokenSequenceBase::kTokenLiteral:
        data._current = data._current->Literal(tokenText);
        break;
      case TokenSequenceBase::kTokenWord:
        StringConverter(tokens, tokenText, op);
        break;
      case TokenSequenceBase::kTokenOperator:
        OperatorConverter(tokens, tokenText, op);
        break;
      default:
        break;
    }
    data._prevTokenType = type;
    data._prevOperator = op;
  }

  if (!data._tableSeen) {
    SyntaxParserUtility::NoTableSubcommand(data._current);
  }
  if (data._prevOperator == TokenSequenceBase::kOpSlash) {
    SyntaxParserUtility::IncorrectSequence(data._current, text);
  }
  // A group still open at the end of the command: "(region." or "[COUNT.". The message
  // points at the outermost one, which the sequence is moved back to.
  if (data._parenDepth > 0 || data._bracketDepth > 0) {
    tokens->SetPosition(data._outerGroupPosition);
    tokens->Next();
    SyntaxParserUtility::UnbalancedParen(data._current, data._parenDepth > 0 ? "(" : "[");
  }
  data._current = data._current->Period(".");
}

std::vector<SyntaxTableSubcommand*>& SyntaxReader::GetTable() {
  return _readerData->_root->GetTable();
}

void SyntaxReader::SetDataSource(TARN_DataSource* dataSource) {
  _readerData->_current->SetDataSource(dataSource);
}

SyntaxConverter* SyntaxReader::GetCurrent() const {
  return _readerData->_current;
}

void SyntaxReader::GetStringFromTokens(TARN_TokenSequence* tokens, char* buffer) {
  std::memset(buffer, 0, kTokenBufferSize);
  char* tokenText = nullptr;
  int length = kInitialTextLength;
  tokens->GetText(&tokenText, &length);
  ReaderData& data = *_readerData;
  if (tokenText == nullptr || length <= 0 || *tokenText == '\0') {
    // The command cannot go on, but the reader learns what stopped it and where.
    if (tokens->GetTokenType() == TokenSequenceBase::kTokenLiteral) {
      SyntaxParserUtility::EmptyQuotedText(data._current, data._lastWord);
    }
    SyntaxParserUtility::NoTableSubcommand(data._current);
  }
  if (CopyTokenText(tokenText, length, buffer) && !data._textCutReported) {
    data._textCutReported = true;
    SyntaxParserUtility::TextCut(data._current, data._lastWord, kTokenBufferSize - 1);
  }
}

bool SyntaxReader::WriteTableExpression(SyntaxTableSubcommand*& expressionTable, bool writing,
                                        const std::string& text, int op, int type) {
  ReaderData& data = *_readerData;
  // Brackets and everything in them are statistics, not part of the expression text.
  if ((type == TokenSequenceBase::kTokenOperator && op == TokenSequenceBase::kOpLeftBracket) ||
      data._bracketDepth > 0) {
    return writing;
  }
  const bool isWord = type == TokenSequenceBase::kTokenWord && op == 0;
  if (auto* table = dynamic_cast<SyntaxTableSubcommand*>(data._current)) {
    expressionTable = table;
    data._tableSeen = true;
  }
  if (op == TokenSequenceBase::kOpSlash || op == TokenSequenceBase::kOpTerminator) {
    writing = false;
  }
  if (writing && expressionTable != nullptr) {
    // GT and ">" read alike in a title.
    if (type == TokenSequenceBase::kTokenWord && op == TokenSequenceBase::kOpGreaterThan) {
      expressionTable->AddExpressionToken(">", isWord);
    } else {
      expressionTable->AddExpressionToken(text, isWord);
    }
  } else {
    expressionTable = nullptr;
  }
  if (type == TokenSequenceBase::kTokenWord && KeywordMatch(text.c_str(), "TABLE") &&
      data._prevTokenType == TokenSequenceBase::kTokenOperator &&
      data._prevOperator == TokenSequenceBase::kOpSlash) {
    writing = true;
    data._tableSeen = true;
  }
  return writing;
}

void SyntaxReader::OperatorConverter(TARN_TokenSequence* tokens, const std::string& text, int op) {
  ReaderData& data = *_readerData;
  SyntaxConverter*& current = data._current;
  const bool depthsZero = data._parenDepth == 0 && data._bracketDepth == 0;
  if (depthsZero && (op == TokenSequenceBase::kOpLeftParen || op == TokenSequenceBase::kOpLeftBracket)) {
    data._outerGroupPosition = tokens->PositionBefore();
  }
  // "//" leaves a subcommand empty, and "+ )" leaves a stack without its last operand.
  if ((data._prevOperator == TokenSequenceBase::kOpSlash && op == TokenSequenceBase::kOpSlash) ||
      (data._prevOperator == TokenSequenceBase::kOpPlus && op == TokenSequenceBase::kOpRightParen)) {
    SyntaxParserUtility::IncorrectSequence(current, text);
  }
  switch (op) {
    case TokenSequenceBase::kOpGreaterThan:
      current = current->GreaterThan(text);
      break;
    case TokenSequenceBase::kOpPlus:
      current = current->Plus(text);
      break;
    case TokenSequenceBase::kOpSlash:
      // A slash inside parentheses or brackets would end the subcommand with them open.
      if (!depthsZero) {
        SyntaxParserUtility::UnbalancedParen(current, text);
      }
      current = current->Slash(text);
      break;
    case TokenSequenceBase::kOpLeftParen:
      ++data._parenDepth;
      CheckNestingDepth(text);
      current = current->LeftParen(text);
      break;
    case TokenSequenceBase::kOpRightParen:
      --data._parenDepth;
      current = current->RightParen(text);
      break;
    case TokenSequenceBase::kOpLeftBracket:
      ++data._bracketDepth;
      CheckNestingDepth(text);
      current = current->LeftSquareBracket(text);
      break;
    case TokenSequenceBase::kOpRightBracket:
      --data._bracketDepth;
      current = current->RightSquareBracket(text);
      break;
    case TokenSequenceBase::kOpAmpersand:
      current = current->Ampersand(text);
      break;
    case TokenSequenceBase::kOpTo:
      current = current->To(text);
      break;
    case TokenSequenceBase::kOpAll:
      current = current->All(text);
      break;
    default:
      // The terminator and operators no converter takes ("=" out of place, "-", "*").
      SyntaxParserUtility::UnknownKeyword(current, text);
  }
}

void SyntaxReader::CheckNestingDepth(const std::string& text) {
  const ReaderData& data = *_readerData;
  if (data._parenDepth + data._bracketDepth > kMaximumNesting) {
    SyntaxParserUtility::NestingTooDeep(data._current, text, kMaximumNesting);
  }
}

bool SyntaxReader::IsTokenAttribute(TARN_TokenSequence* tokens) {
  if (!tokens->Next()) {
    return false;
  }
  char lookAhead[kTokenBufferSize];
  GetStringFromTokens(tokens, lookAhead);
  if (tokens->GetTokenType() == TokenSequenceBase::kTokenOperator &&
      tokens->GetOperatorCode() == TokenSequenceBase::kOpEquals) {
    return true;
  }
  tokens->SetPosition(tokens->PositionBefore());
  return false;
}

void SyntaxReader::StringConverter(TARN_TokenSequence* tokens, const std::string& text, int op) {
  ReaderData& data = *_readerData;
  SyntaxConverter*& current = data._current;
  const bool depthsZero = data._parenDepth == 0 && data._bracketDepth == 0;
  switch (op) {
    case TokenSequenceBase::kOpGreaterThan:
      current = current->GreaterThan(text);
      return;
    case TokenSequenceBase::kOpTo:
      current = current->To(text);
      return;
    case TokenSequenceBase::kOpBy:
      if (!depthsZero) {
        SyntaxParserUtility::UnbalancedParen(current, text);
      }
      current = current->By(text);
      return;
    case TokenSequenceBase::kOpAll:
      if (!depthsZero) {
        SyntaxParserUtility::UnbalancedParen(current, text);
      }
      current = current->All(text);
      return;
    default:
      break;
  }
  const bool afterSlash = data._prevTokenType == TokenSequenceBase::kTokenOperator &&
                          data._prevOperator == TokenSequenceBase::kOpSlash;
  const bool isAttribute = IsTokenAttribute(tokens);
  if (afterSlash) {
    if (isAttribute) {
      // "/ word =": a keyword with a value where a subcommand name belongs.
      SyntaxParserUtility::IncorrectSequence(current, "/ " + text + " =");
    }
    current = current->SubCommandString(text);
  } else if (isAttribute) {
    current = current->AttributeString(text, tokens);
  } else {
    current = current->String(text);
  }
}
