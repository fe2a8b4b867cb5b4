// CaseFileText.h - reads the "KEY: VALUE" lines of the case files (LoadErrors.txt, TokenCases.txt)
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

/// One line of a case file: its number, the key before ':' and the text after ": ".
struct CaseLine {
  int number = 0;
  std::string key;
  std::string value;
};

/// The lines of tests/`relativePath` but blank ones and "#" comments.
inline std::vector<CaseLine> ReadCaseLines(const std::string& relativePath) {
  std::ifstream file(std::filesystem::path(QUILT_SOURCE_DIR) / "tests" / relativePath);
  std::vector<CaseLine> lines;
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    if (line.empty() || line[0] == '#') continue;
    const std::size_t colon = line.find(':');
    lines.push_back({number, line.substr(0, colon), colon + 2 <= line.size() ? line.substr(colon + 2) : ""});
  }
  return lines;
}

/// `text` of a case file as bytes: \n, \r, \t, \\ and \xHH stand for their bytes.
inline std::string UnescapeCaseText(const std::string& text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      bytes += text[i];
    } else if (text[++i] == 'x') {
      bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
      i += 2;
    } else {
      bytes += text[i] == 'n' ? '\n' : text[i] == 'r' ? '\r' : text[i] == 't' ? '\t' : text[i];
    }
  }
  return bytes;
}
