// BpComposite.h - a catalogue template with arguments and sublists
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/output/BpCellText.h"

/// A text made of a template with ^n placeholders and arguments. Thrown by value as a parse
/// error, so it copies deeply. Build with Add, Sublist/EndSublist (a list argument),
/// SplitList (the current split group's variable and value pairs) and Finish.
class BpComposite : public BpCellText {
 public:
  BpComposite(const std::string& templateText, bool translate);
  BpComposite(const BpComposite& other);
  BpComposite& operator=(const BpComposite& other);
  BpComposite(BpComposite&& other) noexcept;
  BpComposite& operator=(BpComposite&& other) noexcept;
  ~BpComposite() override;

  /// Appends an argument, or an element of the open sublist.
  void Add(const BpCellText& text);
  /// Opens a list argument; the Add calls that follow go into it until EndSublist.
  void Sublist();
  void EndSublist();
  /// Fills the open sublist with variable, value, variable, value... of the current split
  /// group (OutputDocument::SetSplitPairs).
  void SplitList();
  /// Ends the building; the composite is a valid text only after it.
  void Finish();

  std::unique_ptr<BpCellText> Clone() const override;
  std::string GetText() const override;
  std::string GetIdentity() const override;
  std::string GetKey() const override;
  void Dump(std::ostream& out) const override;

  bool IsTranslated() const;
  bool IsFinished() const;
  /// Each argument as a reader sees it; a list argument reads as its elements joined by ", ".
  std::vector<std::string> GetArguments() const;

 private:
  struct Data;
  std::unique_ptr<Data> _data;
};
