// SyntaxCatVarList.cpp - the VARIABLES list of CATEGORIES
#include "parser/SyntaxCatVarList.h"

#include <ostream>
#include <vector>

#include "parser/SyntaxCategoriesSubcommand.h"
#include "parser/SyntaxParserUtility.h"

struct SyntaxCatVarList::Data {
  bool _isAll = false;                           // VARIABLES=ALL
  std::vector<std::string> _names;               // as written, each once
  bool _committed = false;                       // the names went to the owner
};

SyntaxCatVarList::SyntaxCatVarList(SyntaxCategoriesSubcommand* owner)
    : SyntaxCategoriesPart(owner), _data(std::make_unique<Data>()) {}

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
    kept = Owner()->GetCatVarNameList();
  } else {
    for (const std::string& name : data._names) {
      if (Owner()->CatVarNameExist(name)) {
        kept.push_back(name);
      } else {
        SyntaxParserUtility::NoVariableUpdateWarning(Owner(), name, /*unknownFirst=*/false);
      }
    }
  }
  Owner()->SetVariableList(kept);
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
