// MRSetVLabelsOption.h - the VLABELS display choice for one multiple-response set
#pragma once

#include <string>

#include "parser/PresentationCodes.h"

/// A set's name as the dictionary spells it, and what its heading shows. Plain value type.
struct MRSetVLabelsOption {
  std::string _name;
  PresentationCodes::VLabelOption _option = PresentationCodes::kVLabelDefault;

  /// Whole-word, case-insensitive comparison of the set name.
  bool operator==(const std::string& name) const;
};
