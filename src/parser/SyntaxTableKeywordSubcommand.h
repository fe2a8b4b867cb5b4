// SyntaxTableKeywordSubcommand.h - the keyword subcommands that only set options of one table
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "parser/SyntaxKeywordSubcommand.h"

class TableSettings;

/// SLABELS, CLABELS, SIGTEST and CRITERIA: keyword lists whose whole effect is a few options
/// of the table that created them. Each is one Data record (its keywords, what it hands to
/// the table's settings at its end, what its dump shows), so a new one of its kind is a
/// table and two small functions rather than another class.
class SyntaxTableKeywordSubcommand : public SyntaxKeywordSubcommand {
 public:
  struct Data {
    const char* name;  // the subcommand's word
    int type;          // what GetType answers
    std::vector<KeywordRule> rules;
    /// Hands what was read to the table; `self` names the subcommand in errors.
    void (*commit)(const KeywordReader& keywords, TableSettings& settings, const SyntaxConverter* self,
                   const std::string& text);
    void (*dump)(const KeywordReader& keywords, std::ostream& out);
  };

  /// SLABELS POSITION=COLUMN|ROW|LAYER VISIBLE=YES|NO: only what is given is set.
  static const Data& SLabels();
  /// CLABELS AUTO | ROWLABELS=OPPOSITE|LAYER | COLLABELS=OPPOSITE|LAYER: one option a table.
  static const Data& CLabels();
  /// SIGTEST TYPE=CHISQUARE ALPHA= CATEGORIES= INCLUDEMRSETS=: registers one test when TYPE
  /// was given; options without TYPE are incomplete.
  static const Data& SigTest();
  /// CRITERIA CILEVEL=n, with n strictly between 0 and 100.
  static const Data& Criteria();

  /// `data` is one of the records above; `settings` belongs to the table and outlives this.
  SyntaxTableKeywordSubcommand(const Data& data, TableSettings& settings);

 protected:
  void Commit(const std::string& text) override;
  void DumpDetails(std::ostream& out) const override;

 private:
  const Data& _data;
  TableSettings& _settings;  // the table's
};
