// BpAnnotation.h - a note, with its own marker or one the output layer assigns
#pragma once

#include "host/output/BpOwnedText.h"

class BpCellText;

/// A footnote. It keeps copies of its texts, so the originals may go at once.
class BpAnnotation {
 public:
  /// A note whose marker the layer assigns (a, b, c... in order of first use).
  explicit BpAnnotation(const BpCellText& text);
  /// A note that carries `marker`.
  BpAnnotation(const BpCellText& text, const BpCellText& marker);

  const BpCellText* GetText() const { return _text.Get(); }
  /// Null when the layer assigns the marker.
  const BpCellText* GetMarker() const { return _marker.Get(); }
  bool HasMarker() const { return _marker.Get() != nullptr; }

 private:
  BpOwnedText _text;
  BpOwnedText _marker;  // empty when the layer assigns the marker
};
