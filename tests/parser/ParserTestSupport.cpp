// ParserTestSupport.cpp - the one parse harness of the parser tests, its data sets, and compact texts of
// what the parser builds
#include "ParserTestSupport.h"

#include <sstream>

#include "SubcommandTestSupport.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/ObsValue.h"
#include "host/data/ProcedureDataSource.h"
#include "host/data/VariableSet.h"
#include "host/engine/ParsedCategory.h"
#include "host/output/BpComposite.h"
#include "host/output/OutputDocument.h"
#include "host/tokens/CommandSplitter.h"
#include "host/tokens/Lexer.h"
#include "host/tokens/TARN_TokenSequence.h"
#include "parser/ParseDump.h"
#include "parser/SubTableCube.h"
#include "parser/SyntaxReader.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxTablesCommand.h"
#include "parser/SyntaxVariableName.h"
#include "parser/TableSettings.h"

namespace {

// a and b agree on their labels, c gives 2 another label and d adds a value of its own, for
// the checks of moved labels; w's label shows in expression texts.
const char* const kTestCsv =
    "a,b,c,d,e,x,y,w,s,d1,d2,m1,m2\n"
    "1,1,1,1,1,1.5,2.5,1,x,1,0,1,2\n"
    "2,2,2,3,2,3.5,4.5,2,y,0,1,2,3\n";

const char* const kTestDictionary = R"({
  "variables": [
    {"name": "a", "measure": "nominal", "values": {"1": "Low", "2": "High"}},
    {"name": "b", "measure": "nominal", "values": {"1": "Low", "2": "High"}},
    {"name": "c", "measure": "nominal", "values": {"1": "Low", "2": "Top"}},
    {"name": "d", "measure": "ordinal", "values": {"3": "Extra"}},
    {"name": "e", "measure": "ordinal"},
    {"name": "x", "measure": "scale"},
    {"name": "y", "measure": "scale"},
    {"name": "w", "label": "Weight factor", "measure": "scale"},
    {"name": "s", "type": "string"}
  ],
  "mrsets": [
    {"name": "$dich", "label": "Media used", "type": "dichotomies", "counted": 1, "variables": ["d1", "d2"]},
    {"name": "$cats", "type": "categories", "variables": ["m1", "m2"]}
  ]
})";

// Members chosen to provoke every check of a set: string members of widths 4 and 8, labels
// that agree or contradict, user-missing definitions that agree or not, and a member that
// is called MISSING.
const char* const kSetsCsv =
    "g,s4,s8,c1,c2,c3,c4,d1,d2,d3,d4,missing\n"
    "1,ab,abcdefgh,1,2,1,1,1,0,1,1,1\n"
    "2,cd,efgh,2,3,2,2,0,1,1,0,0\n";

const char* const kSetsDictionary = R"({
  "variables": [
    {"name": "g", "values": {"1": "One", "2": "Two"}, "measure": "nominal"},
    {"name": "s4", "type": "string", "width": 4},
    {"name": "s8", "type": "string", "width": 8},
    {"name": "c1", "measure": "nominal", "values": {"1": "One", "2": "Two"}, "missing": {"values": [9]}},
    {"name": "c2", "measure": "nominal", "values": {"1": "Uno", "3": "Three"}},
    {"name": "c3", "measure": "nominal", "values": {"1": "One"}, "missing": {"values": [9]}},
    {"name": "c4", "measure": "nominal", "values": {"2": "Two"}, "missing": {"values": [8]}},
    {"name": "d1", "label": "Same", "measure": "nominal", "values": {"1": "Yes"}},
    {"name": "d2", "label": "Same", "measure": "nominal", "values": {"1": "Ja"}},
    {"name": "d3", "label": "Third", "measure": "nominal", "values": {"1": "Yes"}},
    {"name": "d4", "label": "Fourth", "measure": "nominal", "values": {"1": "Yes"}},
    {"name": "missing", "label": "Called missing", "measure": "nominal"}
  ],
  "mrsets": [
    {"name": "$wide", "type": "dichotomies", "counted": "ab", "variables": ["s4", "s8"]},
    {"name": "$over", "type": "dichotomies", "counted": "abcde", "variables": ["s4", "s8"]},
    {"name": "$labels", "type": "categories", "variables": ["c1", "c2"]},
    {"name": "$agree", "type": "categories", "variables": ["c1", "c3"]},
    {"name": "$disagree", "type": "categories", "variables": ["c3", "c4"]},
    {"name": "$samevar", "type": "dichotomies", "counted": 1, "variables": ["d1", "d2"]},
    {"name": "$yesja", "type": "dichotomies", "counted": 1, "variables": ["d3", "d2"]},
    {"name": "$named", "type": "dichotomies", "counted": 1, "variables": ["d3", "d4"],
     "labels": "countedvaluelabels"},
    {"name": "$withmissing", "type": "dichotomies", "counted": 1, "variables": ["d3", "missing"]}
  ]
})";

std::string ValueText(const OBS* value, int type) {
  ObsValue copy(type, value, -1);
  if (type != 0) {
    return "'" + copy.Text() + "'";
  }
  std::ostringstream out;
  out << copy.Number();
  return out.str();
}

}  // namespace

std::shared_ptr<const Dataset> TestDataset() {
  static std::shared_ptr<const Dataset> dataset =
      DatasetLoader::LoadText(kTestCsv, kTestDictionary, DatasetLoadOptions());
  return dataset;
}

std::shared_ptr<const Dataset> SurveyDataset() {
  static std::shared_ptr<const Dataset> dataset = DatasetLoader::LoadFiles(
      std::string(QUILT_SOURCE_DIR) + "/examples/survey.csv",
      std::string(QUILT_SOURCE_DIR) + "/examples/survey.dict.json", DatasetLoadOptions());
  return dataset;
}

std::shared_ptr<const Dataset> SetsDataset() {
  static std::shared_ptr<const Dataset> dataset;
  if (!dataset) {
    std::shared_ptr<Dataset> loaded = DatasetLoader::LoadText(kSetsCsv, kSetsDictionary, DatasetLoadOptions());
    // The loader refuses a counted value that is no number for numeric members, and a set
    // with an unknown member; the host may still hand them over, so they are added by hand.
    for (const char* counted : {"1x", "1.5"}) {
      VariableSet set;
      set.SetName(std::string("$counted") + (counted[1] == 'x' ? "bad" : "half"));
      set.SetType(VariableSet::kMR_Dichotomy);
      set.SetValue(counted);
      set.SetVariableNames({"d3", "d4"});
      loaded->AddVariableSet(set);
    }
    VariableSet broken;
    broken.SetName("$broken");
    broken.SetType(VariableSet::kMR_Category);
    broken.SetVariableNames({"c1", "nosuch"});
    loaded->AddVariableSet(broken);
    dataset = loaded;
  }
  return dataset;
}

void AttachTestDataSource(SyntaxConverter& anyConverter) {
  static ProcedureDataSource dataSource(TestDataset());
  anyConverter.SetDataSource(&dataSource);
}

CatalogueMessage DescribeComposite(const BpComposite& composite) {
  CatalogueMessage message;
  message.key = composite.GetKey();
  message.arguments = composite.GetArguments();
  return message;
}

struct MessageCapture::Data {
  std::unique_ptr<OutputDocument> document;  // receives what BpError reports
  OutputDocument* previous = nullptr;        // restored when the capture ends
};

MessageCapture::MessageCapture() : _data(new Data) {
  _data->document = std::make_unique<OutputDocument>();
  _data->previous = &OutputDocument::Current();
  OutputDocument::Install(_data->document.get());
}

MessageCapture::~MessageCapture() {
  OutputDocument::Install(_data->previous);
  delete _data;
}

std::vector<CatalogueMessage> MessageCapture::GetReported() const {
  std::vector<CatalogueMessage> reported;
  for (const OutputItem* item : _data->document->Messages()) {
    reported.push_back({item->GetKey(), item->GetArguments(), item->GetLevel()});
  }
  return reported;
}

struct KeptParse::Data {
  LexedCommand lexed;
  std::unique_ptr<TARN_TokenSequence> tokens;
  std::unique_ptr<ProcedureDataSource> dataSource;
  std::unique_ptr<SyntaxReader> reader;
  bool succeeded = false;
  CatalogueMessage error;
  std::vector<CatalogueMessage> reported;
};

KeptParse::KeptParse(const std::string& command, std::shared_ptr<const Dataset> dataset)
    : _data(std::make_unique<Data>()) {
  Data& data = *_data;
  MessageCapture capture;
  const std::vector<CommandText> commands = CommandSplitter::Split(command, /*requireFinalPeriod=*/false);
  data.lexed = Lexer::Lex(commands.at(0).text, commands.at(0).firstLine);
  data.tokens = std::make_unique<TARN_TokenSequence>(&data.lexed, /*flag=*/true);
  data.dataSource = std::make_unique<ProcedureDataSource>(dataset);
  data.reader = std::make_unique<SyntaxReader>();
  data.reader->SetDataSource(data.dataSource.get());
  try {
    data.reader->ReadTokens(data.tokens.get());
    data.succeeded = true;
  } catch (const BpComposite& composite) {
    data.error = DescribeComposite(composite);
  }
  data.reported = capture.GetReported();
}

KeptParse::~KeptParse() = default;

bool KeptParse::Succeeded() const {
  return _data->succeeded;
}

const CatalogueMessage& KeptParse::Error() const {
  return _data->error;
}

const std::vector<CatalogueMessage>& KeptParse::Reported() const {
  return _data->reported;
}

SyntaxTablesCommand* KeptParse::Root() const {
  return dynamic_cast<SyntaxTablesCommand*>(_data->reader->GetCurrent()->TopParent());
}

std::vector<SyntaxTableSubcommand*>& KeptParse::Tables() const {
  return _data->reader->GetTable();
}

SyntaxVariableName* KeptParse::Variable(const std::string& name, int tableIndex, int occurrence) const {
  std::vector<SyntaxTableSubcommand*>& tables = Tables();
  if (tableIndex < 0 || tableIndex >= static_cast<int>(tables.size())) {
    return nullptr;
  }
  int seen = 0;
  for (SyntaxVariableName* variable : tables[static_cast<std::size_t>(tableIndex)]->GetTableVarList()) {
    if (variable->GetNameToken() == name && seen++ == occurrence) {
      return variable;
    }
  }
  return nullptr;
}

std::string KeptParse::Dump() const {
  std::ostringstream out;
  _data->reader->GetCurrent()->TopParent()->Dump(out);
  return out.str();
}

std::string KeptParse::ParseDump() const {
  std::ostringstream out;
  if (_data->succeeded) {
    ParseDump::Write(out, Tables());
  }
  return out.str();
}

std::string KeptParse::Settings() const {
  std::ostringstream out;
  if (!_data->succeeded) {
    return "";
  }
  const SyntaxTablesCommand& root = *Root();
  out << "command hidesmallcounts=" << (root.GetHideSmallCountsSet() ? root.GetHideSmallCountsValue() : 0)
      << " weight=" << root.GetBaseWeightVarName() << "@" << SyntaxConverter::GetBaseWeightVarIndex() << "\n";
  const auto width = [](bool set, double points) { return set ? std::to_string(points) : std::string("-"); };
  for (SyntaxTableSubcommand* table : Tables()) {
    const TableSettings& settings = table->GetTableSettings();
    out << "table " << table->GetTableNumber() << " title=\"" << table->GetTitle() << "\" caption=\""
        << settings.GetCaption() << "\" corner=\"" << settings.GetCornerText() << "\" missing=\""
        << settings.GetMissingString() << "\" empty=" << settings.GetEmptyStringType() << "\""
        << settings.GetEmptyString() << "\" slabels=" << settings.GetSLabelPosition() << "/"
        << settings.GetSLabelVisibility() << " clabels=" << settings.GetCLabelOption()
        << " cilevel=" << settings.GetCILevelString() << "/" << settings.GetCILevelValue()
        << " pairwise=" << settings.GetIsPairwise()
        << " minwidth=" << width(settings.HasMinColumnWidth(), settings.GetMinColumnWidthPoints())
        << " maxwidth=" << width(settings.HasMaxColumnWidth(), settings.GetMaxColumnWidthPoints()) << " tests=[";
    for (const SigTestSettings& test : settings.GetSigTestSettings()) {
      out << (&test == settings.GetSigTestSettings().data() ? "" : ";") << test._type << ":" << test._alpha << "/"
          << test._alphaText << "," << test._alpha2 << "/" << test._alpha2Text << " adjust=" << test._adjustType
          << " flags=" << test._originColumn << test._includeMRSets << test._includeSubtotals
          << test._meansVarianceAllCats << test._merge << test._showSig << test._styleApa << " digits=" << test._sigDigits;
    }
    out << "]\ntable " << table->GetTableNumber() << " vlabels";
    for (const SyntaxVariableName* variable : table->GetTableVarList()) {
      out << " " << variable->GetNameToken() << "=" << variable->GetVLabelsOption();
    }
    out << "\n";
  }
  return out.str();
}

std::vector<std::vector<std::string>> KeptParse::Cubes() const {
  std::vector<std::vector<std::string>> cubes;
  for (SyntaxTableSubcommand* table : Tables()) {
    cubes.emplace_back();
    for (int position = 0; position < table->CubeCount(); ++position) {
      cubes.back().push_back(SummarizeCube(*(*table)[position]));
    }
  }
  return cubes;
}

std::string SummarizeCube(const SubTableCube& cube) {
  std::vector<std::string> axes;
  for (int index = 0; index < cube.GetCatVarCount(); ++index) {
    const SyntaxVariableName* var = cube.GetCatVar(index);
    const size_t axis = static_cast<size_t>(var->GetAxis());
    if (axes.size() <= axis) {
      axes.resize(axis + 1);
    }
    std::string& text = axes[axis];
    text += (text.empty() ? "" : ">") + var->GetNameToken() + (var == cube.GetComputationalVariable() ? "*" : "");
  }
  std::string summary;
  for (size_t axis = 0; axis < axes.size(); ++axis) {
    summary += (axis == 0 ? "" : " BY ") + (axes[axis].empty() ? std::string("-") : axes[axis]);
  }
  if (cube.GetStatVarCount() > 0) {
    summary += summary.empty() ? "{" : " {";
    for (int index = 0; index < cube.GetStatVarCount(); ++index) {
      summary += (index == 0 ? "" : ",") + cube.GetStatVar(index)->GetNameToken();
    }
    summary += "}";
  }
  return summary;
}

std::string Describe(const ParsedCategory& category) {
  std::string text;
  const int type = category.GetValueType();
  switch (category.GetPCType()) {
    case ParsedCategory::kParsedValue:
      text = "value " + ValueText(category.GetCatValue(), type);
      break;
    case ParsedCategory::kParsedRange:
      text = "range " + ValueText(category.GetCatValue(), type) + ".." + ValueText(category.GetHighValue(), type);
      break;
    case ParsedCategory::kParsedLo:
      text = "lo .." + ValueText(category.GetCatValue(), type);
      break;
    case ParsedCategory::kParsedHi:
      text = "hi " + ValueText(category.GetCatValue(), type) + "..";
      break;
    case ParsedCategory::kParsedAll:
      text = "all";
      break;
    case ParsedCategory::kParsedMissing:
      text = "missing";
      break;
    case ParsedCategory::kParsedOtherNM:
      text = "othernm";
      break;
    case ParsedCategory::kParsedSubtotal:
      text = "subtotal '" + category.GetLabel() + "'";
      break;
    case ParsedCategory::kParsedHSubtotal:
      text = "hsubtotal '" + category.GetLabel() + "'";
      break;
    case ParsedCategory::kParsedVariable:
      text = "variable #" + std::to_string(category.GetVarIndex());
      break;
    case ParsedCategory::kParsedComputed:
      text = "computed &" + category.GetPCatName();
      break;
  }
  if (category.GetSubtotalEncoding() != 0) {
    text += " @" + std::to_string(category.GetSubtotalEncoding());
  }
  return text;
}

std::vector<std::string> DescribeList(const SyntaxVariableName& variable) {
  std::vector<std::string> described;
  for (const ParsedCategory* category : variable.GetParsedCategories()) {
    described.push_back(Describe(*category));
  }
  return described;
}
