// SyntaxTablesCommand.cpp - which subcommand opens where, and the commit at the end of the command
#include "parser/SyntaxTablesCommand.h"

#include <memory>

#include "host/data/HostRecords.h"
#include "host/data/HostStrings.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxFormatSubcommand.h"
#include "parser/SyntaxHideSmallCountsSubcommand.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxSMissingSubcommand.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxVLabelsSubcommand.h"
#include "parser/SyntaxWeightSubcommand.h"
#include "parser/VLabelsSettings.h"

struct SyntaxTablesCommand::CommandData {
  SyntaxFormatSubcommand* _format = nullptr;                    // the latest FORMAT; a child of the root
  VLabelsSettings _vLabels;                                     // what every VLABELS asked for, later wins
  SyntaxSMissingSubcommand* _sMissing = nullptr;                // the latest SMISSING; a child of the root
  SyntaxHideSmallCountsSubcommand* _hideSmallCounts = nullptr;  // the latest HIDESMALLCOUNTS; a child
  std::string _baseWeightVarName;                               // WEIGHT variable; empty for none
  std::vector<SyntaxPComputeSubcommand*> _pComputes;            // in syntax order; children of the root
  std::vector<SyntaxPPropertiesSubcommand*> _pProperties;       // in syntax order; children of the root
  std::vector<SyntaxTableSubcommand*> _tables;                  // in syntax order; children of the root
};

namespace {

// Global subcommands whose converters are still to come.
constexpr const char* kPendingGlobalSubcommands[] = {"MRSETS", "PCOMPUTE"};

// Subcommands that belong to one table; before any TABLE they are out of order.
constexpr const char* kTableSubcommands[] = {"CLABELS",     "SLABELS", "CATEGORIES", "TITLES",
                                             "COMPARETEST", "SIGTEST", "CRITERIA"};

}  // namespace

SyntaxTablesCommand::SyntaxTablesCommand() : _commandData(new CommandData) {}

SyntaxTablesCommand::~SyntaxTablesCommand() {
  delete _commandData;
}

int SyntaxTablesCommand::GetType() const {
  return kConverterCommand;
}

template <typename Subcommand>
Subcommand* SyntaxTablesCommand::AddSubcommand(Subcommand* subcommand) {
  Add(subcommand);
  return subcommand;
}

// / TABLE | FORMAT | SMISSING | VLABELS | WEIGHT | HIDESMALLCOUNTS | MRSETS | PCOMPUTE | PPROPERTIES
SyntaxConverter* SyntaxTablesCommand::SubCommandString(const std::string& text) {
  if (KeywordMatch(text.c_str(), "TABLE")) {
    auto table = std::make_unique<SyntaxTableSubcommand>(static_cast<int>(_commandData->_tables.size()) + 1);
    SyntaxTableSubcommand* added = table.get();
    Add(table.release());
    _commandData->_tables.push_back(added);
    return added;
  }
  if (KeywordMatch(text.c_str(), "FORMAT")) {
    if (_commandData->_format != nullptr) {
      SyntaxParserUtility::DuplicateWarning(this, "FORMAT");
    }
    _commandData->_format = AddSubcommand(new SyntaxFormatSubcommand);
    return _commandData->_format;
  }
  if (KeywordMatch(text.c_str(), "SMISSING")) {
    if (_commandData->_sMissing != nullptr) {
      SyntaxParserUtility::DuplicateWarning(this, "SMISSING");
    }
    _commandData->_sMissing = AddSubcommand(new SyntaxSMissingSubcommand);
    return _commandData->_sMissing;
  }
  if (KeywordMatch(text.c_str(), "VLABELS")) {
    // Repeating VLABELS is normal: each adds to the settings, and later requests win.
    return AddSubcommand(new SyntaxVLabelsSubcommand(_commandData->_vLabels));
  }
  if (KeywordMatch(text.c_str(), "WEIGHT")) {
    return AddSubcommand(new SyntaxWeightSubcommand(this));
  }
  if (KeywordMatch(text.c_str(), "HIDESMALLCOUNTS")) {
    if (_commandData->_hideSmallCounts != nullptr) {
      SyntaxParserUtility::DuplicateWarning(this, "HIDESMALLCOUNTS");
    }
    _commandData->_hideSmallCounts = AddSubcommand(new SyntaxHideSmallCountsSubcommand);
    return _commandData->_hideSmallCounts;
  }
  for (const char* keyword : kPendingGlobalSubcommands) {
    if (KeywordMatch(text.c_str(), keyword)) {
      // TODO(#5): MRSETS and PCOMPUTE get their converters with the set and computed-category work.
      SyntaxParserUtility::UnknownKeyword(this, text);
    }
  }
  if (KeywordMatch(text.c_str(), "PPROPERTIES")) {
    if (_commandData->_pComputes.empty()) {
      SyntaxParserUtility::MissingKeyword(this, "PCOMPUTE");
    }
    // TODO(#5): PPROPERTIES gets its converter with the computed-category work.
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  for (const char* keyword : kTableSubcommands) {
    if (KeywordMatch(text.c_str(), keyword)) {
      SyntaxParserUtility::OutOfOrderSubcommand("TABLE", text);
    }
  }
  SyntaxParserUtility::UnknownKeyword(this, text);
}

SyntaxConverter* SyntaxTablesCommand::Slash(const std::string& /*text*/) {
  return this;
}

SyntaxConverter* SyntaxTablesCommand::Period(const std::string& /*text*/) {
  CommitGlobalSubcommands();
  MakeTableTitlesUnique();
  return this;
}

std::vector<SyntaxTableSubcommand*>& SyntaxTablesCommand::GetTable() {
  return _commandData->_tables;
}

std::vector<SyntaxPComputeSubcommand*> SyntaxTablesCommand::GetPComputeSubcommands() const {
  return _commandData->_pComputes;
}

std::vector<SyntaxPPropertiesSubcommand*> SyntaxTablesCommand::GetPPropertiesSubcommands() const {
  return _commandData->_pProperties;
}

bool SyntaxTablesCommand::GetHideSmallCountsSet() const {
  return _commandData->_hideSmallCounts != nullptr && _commandData->_hideSmallCounts->GetHideSmallCountsSet();
}

int SyntaxTablesCommand::GetHideSmallCountsValue() const {
  return _commandData->_hideSmallCounts != nullptr ? _commandData->_hideSmallCounts->GetHideSmallCountsValue() : 0;
}

void SyntaxTablesCommand::SetBaseWeightVariable(int index, const std::string& name) {
  _commandData->_baseWeightVarName = name;
  if (index >= 0) {
    SetBaseWeightVarIndex(index);
    // The base weight replaces the case weight for this run.
    if (ReadHostWord(CmnGlb, kCmnGlbWeightWordOffset) > 0) {
      WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, 0);
    }
  }
}

std::string SyntaxTablesCommand::GetBaseWeightVarName() const {
  return _commandData->_baseWeightVarName;
}

void SyntaxTablesCommand::CommitGlobalSubcommands() {
  // TODO(#5): FORMAT, VLABELS, MRSETS and SMISSING settings are copied into each table here.
}

void SyntaxTablesCommand::MakeTableTitlesUnique() {
  // The output names tables by their titles, so two equal titles would be indistinguishable.
  // Each later duplicate gets one more trailing blank, and the comparison goes on with the
  // changed text: three equal titles end in none, one and two blanks.
  std::vector<SyntaxTableSubcommand*>& tables = _commandData->_tables;
  for (size_t first = 0; first < tables.size(); ++first) {
    if (!tables[first]->HasTitle()) {
      continue;
    }
    for (size_t later = first + 1; later < tables.size(); ++later) {
      if (tables[later]->HasTitle() && tables[later]->GetTitle() == tables[first]->GetTitle()) {
        tables[later]->SetTitle(tables[later]->GetTitle() + " ");
      }
    }
  }
}

const VLabelsSettings& SyntaxTablesCommand::GetVLabelsSettings() const {
  return _commandData->_vLabels;
}
