// MessageCatalogueTest.cpp - template expansion, catalogue completeness and wording of the keys in use
#include <gtest/gtest.h>

#include <algorithm>
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

// The arguments of the call whose "(" is at `open`, split at top-level commas; empty when
// the call is not closed.
std::vector<std::string> CallArguments(const std::string& source, std::size_t open) {
  std::vector<std::string> arguments(1);
  int depth = 0;
  for (std::size_t i = open; i < source.size(); ++i) {
    const char c = source[i];
    if (c == '"' || c == '\'') {
      const std::size_t start = i;
      for (++i; i < source.size() && source[i] != c; ++i) {
        if (source[i] == '\\') ++i;
      }
      if (depth > 0) arguments.back() += source.substr(start, i - start + 1);
      continue;
    }
    if (c == '(' || c == '{' || c == '[') {
      if (depth++ == 0) continue;
    } else if (c == ')' || c == '}' || c == ']') {
      if (--depth == 0) return arguments;
    } else if (c == ',' && depth == 1) {
      arguments.emplace_back();
      continue;
    }
    arguments.back() += c;
  }
  return {};
}

// The keys in one argument: adjacent literals joined as the compiler joins them, each branch
// of a conditional a key of its own, and each named key.
std::vector<std::string> LiteralsIn(const std::string& argument) {
  std::vector<std::string> keys;
  const std::regex literals(R"LIT(((?:"(?:[^"\\]|\\.)*"\s*)+))LIT");
  const std::regex piece(R"RE("((?:[^"\\]|\\.)*)")RE");
  for (auto it = std::sregex_iterator(argument.begin(), argument.end(), literals);
       it != std::sregex_iterator(); ++it) {
    const std::string joined = it->str();
    std::string key;
    for (auto part = std::sregex_iterator(joined.begin(), joined.end(), piece);
         part != std::sregex_iterator(); ++part) {
      const std::string text = (*part)[1].str();
      for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size()) {
          ++i;
          key += text[i] == 'n' ? '\n' : text[i];
        } else {
          key += text[i];
        }
      }
    }
    keys.push_back(key);
  }
  // A named key (msg::kName) counts as its key text; a name without entry would not compile.
  const std::regex named(R"(\bmsg::k(\w+))");
  for (auto it = std::sregex_iterator(argument.begin(), argument.end(), named); it != std::sregex_iterator();
       ++it) {
    const char* key = MessageCatalogue::FindKey((*it)[1].str());
    keys.push_back(key == nullptr ? it->str() : key);
  }
  return keys;
}

// Every key the sources raise: the text of BpString(..., true) and BpComposite(..., true)
// (both branches of a conditional), the first argument of the catalogue helpers and of the
// driver's ReportCatalogueText and GenericMessage, and the keys a significance-test family
// chooses among (SigTestKey).
std::vector<std::pair<std::string, std::string>> KeysInSources() {
  struct Call {
    std::regex name;
    bool needsTranslate;  // the last argument must be `true`
    std::size_t first;    // arguments [first, last) hold keys
    std::size_t last;
  };
  const Call calls[] = {
      {std::regex(R"(\bBpString\s*\()"), true, 0, 1},
      {std::regex(R"(\bBpComposite(?:\s+[A-Za-z_]\w*)?\s*\()"), true, 0, 1},
      {std::regex(R"(\b(?:ReportCatalogueText|GenericMessage|Raise|Compose|Report|Warn)\s*\()"), false, 0, 1},
      {std::regex(R"(\bSigTestKey\s*\()"), false, 1, 4},
  };
  const std::regex translateTrue(R"(^\s*(?:/\*[^*]*\*/\s*)?true\s*$)");
  std::vector<std::pair<std::string, std::string>> found;
  const std::filesystem::path root = std::filesystem::path(QUILT_SOURCE_DIR) / "src";
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    const std::string extension = entry.path().extension().string();
    if (extension != ".cpp" && extension != ".h") continue;
    std::ifstream file(entry.path());
    std::stringstream buffer;
    buffer << file.rdbuf();
    const std::string source = buffer.str();
    for (const Call& call : calls) {
      for (auto it = std::sregex_iterator(source.begin(), source.end(), call.name);
           it != std::sregex_iterator(); ++it) {
        const std::size_t open = static_cast<std::size_t>(it->position() + it->length() - 1);
        const std::vector<std::string> arguments = CallArguments(source, open);
        if (arguments.size() < call.last) continue;
        if (call.needsTranslate && !std::regex_match(arguments.back(), translateTrue)) continue;
        for (std::size_t index = call.first; index < call.last; ++index) {
          for (const std::string& key : LiteralsIn(arguments[index])) {
            found.emplace_back(key, entry.path().filename().string());
          }
        }
      }
    }
  }
  return found;
}

TEST(MessageCatalogue, EveryKeyInTheSourcesHasWording) {
  const auto keys = KeysInSources();
  // Keys the scan must see, one of each way of raising one.
  for (const char* known :
       {msg::kNoCases, msg::kAlphaValuesEqual,
        msg::kColumnProportionsSkippedCombinedStats,
        msg::kSubtablesUnspecifiedEmpty, msg::kUnknownKeyword}) {
    EXPECT_TRUE(std::any_of(keys.begin(), keys.end(), [&](const auto& found) {
      return found.first == known;
    })) << known;
  }
  for (const auto& [key, file] : keys) {
    EXPECT_NE(MessageCatalogue::FindWording(key), nullptr)
        << file << ": key without wording: \"" << key << '"';
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
