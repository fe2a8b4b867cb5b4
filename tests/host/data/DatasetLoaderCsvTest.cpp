// DatasetLoaderCsvTest.cpp - CSV reading: quoting, delimiters, empty fields, inference and errors
#include <gtest/gtest.h>

#include <charconv>
#include <random>
#include <string>
#include <vector>

#include "host/data/DataError.h"
#include "host/data/Dataset.h"
#include "host/data/DatasetLoader.h"
#include "host/data/FormatText.h"

namespace {

std::shared_ptr<Dataset> Load(const std::string& csv, const std::string& dictionary = "",
                              DatasetLoadOptions options = {}) {
  return DatasetLoader::LoadText(csv, dictionary, options, "survey.csv", "survey.dict.json");
}

std::string Text(const Dataset& dataset, int variable, std::size_t caseIndex) {
  const int width = dataset.GetVariable(variable).GetType();
  std::string text(reinterpret_cast<const char*>(dataset.GetCells(variable, caseIndex)),
                   static_cast<std::size_t>(width));
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

double Number(const Dataset& dataset, int variable, std::size_t caseIndex) {
  return dataset.GetCells(variable, caseIndex)->number;
}

// Runs a load that must fail and returns its message.
std::string LoadError(const std::string& csv) {
  try {
    Load(csv);
  } catch (const DataError& error) {
    return error.what();
  }
  ADD_FAILURE() << "no DataError for:\n" << csv;
  return "";
}

}  // namespace

TEST(DatasetLoaderCsv, QuotedFieldsKeepDelimitersQuotesAndLineEnds) {
  const auto dataset = Load(
      "id,city,note\r\n"
      "1,\"Paris, France\",\"she said \"\"hi\"\"\"\r\n"
      "2,Rome,\"two\nlines\"\r\n"
      "3,\"\",plain\r\n");
  ASSERT_EQ(dataset->GetCaseCount(), 3u);
  EXPECT_EQ(Text(*dataset, 1, 0), "Paris, France");
  EXPECT_EQ(Text(*dataset, 2, 0), "she said \"hi\"");
  EXPECT_EQ(Text(*dataset, 2, 1), "two\nlines");
  EXPECT_EQ(Text(*dataset, 1, 2), "");
  // The widest city text is "Paris, France", 13 bytes; the widest note "she said "hi"", 13.
  EXPECT_EQ(dataset->GetVariable(1).GetType(), 13);
  EXPECT_EQ(dataset->GetVariable(2).GetType(), 13);
  EXPECT_EQ(dataset->GetCellsPerCase(1), 2);  // ObsLength(13) = (13 + 7) >> 3 = 2
}

TEST(DatasetLoaderCsv, DoubledQuotesInSeveralFieldsOfARecordStayIntact) {
  // Each unescaped field has its own buffer; growing the set of buffers for a later field
  // must not move the text handed out for an earlier one (short strings live inside the
  // string object, so a vector of them would).
  const auto dataset = Load(
      "a,b,c\n\"\"\"\",\"x\"\"y\","
      "\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\"\n");
  ASSERT_EQ(dataset->GetCaseCount(), 1u);
  EXPECT_EQ(Text(*dataset, 0, 0), "\"");
  EXPECT_EQ(Text(*dataset, 1, 0), "x\"y");
  EXPECT_EQ(Text(*dataset, 2, 0), std::string(20, '"'));
}

TEST(DatasetLoaderCsv, ACarriageReturnAloneEndsALine) {
  const auto dataset = Load("id,note\r1,\"two\rlines\"\r2,b\r");
  ASSERT_EQ(dataset->GetCaseCount(), 2u);
  EXPECT_EQ(Text(*dataset, 1, 0), "two\rlines");
  EXPECT_EQ(Text(*dataset, 1, 1), "b");
}

TEST(DatasetLoaderCsv, OtherDelimiter) {
  DatasetLoadOptions options;
  options.delimiter = ';';
  const auto dataset = Load("a;b\n1,5;x,y\n2;\"z;w\"\n", "", options);
  ASSERT_EQ(dataset->GetVariableCount(), 2);
  EXPECT_EQ(Text(*dataset, 0, 0), "1,5");  // a comma is plain text under ';'
  EXPECT_EQ(Text(*dataset, 1, 1), "z;w");
}

TEST(DatasetLoaderCsv, EmptyFieldsAreSystemMissingOrBlank) {
  const auto dataset = Load("n,s\n1,a\n,\n 3 ,b\n.,c\n");
  ASSERT_EQ(dataset->GetCaseCount(), 4u);
  EXPECT_EQ(dataset->GetVariable(0).GetType(), 0);
  EXPECT_EQ(Number(*dataset, 0, 1), TARN_SystemMissing());
  EXPECT_EQ(Number(*dataset, 0, 2), 3.0);                   // blanks around a number are ignored
  EXPECT_EQ(Number(*dataset, 0, 3), TARN_SystemMissing());  // a lone "." is missing too
  EXPECT_EQ(Text(*dataset, 1, 1), "");
}

TEST(DatasetLoaderCsv, NumbersWithSignsDecimalsAndExponents) {
  const auto dataset = Load("x\n-2\n+4\n0.125\n1e3\n-2.5E-1\n.5\n");
  const double expected[] = {-2, 4, 0.125, 1000, -0.25, 0.5};
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(Number(*dataset, 0, i), expected[i]) << "case " << i;
}

TEST(DatasetLoaderCsv, InfersFormatsFromTheData) {
  struct Row {
    const char* csv;
    const char* format;
  };
  const Row rows[] = {
      {"x\n1\n22\n333\n", "F3.0"},                // widest integer part 3, no decimals
      {"x\n1.5\n-10.25\n", "F6.2"},               // "-10" is 3 wide, 2 decimals: 3 + 1 + 2
      {"x\n\n\n", "F8.2"},                        // nothing seen: the default format
      {"x\n0.12345678901234567890\n", "F18.16"},  // decimals stop at 16: 1 + 1 + 16
      {"x\nabc\nde\n", "A3"},
  };
  for (const Row& row : rows) {
    const auto dataset = Load(row.csv);
    EXPECT_EQ(FormatToText(dataset->GetVariable(0).GetFormat()), row.format) << row.csv;
  }
}

TEST(DatasetLoaderCsv, ColumnWithTextAfterNumbersBecomesString) {
  const auto dataset = Load("code\n12\n7\nA7\n");
  ASSERT_EQ(dataset->GetVariable(0).GetType(), 2);  // widest text "12" or "A7"
  EXPECT_EQ(Text(*dataset, 0, 0), "12");
  EXPECT_EQ(Text(*dataset, 0, 2), "A7");
}

// The other refusals of malformed data are cases of LoadErrors.txt. A text past the limit,
// and "Nan" read as a first name where the column holds text, not as a number.
TEST(DatasetLoaderCsv, OverlongTextIsRefusedAndNumberWordsAmongTextAreText) {
  EXPECT_EQ(LoadError("id,x\n1," + std::string(40000, 'y') + "\n2,z\n"),
            "survey.csv:2: column 'x': a text of 40000 bytes is longer than the limit of 32767 bytes");
  EXPECT_EQ(Text(*Load("name\nNan\nAlice\n"), 0, 0), "Nan");
}

TEST(DatasetLoaderCsv, ByteOrderMarkAndBlankLinesAreSkipped) {
  const auto dataset = Load("\xEF\xBB\xBFid\n1\n\n2\n\r\n");
  ASSERT_EQ(dataset->GetVariableCount(), 1);
  EXPECT_STREQ(dataset->GetVariable(0).GetName(), "id");
  EXPECT_EQ(dataset->GetCaseCount(), 2u);
}

TEST(DatasetLoaderCsv, ManyRowsFillEveryColumn) {
  // Records of growing length, in mixed column kinds.
  std::string csv = "i,half,name\n";
  for (int i = 0; i < 2500; ++i)
    csv += std::to_string(i) + "," + std::to_string(i / 2.0) + ",n" + std::to_string(i) + "\n";
  const auto dataset = Load(csv);
  ASSERT_EQ(dataset->GetCaseCount(), 2500u);
  EXPECT_EQ(Number(*dataset, 0, 2499), 2499.0);
  EXPECT_EQ(Number(*dataset, 1, 2499), 1249.5);
  EXPECT_EQ(Text(*dataset, 2, 2499), "n2499");
  EXPECT_EQ(dataset->GetColumn(0).size(), 2500u);
  // Columns are allocated once at their final size, although later lines are longer than
  // the first ones: 3 columns of one 8-byte cell ("n2499" fits in one) for 2,500 cases.
  EXPECT_EQ(dataset->GetDataBytes(), 3u * 2500u * 8u);
}

TEST(DatasetLoaderCsv, NumbersMatchTheGeneralParserExactly) {
  // The loader reads plain decimals on a fast path; each must give the very double that
  // std::from_chars gives. Random texts with a fixed seed, from 1 to 17 digits.
  std::mt19937_64 random(12345);
  std::uniform_int_distribution<int> digitCount(1, 17);
  std::uniform_int_distribution<int> digit(0, 9);
  std::vector<std::string> texts;
  std::string csv = "x\n";
  for (int i = 0; i < 5000; ++i) {
    std::string text = random() % 2 ? "-" : "";
    const int count = digitCount(random);
    const int point = static_cast<int>(random() % static_cast<unsigned>(count + 1));
    for (int position = 0; position < count; ++position) {
      if (position == point && position > 0) text += '.';
      text += static_cast<char>('0' + digit(random));
    }
    texts.push_back(text);
    csv += text + "\n";
  }
  const auto dataset = Load(csv);
  ASSERT_EQ(dataset->GetCaseCount(), texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const std::string& text = texts[i];
    double expected = 0;
    const char* begin = text.data() + (text[0] == '-' ? 1 : 0);
    std::from_chars(begin, text.data() + text.size(), expected);
    if (text[0] == '-') expected = -expected;
    ASSERT_EQ(Number(*dataset, 0, i), expected) << text;
  }
}
