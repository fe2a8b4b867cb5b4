// BpError.h - the one way to report a message to the user
#pragma once

#include <string>

class BpCellText;

enum BpErrorShow { kBpShowAlways = 2 };

enum BpErrorLevel {
  kBpLevelWarning = 2,  // the work goes on
  kBpLevelError = 3,    // shown, the work goes on
  kBpLevelFatal = 4,    // the command ends
};

/// Appends a message item to OutputDocument::Current(), in order among the tables.
void BpError(const BpCellText& text, BpErrorShow show, BpErrorLevel level);

/// The same, for a message about a place in a command: the reader sees `location`
/// ("survey.qlt:3:14") before the text, as with every other error of the program. The key
/// and arguments are those of `text`.
void BpErrorAt(const BpCellText& text, BpErrorShow show, BpErrorLevel level, const std::string& location);
