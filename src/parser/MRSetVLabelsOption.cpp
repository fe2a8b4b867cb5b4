// MRSetVLabelsOption.cpp - set-name comparison of a VLABELS choice
#include "parser/MRSetVLabelsOption.h"

#include "parser/SyntaxParserUtility.h"

bool MRSetVLabelsOption::operator==(const std::string& name) const {
  return SyntaxParserUtility::ExactWordMatch(_name, name);
}
