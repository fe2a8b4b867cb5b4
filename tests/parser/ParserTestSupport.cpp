// ParserTestSupport.cpp - runs whole commands through lexer and parser on a small data set, and reads
// messages back
#include "ParserTestSupport.h"

#include <memory>
#include <sstream>

#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/ProcedureDataSource.h"
#include "host/data/VariableSet.h"
#include "host/output/BpComposite.h"
#include "host/output/OutputDocument.h"
#include "host/tokens/CommandSplitter.h"
#include "host/tokens/Lexer.h"
#include "host/tokens/TARN_TokenSequence.h"
#include "parser/SyntaxConverter.h"
#include "parser/SyntaxReader.h"
#include "parser/SyntaxTableSubcommand.h"

namespace {

// a is labelled so that expression texts show labels; d1/d2 and m1/m2 feed the two kinds of
// multiple-response set.
const char* const kCsv =
    "a,b,c,d,e,d1,d2,m1,m2,x,y\n"
    "1,2,3,4,5,1,0,1,2,1.5,2.5\n"
    "2,1,3,4,5,0,1,2,3,3.5,4.5\n";

const char* const kDictionary = R"({
  "variables": [
    {"name": "a", "label": "Age group", "measure": "nominal"},
    {"name": "b", "measure": "nominal"}, {"name": "c", "measure": "nominal"},
    {"name": "d", "measure": "ordinal"}, {"name": "e", "measure": "ordinal"}
  ],
  "mrsets": [
    {"name": "$dich", "label": "Media used", "type": "dichotomies", "counted": 1, "variables": ["d1", "d2"]},
    {"name": "$cats", "type": "categories", "variables": ["m1", "m2"]}
  ]
})";

std::shared_ptr<const Dataset> TestDataset() {
  static std::shared_ptr<const Dataset> dataset;
  if (!dataset) {
    std::shared_ptr<Dataset> loaded = DatasetLoader::LoadText(kCsv, kDictionary, DatasetLoadOptions());
    // The loader refuses a set with an unknown member, so the broken set is added afterwards:
    // the dictionary check then finds the member missing.
    VariableSet broken;
    broken.SetName("$broken");
    broken.SetType(VariableSet::kMR_Category);
    broken.SetVariableNames({"a", "nosuch"});
    loaded->AddVariableSet(broken);
    dataset = loaded;
  }
  return dataset;
}

}  // namespace

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
    CatalogueMessage message;
    message.key = item->GetKey();
    message.arguments = item->GetArguments();
    message.level = item->GetLevel();
    reported.push_back(message);
  }
  return reported;
}

ParseOutcome ParseCommand(const std::string& command) {
  ParseOutcome outcome;
  MessageCapture capture;
  const std::vector<CommandText> commands = CommandSplitter::Split(command, /*requireFinalPeriod=*/false);
  LexedCommand lexed = Lexer::Lex(commands.at(0).text, commands.at(0).firstLine);
  TARN_TokenSequence tokens(&lexed, /*flag=*/true);
  ProcedureDataSource dataSource(TestDataset());
  SyntaxReader reader;
  reader.SetDataSource(&dataSource);
  try {
    reader.ReadTokens(&tokens);
    outcome.succeeded = true;
  } catch (const BpComposite& composite) {
    outcome.error = DescribeComposite(composite);
  }
  std::ostringstream dump;
  reader.GetCurrent()->TopParent()->Dump(dump);
  outcome.dump = dump.str();
  if (outcome.succeeded) {
    for (SyntaxTableSubcommand* table : reader.GetTable()) {
      outcome.expressions.push_back(table->GetExpression());
      outcome.tableNumbers.push_back(table->GetTableNumber());
    }
  }
  outcome.reported = capture.GetReported();
  return outcome;
}
