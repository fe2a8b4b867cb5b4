// BpProcedure.cpp - the procedure's root heading and the format families
#include "host/output/BpProcedure.h"

#include "host/data/ActiveDataSet.h"
#include "host/data/Dataset.h"
#include "host/data/TARN_Variable.h"
#include "host/output/BpImplData.h"
#include "host/output/OutputDocument.h"

namespace {

// Width 40 is the widest a number format allows; writers trim, so it costs nothing and
// keeps large counts and sums out of E notation.
constexpr int kFamilyWidth = 40;

std::shared_ptr<BpHeading::ImplData> MakeProcedure(const std::string& name) {
  auto data = std::make_shared<BpHeading::ImplData>();
  data->document = &OutputDocument::Current();
  data->isProcedure = true;
  data->item = data->document->AddHeading(nullptr, name);
  return data;
}

BpFormatSpec VariableFamily(int varIndex) {
  const std::shared_ptr<const Dataset> dataset = ActiveDataSet::Get();
  if (!dataset || varIndex < 0 || varIndex >= dataset->GetVariableCount()) {
    return BpFormatSpec(TARN_Format(kFormatF, kFamilyWidth, 2));
  }
  const TARN_Format format = dataset->GetVariable(varIndex).GetFormat();
  if (format.IsString() || format.Type() == kFormatNone) {
    return BpFormatSpec(TARN_Format(kFormatF, kFamilyWidth, 2));
  }
  return BpFormatSpec(TARN_Format(format.Type(), kFamilyWidth, format.Decimals()));
}

}  // namespace

BpProcedure::BpProcedure(std::string name, int /*kind*/) : BpHeading(MakeProcedure(name)) {
  // Pairs left from an earlier command must not name this command's groups.
  _impl->document->SetSplitPairs({});
  _impl->splitPending = true;
  // Messages go where tables go: after the heading of the split group they speak of. The
  // record outlives the registration, which the destructor withdraws.
  ImplData* impl = _impl.get();
  _impl->document->OpenProcedure(_impl->item.get(), [impl] { return HeadingContainer(*impl); });
}

BpProcedure::~BpProcedure() {
  _impl->document->CloseProcedure(_impl->item.get());
}

void BpProcedure::SplitChange() {
  _impl->splitPending = true;
  _impl->splitChanged = true;
}

BpFormatSpec BpProcedure::Count() {
  return BpFormatSpec(TARN_Format(kFormatF, kFamilyWidth, 0));
}
BpFormatSpec BpProcedure::Percent() {
  return BpFormatSpec(TARN_Format(kFormatPCT, kFamilyWidth, 1));
}
BpFormatSpec BpProcedure::GeneralStat() {
  return BpFormatSpec(TARN_Format(kFormatF, kFamilyWidth, 2));
}
BpFormatSpec BpProcedure::Significance() {
  return BpFormatSpec(TARN_Format(kFormatF, kFamilyWidth, 3));
}

BpFormatSpec BpProcedure::Mean(int varIndex) const {
  return VariableFamily(varIndex);
}
BpFormatSpec BpProcedure::Variable(int varIndex) const {
  return VariableFamily(varIndex);
}
BpFormatSpec BpProcedure::StdDev(int varIndex) const {
  return VariableFamily(varIndex);
}
BpFormatSpec BpProcedure::Difference(int varIndex) const {
  return VariableFamily(varIndex);
}
BpFormatSpec BpProcedure::Sum(int varIndex, double /*value*/) const {
  return VariableFamily(varIndex);
}
