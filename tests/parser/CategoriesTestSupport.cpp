// CategoriesTestSupport.cpp - parses a command against the sample survey (or given data) and keeps the tree
#include "CategoriesTestSupport.h"

#include <sstream>

#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/ObsValue.h"
#include "host/data/ProcedureDataSource.h"
#include "host/data/VariableSet.h"
#include "host/engine/ParsedCategory.h"
#include "host/output/BpComposite.h"
#include "host/tokens/CommandSplitter.h"
#include "host/tokens/Lexer.h"
#include "host/tokens/TARN_TokenSequence.h"
#include "parser/SyntaxConverter.h"
#include "parser/SyntaxReader.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxTablesCommand.h"
#include "parser/SyntaxVariableName.h"

namespace {

// Members chosen to provoke every check of a set: string members of widths 4 and 8, labels
// that agree or contradict, user-missing definitions that agree or not, and a member that
// is called MISSING.
const char* const kCsv =
    "g,s4,s8,c1,c2,c3,c4,d1,d2,d3,d4,missing\n"
    "1,ab,abcdefgh,1,2,1,1,1,0,1,1,1\n"
    "2,cd,efgh,2,3,2,2,0,1,1,0,0\n";

const char* const kDictionary = R"({
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

}  // namespace

std::shared_ptr<const Dataset> SetsDataset() {
  static std::shared_ptr<const Dataset> dataset;
  if (!dataset) {
    std::shared_ptr<Dataset> loaded = DatasetLoader::LoadText(kCsv, kDictionary, DatasetLoadOptions());
    // The loader refuses a counted value that is no number for numeric members; the host may
    // still hand one over, so these are added by hand.
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

std::shared_ptr<const Dataset> SurveyDataset() {
  static std::shared_ptr<const Dataset> dataset = DatasetLoader::LoadFiles(
      std::string(QUILT_SOURCE_DIR) + "/examples/survey.csv",
      std::string(QUILT_SOURCE_DIR) + "/examples/survey.dict.json", DatasetLoadOptions());
  return dataset;
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

KeptParse::KeptParse(const std::string& command) : KeptParse(command, SurveyDataset()) {}

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

SyntaxVariableName* KeptParse::Variable(const std::string& name, int tableIndex, int occurrence) const {
  std::vector<SyntaxTableSubcommand*>& tables = Root()->GetTable();
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
  Root()->Dump(out);
  return out.str();
}

namespace {

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

std::string Describe(const ParsedCategory& category) {
  std::string text;
  const int type = category.GetValueType();
  switch (category.GetPCType()) {
    case ParsedCategory::kParsedValue:
      text = "value " + ValueText(category.GetCatValue(), type);
      break;
    case ParsedCategory::kParsedRange:
      text = "range " + ValueText(category.GetCatValue(), type) + ".." +
             ValueText(category.GetHighValue(), type);
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
