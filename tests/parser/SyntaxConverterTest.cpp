// SyntaxConverterTest.cpp - the tree the default events build: precedence, placeholders, axes, brackets
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "ParserTestSupport.h"

namespace {

struct DumpLine {
  int depth = 0;
  std::string kind;
  std::string name;      // variables: their name
  std::string referred;  // brackets: what they apply to
};

std::string Field(const std::string& line, const std::string& field) {
  const std::size_t start = line.find(" " + field + "=");
  if (start == std::string::npos) {
    return "";
  }
  const std::size_t valueStart = start + field.size() + 2;
  const std::size_t end = line.find(' ', valueStart);
  return line.substr(valueStart, end == std::string::npos ? std::string::npos : end - valueStart);
}

std::vector<DumpLine> ReadDump(const std::string& dump) {
  std::vector<DumpLine> lines;
  std::istringstream in(dump);
  std::string text;
  while (std::getline(in, text)) {
    DumpLine line;
    const std::size_t first = text.find_first_not_of(' ');
    line.depth = static_cast<int>(first) / 2;
    line.kind = text.substr(first, text.find(' ', first) - first);
    line.name = Field(text, "name");
    line.referred = Field(text, "referred");
    lines.push_back(line);
  }
  return lines;
}

// Writes the subtree at `index` compactly: a variable by its name, a placeholder as "_",
// a bracket as "[names]", an operator as Kind(operands).
std::string ShapeAt(const std::vector<DumpLine>& lines, std::size_t& index) {
  const DumpLine& line = lines[index++];
  std::string shape;
  if (!line.name.empty()) {
    shape = line.name;
  } else if (line.kind == "Dummy") {
    shape = "_";
  } else if (line.kind == "Composite") {
    shape = "[" + line.referred + "]";
  } else {
    shape = line.kind;
  }
  std::vector<std::string> children;
  while (index < lines.size() && lines[index].depth > line.depth) {
    children.push_back(ShapeAt(lines, index));
  }
  if (!children.empty()) {
    shape += "(";
    for (std::size_t i = 0; i < children.size(); ++i) {
      shape += (i == 0 ? "" : ",") + children[i];
    }
    shape += ")";
  }
  return shape;
}

// The shape of the first table's expression.
std::string ExpressionShape(const std::string& command) {
  const KeptParse parse(command);
  EXPECT_TRUE(parse.Succeeded()) << command << ": " << parse.Error().key;
  const std::vector<DumpLine> lines = ReadDump(parse.Dump());
  for (std::size_t index = 0; index < lines.size(); ++index) {
    if (lines[index].kind == "Table") {
      ++index;
      return ShapeAt(lines, index);
    }
  }
  return "";
}

TEST(SyntaxConverter, OperatorsTakeTheirPlaceByPrecedence) {
  struct Row {
    const char* expression;
    const char* shape;
  };
  // ">" binds tightest, then "+", then BY; equal operators group to the left.
  const Row rows[] = {
      {"a > b + c", "Plus(GreaterThan(a,b),c)"},
      {"a + b > c", "Plus(a,GreaterThan(b,c))"},
      {"a + b + c", "Plus(Plus(a,b),c)"},
      {"a > b > c", "GreaterThan(GreaterThan(a,b),c)"},
      {"a + b BY c > d", "By(Plus(a,b),GreaterThan(c,d))"},
      {"a BY b + c > d", "By(a,Plus(b,GreaterThan(c,d)))"},
      {"a BY b BY c", "By(By(a,b),c)"},
      {"(a + b) > c", "GreaterThan(Paren(Plus(a,b)),c)"},
      {"a > (b + c)", "GreaterThan(a,Paren(Plus(b,c)))"},
      {"((a))", "Paren(Paren(a))"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.expression);
    EXPECT_EQ(ExpressionShape(std::string("QUILT /TABLE ") + row.expression + "."), row.shape);
  }
}

TEST(SyntaxConverter, SetsBecomeSetNodes) {
  EXPECT_EQ(ExpressionShape("QUILT /TABLE $dich BY $CATS."), "By($dich,$cats)");
}

}  // namespace
