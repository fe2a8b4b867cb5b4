// SyntaxTableSubcommand.cpp - the table node: expression text, variable list, BY count, subcommand order
#include "parser/SyntaxTableSubcommand.h"

#include <cctype>
#include <ostream>

#include "host/data/HostStrings.h"
#include "host/data/TARN_DataSource.h"
#include "host/data/TARN_Variable.h"
#include "parser/CommandScope.h"
#include "parser/SyntaxCategoriesSubcommand.h"
#include "parser/SyntaxCompareTestSubcommand.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxPComputeSubcommand.h"
#include "parser/SyntaxPPropertiesSubcommand.h"
#include "parser/SyntaxParserUtility.h"
#include "parser/SyntaxTableKeywordSubcommand.h"
#include "parser/SyntaxTitlesSubcommand.h"
#include "parser/SyntaxVariableName.h"
#include "parser/TableSettings.h"

struct SyntaxTableSubcommand::TableData {
  int _tableNumber = 0;                            // 1-based number of the table
  int _stackedTerms = 1;                           // terms of the expression joined by +
  int _numOfBys = 0;                               // count of BY; 0 to 2
  std::vector<SyntaxVariableName*> _tableVarList;  // variables and sets in order of appearance; not owned
  std::vector<SyntaxVariableName*> _tableSetList;  // those that are multiple-response sets; not owned
  std::vector<std::string> _expressionTokens;      // text of the expression, token by token
  std::string _expression;                         // cached joined text; empty until asked for
  TableSettings _settings;                         // what the table-level subcommands commit
  bool _dissected = false;                         // the expression has been cut into cubes
  std::string _title;                              // cached title; empty until asked for or set
};

namespace {

constexpr int kMaximumBys = 2;

// The subcommand words that belong before the first table.
constexpr const char* kGlobalSubcommands[] = {"FORMAT", "SMISSING",        "VLABELS",
                                              "MRSETS", "HIDESMALLCOUNTS", "WEIGHT"};

}  // namespace

SyntaxTableSubcommand::SyntaxTableSubcommand(int tableNumber) : _tableData(new TableData) {
  _tableData->_tableNumber = tableNumber;
  SetTableScope(this);
  // An expression starts with a variable, a set, a paren, or BY for an empty row axis.
  SetContexts(kContextBeforeOperand | kContextBy);
}

SyntaxTableSubcommand::~SyntaxTableSubcommand() {
  delete _tableData;
}

std::string SyntaxTableSubcommand::GetSubcommandName() const {
  return "TABLE";
}

int SyntaxTableSubcommand::GetType() const {
  return kConverterTable;
}

// TABLE ( expression ) ...
SyntaxConverter* SyntaxTableSubcommand::LeftParen(const std::string& text) {
  SyntaxConverter* paren = SyntaxConverter::LeftParen(text);
  // When the paren closes the table is current again, with a complete operand.
  SetContexts(kContextAfterOperand);
  return paren;
}

SyntaxConverter* SyntaxTableSubcommand::Slash(const std::string& /*text*/) {
  ValidateAndCommit("/");
  // The expression is over: only a subcommand word may follow.
  SetContexts(kContextNone);
  return this;
}

SyntaxConverter* SyntaxTableSubcommand::Period(const std::string& text) {
  ValidateAndCommit(text);
  ValidateComperimeterRequest();
  ValidateStatisticalTests();
  ValidateCubeSizes();
  return SyntaxConverter::Period(text);
}

// TABLE expression / SLABELS | CLABELS | CATEGORIES | TITLES | SIGTEST | COMPARETEST | CRITERIA | TABLE
SyntaxConverter* SyntaxTableSubcommand::SubCommandString(const std::string& text) {
  TableSettings& settings = _tableData->_settings;
  SyntaxConverter* subcommand = nullptr;
  if (KeywordMatch(text.c_str(), "SLABELS")) {
    subcommand = new SyntaxTableKeywordSubcommand(SyntaxTableKeywordSubcommand::SLabels(), settings);
  } else if (KeywordMatch(text.c_str(), "CLABELS")) {
    subcommand = new SyntaxTableKeywordSubcommand(SyntaxTableKeywordSubcommand::CLabels(), settings);
  } else if (KeywordMatch(text.c_str(), "CATEGORIES")) {
    subcommand = new SyntaxCategoriesSubcommand;
  } else if (KeywordMatch(text.c_str(), "TITLES")) {
    subcommand = new SyntaxTitlesSubcommand(settings);
  } else if (KeywordMatch(text.c_str(), "SIGTEST")) {
    // A test compares the categories a computed category is made of; hidden, they could
    // not be compared.
    if (const CommandScope* command = GetCommandScope()) {
      for (const SyntaxPComputeSubcommand* pCompute : command->GetPComputeSubcommands()) {
        for (const SyntaxPPropertiesSubcommand* properties : command->GetPPropertiesSubcommands()) {
          for (const std::string& name : properties->GetCatNameVector()) {
            if (SyntaxParserUtility::ExactWordMatch(name, pCompute->GetCatName()) &&
                properties->IsHideSourceSet()) {
              SyntaxParserUtility::HideSourceCatsInSigTest(this, name);
            }
          }
        }
      }
    }
    subcommand = new SyntaxTableKeywordSubcommand(SyntaxTableKeywordSubcommand::SigTest(), settings);
  } else if (KeywordMatch(text.c_str(), "COMPARETEST")) {
    subcommand = new SyntaxCompareTestSubcommand(settings);
  } else if (KeywordMatch(text.c_str(), "CRITERIA")) {
    subcommand = new SyntaxTableKeywordSubcommand(SyntaxTableKeywordSubcommand::Criteria(), settings);
  }
  if (subcommand != nullptr) {
    Add(subcommand);
    return subcommand;
  }
  if (KeywordMatch(text.c_str(), "TABLE")) {
    // This table is complete: its checks run before the next one begins.
    ValidateComperimeterRequest();
    ValidateStatisticalTests();
    ValidateCubeSizes();
    return GetParent()->SubCommandString(text);
  }
  for (const char* keyword : kGlobalSubcommands) {
    if (KeywordMatch(text.c_str(), keyword)) {
      SyntaxParserUtility::OutOfOrderGlobalSubcommand("TABLE", text);
    }
  }
  // PCOMPUTE and PPROPERTIES after a table land here too.
  SyntaxParserUtility::UnknownKeyword(this, text);
}

void SyntaxTableSubcommand::ValidateAndCommit(const std::string& /*text*/) {
  if (Children().empty()) {
    SyntaxParserUtility::NoTableSubcommand(this);
  }
  TableData& data = *_tableData;
  if (!data._dissected) {
    SyntaxConverter* expression = Children().front();
    expression->DissectTableInCubes();
    ImitateChildComposite(expression);
    VariableComposite::SetDefaultStats();
    data._dissected = true;
  }
  const double level = data._settings.GetCILevelValue();
  const std::string levelText = data._settings.GetCILevelString();
  for (SyntaxVariableName* variable : data._tableVarList) {
    variable->CompleteStatistics();
    variable->SetCILevel(level, levelText);
  }
  for (SyntaxVariableName* set : data._tableSetList) {
    set->SetCILevel(level, levelText);
  }
}

bool SyntaxTableSubcommand::IsDissected() const {
  return _tableData->_dissected;
}

std::string SyntaxTableSubcommand::GetTitle() {
  TableData& data = *_tableData;
  if (data._title.empty()) {
    if (data._settings.HasTitle()) {
      data._title = data._settings.GetTitleText();
      if (KeywordMatch(data._title.c_str(), "Warnings")) {
        data._title += ' ';
      }
    } else {
      data._title = std::to_string(data._tableNumber);
    }
  }
  return data._title;
}

void SyntaxTableSubcommand::SetTitle(const std::string& title) {
  _tableData->_title = title;
}

bool SyntaxTableSubcommand::HasTitle() const {
  return _tableData->_settings.HasTitle();
}

int SyntaxTableSubcommand::AddStackedTerm() {
  return ++_tableData->_stackedTerms;
}

int SyntaxTableSubcommand::GetTableNumber() const {
  return _tableData->_tableNumber;
}

void SyntaxTableSubcommand::AddExpressionToken(const std::string& token, bool isWord) {
  std::string copy = token;
  for (char& character : copy) {
    character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
  }
  if (isWord) {
    const int index = VariableExists(token);
    if (index >= 0) {
      const TARN_Variable* variable = GetDataSource()->GetVariable(index);
      const char* label = variable == nullptr ? nullptr : variable->GetLabel();
      if (label != nullptr && *label != '\0') {
        copy = label;
      }
    }
  }
  _tableData->_expressionTokens.push_back(copy);
  _tableData->_expression.clear();
}

void SyntaxTableSubcommand::AddMRSetLabel(const std::string& label) {
  if (_tableData->_expressionTokens.empty()) {
    _tableData->_expressionTokens.push_back(label);
  } else {
    _tableData->_expressionTokens.back() = label;
  }
  _tableData->_expression.clear();
}

std::string SyntaxTableSubcommand::GetExpression() {
  if (_tableData->_expression.empty()) {
    std::string joined;
    bool afterParen = true;  // no blank before the first token either
    for (const std::string& token : _tableData->_expressionTokens) {
      if (!afterParen && token != ")") {
        joined += ' ';
      }
      joined += token;
      afterParen = token == "(";
    }
    _tableData->_expression = joined;
  }
  return _tableData->_expression;
}

void SyntaxTableSubcommand::AddToVarList(SyntaxVariableName* variable) {
  _tableData->_tableVarList.push_back(variable);
  if (variable->GetType() == kConverterMRSet) {
    _tableData->_tableSetList.push_back(variable);
  }
}

const std::vector<SyntaxVariableName*>& SyntaxTableSubcommand::GetTableVarList() const {
  return _tableData->_tableVarList;
}

const std::vector<SyntaxVariableName*>& SyntaxTableSubcommand::GetTableSetList() const {
  return _tableData->_tableSetList;
}

int SyntaxTableSubcommand::GetNumOfBys() const {
  return _tableData->_numOfBys;
}

int SyntaxTableSubcommand::GetCubeCount() const {
  return CubeCount();
}

const SubTableCube& SyntaxTableSubcommand::GetCube(int position) const {
  return *(*this)[position];
}

void SyntaxTableSubcommand::IncrementBys() {
  ++_tableData->_numOfBys;
  if (_tableData->_numOfBys > kMaximumBys) {
    SyntaxParserUtility::IncorrectSequence(this, "BY");
  }
}

void SyntaxTableSubcommand::DumpDetails(std::ostream& out) const {
  out << " number=" << _tableData->_tableNumber << " bys=" << _tableData->_numOfBys;
}

TableSettings& SyntaxTableSubcommand::GetTableSettings() {
  return _tableData->_settings;
}

const TableSettings& SyntaxTableSubcommand::GetTableSettings() const {
  return _tableData->_settings;
}
