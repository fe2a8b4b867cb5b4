// CategoriesTestSupport.cpp - parses a command against the sample survey (or given data) and keeps the tree
#include "CategoriesTestSupport.h"

#include <sstream>

#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/ObsValue.h"
#include "host/data/ProcedureDataSource.h"
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
