// BpAnnotation.cpp - notes keep copies of their texts
#include "host/output/BpAnnotation.h"

#include "host/output/BpCellText.h"

BpAnnotation::BpAnnotation(const BpCellText& text) : _text(text) {}

BpAnnotation::BpAnnotation(const BpCellText& text, const BpCellText& marker)
    : _text(text), _marker(marker) {}
