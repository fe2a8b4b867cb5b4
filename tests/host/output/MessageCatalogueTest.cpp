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
      {"Subcommand ^1. Unknown keyword ^2.",
       {Single("TABLE"), Single("FOO")},
       "Subcommand TABLE. Unknown keyword FOO."},
      {"[%1:,^1:]1", {List({"age", "sex", "region"})}, "age,sex,region"},
      {"[%1=%2:, ^1=^2:]1", {List({"Region", "North", "Wave", "2"})}, "Region=North, Wave=2"},
      {"[:^1:]1", {List({"first piece ", "second"})}, "first piece second"},
      {"In ^1 the list [%1:,^1:]2 ends", {Single("T1"), List({"a", "b"})}, "In T1 the list a,b ends"},
      {"[%1:,^1:]1 only", {List({})}, " only"},
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

TEST(MessageCatalogue, AbbreviatedKeysGetFullSentences) {
  BpComposite composite("Results are based...^1...column prop", /*translate=*/true);
  composite.Add(BpString("0.05", /*translate=*/false));
  composite.Finish();
  EXPECT_EQ(composite.GetText().find("..."), std::string::npos);
  EXPECT_NE(composite.GetText().find("0.05"), std::string::npos);
  EXPECT_EQ(BpString("More than 20...", /*translate=*/true).GetText().rfind("20% or more of the cells", 0), 0u);
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
  BpComposite composite("In split [%1=%2:, ^1=^2:]1 subtables in ^2 empty ...", /*translate=*/true);
  composite.Sublist();
  composite.SplitList();
  composite.EndSublist();
  composite.Add(BpString("Brands", /*translate=*/false));
  composite.Finish();
  OutputDocument::Install(nullptr);
  EXPECT_EQ(composite.GetText(),
            "In split Region=North, Wave=2 some subtables of table Brands are empty and are not shown.");
  EXPECT_EQ(composite.GetArguments(), (std::vector<std::string>{"Region, North, Wave, 2", "Brands"}));
}

// Every string literal the sources pass as a catalogue key: BpString(..., true),
// BpComposite(..., true), the driver's ReportCatalogueText, and the first argument of the
// parser's catalogue helpers. Adjacent literals are joined as the compiler joins them.
std::vector<std::pair<std::string, std::string>> KeysInSources() {
  const std::string literal = R"LIT(((?:"(?:[^"\\]|\\.)*"\s*)+))LIT";
  const std::string translateTrue = R"(\s*,\s*(?:/\*[^*]*\*/\s*)?true\s*\))";
  const std::regex everywhere[] = {
      std::regex(R"(BpString\s*\(\s*)" + literal + translateTrue),
      std::regex(R"(BpComposite\s*(?:[A-Za-z_]\w*\s*)?[({]\s*)" + literal + translateTrue),
      std::regex(R"(ReportCatalogueText\s*\(\s*)" + literal),
  };
  const std::regex parserHelpers(R"(\b(?:Raise|Compose|Report|ReportWarning|Warn)\s*\(\s*)" + literal);
  const std::regex piece(R"RE("((?:[^"\\]|\\.)*)")RE");
  auto unescape = [](const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] == '\\' && i + 1 < text.size()) {
        ++i;
        out += text[i] == 'n' ? '\n' : text[i];
      } else {
        out += text[i];
      }
    }
    return out;
  };
  std::vector<std::pair<std::string, std::string>> found;
  const std::filesystem::path root = std::filesystem::path(QUILT_SOURCE_DIR) / "src";
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    const std::string extension = entry.path().extension().string();
    if (extension != ".cpp" && extension != ".h") continue;
    std::ifstream file(entry.path());
    std::stringstream buffer;
    buffer << file.rdbuf();
    const std::string source = buffer.str();
    std::vector<const std::regex*> patterns;
    for (const std::regex& pattern : everywhere) patterns.push_back(&pattern);
    if (entry.path().filename().string().rfind("SyntaxParserUtility", 0) == 0)
      patterns.push_back(&parserHelpers);
    for (const std::regex* pattern : patterns) {
      for (auto it = std::sregex_iterator(source.begin(), source.end(), *pattern);
           it != std::sregex_iterator(); ++it) {
        const std::string literals = (*it)[1].str();
        std::string key;
        for (auto part = std::sregex_iterator(literals.begin(), literals.end(), piece);
             part != std::sregex_iterator(); ++part) {
          key += unescape((*part)[1].str());
        }
        found.emplace_back(key, entry.path().filename().string());
      }
    }
  }
  return found;
}

TEST(MessageCatalogue, EveryKeyInTheSourcesHasWording) {
  const auto keys = KeysInSources();
  // The driver's four run messages are there from the start; the scan must see them.
  EXPECT_GE(keys.size(), 4u);
  for (const auto& [key, file] : keys) {
    EXPECT_NE(MessageCatalogue::FindWording(key), nullptr)
        << file << ": key without wording: \"" << key << '"';
  }
}

}  // namespace
