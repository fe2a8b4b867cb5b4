// AlphaFormat.cpp - decimals of a significance level as the user wrote it
#include "tablerenderer/AlphaFormat.h"

#include <cmath>

#include "host/data/TARN_Format.h"

BpFormatSpec AlphaFormat(double alpha, const std::string& alphaText) {
  const std::size_t point = alphaText.find('.');
  const bool plainDecimal = point != std::string::npos && alphaText.find_first_of("eE") == std::string::npos;
  int decimals = plainDecimal ? static_cast<int>(alphaText.size() - point - 1) : 2;
  constexpr int kMostDecimals = 16;
  while (decimals < kMostDecimals && alpha > 0.0 && std::round(alpha * std::pow(10.0, decimals)) == 0.0) {
    ++decimals;
  }
  if (decimals > kMostDecimals) decimals = kMostDecimals;
  return BpFormatSpec(TARN_Format(kFormatF, 40, decimals));
}
