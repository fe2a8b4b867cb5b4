// HelpTopics.cpp - finds a guide page or a statistic's entry and prints it for the terminal
#include "HelpTopics.h"

#include <algorithm>
#include <cctype>
#include <ostream>
#include <sstream>
#include <vector>

#include "host/data/HostStrings.h"
#include "host/output/MessageCatalogue.h"
#include "parser/SyntaxParserUtility.h"

namespace {

constexpr const char* kIndexPage = "index";
constexpr const char* kStatisticsPage = "statistics";
constexpr std::size_t kListWidth = 80;  // the list of topics wraps to fit a terminal

std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

bool IsFence(const std::string& line) {
  return line.rfind("```", 0) == 0;
}

std::string UpperCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
  return text;
}

const HelpPage* FindPage(const std::string& name) {
  for (int i = 0; i < kHelpPageCount; ++i) {
    if (UpperCase(kHelpPages[i].name) == UpperCase(name)) {
      return &kHelpPages[i];
    }
  }
  // Subcommands may be abbreviated in a command, so they may be here too.
  for (int i = 0; i < kHelpPageCount; ++i) {
    if (KeywordMatch(name.c_str(), UpperCase(kHelpPages[i].name).c_str())) {
      return &kHelpPages[i];
    }
  }
  return nullptr;
}

// Whether a code span of `line` holds `word` as a whole token, ignoring letter case.
bool CodeSpanNames(const std::string& line, const std::string& word) {
  const auto isTokenChar = [](char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || c == '.' || c == '_';
  };
  bool inSpan = false;
  std::string token;
  for (const char c : line + " ") {
    if (c == '`') {
      inSpan = !inSpan;
    }
    if (inSpan && c != '`' && isTokenChar(c)) {
      token += c;
      continue;
    }
    if (!token.empty() && UpperCase(token) == word) {
      return true;
    }
    token.clear();
  }
  return false;
}

// The lines of the section ("## " heading to the next one) that names `word` in a code span:
// in a table row if one does, where a statistic has its entry, else on any line. Empty when no
// line names it.
std::vector<std::string> FindSection(const std::vector<std::string>& lines, const std::string& word,
                                     bool inTableRow = true) {
  bool inFence = false;
  std::size_t heading = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (IsFence(lines[i])) {
      inFence = !inFence;
    } else if (!inFence && lines[i].rfind("## ", 0) == 0) {
      heading = i;
    } else if (!inFence && (!inTableRow || lines[i].rfind('|', 0) == 0) && CodeSpanNames(lines[i], word)) {
      std::size_t end = i + 1;
      while (end < lines.size() && lines[end].rfind("## ", 0) != 0 && lines[end].rfind("# ", 0) != 0) {
        ++end;
      }
      return std::vector<std::string>(lines.begin() + static_cast<std::ptrdiff_t>(heading),
                                      lines.begin() + static_cast<std::ptrdiff_t>(end));
    }
  }
  return inTableRow ? FindSection(lines, word, /*inTableRow=*/false) : std::vector<std::string>();
}

// Markdown as a terminal shows it best: code blocks indented by four, the backticks of code
// spans and the targets of links left out.
void WriteForTerminal(const std::vector<std::string>& lines, std::ostream& out) {
  bool inFence = false;
  for (const std::string& line : lines) {
    if (IsFence(line)) {
      inFence = !inFence;
      continue;
    }
    if (inFence) {
      out << "    " << line << '\n';
      continue;
    }
    std::string text;
    bool inSpan = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
      if (line[i] == '`') {
        inSpan = !inSpan;
        continue;
      }
      // "[words](target)" keeps its words.
      if (!inSpan && line[i] == ']' && i + 1 < line.size() && line[i + 1] == '(') {
        const std::size_t close = line.find(')', i);
        const std::size_t open = text.rfind('[');
        if (close != std::string::npos && open != std::string::npos) {
          text.erase(open, 1);
          i = close;
          continue;
        }
      }
      text += line[i];
    }
    out << text << '\n';
  }
}

// A statistic keyword's entry: its default label, then the section of the statistics page
// that lists it (a confidence variant is listed with the statistic it belongs to).
bool PrintStatistic(const std::string& name, std::ostream& out) {
  int code = 0;
  std::string label;
  SyntaxParserUtility::StatisticsGroup group = TableEncryptionCodes::kStatGroupCounts;
  const HelpPage* page = FindPage(kStatisticsPage);
  if (page == nullptr || !SyntaxParserUtility::SupportedStatistics(name, code, label, group)) {
    return false;
  }
  const std::vector<std::string> lines = SplitLines(page->text);
  std::string keyword = UpperCase(name);
  std::vector<std::string> section = FindSection(lines, keyword);
  const std::size_t point = keyword.rfind('.');
  if (section.empty() && point != std::string::npos) {
    section = FindSection(lines, keyword.substr(0, point));
  }
  // The vocabulary's labels are catalogue keys; a reader sees their wording.
  if (const char* wording = MessageCatalogue::FindWording(label)) {
    label = wording;
  }
  const std::size_t parameter = label.find("^1");
  if (parameter != std::string::npos) {
    label.replace(parameter, 2, "95.0%");
  }
  out << keyword << ": \"" << label << "\"\n\n";
  WriteForTerminal(section, out);
  return true;
}

}  // namespace

int HelpTopics::Print(const std::string& name, std::ostream& out, std::ostream& errors) {
  if (name.empty()) {
    if (const HelpPage* index = FindPage(kIndexPage)) {
      WriteForTerminal(SplitLines(index->text), out);
    }
    out << "\nTopics (quilt help NAME), or any statistic keyword:\n ";
    std::size_t column = 1;
    for (int i = 0; i < kHelpPageCount; ++i) {
      const std::string topic = kHelpPages[i].name;
      if (column + 1 + topic.size() > kListWidth) {
        out << "\n ";
        column = 1;
      }
      out << ' ' << topic;
      column += 1 + topic.size();
    }
    out << '\n';
    return 0;
  }
  if (const HelpPage* page = FindPage(name)) {
    WriteForTerminal(SplitLines(page->text), out);
    return 0;
  }
  if (PrintStatistic(name, out)) {
    return 0;
  }
  errors << "quilt: help: no topic or statistic named '" << name << "'; 'quilt help' lists the topics\n";
  return 2;
}

void HelpTopics::ListStatistics(std::ostream& out) {
  for (const std::string& keyword : SyntaxParserUtility::GetStatKeywords()) {
    out << keyword << '\n';
  }
}
