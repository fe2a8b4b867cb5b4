// ParserTestSupport.h - runs whole commands through lexer and parser on a small data set, and reads messages
// back
#pragma once

#include <string>
#include <vector>

class BpComposite;

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

/// What one command left behind.
struct ParseOutcome {
  bool succeeded = false;                  // ReadTokens returned normally
  CatalogueMessage error;                  // the thrown message when it did not
  std::vector<CatalogueMessage> reported;  // warnings and errors reported on the way
  std::string dump;                        // the converter tree after the parse
  std::vector<std::string> expressions;    // each table's expression text, in table order
  std::vector<int> tableNumbers;           // each table's number, in table order
};

/// Lexes `command` (a whole command such as "QUILT /TABLE a." ) and parses it against the
/// test data set: numeric variables a (labelled "Age group"), b, c, d, e; dichotomies d1, d2
/// in the set $dich (labelled "Media used", counted value 1); categories m1, m2 in the set
/// $cats; and $broken, a set with a member that is not in the dictionary.
ParseOutcome ParseCommand(const std::string& command);
