// SyntaxMiscSubcommands.h - the literal lines of one TITLES keyword, with )DATE, )TIME and )TABLE filled in
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxComposite.h"

class SyntaxTitlesSubcommand;

/// Reads the literals after TITLE=, CAPTION= or CORNER=. Each literal is a line. When the
/// text is complete (the next keyword, "/" or ".") the lines are joined and the parameters
/// ")TIME", ")DATE" and ")TABLE" are replaced by the local time, the local date and the
/// table's expression text.
class SyntaxMiscSubcommands : public SyntaxComposite {
 public:
  /// `owner` is the TITLES converter this holder belongs to; not owned.
  explicit SyntaxMiscSubcommands(SyntaxTitlesSubcommand* owner);
  ~SyntaxMiscSubcommands() override;

  SyntaxConverter* Literal(const std::string& text) override;
  /// Completes this text, then hands the keyword to the owner.
  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;
  /// No lines is IncompleteSubcommand; otherwise builds the text.
  void ValidateAndCommit(const std::string& text) override;

  /// The finished text, lines joined by "\n"; empty before ValidateAndCommit.
  std::string GetAttributeString() const;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
