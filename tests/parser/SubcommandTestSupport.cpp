// SubcommandTestSupport.cpp - the data set behind the subcommand tests
#include "SubcommandTestSupport.h"

#include <memory>

#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/ProcedureDataSource.h"
#include "host/tokens/CommandSplitter.h"
#include "host/tokens/Lexer.h"
#include "host/tokens/TARN_TokenSequence.h"
#include "parser/SyntaxReader.h"
#include "parser/SyntaxTablesCommand.h"

namespace {

const char* const kCsv =
    "a,b,c,s,w,d1,d2\n"
    "1,2,3,x,1.5,1,0\n";

const char* const kDictionary = R"({
  "variables": [{"name": "s", "type": "string"}],
  "mrsets": [{"name": "$dich", "type": "dichotomies", "counted": 1, "variables": ["d1", "d2"]}]
})";

}  // namespace

namespace {

ProcedureDataSource& TestDataSource() {
  static std::shared_ptr<const Dataset> dataset =
      DatasetLoader::LoadText(kCsv, kDictionary, DatasetLoadOptions());
  static ProcedureDataSource dataSource(dataset);
  return dataSource;
}

}  // namespace

void AttachTestDataSource(SyntaxConverter& anyConverter) {
  anyConverter.SetDataSource(&TestDataSource());
}

EventOutcome ParseAndInspect(const std::string& command,
                             const std::function<void(SyntaxTablesCommand&)>& inspect) {
  const std::vector<CommandText> commands = CommandSplitter::Split(command, /*requireFinalPeriod=*/false);
  LexedCommand lexed = Lexer::Lex(commands.at(0).text, commands.at(0).firstLine);
  TARN_TokenSequence tokens(&lexed, /*flag=*/true);
  SyntaxReader reader;
  reader.SetDataSource(&TestDataSource());
  EventOutcome outcome = RunEvents([&] { reader.ReadTokens(&tokens); });
  if (!outcome.threw) {
    auto* root = dynamic_cast<SyntaxTablesCommand*>(reader.GetCurrent()->TopParent());
    if (root != nullptr) {
      inspect(*root);
    }
  }
  return outcome;
}
