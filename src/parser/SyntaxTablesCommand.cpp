// SyntaxTablesCommand.cpp - which subcommand opens where, and the commit at the end of the command
#include "parser/SyntaxTablesCommand.h"

#include <memory>

#include "host/data/HostRecords.h"
#include "host/data/HostStrings.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxFormatSubcommand.h"
#include "parser/SyntaxHideSmallCountsSubcommand.h"
#include "parser/SyntaxMRSets.h"
#include "parser/SyntaxMRVariableSet.h"
#include "parser/SyntaxPComputeSubcommand.h"
#include "parser/SyntaxPPropertiesSubcommand.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxSMissingSubcommand.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxVLabelsSubcommand.h"
#include "parser/SyntaxVariableName.h"
#include "parser/SyntaxWeightSubcommand.h"
#include "parser/TableSettings.h"
#include "parser/VLabelsSettings.h"

struct SyntaxTablesCommand::CommandData {
  SyntaxFormatSubcommand* _format = nullptr;                    // the latest FORMAT; a child of the root
  VLabelsSettings _vLabels;                                     // what every VLABELS asked for, later wins
  SyntaxMRSets* _mrSets = nullptr;                              // the latest MRSETS; a child of the root
  SyntaxSMissingSubcommand* _sMissing = nullptr;                // the latest SMISSING; a child of the root
  SyntaxHideSmallCountsSubcommand* _hideSmallCounts = nullptr;  // the latest HIDESMALLCOUNTS; a child
  std::string _baseWeightVarName;                               // WEIGHT variable; empty for none
  int _baseWeightVarIndex = -1;                                 // its dictionary index; -1 for none
  std::vector<ComputedDefinition> _computedDefinitions;         // PCOMPUTE and PPROPERTIES in order
  std::vector<SyntaxPComputeSubcommand*> _pComputes;            // in syntax order; children of the root
  std::vector<SyntaxPPropertiesSubcommand*> _pProperties;       // in syntax order; children of the root
  std::vector<SyntaxTableSubcommand*> _tables;                  // in syntax order; children of the root
};

namespace {

// Subcommands that belong to one table; before any TABLE they are out of order.
constexpr const char* kTableSubcommands[] = {"CLABELS",     "SLABELS", "CATEGORIES", "TITLES",
                                             "COMPARETEST", "SIGTEST", "CRITERIA"};

}  // namespace

SyntaxTablesCommand::SyntaxTablesCommand() : _commandData(new CommandData) {
  SetCommandScope(this);
  // The base weight is the command's: none until its WEIGHT says so.
  SetBaseWeightVarIndex(-1);
}

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

template <typename Subcommand>
Subcommand* SyntaxTablesCommand::AddOnce(Subcommand*& slot, const char* keyword) {
  if (slot != nullptr) {
    SyntaxParserUtility::DuplicateWarning(this, keyword);
  }
  slot = AddSubcommand(new Subcommand);
  return slot;
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
    return AddOnce(_commandData->_format, "FORMAT");
  }
  if (KeywordMatch(text.c_str(), "SMISSING")) {
    return AddOnce(_commandData->_sMissing, "SMISSING");
  }
  if (KeywordMatch(text.c_str(), "VLABELS")) {
    // Repeating VLABELS is normal: each adds to the settings, and later requests win.
    return AddSubcommand(new SyntaxVLabelsSubcommand(_commandData->_vLabels));
  }
  if (KeywordMatch(text.c_str(), "WEIGHT")) {
    return AddSubcommand(new SyntaxWeightSubcommand(this));
  }
  if (KeywordMatch(text.c_str(), "HIDESMALLCOUNTS")) {
    return AddOnce(_commandData->_hideSmallCounts, "HIDESMALLCOUNTS");
  }
  if (KeywordMatch(text.c_str(), "MRSETS")) {
    return AddOnce(_commandData->_mrSets, "MRSETS");
  }
  if (KeywordMatch(text.c_str(), "PCOMPUTE")) {
    SyntaxPComputeSubcommand* pCompute = AddSubcommand(new SyntaxPComputeSubcommand);
    _commandData->_pComputes.push_back(pCompute);
    _commandData->_computedDefinitions.push_back({pCompute, nullptr});
    return pCompute;
  }
  if (KeywordMatch(text.c_str(), "PPROPERTIES")) {
    // Properties name computed categories, so some must be defined first.
    if (_commandData->_pComputes.empty()) {
      SyntaxParserUtility::MissingKeyword(this, "PCOMPUTE");
    }
    SyntaxPPropertiesSubcommand* properties = AddSubcommand(new SyntaxPPropertiesSubcommand);
    _commandData->_pProperties.push_back(properties);
    _commandData->_computedDefinitions.push_back({nullptr, properties});
    return properties;
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
    _commandData->_baseWeightVarIndex = index;
    SetBaseWeightVarIndex(index);
    // The base weight replaces the case weight for this run.
    if (ReadHostWord(CmnGlb, kCmnGlbWeightWordOffset) > 0) {
      WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, 0);
    }
  }
}

int SyntaxTablesCommand::GetBaseWeightIndex() const {
  return _commandData->_baseWeightVarIndex;
}

const std::vector<ComputedDefinition>& SyntaxTablesCommand::GetComputedDefinitions() const {
  return _commandData->_computedDefinitions;
}

std::string SyntaxTablesCommand::GetBaseWeightVarName() const {
  return _commandData->_baseWeightVarName;
}

void SyntaxTablesCommand::CommitGlobalSubcommands() {
  const CommandData& data = *_commandData;
  const VLabelsSettings& vLabels = data._vLabels;
  for (SyntaxTableSubcommand* table : data._tables) {
    TableSettings& settings = table->GetTableSettings();
    if (data._format != nullptr) {
      const SyntaxFormatSubcommand& format = *data._format;
      if (format.HasMinColumnWidth()) {
        settings.SetMinColumnWidthPoints(format.GetMinColumnWidthPoints());
      }
      if (format.HasMaxColumnWidth()) {
        settings.SetMaxColumnWidthPoints(format.GetMaxColumnWidthPoints());
      }
      const int type = format.GetEmptyStringType();
      if (type == PresentationCodes::kString) {
        settings.SetEmptyString(type, format.GetEmptyString());
      } else {
        settings.SetEmptyStringType(type);
      }
      settings.SetMissingString(format.GetMissingString());
    }
    if (!vLabels.IsEmpty()) {
      for (SyntaxVariableName* variable : table->GetTableVarList()) {
        if (vLabels.IsForAll()) {
          variable->SetVLabelsOption(vLabels.GetAllOption());
        }
        const std::string name = variable->GetNameToken();
        if (name.empty() || name[0] != '$') {
          const auto entry = vLabels.GetByIndex().find(variable->GetIndex());
          if (entry != vLabels.GetByIndex().end()) {
            variable->SetVLabelsOption(entry->second);
          }
        } else {
          // Set names are compared as written: the set's own spelling is what the node holds.
          for (const MRSetVLabelsOption& entry : vLabels.GetBySet()) {
            if (entry._name == name) {
              variable->SetVLabelsOption(entry._option);
            }
          }
        }
      }
    }
    if (data._mrSets != nullptr) {
      const bool isNo = data._mrSets->GetIsCountDuplicatesNo();
      for (SyntaxVariableName* variable : table->GetTableSetList()) {
        static_cast<SyntaxMRVariableSet*>(variable)->SetCountDuplicates(isNo);
      }
    }
    if (data._sMissing != nullptr) {
      settings.SetIsPairwise(data._sMissing->GetIsPairwise());
    }
  }
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
