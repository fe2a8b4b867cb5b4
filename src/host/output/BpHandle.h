// BpHandle.h - a numbered, owned copy of a cell text kept by the output layer
#pragma once

#include <memory>

class BpCellText;

/// Owns one registered copy of a cell text (see BpCellText::Replicate). A handle of -1 owns
/// nothing. Copying a handle registers a further independent copy, so every handle releases
/// exactly the text it owns when it goes.
class BpHandle {
 public:
  BpHandle() = default;
  /// Adopts the registered text `handle` (as returned by Replicate), or nothing for -1.
  BpHandle(long handle) : _handle(handle) {}
  BpHandle(const BpHandle& other);
  BpHandle& operator=(const BpHandle& other);
  ~BpHandle();

  long GetHandle() const { return _handle; }
  /// The text this handle owns, or null for -1.
  const BpCellText* GetText() const;

  /// Registers `text` and returns its new handle number. Used by Replicate.
  static long Register(std::unique_ptr<BpCellText> text);

 private:
  long _handle = -1;
};
