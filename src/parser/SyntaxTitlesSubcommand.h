// SyntaxTitlesSubcommand.h - TITLES: the title, caption and corner text of one table
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxKeywordSubcommand.h"

class SyntaxMiscSubcommands;
class TableSettings;

/// TITLES TITLE='line'... CAPTION='line'... CORNER='line'.... Each keyword opens a text
/// holder (SyntaxMiscSubcommands, a child of this converter) that reads the literals; at the
/// end the holders go to the table's settings.
class SyntaxTitlesSubcommand : public SyntaxKeywordSubcommand {
 public:
  /// `settings` belongs to the table and outlives this converter.
  explicit SyntaxTitlesSubcommand(TableSettings& settings);
  ~SyntaxTitlesSubcommand() override;

  /// Called by a holder when its text is complete: no keyword awaits its value any more.
  void ResetAttribute();
  /// The holders; null when the keyword was not given.
  const SyntaxMiscSubcommands* GetTitle() const;
  const SyntaxMiscSubcommands* GetCaption() const;
  const SyntaxMiscSubcommands* GetCorner() const;

 protected:
  /// Opens the holder of TITLE, CAPTION or CORNER and makes it current.
  SyntaxConverter* OnKeyword(int rule) override;
  void Commit(const std::string& text) override;
  void DumpDetails(std::ostream& out) const override;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
