// MessageCatalogueTest.cpp - template expansion, catalogue completeness and wording of the keys in use
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "host/output/BpComposite.h"
#include "host/output/BpString.h"
#include "host/output/MessageCatalogue.h"
#include "host/output/MessageKeys.h"
#include "host/output/OutputDocument.h"

namespace {

MessageArgument Single(const std::string& text) {
  MessageArgument argument;
  argument.text = text;
  return argument;
}

MessageArgument List(std::vector<std::string> items) {
  MessageArgument argument;
  argument.isList = true;
  argument.items = std::move(items);
  return argument;
}

struct ExpandCase {
  const char* templateText;
  std::vector<MessageArgument> arguments;
  const char* expected;
};

TEST(MessageCatalogue, ExpandsPlaceholdersAndListConstructs) {
  const ExpandCase cases[] = {
      {msg::kUnknownKeyword,
       {Single("TABLE"), Single("FOO")},
       "Subcommand TABLE. Unknown keyword FOO."},
      {"[%1:,^1:]1", {List({"age", "sex", "region"})}, "age,sex,region"},
      {"[%1=%2:, ^1=^2:]1", {List({"Region", "North", "Wave", "2"})}, "Region=North, Wave=2"},
      {"[:^1:]1", {List({"first piece ", "second"})}, "first piece second"},
      {"In ^1 the list [%1:,^1:]2 ends", {Single("T1"), List({"a", "b"})}, "In T1 the list a,b ends"},
      {"[%1:,^1:]1 only", {List({})}, " only"},
      // An empty argument between two blanks leaves one blank.
      {"In split [%1=%2:, ^1=^2:]1 there are ^2 cases", {List({}), Single("")}, "In split there are cases"},
      {"missing ^2", {Single("x")}, "missing ^2"},
      {"^10 and ^1", {Single("one")}, "^10 and one"},
  };
  for (const ExpandCase& row : cases) {
    EXPECT_EQ(MessageCatalogue::ExpandTemplate(row.templateText, row.arguments), row.expected)
        << row.templateText;
  }
}

TEST(MessageCatalogue, KeyWithoutWordingShowsAsItselfFilledIn) {
  EXPECT_EQ(MessageCatalogue::FindWording("No such key ^1"), nullptr);
  EXPECT_EQ(MessageCatalogue::Expand("No such key ^1", {Single("x")}), "No such key x");
}

TEST(MessageCatalogue, EveryWordingKeepsTheKeysPlaceholders) {
  std::set<std::string> seen;
  const std::regex placeholder(R"(\^[0-9]+|\[[^\]]*:\][0-9]+)");
  for (const std::string& key : MessageCatalogue::Keys()) {
    EXPECT_TRUE(seen.insert(key).second) << "duplicate key: " << key;
    const std::string wording = MessageCatalogue::FindWording(key);
    EXPECT_FALSE(wording.empty()) << key;
    for (auto it = std::sregex_iterator(key.begin(), key.end(), placeholder); it != std::sregex_iterator();
         ++it) {
      const std::string token = it->str();
      if (token[0] == '^') {
        EXPECT_NE(wording.find(token), std::string::npos) << key << " loses " << token;
      } else {
        // A list construct may be reworded, but must lay out the same argument.
        const std::string number = token.substr(token.rfind(']') + 1);
        EXPECT_NE(wording.find(":]" + number), std::string::npos) << key << " loses list " << number;
      }
    }
  }
}

TEST(MessageCatalogue, SplitListFillsVariableAndValuePairs) {
  OutputDocument document;
  OutputDocument::Install(&document);
  document.SetSplitPairs({{"Region", "North"}, {"Wave", "2"}});
  BpComposite composite(msg::kSplitSubtablesEmpty, /*translate=*/true);
  composite.Sublist();
  composite.SplitList();
  composite.EndSublist();
  composite.Add(BpString("Brands", /*translate=*/false));
  composite.Finish();
  OutputDocument::Install(nullptr);
  EXPECT_EQ(
      composite.GetText(),
      "In split Region=North, Wave=2 some subtables of table Brands have no cases: their cells are empty.");
  EXPECT_EQ(composite.GetArguments(), (std::vector<std::string>{"Region, North, Wave, 2", "Brands"}));
}

// Code names every message by msg::k<name>, generated from the catalogue, so a mistyped or
// unknown name does not compile. What the names cannot catch is a key written as a literal:
// a translated text or a message raised with a string of its own would bypass the catalogue.
TEST(MessageCatalogue, SourcesRaiseNoLiteralKeys) {
  const std::regex literalKey(
      R"(\b(?:BpString|BpComposite(?:\s+\w+)?)\s*\(\s*"[^"]*"\s*,\s*(?:/\*[^*]*\*/\s*)?true\s*\))"
      R"(|\b(?:ReportCatalogueText|GenericMessage|Raise|Compose|Report|Warn)\s*\(\s*")");
  const std::filesystem::path root = std::filesystem::path(QUILT_SOURCE_DIR) / "src";
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    const std::string extension = entry.path().extension().string();
    if (extension != ".cpp" && extension != ".h") continue;
    std::ifstream file(entry.path());
    std::stringstream buffer;
    buffer << file.rdbuf();
    const std::string source = buffer.str();
    std::smatch found;
    EXPECT_FALSE(std::regex_search(source, found, literalKey))
        << entry.path().filename().string() << ": literal key in " << found.str();
  }
}

// Each wording filled in as a reader sees it: single placeholders with a word, lists with
// four elements. What is left must be plain text, without the marks of a key or a template.
TEST(MessageCatalogue, EveryWordingReadsWithoutKeyFragments) {
  const std::regex listConstruct(R"(\[[^\]]*:\]([0-9]+))");
  const std::regex placeholder(R"(\^([0-9]+))");
  for (const std::string& key : MessageCatalogue::Keys()) {
    const std::string wording = MessageCatalogue::FindWording(key);
    std::vector<MessageArgument> arguments(9, Single("word"));
    for (auto it = std::sregex_iterator(wording.begin(), wording.end(), listConstruct);
         it != std::sregex_iterator(); ++it) {
      arguments[std::stoul((*it)[1].str()) - 1] = List({"first", "second", "third", "fourth"});
    }
    const std::string text = MessageCatalogue::Expand(key, arguments);
    for (const char* fragment : {"..", "^", "[%", ":]", "  ", " ,", " .", "%%"}) {
      EXPECT_EQ(text.find(fragment), std::string::npos)
          << key << "\n reads: " << text << "\n has: " << fragment;
    }
  }
}

}  // namespace
