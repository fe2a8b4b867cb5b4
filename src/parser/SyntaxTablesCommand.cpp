// SyntaxTablesCommand.cpp - which subcommand opens where, and the commit at the end of the command
#include "parser/SyntaxTablesCommand.h"

#include <memory>

#include "host/data/HostRecords.h"
#include "host/data/HostStrings.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxTableSubcommand.h"

struct SyntaxTablesCommand::CommandData {
  std::string _baseWeightVarName;                          // WEIGHT variable; empty for none
  std::vector<SyntaxPComputeSubcommand*> _pComputes;       // in syntax order; children of the root
  std::vector<SyntaxPPropertiesSubcommand*> _pProperties;  // in syntax order; children of the root
  std::vector<SyntaxTableSubcommand*> _tables;             // in syntax order; children of the root
};

namespace {

// Subcommands that belong to the command as a whole; each must come before the first TABLE.
constexpr const char* kGlobalSubcommands[] = {"FORMAT",          "SMISSING", "VLABELS", "WEIGHT",
                                              "HIDESMALLCOUNTS", "MRSETS",   "PCOMPUTE"};

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

// / TABLE | FORMAT | SMISSING | VLABELS | WEIGHT | HIDESMALLCOUNTS | MRSETS | PCOMPUTE | PPROPERTIES
SyntaxConverter* SyntaxTablesCommand::SubCommandString(const std::string& text) {
  if (KeywordMatch(text.c_str(), "TABLE")) {
    auto table = std::make_unique<SyntaxTableSubcommand>(static_cast<int>(_commandData->_tables.size()) + 1);
    SyntaxTableSubcommand* added = table.get();
    Add(table.release());
    _commandData->_tables.push_back(added);
    return added;
  }
  for (const char* keyword : kGlobalSubcommands) {
    if (KeywordMatch(text.c_str(), keyword)) {
      // TODO(#5): the global subcommands get their converters with the subcommand work.
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
  return false;
}

int SyntaxTablesCommand::GetHideSmallCountsValue() const {
  return 0;
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
  // TODO(#5): equal table titles get trailing blanks here, once tables carry titles.
}
