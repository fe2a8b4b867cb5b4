// SyntaxParserUtility.cpp - whole-word matching and the small string helpers the converters share
#include "parser/SyntaxParserUtility.h"

#include <vector>

#include "host/data/HostStrings.h"

bool SyntaxParserUtility::ExactWordMatch(const std::string& left, const std::string& right) {
  return TARNMBstricmp_A(left.c_str(), right.c_str()) == 0;
}

void SyntaxParserUtility::AppendDistinctName(std::vector<std::string>& names, const std::string& name) {
  for (const std::string& known : names) {
    if (ExactWordMatch(known, name)) {
      return;
    }
  }
  names.push_back(name);
}

bool SyntaxParserUtility::ExactNWordMatch(const std::string& left, const std::string& right, int count) {
  return TARNMBstrnicmp_A(left.c_str(), right.c_str(), count) == 0;
}

std::string SyntaxParserUtility::UpperCaseString(const char* text) {
  if (text == nullptr || *text == '\0') {
    return std::string();
  }
  // The host upper-cases in place, multi-byte aware, so it works on a private copy.
  std::string copy(text);
  std::vector<char> buffer(copy.begin(), copy.end());
  buffer.push_back('\0');
  TARNMBstrupr_A(buffer.data());
  return std::string(buffer.data());
}

std::string& SyntaxParserUtility::TrimTrailingWhiteSpace(std::string& text) {
  const std::size_t lastKept = text.find_last_not_of(' ');
  text.erase(lastKept == std::string::npos ? 0 : lastKept + 1);
  return text;
}
