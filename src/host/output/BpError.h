// BpError.h - the one way to report a message to the user
#pragma once

class BpCellText;

enum BpErrorShow { kBpShowAlways = 2 };

enum BpErrorLevel {
  kBpLevelWarning = 2,  // the work goes on
  kBpLevelError = 3,    // shown, the work goes on
  kBpLevelFatal = 4,    // the command ends
};

/// Appends a message item to OutputDocument::Current(), in order among the tables.
void BpError(const BpCellText& text, BpErrorShow show, BpErrorLevel level);
