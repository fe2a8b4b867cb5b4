// DissectionTestSupport.cpp - parses whole commands on a data set with categorical, scale and set variables, and summarizes the cubes
#include "DissectionTestSupport.h"

#include <memory>
#include <sstream>

#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/ProcedureDataSource.h"
#include "host/output/BpComposite.h"
#include "host/tokens/CommandSplitter.h"
#include "host/tokens/Lexer.h"
#include "host/tokens/TARN_TokenSequence.h"
#include "parser/ParseDump.h"
#include "parser/SubTableCube.h"
#include "parser/SyntaxReader.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxVariableName.h"

namespace {

const char* const kCsv =
    "a,b,c,d,e,x,y,w,d1,d2,m1,m2\n"
    "1,1,1,1,1,1.5,2.5,1,1,0,1,2\n"
    "2,2,2,3,2,3.5,4.5,2,0,1,2,3\n";

// a and b agree on their labels; c gives 2 another label; d adds a value of its own.
const char* const kDictionary = R"({
  "variables": [
    {"name": "a", "measure": "nominal", "values": {"1": "Low", "2": "High"}},
    {"name": "b", "measure": "nominal", "values": {"1": "Low", "2": "High"}},
    {"name": "c", "measure": "nominal", "values": {"1": "Low", "2": "Top"}},
    {"name": "d", "measure": "ordinal", "values": {"3": "Extra"}},
    {"name": "e", "measure": "ordinal"},
    {"name": "x", "measure": "scale"},
    {"name": "y", "measure": "scale"},
    {"name": "w", "measure": "scale"}
  ],
  "mrsets": [
    {"name": "$dich", "label": "Media used", "type": "dichotomies", "counted": 1, "variables": ["d1", "d2"]},
    {"name": "$cats", "type": "categories", "variables": ["m1", "m2"]}
  ]
})";

std::shared_ptr<const Dataset> DissectionDataset() {
  static std::shared_ptr<const Dataset> dataset = DatasetLoader::LoadText(kCsv, kDictionary, DatasetLoadOptions());
  return dataset;
}

}  // namespace

TablesOutcome ParseTables(const std::string& command,
                          const std::function<void(std::vector<SyntaxTableSubcommand*>&)>& inspect) {
  TablesOutcome outcome;
  MessageCapture capture;
  const std::vector<CommandText> commands = CommandSplitter::Split(command, /*requireFinalPeriod=*/false);
  LexedCommand lexed = Lexer::Lex(commands.at(0).text, commands.at(0).firstLine);
  TARN_TokenSequence tokens(&lexed, /*flag=*/true);
  ProcedureDataSource dataSource(DissectionDataset());
  SyntaxReader reader;
  reader.SetDataSource(&dataSource);
  try {
    reader.ReadTokens(&tokens);
    outcome.succeeded = true;
  } catch (const BpComposite& composite) {
    outcome.error = DescribeComposite(composite);
  }
  if (outcome.succeeded) {
    std::vector<SyntaxTableSubcommand*>& tables = reader.GetTable();
    for (SyntaxTableSubcommand* table : tables) {
      std::vector<std::string> cubes;
      for (int position = 0; position < table->CubeCount(); ++position) {
        cubes.push_back(SummarizeCube(*(*table)[position]));
      }
      outcome.cubes.push_back(cubes);
    }
    std::ostringstream dump;
    ParseDump::Write(dump, tables);
    outcome.parseDump = dump.str();
    if (inspect) {
      inspect(tables);
    }
  }
  outcome.reported = capture.GetReported();
  return outcome;
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
