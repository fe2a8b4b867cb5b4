// HostStringsTest.cpp - keyword test, name validation and the byte-string helpers
#include <gtest/gtest.h>

#include <string>

#include "host/data/HostStrings.h"

TEST(HostStrings, KeywordMatchTakesWholeWordsAndAbbreviationsOfThreeOrMore) {
  struct Row {
    const char* token;
    const char* keyword;
    bool matches;
  };
  const Row rows[] = {
      {"TABLE", "TABLE", true},
      {"table", "TABLE", true},
      {"TaB", "TABLE", true},
      {"TA", "TABLE", false},
      {"TABLES", "TABLE", false},
      {"TABX", "TABLE", false},
      {"BY", "BY", true},
      {"by", "BY", true},
      {"B", "BY", false},
      {"CAT", "CATEGORIES", true},
      {"categ", "CATEGORIES", true},
      {"", "TABLE", false},
      {"NO", "NO", true},
      {"N", "NO", false},
  };
  for (const Row& row : rows)
    EXPECT_EQ(KeywordMatch(row.token, row.keyword), row.matches) << row.token << " " << row.keyword;
  EXPECT_FALSE(KeywordMatch(nullptr, "TABLE"));
}

TEST(HostStrings, ValidateTARNName) {
  struct Row {
    std::string name;
    int result;
  };
  const Row rows[] = {
      {"age", kNameValid},
      {"@x", kNameValid},
      {"#tmp", kNameValid},
      {"$media", kNameValid},
      {"q1.a_b@#$", kNameValid},
      {"Région", kNameValid},
      {"", kNameEmpty},
      {"1st", kNameBadFirstCharacter},
      {"_x", kNameBadFirstCharacter},
      {"a b", kNameBadCharacter},
      {"a-b", kNameBadCharacter},
      {"by", kNameReservedWord},
      {"WITH", kNameReservedWord},
      {"ALL", kNameReservedWord},
      {"bye", kNameValid},
      {"q1.", kNameTrailingPeriod},
      {std::string(64, 'a'), kNameValid},
      {std::string(65, 'a'), kNameTooLong},
  };
  for (const Row& row : rows) EXPECT_EQ(ValidateTARNName(row.name.c_str()), row.result) << row.name;
}

TEST(HostStrings, CaseInsensitiveComparisonsFoldAsciiOnly) {
  EXPECT_EQ(TARNMBstricmp_A("Region", "REGION"), 0);
  EXPECT_LT(TARNMBstricmp_A("abc", "ABD"), 0);
  EXPECT_GT(TARNMBstricmp_A("abcd", "ABC"), 0);
  EXPECT_NE(TARNMBstricmp_A("é", "É"), 0);  // non-ASCII letters compare as bytes
  EXPECT_EQ(TARNMBstrnicmp_A("COLPCT.COUNT", "colpct.total", 7), 0);
  EXPECT_NE(TARNMBstrnicmp_A("COLPCT.COUNT", "colpct.total", 8), 0);
  EXPECT_EQ(TARNMBstrnicmp_A("ab", "AB", 10), 0);  // stops at the end of both
  char text[] = "kz-é";
  TARNMBstrupr_A(text);
  EXPECT_STREQ(text, "KZ-é");
}

TEST(HostStrings, CopyToFixedBlankFillsAndNeverSplitsACharacter) {
  char field[6];
  TARNMBCopyToFixed_A(field, 6, "ab", -1);
  EXPECT_EQ(std::string(field, 6), "ab    ");
  TARNMBCopyToFixed_A(field, 6, "abcdefgh", 8);
  EXPECT_EQ(std::string(field, 6), "abcdef");
  // "abcdé" is 6 bytes (é is two); "abcdeé" is 7, and cutting at 6 would split the é.
  TARNMBCopyToFixed_A(field, 6, "abcdeé", -1);
  EXPECT_EQ(std::string(field, 6), "abcde ");
  std::string out;
  EXPECT_EQ(TARNMBCodePageToGeneric(nullptr, out, "Zürich"), 0);
  EXPECT_EQ(out, "Zürich");
}
