// VLabelsSettings.h - the run's VLABELS choices: for all variables, per variable and per set
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "parser/MRSetVLabelsOption.h"
#include "parser/PresentationCodes.h"

/// What all VLABELS subcommands of a command asked for, merged so that a later request for
/// the same variable or set wins and a later request for ALL wipes the earlier ones. The
/// command root owns one and applies it to every table's variables when the command ends.
class VLabelsSettings {
 public:
  using VLabelOption = PresentationCodes::VLabelOption;

  VLabelsSettings();
  ~VLabelsSettings();
  VLabelsSettings(const VLabelsSettings&) = delete;
  VLabelsSettings& operator=(const VLabelsSettings&) = delete;

  /// For all variables: drops every earlier per-variable and per-set choice.
  void SetVLabels(VLabelOption option);
  /// For these sets: each replaces an earlier entry of the same name.
  void SetVLabels(const std::vector<std::string>& setNames, VLabelOption option);
  /// For these dictionary indices: each replaces an earlier entry.
  void SetVLabels(const std::vector<int>& indexes, VLabelOption option);

  bool IsForAll() const;
  VLabelOption GetAllOption() const;
  const std::map<int, VLabelOption>& GetByIndex() const;
  const std::vector<MRSetVLabelsOption>& GetBySet() const;
  /// True when nothing was asked for.
  bool IsEmpty() const;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
