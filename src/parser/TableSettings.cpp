// TableSettings.cpp - per-table settings of the significance and presentation subcommands
#include "parser/TableSettings.h"

#include <algorithm>

#include "parser/SyntaxMiscSubcommands.h"
#include "parser/SyntaxParserUtility.h"

namespace {

// The word a replaced test is named by in the duplicate warning.
const char* TestName(TableEncryptionCodes::SignificanceTestType type) {
  switch (type) {
    case TableEncryptionCodes::kSigTestChiSquare:
      return "Chi-square";
    case TableEncryptionCodes::kSigTestProportions:
      return "Column proportions";
    case TableEncryptionCodes::kSigTestMeans:
      return "Pairwise comparisons";
  }
  return "";
}

std::string HolderText(const SyntaxMiscSubcommands* holder) {
  return holder == nullptr ? std::string() : holder->GetAttributeString();
}

}  // namespace

struct TableSettings::Data {
  std::vector<SigTestSettings> _sigTestSettings;  // the requested tests
  bool _hasChiSquareTest = false;
  bool _hasColPropTest = false;
  bool _hasPairWiseTest = false;
  SLabelPosition _sLabelPosition = PresentationCodes::kSLabelColumn;  // where statistic labels go
  bool _sLabelPositionSet = false;
  bool _sLabelVisible = true;
  bool _sLabelVisibleSet = false;
  CLabelOption _cLabelOption = TableEncryptionCodes::kCLabelAuto;
  double _ciLevelValue = 95.0;  // confidence level of CRITERIA
  std::string _ciLevelString = "95";
  const SyntaxMiscSubcommands* _titleChild = nullptr;    // not owned
  const SyntaxMiscSubcommands* _captionChild = nullptr;  // not owned
  const SyntaxMiscSubcommands* _cornerChild = nullptr;   // not owned
  double _minColumnWidthPoints = 0.0;        // FORMAT MINCOLWIDTH; 0 for none
  double _maxColumnWidthPoints = 0.0;        // FORMAT MAXCOLWIDTH; 0 for none
  int _emptyStringType = PresentationCodes::kEmptyFormatZero;  // FORMAT EMPTY
  std::string _emptyString;                  // the user's text for EMPTY
  std::string _missingString = ".";          // FORMAT MISSING
  bool _isPairwise = true;                   // SMISSING VARIABLE

  void AddTest(const char* subcommand, const SigTestSettings& settings) {
    const auto sameType = [&settings](const SigTestSettings& entry) { return entry._type == settings._type; };
    const auto existing = std::find_if(_sigTestSettings.begin(), _sigTestSettings.end(), sameType);
    if (existing != _sigTestSettings.end()) {
      SyntaxParserUtility::DuplicateWarning(std::string(subcommand), std::string(TestName(settings._type)));
      _sigTestSettings.erase(existing);
    }
    switch (settings._type) {
      case TableEncryptionCodes::kSigTestChiSquare:
        _hasChiSquareTest = true;
        break;
      case TableEncryptionCodes::kSigTestProportions:
        _hasColPropTest = true;
        break;
      case TableEncryptionCodes::kSigTestMeans:
        _hasPairWiseTest = true;
        break;
    }
    _sigTestSettings.push_back(settings);
  }
};

TableSettings::TableSettings() : _data(std::make_unique<Data>()) {}

TableSettings::~TableSettings() = default;

void TableSettings::AddCompareTest(const SigTestSettings& settings) {
  _data->AddTest("COMPARETEST", settings);
}

void TableSettings::AddSignificanceTest(const SigTestSettings& settings) {
  _data->AddTest("SIGTEST", settings);
}

const std::vector<SigTestSettings>& TableSettings::GetSigTestSettings() const {
  return _data->_sigTestSettings;
}

std::vector<SigTestSettings>& TableSettings::GetSigTestSettings() {
  return _data->_sigTestSettings;
}

bool TableSettings::HasChiSquareTest() const {
  return _data->_hasChiSquareTest;
}

bool TableSettings::HasColPropTest() const {
  return _data->_hasColPropTest;
}

bool TableSettings::HasPairWiseTest() const {
  return _data->_hasPairWiseTest;
}

void TableSettings::SetSLabelPosition(SLabelPosition position) {
  if (_data->_sLabelPositionSet) {
    SyntaxParserUtility::DuplicateWarning(std::string("SLABELS"), std::string("POSITION"));
  }
  _data->_sLabelPosition = position;
  _data->_sLabelPositionSet = true;
}

TableSettings::SLabelPosition TableSettings::GetSLabelPosition() const {
  return _data->_sLabelPosition;
}

bool TableSettings::IsSLabelPositionSet() const {
  return _data->_sLabelPositionSet;
}

void TableSettings::SetSLabelVisibility(bool visible) {
  if (_data->_sLabelVisibleSet) {
    SyntaxParserUtility::DuplicateWarning(std::string("SLABELS"), std::string("VISIBLE"));
  }
  _data->_sLabelVisible = visible;
  _data->_sLabelVisibleSet = true;
}

bool TableSettings::GetSLabelVisibility() const {
  return _data->_sLabelVisible;
}

bool TableSettings::IsSLabelVisibilitySet() const {
  return _data->_sLabelVisibleSet;
}

void TableSettings::SetCLabelOption(CLabelOption option) {
  _data->_cLabelOption = option;
}

TableSettings::CLabelOption TableSettings::GetCLabelOption() const {
  return _data->_cLabelOption;
}

void TableSettings::SetCILevel(double value, const std::string& text) {
  _data->_ciLevelValue = value;
  _data->_ciLevelString = text;
}

double TableSettings::GetCILevelValue() const {
  return _data->_ciLevelValue;
}

std::string TableSettings::GetCILevelString() const {
  return _data->_ciLevelString;
}

void TableSettings::SetTitle(const SyntaxMiscSubcommands* holder) {
  if (_data->_titleChild != nullptr) {
    SyntaxParserUtility::DuplicateWarning(std::string("TITLES"), std::string("TITLE"));
  }
  _data->_titleChild = holder;
}

void TableSettings::SetCaption(const SyntaxMiscSubcommands* holder) {
  if (_data->_captionChild != nullptr) {
    SyntaxParserUtility::DuplicateWarning(std::string("TITLES"), std::string("CAPTION"));
  }
  _data->_captionChild = holder;
}

void TableSettings::SetCornerText(const SyntaxMiscSubcommands* holder) {
  if (_data->_cornerChild != nullptr) {
    SyntaxParserUtility::DuplicateWarning(std::string("TITLES"), std::string("CORNER"));
  }
  _data->_cornerChild = holder;
}

bool TableSettings::HasTitle() const {
  return _data->_titleChild != nullptr;
}

bool TableSettings::HasCaption() const {
  return _data->_captionChild != nullptr;
}

bool TableSettings::HasCornerText() const {
  return _data->_cornerChild != nullptr;
}

std::string TableSettings::GetTitleText() const {
  return HolderText(_data->_titleChild);
}

std::string TableSettings::GetCaption() const {
  return HolderText(_data->_captionChild);
}

std::string TableSettings::GetCornerText() const {
  return HolderText(_data->_cornerChild);
}

void TableSettings::SetMinColumnWidthPoints(double points) {
  _data->_minColumnWidthPoints = points;
}

double TableSettings::GetMinColumnWidthPoints() const {
  return _data->_minColumnWidthPoints;
}

bool TableSettings::HasMinColumnWidth() const {
  return _data->_minColumnWidthPoints != 0.0;
}

void TableSettings::SetMaxColumnWidthPoints(double points) {
  _data->_maxColumnWidthPoints = points;
}

double TableSettings::GetMaxColumnWidthPoints() const {
  return _data->_maxColumnWidthPoints;
}

bool TableSettings::HasMaxColumnWidth() const {
  return _data->_maxColumnWidthPoints != 0.0;
}

void TableSettings::SetEmptyString(int type, const std::string& text) {
  _data->_emptyStringType = type;
  _data->_emptyString = text;
}

void TableSettings::SetEmptyStringType(int type) {
  _data->_emptyStringType = type;
}

int TableSettings::GetEmptyStringType() const {
  return _data->_emptyStringType;
}

std::string TableSettings::GetEmptyString() const {
  return _data->_emptyString;
}

void TableSettings::SetMissingString(const std::string& text) {
  _data->_missingString = text;
}

std::string TableSettings::GetMissingString() const {
  return _data->_missingString;
}

void TableSettings::SetIsPairwise(bool isPairwise) {
  _data->_isPairwise = isPairwise;
}

bool TableSettings::GetIsPairwise() const {
  return _data->_isPairwise;
}
