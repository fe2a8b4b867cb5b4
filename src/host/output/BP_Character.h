// BP_Character.h - a line of text for the host's debug channel
#pragma once

#include <string>

/// A growable text for BP_ToFront.
class BP_Character {
 public:
  BP_Character(const char* text) : _text(text == nullptr ? "" : text) {}
  BP_Character& operator=(const char* text) {
    _text = text == nullptr ? "" : text;
    return *this;
  }
  BP_Character& operator+=(const char* text) {
    if (text != nullptr) _text += text;
    return *this;
  }
  ~BP_Character() = default;

  const std::string& GetText() const { return _text; }

 private:
  std::string _text;
};

/// Writes `text` as one line of debug channel `channel` (only 1 is used) of the current
/// output document. Debug lines are kept apart from the items and not shown by the writers.
void BP_ToFront(const long& channel, const BP_Character& text);
