// ParseDump.cpp - writes each parsed table as stable text: expression, tree, settings, cubes
#include "parser/ParseDump.h"

#include <ostream>
#include <string>

#include "host/data/TARN_Format.h"
#include "parser/SigTestSettings.h"
#include "parser/Statistics.h"
#include "parser/SubTableCube.h"
#include "parser/SyntaxConverterType.h"
#include "parser/SyntaxTableSubcommand.h"
#include "parser/SyntaxVariableName.h"
#include "parser/TableSettings.h"

namespace {

const char* const kAxisNames[] = {"row", "column", "layer"};
const char* const kCubeTypeNames[] = {"scale", "categorical", "removable", "mrset", "none"};
const char* const kTestNames[] = {"none", "chisquare", "proportions", "means"};

const char* AxisName(int axis) {
  return axis >= 0 && axis <= 2 ? kAxisNames[axis] : "axis?";
}

// One statistic: its keyword as written, its label in quotes, and a format when given.
void WriteStatistic(std::ostream& out, const Statistics& statistic) {
  out << statistic.GetNameToken() << " \"" << statistic.GetLabel() << "\"";
  if (statistic.HasFormat()) {
    const TARN_Format* format = statistic.GetFormat();
    out << " format=" << static_cast<int>(format->Type()) << "/" << format->Width() << "."
        << static_cast<int>(format->Decimals());
  }
}

void WriteStatistics(std::ostream& out, const std::vector<Statistics*>& statistics) {
  if (statistics.empty()) {
    out << "none";
    return;
  }
  out << "[";
  for (size_t index = 0; index < statistics.size(); ++index) {
    out << (index == 0 ? "" : ", ");
    WriteStatistic(out, *statistics[index]);
  }
  out << "]";
}

// One variable of a cube: where it stands, what kind it is and what it shows.
void WriteVariable(std::ostream& out, const SyntaxVariableName& var, bool computational) {
  out << "      " << AxisName(var.GetAxis()) << " " << var.GetNameToken()
      << (var.GetType() == kConverterMRSet ? " set" : "")
      << (var.GetVariableType() == TableEncryptionCodes::kVariableScale ? " scale" : " categorical")
      << (var.GetIsLeafNode() ? "" : " outer") << (computational ? " computational" : "") << " stats=";
  WriteStatistics(out, var.GetStatistics());
  out << " totals=";
  WriteStatistics(out, var.GetTotalStats());
  out << "\n";
}

void WriteCube(std::ostream& out, const SubTableCube& cube, int number) {
  const SyntaxVariableName* computational = cube.GetComputationalVariable();
  out << "    cube " << number << " stattype=" << kCubeTypeNames[cube.GetCubeStatType()];
  if (cube.GetInnerRowMRforTest() != nullptr) {
    out << " innerRowSet=" << cube.GetInnerRowMRforTest()->GetNameToken();
  }
  if (cube.GetInnerColMRforTest() != nullptr) {
    out << " innerColumnSet=" << cube.GetInnerColMRforTest()->GetNameToken();
  }
  if (cube.NeedExtraDim()) {
    out << " extraDimension";
  }
  out << "\n";
  for (int index = 0; index < cube.GetCatVarCount(); ++index) {
    const SyntaxVariableName* var = cube.GetCatVar(index);
    WriteVariable(out, *var, var == computational);
  }
  for (int index = 0; index < cube.GetStatVarCount(); ++index) {
    WriteVariable(out, *cube.GetStatVar(index), false);
  }
}

// The operator tree of the expression: one node per line, two blanks per level, operators
// by name, variables and sets by their names. Brackets are left out: what they gave shows
// on the cubes' variables. Unlike SyntaxConverter::Dump, nothing here changes when a node
// gains a field, so golden dumps only move when the parse does.
void WriteOperatorTree(std::ostream& out, SyntaxConverter& node, int depth) {
  const std::string pad(static_cast<size_t>(2 * depth), ' ');
  const int type = node.GetType();
  if (type == kConverterVariable || type == kConverterMRSet) {
    out << pad << static_cast<SyntaxVariableName&>(node).GetNameToken() << "\n";
    return;
  }
  switch (type) {
    case kConverterBy:
      out << pad << "BY\n";
      break;
    case kConverterGreaterThan:
      out << pad << ">\n";
      break;
    case kConverterPlus:
      out << pad << "+\n";
      break;
    case kConverterParen:
      out << pad << "( )\n";
      break;
    case kConverterDummy:
      out << pad << "(empty axis)\n";
      return;
    default:
      out << pad << "node type " << type << "\n";
      return;
  }
  for (SyntaxConverter* child : node.Children()) {
    WriteOperatorTree(out, *child, depth + 1);
  }
}

void WriteTests(std::ostream& out, const TableSettings& settings) {
  const std::vector<SigTestSettings>& tests = settings.GetSigTestSettings();
  out << "  tests:";
  if (tests.empty()) {
    out << " none";
  }
  for (const SigTestSettings& test : tests) {
    const int type = test._type;
    out << " " << (type >= 0 && type <= 3 ? kTestNames[type] : "?") << "(alpha=" << test._alphaText;
    if (!test._alpha2Text.empty()) {
      out << "," << test._alpha2Text;
    }
    out << " adjust=" << test._adjustType << " mrsets=" << test._includeMRSets << ")";
  }
  out << "\n";
}

}  // namespace

void ParseDump::Write(std::ostream& out, const std::vector<SyntaxTableSubcommand*>& tables) {
  for (size_t index = 0; index < tables.size(); ++index) {
    if (index > 0) {
      out << "\n";
    }
    WriteTable(out, *tables[index]);
  }
}

void ParseDump::WriteTable(std::ostream& out, SyntaxTableSubcommand& table) {
  const TableSettings& settings = table.GetTableSettings();
  out << "table " << table.GetTableNumber() << " title=\"" << table.GetTitle() << "\"\n";
  out << "  expression: " << table.GetExpression() << "\n";
  out << "  tree:\n";
  const std::vector<SyntaxConverter*>& children = table.Children();
  if (!children.empty()) {
    WriteOperatorTree(out, *children.front(), 2);
  }
  out << "  clabels=" << settings.GetCLabelOption() << " cilevel=" << settings.GetCILevelString() << "\n";
  WriteTests(out, settings);
  out << "  cubes: " << table.CubeCount() << "\n";
  for (int position = 0; position < table.CubeCount(); ++position) {
    WriteCube(out, *table[position], position + 1);
  }
}
