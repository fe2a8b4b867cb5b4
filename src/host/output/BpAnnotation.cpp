// BpAnnotation.cpp - notes keep replicated copies of their texts
#include "host/output/BpAnnotation.h"

#include "host/output/BpCellText.h"

BpAnnotation::BpAnnotation(const BpCellText& text)
    : _text(text.Replicate()), _marker(-1), _hasMarker(false) {}

BpAnnotation::BpAnnotation(const BpCellText& text, const BpCellText& marker)
    : _text(text.Replicate()), _marker(marker.Replicate()), _hasMarker(true) {}
