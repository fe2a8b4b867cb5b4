// SyntaxCatVarList.cpp - the VARIABLES list of CATEGORIES
#include "parser/SyntaxCatVarList.h"

#include <ostream>
#include <vector>

#include "parser/SyntaxCategoriesSubcommand.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxParserUtility.h"

struct SyntaxCatVarList::Data {
  bool _isAll = false;                           // VARIABLES=ALL
  SyntaxCategoriesSubcommand* _owner = nullptr;  // not owned
  std::vector<std::string> _names;               // as written, each once
  bool _committed = false;                       // the names went to the owner
};

SyntaxCatVarList::SyntaxCatVarList(SyntaxCategoriesSubcommand* owner)
    : NamedConverter("CATEGORIES", kConverterCategories), _data(std::make_unique<Data>()) {
  _data->_owner = owner;
}

SyntaxCatVarList::~SyntaxCatVarList() = default;

// VARIABLES = ALL
SyntaxConverter* SyntaxCatVarList::All(const std::string& /*text*/) {
  if (!_data->_names.empty()) {
    SyntaxParserUtility::VariableListError(this);
  }
  _data->_isAll = true;
  return this;
}

// VARIABLES = name ...
SyntaxConverter* SyntaxCatVarList::String(const std::string& text) {
  if (_data->_isAll) {
    SyntaxParserUtility::VariableListError(this);
  }
  for (const std::string& name : _data->_names) {
    if (SyntaxParserUtility::ExactWordMatch(name, text)) {
      return this;
    }
  }
  _data->_names.push_back(text);
  return this;
}

SyntaxConverter* SyntaxCatVarList::AttributeString(const std::string& text, TARN_TokenSequence* tokens) {
  ValidateAndCommit(text);
  return _data->_owner->AttributeString(text, tokens);
}

SyntaxConverter* SyntaxCatVarList::LeftSquareBracket(const std::string& text) {
  ValidateAndCommit(text);
  return _data->_owner->LeftSquareBracket(text);
}

void SyntaxCatVarList::ValidateAndCommit(const std::string& text) {
  Data& data = *_data;
  if (data._committed) {
    return;
  }
  if (data._names.empty() && !data._isAll) {
    SyntaxParserUtility::IncompleteSubcommand(this, text);
  }
  std::vector<std::string> kept;
  if (data._isAll) {
    kept = data._owner->GetCatVarNameList();
  } else {
    for (const std::string& name : data._names) {
      if (data._owner->CatVarNameExist(name)) {
        kept.push_back(name);
      } else {
        SyntaxParserUtility::NoVariableUpdateWarning(data._owner, name, /*unknownFirst=*/false);
      }
    }
  }
  data._owner->SetVariableList(kept);
  data._committed = true;
}

void SyntaxCatVarList::DumpDetails(std::ostream& out) const {
  out << " all=" << _data->_isAll << " names=";
  const char* separator = "";
  for (const std::string& name : _data->_names) {
    out << separator << name;
    separator = ",";
  }
}
