// BpHeading.cpp - headings and the placing of new tables in the outline
#include "host/output/BpHeading.h"

#include "host/output/BpCellText.h"
#include "host/output/BpImplData.h"
#include "host/output/OutputDocument.h"

namespace {

std::string SplitHeadingText(const OutputDocument& document, int groupNumber) {
  const OutputDocument::SplitPairs& pairs = document.GetSplitPairs();
  if (pairs.empty()) return "Split group " + std::to_string(groupNumber);
  std::string text;
  for (const auto& [variable, value] : pairs) {
    if (!text.empty()) text += ", ";
    text += variable + ": " + value;
  }
  return text;
}

}  // namespace

OutputItem* HeadingContainer(BpHeading::ImplData& data) {
  if (!data.isProcedure) return data.item.get();
  // A procedure starts pending: when the driver has named the first group's split pairs its
  // tables get a heading too, even where no SplitChange came before the first group.
  const bool named = !data.document->GetSplitPairs().empty();
  if (data.splitPending && (data.splitChanged || named)) {
    data.splitPending = false;
    ++data.splitCount;
    data.splitItem =
        data.document->AddHeading(data.item.get(), SplitHeadingText(*data.document, data.splitCount));
  }
  return data.splitItem ? data.splitItem.get() : data.item.get();
}

BpHeading::BpHeading(std::shared_ptr<ImplData> data) : _impl(std::move(data)) {}

BpHeading::~BpHeading() = default;

BpHeading BpHeading::Heading(const BpCellText& text) {
  auto data = std::make_shared<ImplData>();
  data->document = _impl->document;
  data->item = _impl->document->AddHeading(HeadingContainer(*_impl), text.GetText());
  return BpHeading(data);
}

BpPivotTable BpHeading::PivotTable(const BpCellText& title, const BpCellText& subtype, bool /*flag*/) {
  std::shared_ptr<OutputItem> slot = _impl->document->ReserveTable(HeadingContainer(*_impl));
  return BpPivotTable(_impl->document, slot, title, subtype);
}
