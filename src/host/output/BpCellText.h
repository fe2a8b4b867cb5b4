// BpCellText.h - the abstract text of a cell, label, title or message
#pragma once

#include <memory>
#include <ostream>
#include <string>

/// Any text the procedure hands to the output layer. Texts compare by identity: two texts
/// are the same label when their identities are equal (a composite by template and
/// arguments, a data value by variable and value, a variable by variable and show).
class BpCellText {
 public:
  virtual ~BpCellText() = default;

  /// A deep copy.
  virtual std::unique_ptr<BpCellText> Clone() const = 0;
  /// The text as a reader sees it: catalogue wording expanded, numbers formatted.
  virtual std::string GetText() const = 0;
  /// A canonical string that is equal for two texts exactly when they are the same label.
  virtual std::string GetIdentity() const = 0;
  /// The catalogue key (or the plain text when not translated) for message read-back.
  virtual std::string GetKey() const { return GetText(); }
  /// True when the text came from a number, which is then GetNumber().
  virtual bool HasNumber() const { return false; }
  virtual double GetNumber() const { return 0.0; }
  /// One line describing the text, for tests and debugging.
  virtual void Dump(std::ostream& out) const;

  bool IsSameText(const BpCellText& other) const { return GetIdentity() == other.GetIdentity(); }
};
