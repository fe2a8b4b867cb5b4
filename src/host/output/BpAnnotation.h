// BpAnnotation.h - a note, with its own marker or one the output layer assigns
#pragma once

#include "host/output/BpHandle.h"

class BpCellText;

/// A footnote. The texts are replicated, so the originals may go at once.
class BpAnnotation {
 public:
  /// A note whose marker the layer assigns (a, b, c... in order of first use).
  explicit BpAnnotation(const BpCellText& text);
  /// A note that carries `marker`.
  BpAnnotation(const BpCellText& text, const BpCellText& marker);

  const BpCellText* GetText() const { return _text.GetText(); }
  /// Null when the layer assigns the marker.
  const BpCellText* GetMarker() const { return _hasMarker ? _marker.GetText() : nullptr; }
  bool HasMarker() const { return _hasMarker; }

 private:
  BpHandle _text;
  BpHandle _marker;
  bool _hasMarker;
};
