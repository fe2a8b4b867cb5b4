// BpError.cpp - messages go into the current output document
#include "host/output/BpError.h"

#include "host/output/BpCellText.h"
#include "host/output/BpComposite.h"
#include "host/output/OutputDocument.h"

void BpError(const BpCellText& text, BpErrorShow show, BpErrorLevel level) {
  BpErrorAt(text, show, level, "");
}

void BpErrorAt(const BpCellText& text, BpErrorShow /*show*/, BpErrorLevel level,
               const std::string& location) {
  std::vector<std::string> arguments;
  if (const auto* composite = dynamic_cast<const BpComposite*>(&text)) arguments = composite->GetArguments();
  const std::string shown = location.empty() ? text.GetText() : location + ": " + text.GetText();
  OutputDocument::Current().AddMessage(level, text.GetKey(), std::move(arguments), shown);
}
