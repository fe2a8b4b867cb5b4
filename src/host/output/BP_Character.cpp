// BP_Character.cpp - the debug channel writes into the current document
#include "host/output/BP_Character.h"

#include "host/output/OutputDocument.h"

void BP_ToFront(const long& channel, const BP_Character& text) {
  OutputDocument::Current().AddDebugLine(channel, text.GetText());
}
