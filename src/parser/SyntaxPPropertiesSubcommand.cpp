// SyntaxPPropertiesSubcommand.cpp - the properties of computed categories, read name by name
#include "parser/SyntaxPPropertiesSubcommand.h"

#include <ostream>

#include "host/data/HostStrings.h"
#include "parser/CommandScope.h"
#include "parser/Statistics.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxPComputeSubcommand.h"
#include "parser/SyntaxParserUtility.h"

namespace {

// The longest label the output layer shows whole.
constexpr std::size_t kMaximumLabelLength = 120;

enum State {
  kStateNames = 0,
  kStateLabel = 1,
  kStateFormat = 2,
  kStateHideSource = 3,
};

}  // namespace

struct SyntaxPPropertiesSubcommand::PPROPERTIESData {
  int _state = kStateNames;            // the keyword whose values are being read
  std::vector<std::string> _catNames;  // the names given, in order
  std::vector<std::string> _labels;    // LABEL texts, in order
  bool _labelSet = false;
  bool _formatSet = false;
  bool _hideSource = false;  // HIDESOURCECATS=YES
};

SyntaxPPropertiesSubcommand::SyntaxPPropertiesSubcommand()
    : NamedConverter("PPROPERTIES", kConverterPProperties),
      _ppData(std::make_unique<PPROPERTIESData>()),
      _formats(this) {}

SyntaxPPropertiesSubcommand::~SyntaxPPropertiesSubcommand() = default;

// PPROPERTIES & name ...
SyntaxConverter* SyntaxPPropertiesSubcommand::Ampersand(const std::string& /*text*/) {
  return this;
}

// LABEL '=' | FORMAT '=' | HIDESOURCECATS '='
SyntaxConverter* SyntaxPPropertiesSubcommand::AttributeString(const std::string& text,
                                                              TARN_TokenSequence* /*tokens*/) {
  PPROPERTIESData& data = *_ppData;
  _formats.ClosePercentile(text);
  // A keyword given again replaces what it gave before: the later value stands.
  if (KeywordMatch(text.c_str(), "LABEL")) {
    if (data._labelSet) {
      SyntaxParserUtility::DuplicateWarning(this, "LABEL");
      data._labels.clear();
    }
    data._labelSet = true;
    data._state = kStateLabel;
  } else if (KeywordMatch(text.c_str(), "FORMAT")) {
    if (data._formatSet) {
      SyntaxParserUtility::DuplicateWarning(this, "FORMAT");
      // The earlier statistics stay children of the subcommand, which owns them, but no
      // longer count.
      _formats.Clear();
    }
    data._formatSet = true;
    data._state = kStateFormat;
  } else if (KeywordMatch(text.c_str(), "HIDESOURCECATS")) {
    if (data._hideSource) {
      SyntaxParserUtility::DuplicateWarning(this, "HIDESOURCECATS");
    }
    data._state = kStateHideSource;
  }
  return this;
}

// LABEL = 'text' ...
SyntaxConverter* SyntaxPPropertiesSubcommand::Literal(const std::string& text) {
  PPROPERTIESData& data = *_ppData;
  std::string label = text;
  SyntaxParserUtility::TrimTrailingWhiteSpace(label);
  if (label.empty() && !text.empty()) {
    label.push_back(' ');
  }
  if (label.size() > kMaximumLabelLength) {
    SyntaxParserUtility::LabelLengthInvalid(this, text);
  }
  data._labels.push_back(label);
  data._labelSet = true;
  return this;
}

SyntaxConverter* SyntaxPPropertiesSubcommand::String(const std::string& text) {
  PPROPERTIESData& data = *_ppData;
  switch (data._state) {
    case kStateNames: {
      // A name no earlier PCOMPUTE defines is passed over: the category list that refers to
      // it reports the missing definition.
      const CommandScope* command = GetCommandScope();
      if (command == nullptr) {
        return this;
      }
      for (SyntaxPComputeSubcommand* pCompute : command->GetPComputeSubcommands()) {
        if (SyntaxParserUtility::ExactWordMatch(pCompute->GetCatName(), text)) {
          _pComputePtrs.push_back(pCompute);
          pCompute->SetPPropertiesSyntax(this);
          data._catNames.push_back(text);
          break;
        }
      }
      return this;
    }
    case kStateLabel:
      SyntaxParserUtility::UnknownKeyword(this, text);
    case kStateHideSource:
      if (SyntaxParserUtility::ExactWordMatch(text, "YES")) {
        data._hideSource = true;
      } else if (SyntaxParserUtility::ExactWordMatch(text, "NO")) {
        data._hideSource = false;
      }
      return this;
    default:
      return FormatString(text);
  }
}

// FORMAT = statistic [label] [format] ... | S | C
SyntaxConverter* SyntaxPPropertiesSubcommand::FormatString(const std::string& text) {
  if (Statistics* statistic = _formats.ReadStatistic(text)) {
    _formats.DropEarlierRepeats();
    return statistic;
  }
  if (KeywordMatch(text.c_str(), "TOTALS")) {
    _formats.ClosePercentile(text);
    // A computed category has no total of its own, so statistics for totals would have
    // nothing to act on; refusing them says so instead of dropping them in silence.
    SyntaxParserUtility::UnknownKeyword(this, text);
  }
  if (_formats.ReadMeasurement(text)) {
    return this;
  }
  SyntaxParserUtility::UnknownKeyword(this, text);
}

void SyntaxPPropertiesSubcommand::ValidateAndCommit(const std::string& text) {
  _formats.ClosePercentile(text);
}

const std::vector<std::string>& SyntaxPPropertiesSubcommand::GetCatNameVector() const {
  return _ppData->_catNames;
}

const std::vector<std::string>& SyntaxPPropertiesSubcommand::GetPLabel() const {
  return _ppData->_labels;
}

bool SyntaxPPropertiesSubcommand::IsLabelSet() const {
  return _ppData->_labelSet;
}

bool SyntaxPPropertiesSubcommand::IsFormatSet() const {
  return _ppData->_formatSet;
}

const std::vector<Statistics*>& SyntaxPPropertiesSubcommand::GetPFormat() const {
  return _formats.GetStatistics();
}

bool SyntaxPPropertiesSubcommand::IsHideSourceSet() const {
  return _ppData->_hideSource;
}

const std::vector<SyntaxPComputeSubcommand*>& SyntaxPPropertiesSubcommand::GetPComputePtrs() const {
  return _pComputePtrs;
}

void SyntaxPPropertiesSubcommand::DumpDetails(std::ostream& out) const {
  const PPROPERTIESData& data = *_ppData;
  out << " names=";
  const char* separator = "";
  for (const std::string& name : data._catNames) {
    out << separator << "&" << name;
    separator = ",";
  }
  out << " labelSet=" << data._labelSet << " labels=";
  separator = "";
  for (const std::string& label : data._labels) {
    out << separator << "'" << label << "'";
    separator = ",";
  }
  out << " formats=";
  _formats.DumpNames(out);
  if (_formats.GetStatistics().empty()) {
    out << "none";
  }
  out << " hideSource=" << data._hideSource;
  if (_formats.HasMeasurement()) {
    out << " measurement=" << _formats.MeasurementName();
  }
}
