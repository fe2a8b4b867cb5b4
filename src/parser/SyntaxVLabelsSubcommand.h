// SyntaxVLabelsSubcommand.h - VLABELS: what the headings of chosen variables and sets show
#pragma once

#include <memory>
#include <string>

#include "parser/SyntaxComposite.h"

class VLabelsSettings;

/// VLABELS VARIABLES=list DISPLAY=DEFAULT|NAME|LABEL|BOTH|NONE. The list holds variable
/// names, "a TO b" ranges in dictionary order, set names ("$name"), or ALL. A global
/// subcommand that may be repeated: at its end the choice is merged into the run's
/// VLabelsSettings, where later requests win.
class SyntaxVLabelsSubcommand : public SyntaxComposite {
 public:
  /// `settings` is the command root's and outlives this converter.
  explicit SyntaxVLabelsSubcommand(VLabelsSettings& settings);
  ~SyntaxVLabelsSubcommand() override;

  std::string GetSubcommandName() const override;
  SyntaxConverter* AttributeString(const std::string& text, TARN_TokenSequence* tokens) override;
  SyntaxConverter* All(const std::string& text) override;
  SyntaxConverter* To(const std::string& text) override;
  SyntaxConverter* String(const std::string& text) override;
  /// Needs a list (or ALL) and DISPLAY; hands the choice to the settings.
  void ValidateAndCommit(const std::string& text) override;

  /// The list as read: dictionary indices, -100 for a set, -500 for an unknown name.
  const std::vector<int>& GetIndices() const;
  const std::vector<std::string>& GetSetNames() const;

 protected:
  void DumpDetails(std::ostream& out) const override;

 private:
  void CheckVarListCompletion();
  void AddToVariableList(const std::string& name);
  void AddIndex(int index);

  struct VLData;
  std::unique_ptr<VLData> _data;
};
