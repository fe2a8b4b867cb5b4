// BpError.cpp - messages go into the current output document
#include "host/output/BpError.h"

#include "host/output/BpCellText.h"
#include "host/output/BpComposite.h"
#include "host/output/OutputDocument.h"

void BpError(const BpCellText& text, BpErrorShow /*show*/, BpErrorLevel level) {
  std::vector<std::string> arguments;
  if (const auto* composite = dynamic_cast<const BpComposite*>(&text)) arguments = composite->GetArguments();
  OutputDocument::Current().AddMessage(level, text.GetKey(), std::move(arguments), text.GetText());
}
