// SyntaxReader.h - walks the token stream and feeds one event per token to the converters
#pragma once

#include <string>
#include <vector>

class SyntaxConverter;
class SyntaxTableSubcommand;
class TARN_DataSource;
class TARN_TokenSequence;

/// The parser's driver. It owns the converter tree, rooted in a SyntaxTablesCommand, and
/// the current converter; it maps each token to one event (Number, Literal, String,
/// SubCommandString, AttributeString, Slash, Plus, ...) on the current converter and makes
/// whatever the event returns current. There is no grammar table: the converters are the
/// grammar. See docs/parser.md for the event protocol.
class SyntaxReader {
 public:
  /// Creates the root of the tree, which is current until the first subcommand.
  SyntaxReader();
  /// Destroys the whole converter tree, also after a parse error.
  virtual ~SyntaxReader();
  SyntaxReader(const SyntaxReader&) = delete;
  SyntaxReader& operator=(const SyntaxReader&) = delete;

  /// Parses the whole command behind `tokens` (the first token, the command word, is
  /// skipped). Throws BpComposite on the first parse error; warnings are reported on the
  /// way. After a normal return the root is current and the tables are committed.
  void ReadTokens(TARN_TokenSequence* tokens);
  /// The parsed tables in syntax order; owned by the tree. Only meaningful after
  /// ReadTokens returned normally.
  std::vector<SyntaxTableSubcommand*>& GetTable();
  /// Attaches the run's data source (not owned) to the converters; call before ReadTokens.
  void SetDataSource(TARN_DataSource* dataSource);

  /// The current converter, for tests and diagnostics; owned by the tree.
  SyntaxConverter* GetCurrent() const;

 private:
  /// Reads the current token's text into `buffer` (kTokenBufferSize bytes, terminated).
  /// An empty or missing text raises NoTableSubcommand.
  void GetStringFromTokens(TARN_TokenSequence* tokens, char* buffer);
  /// Records the expression text of the table being written, for titles. Returns the new
  /// state of `writing`.
  bool WriteTableExpression(SyntaxTableSubcommand*& expressionTable, bool writing, const std::string& text,
                            int op, int type);
  /// Events of operator tokens.
  void OperatorConverter(TARN_TokenSequence* tokens, const std::string& text, int op);
  /// Raises NestingTooDeep when the "(" or "[" just counted opens one level too many.
  void CheckNestingDepth(const std::string& text);
  /// Looks ahead one token: true, with the "=" consumed, when it is "="; otherwise steps
  /// back so the look-ahead token is delivered again.
  bool IsTokenAttribute(TARN_TokenSequence* tokens);
  /// Events of word tokens.
  void StringConverter(TARN_TokenSequence* tokens, const std::string& text, int op);

  struct ReaderData;
  ReaderData* _readerData;
};
