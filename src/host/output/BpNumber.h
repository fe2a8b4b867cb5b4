// BpNumber.h - a number that the output layer formats
#pragma once

#include "host/output/BpCellText.h"
#include "host/output/BpFormatSpec.h"

/// A number shown in its format; the system-missing value shows as "." and positive
/// infinity (a value that cannot be shown) as "." too.
class BpNumber : public BpCellText {
 public:
  BpNumber(double value, BpFormatSpec format);

  std::unique_ptr<BpCellText> Clone() const override;
  std::string GetText() const override;
  std::string GetIdentity() const override;
  bool HasNumber() const override;
  double GetNumber() const override { return _value; }
  void Dump(std::ostream& out) const override;

  BpFormatSpec GetFormatSpec() const { return _format; }

 private:
  double _value;
  BpFormatSpec _format;
};
