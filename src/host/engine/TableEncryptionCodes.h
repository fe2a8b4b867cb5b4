// TableEncryptionCodes.h - enumerations shared by the engine, the parser and the procedure
#pragma once

// Holds enumerations only, so every subsystem can include it without pulling in logic.
class TableEncryptionCodes {
 public:
  // Statistic codes, laid out in StatisticCodes.def: kStat<Name> for each primary, and
  // kStat[U]<Base>Pct<Family> for each percentage (kStatURowPctCount, kStatColPctSum).
  // StatisticCodeTable decodes them.
  enum StatisticCodes {
    kStatNone = 0,
#define STATISTIC(name, code, keyword, label, group, weighting, variants) kStat##name = code,
#define QUILT_PERCENTAGE_MEMBER(base, index, stem, word, family, first) \
  kStat##base##Pct##family = (first) + 8 * (index), kStatU##base##Pct##family = (first) + 8 * (index) + 4,
#define PERCENTAGE_FAMILY(name, first, keywordSuffix, labelSuffix, group, numerator, denominator, variants) \
  QUILT_PERCENTAGE_BASES(QUILT_PERCENTAGE_MEMBER, name, first)
#include "host/engine/StatisticCodes.def"
#undef QUILT_PERCENTAGE_MEMBER
    kStatLast = 513,  // the highest code a statistic could have
  };

  // The bases of a percentage, in the order of their codes within a family.
  enum PercentageBase {
#define QUILT_PERCENTAGE_BASE(name, index, stem, word, ...) kPctBase##name = index,
    QUILT_PERCENTAGE_BASES(QUILT_PERCENTAGE_BASE)
#undef QUILT_PERCENTAGE_BASE
        kPercentageBaseCount
  };

  // The percentage families, in code order.
  enum PercentageFamily {
#define PERCENTAGE_FAMILY(name, ...) kPctFamily##name,
#include "host/engine/StatisticCodes.def"
    kPercentageFamilyCount
  };

  // What a percentage sums over the cell (numerator) and over its base (denominator).
  enum PercentageQuantity {
    kPctOfCount = 0,      // cases
    kPctOfValid = 1,      // cases with a valid value
    kPctOfTotal = 2,      // all cases, missing ones included
    kPctOfSum = 3,        // the sum of a scale variable
    kPctOfResponses = 4,  // responses of a multiple-response set
  };

  // How a statistic weighs the cases: by the weight, by one each (the U- forms), or by the
  // effective base of the weights (the E- forms).
  enum StatisticWeighting {
    kStatWeighted = 0,
    kStatUnweighted = 1,
    kStatEffective = 2,
  };

  // Which confidence variants a primary owns at the three codes after it (see
  // StatisticCodes.def).
  enum StatisticVariants {
    kVariantsNone = 0,
    kVariantsAll = 1,
    kVariantsLimits = 2,
    kVariantsReserved = 3,
  };

  // Which confidence variant of a primary a code is; kConfUnset is the initial value of a
  // record and means the same as kConfNone.
  enum StatisticConf {
    kConfNone = 0,
    kConfLcl = 1,
    kConfUcl = 2,
    kConfSe = 3,
    kConfUnset = 4,
  };

  // Which variables may carry a statistic.
  enum StatisticsGroup {
    kStatGroupCounts = 0,     // any variable
    kStatGroupSummary = 1,    // scale variables
    kStatGroupResponses = 2,  // multiple-response sets
  };

  // Position of a variable in a cube; kDimensionExtra holds a tested multiple-response
  // column set a second time, as the last key position.
  enum DimensionPosition {
    kDimensionRow = 0,
    kDimensionColumn = 1,
    kDimensionLayer = 2,
    kDimensionExtra = 3,
  };

  // Where category labels go.
  enum CLabelOption {
    kCLabelAuto = 0,
    kCLabelRowOpposite = 1,
    kCLabelColOpposite = 2,
    kCLabelRowLayer = 3,
    kCLabelColLayer = 4,
  };

  // Significance tests.
  enum SignificanceTestType {
    kSigTestChiSquare = 1,
    kSigTestProportions = 2,
    kSigTestMeans = 3,
  };

  // How a variable enters a table: its categories, or summary statistics of its values.
  enum VariableCodes {
    kVariableCategorical = 150,
    kVariableScale = 151,
  };

  // ---- Category lists: CATEGORIES and computed categories ----------------------------

  // Kind of one element of an explicit category list; the same numbers tell what an
  // operand of a computed category's expression refers to.
  enum ExplicitListType {
    kExplicitString = 0,
    kExplicitNumber = 1,
    kExplicitLo = 2,
    kExplicitHi = 3,
    kExplicitRange = 4,
    kExplicitMissing = 5,
    kExplicitOtherNM = 6,
    kExplicitSubtotal = 7,
    kExplicitHSubtotal = 8,
    kExplicitName = 9,
    kExplicitComputed = 10,
  };

  // What the categories of a variable are ordered by (CATEGORIES KEY); kSortKeyNone leaves
  // a variable's key as it is.
  enum SortKey {
    kSortKeyNone = 0,
    kSortKeyValue = 1,
    kSortKeyLabel = 2,
    kSortKeyStatistic = 3,
  };
};
