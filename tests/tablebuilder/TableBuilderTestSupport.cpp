// TableBuilderTestSupport.cpp - parses a whole command on a small survey and builds its table, with or without data
#include "TableBuilderTestSupport.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <vector>

#include "host/data/DatasetLoader.h"
#include "host/data/ProcDSIterator.h"
#include "host/data/ProcedureDataSource.h"
#include "host/data/VariableSet.h"
#include "host/engine/AggregationCategory.h"
#include "host/engine/AggregationCube.h"
#include "host/engine/AggregationMCSet.h"
#include "host/engine/AggregationMDSet.h"
#include "host/engine/AggregationStatistic.h"
#include "host/engine/AggregationTable.h"
#include "host/engine/AggregationVariable.h"
#include "host/output/BpComposite.h"
#include "host/tokens/CommandSplitter.h"
#include "host/tokens/Lexer.h"
#include "host/tokens/TARN_TokenSequence.h"
#include "parser/SyntaxConverter.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxMRVariableSet.h"
#include "parser/SyntaxReader.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxVariableName.h"
#include "tablebuilder/HeaderTreeNode.h"
#include "tablebuilder/QuiltTable.h"
#include "tablebuilder/StatTreeNode.h"

// Nine cases, chosen as the header says so that nested headers lose categories under some
// outer categories only.
const char* const kBuilderCsv =
    "region,gender,agegrp,score,income,late,tv,web\n"
    "1,1,1,10,100,,1,\n"
    "1,2,1,20,200,,1,1\n"
    "1,1,2,30,300,,,1\n"
    "1,2,3,40,400,,1,\n"
    "2,1,1,50,500,,,1\n"
    "2,1,2,60,600,,1,1\n"
    "2,2,2,70,700,,,\n"
    "2,1,1,80,800,,1,\n"
    "3,,2,90,900,1,,1\n";

const char* const kBuilderDictionary = R"({
  "variables": [
    {"name": "region", "label": "Region", "measure": "nominal", "values": {"1": "North", "2": "South", "3": "West"}},
    {"name": "gender", "label": "Gender", "measure": "nominal", "values": {"1": "Male", "2": "Female"}},
    {"name": "agegrp", "label": "Age group", "measure": "nominal",
     "values": {"1": "Young", "2": "Middle", "3": "Old"}},
    {"name": "score", "label": "Score", "measure": "scale"},
    {"name": "income", "label": "Income", "measure": "scale"},
    {"name": "late", "label": "Late entry", "measure": "nominal", "values": {"1": "Late"}},
    {"name": "tv", "label": "Television", "measure": "nominal"},
    {"name": "web", "label": "Internet", "measure": "nominal"}
  ],
  "mrsets": [
    {"name": "$media", "label": "Media used", "type": "dichotomies", "counted": 1, "variables": ["tv", "web"],
     "labels": "varlabels"}
  ]
})";

namespace {

// The engine's object for a variable or set node, made as the dispatcher makes it.
std::unique_ptr<AggregationVariable> MakeEngineVariable(SyntaxVariableName& variable) {
  if (variable.GetType() != kConverterMRSet) {
    return std::make_unique<AggregationVariable>(variable.GetIndex(), variable.GetNameToken());
  }
  auto& set = static_cast<SyntaxMRVariableSet&>(variable);
  if (set.GetMRSetType() == VariableSet::kMR_Category) {
    auto created = std::make_unique<AggregationMCSet>(set.GetIndexList(), set.GetNameToken());
    created->SetUserMissingVarIndex(set.GetUserMissingVarIndex());
    return created;
  }
  if (!set.GetOrderSet() && !set.GetIsExplicit()) set.SetCategoriesList();
  return std::make_unique<AggregationMDSet>(set.GetIndexList(), set.GetNameToken(), set.GetCountedOBS(),
                                            set.GetCountedOBSSize(), set.GetUseCountedValueLabels());
}

}  // namespace

struct BuiltTable::Data {
  std::shared_ptr<ProcedureDataSource> source;
  LexedCommand lexed;
  std::unique_ptr<TARN_TokenSequence> tokens;
  std::unique_ptr<SyntaxReader> reader;
  std::unique_ptr<TARN_InputCaseIterator> iterator;
  std::unique_ptr<AggregationTable> aggregation;
  std::vector<std::unique_ptr<AggregationVariable>> variables;
  std::unique_ptr<QuiltTable> table;
  SyntaxTableSubcommand* syntax = nullptr;
  int axisCubeResult = 0;
};

BuiltTable::BuiltTable() : _data(std::make_unique<Data>()) {}

BuiltTable::~BuiltTable() {
  // The trees point into the parse tree and the engine: they go first.
  _data->table.reset();
  _data->aggregation.reset();
  // The converters keep the run's data source in a static; it must not outlive the source.
  SyntaxConverter().SetDataSource(nullptr);
}

std::unique_ptr<BuiltTable> BuiltTable::Build(const std::string& command, Options options) {
  std::unique_ptr<BuiltTable> built(new BuiltTable);
  Data& d = *built->_data;
  d.source = std::make_shared<ProcedureDataSource>(DatasetLoader::LoadText(kBuilderCsv, kBuilderDictionary, {}));
  const std::vector<CommandText> commands = CommandSplitter::Split(command, /*requireFinalPeriod=*/false);
  d.lexed = Lexer::Lex(commands.at(0).text, commands.at(0).firstLine);
  d.tokens = std::make_unique<TARN_TokenSequence>(&d.lexed, /*flag=*/true);
  d.reader = std::make_unique<SyntaxReader>();
  d.reader->SetDataSource(d.source.get());
  try {
    d.reader->ReadTokens(d.tokens.get());
  } catch (const BpComposite& composite) {
    ADD_FAILURE() << "parse of '" << command << "' failed: " << composite.GetKey();
    return nullptr;
  }
  if (d.reader->GetTable().empty()) {
    ADD_FAILURE() << "no table in '" << command << "'";
    return nullptr;
  }
  d.syntax = d.reader->GetTable()[0];

  // Declared as the dispatcher does, one engine variable per occurrence, each in a cube of
  // its own: what the trees need is each variable's dimension.
  d.iterator.reset(d.source->MakeIterator(nullptr));
  d.aggregation = std::make_unique<AggregationTable>(d.iterator.get(), d.source.get(), /*weighted=*/false,
                                                     /*pairwiseMissing=*/true, /*baseWeightIndex=*/-1);
  d.aggregation->SetCLabelOption(0);
  const std::vector<AggregationStatistic> count{AggregationStatistic(TableEncryptionCodes::kStatCount)};
  for (SyntaxVariableName* variable : d.syntax->GetTableVarList()) {
    if (variable->GetVariableType() != TableEncryptionCodes::kVariableCategorical) continue;
    // Options the test imposes, as CATEGORIES would have stored them.
    if (options.emptyInclude.has_value()) variable->SetIsEmptyInclude(*options.emptyInclude);
    if (options.totals) variable->SetIsTotalNo(false);
    // Configured from the node in the dispatcher's order.
    d.variables.push_back(MakeEngineVariable(*variable));
    AggregationVariable* engineVariable = d.variables.back().get();
    engineVariable->SetVarLabel(variable->GetLabel());
    engineVariable->SetIsOrderA(variable->GetIsOrderA());
    engineVariable->SetIsEmptyInclude(variable->GetIsEmptyInclude());
    engineVariable->SetIsMissingExclude(variable->GetIsMissingExclude());
    engineVariable->SetIsTotalNo(variable->GetIsTotalNo());
    engineVariable->SetIsTotalPositionAfter(variable->GetIsTotalPositionAfter());
    engineVariable->SetTotalLabel(variable->GetTotalLabel());
    engineVariable->SetIsTotalLabelDefault(variable->GetIsTotalLabelDefault());
    engineVariable->SetSortKey(variable->GetSortKey());
    if (!variable->GetParsedCategories().empty()) engineVariable->AddParsedCategories(&variable->GetParsedCategories());
    variable->SetAggregationVariable(engineVariable);
    AggregationCube* cube = d.aggregation->CreateCube();
    cube->AddCategoricalVariable(engineVariable, variable->GetAxis());
    cube->CreateCubeAggregator();
    cube->AddCategoryStatistics(count, engineVariable);
  }
  d.table = std::make_unique<QuiltTable>();
  d.table->BuildTableTreesFromSyntax(d.syntax);
  d.axisCubeResult = d.table->CreateAxisCubes(d.aggregation.get());
  return built;
}

void BuiltTable::RunData() {
  auto* iterator = static_cast<ProcDSIterator*>(_data->iterator.get());
  while (iterator->NextCase() != 0) {
    if (iterator->SplitGroupEnd()) continue;
    _data->aggregation->AddNewCase();
  }
  _data->aggregation->CompleteCases();
  _data->table->BuildCompleteTable();
}

int BuiltTable::GetAxisCubeResult() const { return _data->axisCubeResult; }

QuiltTable& BuiltTable::Table() { return *_data->table; }
SyntaxTableSubcommand& BuiltTable::Syntax() { return *_data->syntax; }

std::string BuiltTable::Dump() const {
  std::ostringstream out;
  _data->table->Dump(out);
  return out.str();
}

std::string BuilderCase::Setting(const std::string& key) const {
  const auto found = settings.find(key);
  return found == settings.end() ? "" : found->second;
}

std::vector<BuilderCase> ReadBuilderCases(const std::string& fileName) {
  std::ifstream file(std::string(QUILT_SOURCE_DIR) + "/tests/tablebuilder/cases/" + fileName);
  EXPECT_TRUE(file.good()) << "cannot read " << fileName;
  std::vector<BuilderCase> cases;
  std::string line;
  while (std::getline(file, line)) {
    if (line.empty() || line[0] == '#') continue;
    if (line.rfind("== ", 0) == 0) {
      std::istringstream words(line.substr(3));
      BuilderCase& added = cases.emplace_back();
      words >> added.name;
      for (std::string setting; words >> setting;) {
        const std::size_t equals = setting.find('=');
        if (equals == std::string::npos) ADD_FAILURE() << fileName << ": '" << setting << "' is no KEY=VALUE";
        added.settings[setting.substr(0, equals)] = equals == std::string::npos ? "" : setting.substr(equals + 1);
      }
    } else if (cases.empty() || !cases.back().command.empty()) {
      ADD_FAILURE() << fileName << ": a second line of command or a line before the first case: " << line;
    } else {
      cases.back().command = line;
    }
  }
  return cases;
}

std::vector<std::string> LeafLabels(const HeaderTreeNode* node) {
  if (!node->IsLeaf()) {
    std::vector<std::string> labels;
    for (const HeaderTreeNode* child : node->GetChildren()) {
      const std::vector<std::string> below = LeafLabels(child);
      labels.insert(labels.end(), below.begin(), below.end());
    }
    return labels;
  }
  if (node->GetType() == HeaderTreeNode::kHNodeTypeStatistic) return {static_cast<const StatTreeNode*>(node)->GetLabel()};
  if (node->GetCategory() != nullptr) return {node->GetCategory()->GetCatLabel()};
  const bool text = node->GetType() == HeaderTreeNode::kHNodeTypeLabel || node->GetType() == HeaderTreeNode::kHNodeTypeLetter;
  return {text ? node->GetLabel() : HeaderTreeNode::TypeName(node->GetType())};
}
