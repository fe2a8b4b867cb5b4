// TableEncryptionCodes.h - enumerations shared by the engine, the parser and the procedure
#pragma once

// Holds enumerations only, so every subsystem can include it without pulling in logic.
class TableEncryptionCodes {
 public:
  // Statistic codes. A primary statistic with four codes of room before the next primary
  // owns its confidence variants at code + kConfLcl, + kConfUcl and + kConfSe.
  // Percentage families: first + 8 * base (weighted), first + 8 * base + 4 (unweighted),
  // bases in the order row, column, table, subtable, layer, layer-row, layer-column.
  enum StatisticCodes {
    kStatNone = 0,
    kStatCount = 1,
    kStatUCount = 5,
    kStatECount = 9,
    kStatRowPctCount = 10,
    kStatURowPctCount = 14,
    kStatColPctCount = 18,
    kStatUColPctCount = 22,
    kStatTablePctCount = 26,
    kStatUTablePctCount = 30,
    kStatSubtablePctCount = 34,
    kStatUSubtablePctCount = 38,
    kStatLayerPctCount = 42,
    kStatULayerPctCount = 46,
    kStatLayerRowPctCount = 50,
    kStatULayerRowPctCount = 54,
    kStatLayerColPctCount = 58,
    kStatULayerColPctCount = 62,
    kStatRowPctValidN = 66,
    kStatURowPctValidN = 70,
    kStatColPctValidN = 74,
    kStatUColPctValidN = 78,
    kStatTablePctValidN = 82,
    kStatUTablePctValidN = 86,
    kStatSubtablePctValidN = 90,
    kStatUSubtablePctValidN = 94,
    kStatLayerPctValidN = 98,
    kStatULayerPctValidN = 102,
    kStatLayerRowPctValidN = 106,
    kStatULayerRowPctValidN = 110,
    kStatLayerColPctValidN = 114,
    kStatULayerColPctValidN = 118,
    kStatRowPctTotalN = 122,
    kStatURowPctTotalN = 126,
    kStatColPctTotalN = 130,
    kStatUColPctTotalN = 134,
    kStatTablePctTotalN = 138,
    kStatUTablePctTotalN = 142,
    kStatSubtablePctTotalN = 146,
    kStatUSubtablePctTotalN = 150,
    kStatLayerPctTotalN = 154,
    kStatULayerPctTotalN = 158,
    kStatLayerRowPctTotalN = 162,
    kStatULayerRowPctTotalN = 166,
    kStatLayerColPctTotalN = 170,
    kStatULayerColPctTotalN = 174,
    kStatMaximum = 178,
    kStatMean = 179,
    kStatUMean = 183,
    kStatMedian = 187,
    kStatUMedian = 191,
    kStatMinimum = 197,
    kStatMissing = 198,
    kStatUMissing = 199,
    kStatMode = 200,
    kStatUMode = 201,
    kStatRange = 202,
    kStatStdDev = 203,
    kStatUStdDev = 204,
    kStatSum = 205,
    kStatUSum = 209,
    kStatTotalN = 213,
    kStatUTotalN = 217,
    kStatETotalN = 221,
    kStatValidN = 222,
    kStatUValidN = 226,
    kStatEValidN = 230,
    kStatVariance = 231,
    kStatUVariance = 232,
    kStatRowPctSum = 233,
    kStatURowPctSum = 237,
    kStatColPctSum = 241,
    kStatUColPctSum = 245,
    kStatTablePctSum = 249,
    kStatUTablePctSum = 253,
    kStatSubtablePctSum = 257,
    kStatUSubtablePctSum = 261,
    kStatLayerPctSum = 265,
    kStatULayerPctSum = 269,
    kStatLayerRowPctSum = 273,
    kStatULayerRowPctSum = 277,
    kStatLayerColPctSum = 281,
    kStatULayerColPctSum = 285,
    kStatResponses = 289,
    kStatUResponses = 293,
    kStatRowPctResponses = 297,
    kStatURowPctResponses = 301,
    kStatColPctResponses = 305,
    kStatUColPctResponses = 309,
    kStatTablePctResponses = 313,
    kStatUTablePctResponses = 317,
    kStatSubtablePctResponses = 321,
    kStatUSubtablePctResponses = 325,
    kStatLayerPctResponses = 329,
    kStatULayerPctResponses = 333,
    kStatLayerRowPctResponses = 337,
    kStatULayerRowPctResponses = 341,
    kStatLayerColPctResponses = 345,
    kStatULayerColPctResponses = 349,
    kStatRowPctResponsesCount = 353,
    kStatURowPctResponsesCount = 357,
    kStatColPctResponsesCount = 361,
    kStatUColPctResponsesCount = 365,
    kStatTablePctResponsesCount = 369,
    kStatUTablePctResponsesCount = 373,
    kStatSubtablePctResponsesCount = 377,
    kStatUSubtablePctResponsesCount = 381,
    kStatLayerPctResponsesCount = 385,
    kStatULayerPctResponsesCount = 389,
    kStatLayerRowPctResponsesCount = 393,
    kStatULayerRowPctResponsesCount = 397,
    kStatLayerColPctResponsesCount = 401,
    kStatULayerColPctResponsesCount = 405,
    kStatRowPctCountResponses = 409,
    kStatURowPctCountResponses = 413,
    kStatColPctCountResponses = 417,
    kStatUColPctCountResponses = 421,
    kStatTablePctCountResponses = 425,
    kStatUTablePctCountResponses = 429,
    kStatSubtablePctCountResponses = 433,
    kStatUSubtablePctCountResponses = 437,
    kStatLayerPctCountResponses = 441,
    kStatULayerPctCountResponses = 445,
    kStatLayerRowPctCountResponses = 449,
    kStatULayerRowPctCountResponses = 453,
    kStatLayerColPctCountResponses = 457,
    kStatULayerColPctCountResponses = 461,
    kStatMeanSumSquares = 465,
    kStatPtile = 468,
    kStatUPtile = 472,
    kStatLast = 513,
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
