// BpOwnedText.h - an owned deep copy of a cell text, copied again when it is copied
#pragma once

#include <memory>

class BpCellText;

/// Owns a deep copy of a cell text (BpCellText::Clone), so the original may go at once.
/// Copying it copies the text; an empty one owns nothing.
class BpOwnedText {
 public:
  BpOwnedText() = default;
  explicit BpOwnedText(const BpCellText& text);
  BpOwnedText(const BpOwnedText& other);
  BpOwnedText& operator=(const BpOwnedText& other);
  BpOwnedText(BpOwnedText&& other) noexcept;
  BpOwnedText& operator=(BpOwnedText&& other) noexcept;
  ~BpOwnedText();

  /// The text owned, or null.
  const BpCellText* Get() const { return _text.get(); }

 private:
  std::unique_ptr<BpCellText> _text;
};
