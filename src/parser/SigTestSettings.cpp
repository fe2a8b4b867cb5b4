// SigTestSettings.cpp - the two ways a significance request is recorded
#include "parser/SigTestSettings.h"

SigTestSettings::SigTestSettings(SignificanceTestType type, double alpha, double alpha2,
                                 const std::string& alphaText, const std::string& alpha2Text,
                                 SignificanceAdjustType adjustType, bool originColumn, bool merge,
                                 bool showSig, int sigDigits)
    : _type(type),
      _alpha(alpha),
      _alpha2(alpha2),
      _alphaText(alphaText),
      _alpha2Text(alpha2Text),
      _adjustType(adjustType),
      _originColumn(originColumn),
      _merge(merge),
      _showSig(showSig),
      _sigDigits(sigDigits) {}

SigTestSettings::SigTestSettings(SignificanceTestType type, double alpha, const std::string& alphaText)
    : _type(type), _alpha(alpha), _alphaText(alphaText) {}
