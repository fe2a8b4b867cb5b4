// EngineCasesTest.cpp - the hand-worked data sets of EngineCases.txt run through the engine, cell by cell
//
// The file holds the data, the cubes over it and every expected value with the working that
// gives it; this runner only builds what a case names and compares.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "EngineTestSupport.h"
#include "host/engine/AggregationMCSet.h"
#include "host/engine/AggregationMDSet.h"
#include "host/engine/ParsedCategory.h"

namespace {

using namespace enginetest;
using Words = std::vector<std::string>;

struct EngineCase {
  std::string name;
  Words options;  // weighted, listwise, base=VARIABLE
  std::string csv;
  std::string dictionary;
  std::vector<Words> sets, categories, cubes, expects, orders;  // the words of each such line
};

void PrintTo(const EngineCase& engineCase, std::ostream* out) {
  *out << engineCase.name;
}

Words Split(const std::string& text, char separator = ' ') {
  Words words;
  std::istringstream in(text);
  for (std::string word; std::getline(in, word, separator);)
    if (!word.empty()) words.push_back(word);
  return words;
}

std::vector<EngineCase> ReadCases() {
  std::ifstream file(std::filesystem::path(QUILT_SOURCE_DIR) / "tests/host/engine/EngineCases.txt");
  std::vector<EngineCase> cases;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    Words words = Split(line);
    const std::string first = words[0];
    words.erase(words.begin());
    if (first == "==") {
      EngineCase added;
      for (const EngineCase& earlier : cases) {  // like=NAME: the data of an earlier case
        if (std::find(words.begin(), words.end(), "like=" + earlier.name) != words.end()) added = earlier;
      }
      added.name = words.at(0);
      added.options.assign(words.begin() + 1, words.end());
      added.categories.clear(), added.cubes.clear(), added.expects.clear(), added.orders.clear();
      cases.push_back(added);
      continue;
    }
    EngineCase& c = cases.back();
    if (first == "data") {
      c.csv = words.at(0) + "\n";
    } else if (first == "dict") {
      c.dictionary = line.substr(5);
    } else if (first == "mdset" || first == "mcset") {  // replaces a set of that name from like=
      std::erase_if(c.sets, [&](const Words& set) { return set[1] == words.at(0); });
      c.sets.push_back(Split(line));
    } else if (first == "categories") {
      c.categories.push_back(words);
    } else if (first == "order") {
      c.orders.push_back(words);
    } else if (first == "cube") {
      c.cubes.push_back(words);
    } else if (first == "expect") {
      c.expects.push_back(words);
    } else {  // a row of data; "ROW xN" stands for N copies of it
      const int copies = words.empty() ? 1 : std::stoi(words[0].substr(1));
      for (int i = 0; i < copies; ++i) c.csv += first + "\n";
    }
  }
  return cases;
}

// "[VARIABLE:]CODE[@CUT]" with VARIABLE carried over from the word before when left out.
AggregationStatistic Statistic(const Harness& h, const std::string& word, int* variable) {
  std::string code = word;
  if (const auto colon = code.find(':'); colon != std::string::npos) {
    *variable = h.Index(code.substr(0, colon));
    code = code.substr(colon + 1);
  }
  AggregationStatistic statistic(*variable, std::stoi(code));
  if (const auto at = code.find('@'); at != std::string::npos)
    statistic.SetPTileCutPoint(std::stod(code.substr(at + 1)));
  return statistic;
}

// A label of the file, where "_" stands for a blank.
std::string Spaced(std::string text) {
  std::replace(text.begin(), text.end(), '_', ' ');
  return text;
}

// The items of an explicit category list: VALUE, LOW..HIGH, lo..VALUE, VALUE..hi, all,
// missing, othernm, subtotal:ENCODING:LABEL or hsubtotal:ENCODING:LABEL (hidden), an item
// followed by ">ENCODING" counting in the subtotal of that encoding. `values` keeps the
// numbers the items point at.
std::vector<ParsedCategory*> ParseList(const std::string& text, std::deque<OBS>& values) {
  auto number = [&](const std::string& word) {
    values.emplace_back().number = std::stod(word);
    return &values.back();
  };
  std::vector<ParsedCategory*> items;
  for (const std::string& item : Split(text, ',')) {
    const std::string what = item.substr(0, item.find('>'));
    const std::string low = what.substr(0, what.find("..")), high = what.substr(what.find("..") + 2);
    const Words parts = Split(what, ':');
    if (what == "all" || what == "missing" || what == "othernm") {
      items.push_back(new ParsedCategory(what == "all"       ? ParsedCategory::kParsedAll
                                         : what == "missing" ? ParsedCategory::kParsedMissing
                                                             : ParsedCategory::kParsedOtherNM));
    } else if (parts.size() == 3) {
      items.push_back(
          new ParsedCategory(Spaced(parts[2]), false, std::stoi(parts[1]), parts[0] == "subtotal"));
    } else if (what.find("..") == std::string::npos) {
      items.push_back(new ParsedCategory(number(what), 0));
    } else if (low == "lo" || high == "hi") {
      items.push_back(
          new ParsedCategory(number(low == "lo" ? high : low), 0,
                             low == "lo" ? ParsedCategory::kParsedLo : ParsedCategory::kParsedHi));
    } else {
      items.push_back(new ParsedCategory(number(low), number(high), 0));
    }
    if (item.find('>') != std::string::npos)
      items.back()->SetSubtotalEncoding(std::stoi(item.substr(item.find('>') + 1)));
  }
  return items;
}

// The categories of a dimension in order: VALUE:LABEL, with "*" after a missing category;
// T:LABEL a total, S:LABEL a subtotal, H:LABEL a hidden one, V:LABEL a member of a set.
std::string Describe(TableDimension& dimension) {
  std::string text;
  for (const AggregationCategory* c : dimension.GetCategories()) {
    const int type = c->GetCatType();
    text += text.empty() ? "" : " ";
    text += type == AggregationCategory::kValue   ? std::to_string(static_cast<int>(c->GetCatValue()->number))
            : type == AggregationCategory::kTotal ? "T"
            : type == AggregationCategory::kSubtotal  ? "S"
            : type == AggregationCategory::kHSubtotal ? "H"
            : type == AggregationCategory::kVariable  ? "V"
                                                      : "?";
    text += ":" + c->GetCatLabel() + (c->IsMissingCategory() ? "*" : "");
  }
  return text;
}

// A product and quotient of numbers, left to right: "100*2.5/5.5".
double Evaluate(const std::string& text) {
  std::size_t used = 0;
  double value = std::stod(text, &used);
  while (used < text.size()) {
    const char op = text[used];
    std::size_t more = 0;
    const double operand = std::stod(text.substr(used + 1), &more);
    value = op == '*' ? value * operand : value / operand;
    used += 1 + more;
  }
  return value;
}

class EngineCases : public ::testing::TestWithParam<EngineCase> {};

TEST_P(EngineCases, CellsHoldTheHandWorkedValues) {
  const EngineCase& c = GetParam();
  bool weighted = false, pairwise = true;
  std::string base;
  for (const std::string& option : c.options) {
    weighted = weighted || option == "weighted";
    pairwise = pairwise && option != "listwise";
    if (option.rfind("base=", 0) == 0) base = option.substr(5);
  }
  Harness h(c.csv, c.dictionary, weighted, pairwise, base);
  std::map<std::string, AggregationVariable*> variables;
  for (const Words& set : c.sets) {  // mdset|mcset NAME MEMBER... [counted=N] [duplicates] [labels]
    std::vector<int> members;
    double counted = 1;
    for (std::size_t i = 2; i < set.size(); ++i) {
      if (set[i].rfind("counted=", 0) == 0)
        counted = std::stod(set[i].substr(8));
      else if (set[i] != "duplicates" && set[i] != "labels")
        members.push_back(h.Index(set[i]));
    }
    OBS value;
    value.number = counted;
    variables[set[1]] =
        set[0] == "mdset"
            ? h.Own(std::make_unique<AggregationMDSet>(members, set[1], &value, 1, set.back() == "labels"))
            : h.Own(std::make_unique<AggregationMCSet>(members, set[1]));
  }
  auto variable = [&](const std::string& name) {
    auto& found = variables[name];
    if (found == nullptr) found = h.Variable(name);
    return found;
  };
  // categories VARIABLE [order=D] [empty=exclude] [missing=include] [total=yes] [totalpos=before]
  //   [totallabel=LABEL] [sort=label|CODE] [list=ITEM,...]
  std::deque<OBS> values;
  std::deque<std::vector<ParsedCategory*>> lists;  // the dimension reads them until the end
  std::vector<std::unique_ptr<ParsedCategory>> owned;
  for (const Words& words : c.categories) {
    AggregationVariable* v = variable(words[0]);
    for (std::size_t i = 1; i < words.size(); ++i) {
      const std::string key = words[i].substr(0, words[i].find('=')), value = words[i].substr(key.size() + 1);
      if (key == "order") v->SetIsOrderA(value != "D");
      if (key == "empty") v->SetIsEmptyInclude(value != "exclude");
      if (key == "missing") v->SetIsMissingExclude(value != "include");
      if (key == "total") v->SetIsTotalNo(value != "yes");
      if (key == "totalpos") v->SetIsTotalPositionAfter(value != "before");
      if (key == "totallabel") v->SetTotalLabel(Spaced(value)), v->SetIsTotalLabelDefault(false);
      if (key == "sort" && value == "label") v->SetSortKey(AggregationVariable::kSortKeyLabel);
      if (key == "sort" && value != "label")
        v->SetSortKey(AggregationVariable::kSortKeyStatistic), v->SetSortInfo(std::stoi(value), -1);
      if (key == "list") {
        v->AddParsedCategories(&lists.emplace_back(ParseList(value, values)));
        for (ParsedCategory* item : lists.back()) owned.emplace_back(item);
      }
    }
  }
  // cube VARIABLE:row|col|layer... [by=CARRIER stats=CODE,...] [scale=VARIABLE:CODE,...] [ci=LEVEL]
  std::vector<CubeAggregator*> cubes;
  std::vector<std::vector<AggregationVariable*>> positions;
  for (const Words& words : c.cubes) {
    AggregationCube* cube = h._table->CreateCube();
    positions.emplace_back();
    std::map<std::string, std::string> settings;
    for (const std::string& word : words) {
      const auto equals = word.find('=');
      if (equals != std::string::npos) {
        settings[word.substr(0, equals)] = word.substr(equals + 1);
        continue;
      }
      const std::string where = word.substr(word.find(':') + 1);
      positions.back().push_back(variable(word.substr(0, word.find(':'))));
      cube->AddCategoricalVariable(positions.back().back(), where == "row"     ? Codes::kDimensionRow
                                                            : where == "col"   ? Codes::kDimensionColumn
                                                            : where == "extra" ? Codes::kDimensionExtra
                                                                               : Codes::kDimensionLayer);
    }
    for (const Words& set : c.sets) {
      TableDimension* dimension = variables[set[1]]->GetTableDimension();
      if (dimension != nullptr && std::find(set.begin(), set.end(), "duplicates") != set.end())
        dimension->SetComputingCounts(true);
    }
    cubes.push_back(cube->CreateCubeAggregator());
    if (settings.count("ci")) cube->SetCILevel(std::stod(settings["ci"]));
    int x = -1;
    std::vector<AggregationStatistic> statistics;
    for (const std::string& word : Split(settings["stats"], ','))
      statistics.push_back(Statistic(h, word, &x));
    if (!statistics.empty()) cube->AddCategoryStatistics(statistics, variable(settings["by"]));
    statistics.clear();
    for (const std::string& word : Split(settings["scale"], ','))
      statistics.push_back(Statistic(h, word, &x));
    if (!statistics.empty()) cube->AddScaleStatistics(statistics);
  }
  h.RunGroup();
  EXPECT_FALSE(c.expects.empty() && c.orders.empty()) << "a case that checks nothing";
  for (const Words& words : c.orders) {  // order VARIABLE CATEGORY...: as Describe gives them
    std::string expected;
    for (std::size_t i = 1; i < words.size(); ++i) expected += (i > 1 ? " " : "") + words[i];
    EXPECT_EQ(Describe(*variable(words[0])->GetTableDimension()), expected);
  }
  // expect [cubeN] KEY STATISTIC VALUE [~TOLERANCE]: KEY names each position's category by its
  // value, T for the total, or #K for the encoding K itself.
  // STATISTIC is one of the cube's, with a ' after it for its second value, or N, W, W2: the
  // unweighted and weighted count and squared weights. VALUE is a product or quotient of
  // numbers, "sysmis", or "none" for no cell at all; TOLERANCE is absolute, else 1e-9
  // of the value (at least 1e-9).
  for (const Words& line : c.expects) {
    Words words = line;
    std::size_t cube = 0;
    if (words[0].rfind("cube", 0) == 0) {
      cube = std::stoul(words[0].substr(4)) - 1;
      words.erase(words.begin());
    }
    std::string where = "expect";
    for (const std::string& word : line) where += " " + word;
    SCOPED_TRACE(where);
    const Words codes = Split(words[0], ',');
    ASSERT_LT(cube, cubes.size());
    ASSERT_EQ(codes.size(), positions[cube].size());
    CellKey key(static_cast<int>(codes.size()));
    for (std::size_t i = 0; i < codes.size(); ++i) {
      const int code = codes[i] == "T" ? kCellKeyTotal
                       : codes[i][0] == '#'
                           ? std::stoi(codes[i].substr(1))
                           : Encoding(positions[cube][i]->GetTableDimension(), std::stod(codes[i]));
      key[static_cast<int>(i)] = code;
    }
    const std::string& name = words[1];
    const std::string& expected = words[2];
    double actual = 0;
    if (name == "N" || name == "W" || name == "W2") {
      actual = cubes[cube]->GetCount(key, name != "N", name == "W2");
    } else if (expected == "none") {
      EXPECT_EQ(cubes[cube]->GetStatValuesByKey(key), nullptr);
      continue;
    } else {
      const bool second = name.back() == '\'';
      int x = -1;
      double value2 = 0;
      actual = Value(*cubes[cube], key, Statistic(h, second ? name.substr(0, name.size() - 1) : name, &x),
                     false, &value2);
      if (second) actual = value2;
    }
    if (expected == "sysmis") {
      EXPECT_EQ(actual, TARN_SystemMissing());
    } else {
      const double value = Evaluate(expected);
      EXPECT_NEAR(actual, value,
                  words.size() > 3 ? std::stod(words[3].substr(1)) : 1e-9 * std::max(1.0, std::fabs(value)));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Hand, EngineCases, ::testing::ValuesIn(ReadCases()),
                         [](const ::testing::TestParamInfo<EngineCase>& info) { return info.param.name; });

}  // namespace
