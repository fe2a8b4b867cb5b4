// TARN_InputCaseIterator.cpp - anchors the iterator interface's virtual table
#include "host/data/TARN_InputCaseIterator.h"

TARN_InputCaseIterator::~TARN_InputCaseIterator() = default;
