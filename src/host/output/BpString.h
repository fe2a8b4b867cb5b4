// BpString.h - a plain text or a message-catalogue key
#pragma once

#include <string>

#include "host/output/BpCellText.h"

/// A text shown as it stands (translate false) or the key of a catalogue entry whose
/// English wording is shown (translate true).
class BpString : public BpCellText {
 public:
  BpString(std::string text, bool translate);

  std::unique_ptr<BpCellText> Clone() const override;
  std::string GetText() const override;
  std::string GetIdentity() const override;
  std::string GetKey() const override { return _text; }
  void Dump(std::ostream& out) const override;

  bool IsTranslated() const { return _translate; }

 private:
  std::string _text;
  bool _translate;
};
