// SyntaxTableKeywordSubcommand.cpp - the keywords of SLABELS, CLABELS, SIGTEST and CRITERIA, and what each
// sets
#include "parser/SyntaxTableKeywordSubcommand.h"

#include <ostream>

#include "host/engine/TableEncryptionCodes.h"
#include "parser/PresentationCodes.h"
#include "parser/SigTestSettings.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/TableSettings.h"

namespace {

using Codes = TableEncryptionCodes;

// The keywords of each subcommand, in the order of its rules.
enum SLabelsKeyword { kPosition, kVisible };
enum CLabelsKeyword { kRowLabels };
enum SigTestKeyword { kType, kAlpha, kCategories, kIncludeMRSets };
enum CriteriaKeyword { kCILevel };

void CommitSLabels(const KeywordReader& keywords, TableSettings& settings, const SyntaxConverter* /*self*/,
                   const std::string& /*text*/) {
  if (keywords.WasGiven(kPosition)) {
    settings.SetSLabelPosition(static_cast<PresentationCodes::SLabelPosition>(keywords.Code(kPosition, 0)));
  }
  if (keywords.WasGiven(kVisible)) {
    settings.SetSLabelVisibility(keywords.Code(kVisible, 1) == 1);
  }
}

void DumpSLabels(const KeywordReader& keywords, std::ostream& out) {
  out << " position=" << keywords.Code(kPosition, PresentationCodes::kSLabelColumn)
      << " visible=" << (keywords.Code(kVisible, 1) == 1);
}

void CommitCLabels(const KeywordReader& keywords, TableSettings& settings, const SyntaxConverter* /*self*/,
                   const std::string& /*text*/) {
  if (keywords.WasGiven(kRowLabels)) {
    settings.SetCLabelOption(static_cast<Codes::CLabelOption>(keywords.Code(kRowLabels, 0)));
  }
}

void DumpCLabels(const KeywordReader& keywords, std::ostream& out) {
  out << " option=" << keywords.Code(kRowLabels, Codes::kCLabelAuto)
      << " set=" << keywords.WasGiven(kRowLabels);
}

void CommitSigTest(const KeywordReader& keywords, TableSettings& settings, const SyntaxConverter* self,
                   const std::string& text) {
  if (keywords.WasGiven(kType)) {
    SigTestSettings test(Codes::kSigTestChiSquare, keywords.Number(kAlpha, 0.05),
                         keywords.Text(kAlpha, "0.05"));
    test._includeMRSets = keywords.Code(kIncludeMRSets, 1) == 1;
    test._includeSubtotals = keywords.Code(kCategories, 0) == 1;
    settings.AddSignificanceTest(test);
    return;
  }
  if (keywords.WasGiven(kAlpha) || keywords.WasGiven(kCategories) || keywords.WasGiven(kIncludeMRSets)) {
    SyntaxParserUtility::IncompleteSubcommand(self, text);
  }
}

void DumpSigTest(const KeywordReader& keywords, std::ostream& out) {
  out << " type=" << keywords.Code(kType, 0) << " alpha=" << keywords.Text(kAlpha, "0.05")
      << " includeSubtotals=" << (keywords.Code(kCategories, 0) == 1)
      << " includeMRSets=" << (keywords.Code(kIncludeMRSets, 1) == 1);
}

void CommitCriteria(const KeywordReader& keywords, TableSettings& settings, const SyntaxConverter* /*self*/,
                    const std::string& /*text*/) {
  if (keywords.WasGiven(kCILevel)) {
    // The text as written labels the limits.
    settings.SetCILevel(keywords.Number(kCILevel, 95.0), keywords.Text(kCILevel, "95"));
  }
}

void DumpCriteria(const KeywordReader& keywords, std::ostream& out) {
  out << " ciLevel=" << keywords.Text(kCILevel, "95");
}

}  // namespace

// SLABELS POSITION '=' COLUMN|ROW|LAYER | VISIBLE '=' YES|NO
const SyntaxTableKeywordSubcommand::Data& SyntaxTableKeywordSubcommand::SLabels() {
  static const Data data{"SLABELS", kConverterSLabels, {
      {"POSITION", KeywordValueKind::kWord, {{"COLUMN", PresentationCodes::kSLabelColumn},
                                              {"ROW", PresentationCodes::kSLabelRow},
                                              {"LAYER", PresentationCodes::kSLabelLayer}}},
      {"VISIBLE", KeywordValueKind::kWord, {{"YES", 1}, {"NO", 0}}}},
      &CommitSLabels, &DumpSLabels};
  return data;
}

// CLABELS AUTO | ROWLABELS '=' OPPOSITE|LAYER | COLLABELS '=' OPPOSITE|LAYER
// One table has one label option: any second request replaces the first and warns, naming
// the word as typed (each rule is sameAs ROWLABELS, warnsWithTypedWord).
const SyntaxTableKeywordSubcommand::Data& SyntaxTableKeywordSubcommand::CLabels() {
  static const Data data{"CLABELS", kConverterCLabels, {
      {"ROWLABELS", KeywordValueKind::kWord,
       {{"OPPOSITE", Codes::kCLabelRowOpposite}, {"LAYER", Codes::kCLabelRowLayer}}, true, kRowLabels, true},
      {"COLLABELS", KeywordValueKind::kWord,
       {{"OPPOSITE", Codes::kCLabelColOpposite}, {"LAYER", Codes::kCLabelColLayer}}, true, kRowLabels, true},
      {nullptr, KeywordValueKind::kWord, {{"AUTO", Codes::kCLabelAuto}}, true, kRowLabels, true}},
      &CommitCLabels, &DumpCLabels};
  return data;
}

// SIGTEST TYPE '=' CHISQUARE | ALPHA '=' number | CATEGORIES '=' ALLVISIBLE|SUBTOTALS |
//         INCLUDEMRSETS '=' YES|NO
const SyntaxTableKeywordSubcommand::Data& SyntaxTableKeywordSubcommand::SigTest() {
  static const Data data{"SIGTEST", kConverterPlain, {
      {"TYPE", KeywordValueKind::kWord, {{"CHISQUARE", Codes::kSigTestChiSquare}}},
      NumberBetween("ALPHA", 0.0, 1.0, &SyntaxParserUtility::InvalidAlpha),
      {"CATEGORIES", KeywordValueKind::kWord, {{"ALLVISIBLE", 0}, {"SUBTOTALS", 1}}},
      {"INCLUDEMRSETS", KeywordValueKind::kWord, {{"YES", 1}, {"NO", 0}}}},
      &CommitSigTest, &DumpSigTest};
  return data;
}

// CRITERIA CILEVEL '=' number, strictly between 0 and 100
const SyntaxTableKeywordSubcommand::Data& SyntaxTableKeywordSubcommand::Criteria() {
  static const Data data{"CRITERIA", kConverterPlain,
      {NumberBetween("CILEVEL", 0.0, 100.0, &SyntaxParserUtility::InvalidCILevel)},
      &CommitCriteria, &DumpCriteria};
  return data;
}

SyntaxTableKeywordSubcommand::SyntaxTableKeywordSubcommand(const Data& data, TableSettings& settings)
    : SyntaxKeywordSubcommand(data.name, data.type, data.rules), _data(data), _settings(settings) {}

void SyntaxTableKeywordSubcommand::Commit(const std::string& text) {
  _data.commit(Keywords(), _settings, this, text);
}

void SyntaxTableKeywordSubcommand::DumpDetails(std::ostream& out) const {
  out << "state=" << Keywords().GetState();
  _data.dump(Keywords(), out);
}
