// ValueLabelList.h - the value labels of one variable, shared by the variable and its label maps
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/data/ObsValue.h"

/// The value labels of one variable in the order they were defined. Plain value type:
/// `values[i]` carries `labels[i]`. A variable and every TARN_ValueLabelMap built from it
/// share one list through TARN_VLImplPointer.
struct ValueLabelList {
  int type = 0;                     // the variable's type: 0 numeric, else string width
  std::vector<ObsValue> values;     // the labelled values, all of `type`
  std::vector<std::string> labels;  // the label of each value, same order
};

/// Handle to a variable's value labels; null when it has none.
using TARN_VLImplPointer = std::shared_ptr<const ValueLabelList>;
