// PresentationCodes.h - enumerations of the statistics clause, the significance and the presentation
// subcommands
#pragma once

// Holds enumerations only. They belong with TableEncryptionCodes; they live here until that
// class has room for them, and keep the same names and values so that moving them is a
// matter of changing the qualifier.
class PresentationCodes {
 public:
  // Decoration of a statistic's value, chosen by its format keyword.
  enum DisplayFormat {
    kDisplayPlain = 0,     // the number as the format gives it
    kDisplayNegParen = 1,  // NEGPAREN: a negative number as its absolute value in parentheses
    kDisplayNEqual = 2,    // NEQUAL: "N=^1"
    kDisplayParen = 3,     // PAREN: "(^1)"
    kDisplayPctParen = 4,  // PCTPAREN: "(^1)" with a percent sign
    kDisplayUnset = 5,     // only while a computed category looks for its format
  };

  // Multiple-comparison adjustment of the column tests.
  enum SignificanceAdjustType {
    kAdjustNone = 0,
    kAdjustBonferroni = 1,
    kAdjustBH = 2,  // Benjamini-Hochberg
  };

  // What a variable's heading shows (VLABELS DISPLAY).
  enum VLabelOption {
    kVLabelDefault = 0,
    kVLabelName = 1,
    kVLabelLabel = 2,
    kVLabelBoth = 3,
    kVLabelNone = 4,
  };

  // Where statistic labels go (SLABELS POSITION).
  enum SLabelPosition {
    kSLabelColumn = 0,
    kSLabelRow = 1,
    kSLabelLayer = 2,
  };

  // Units of FORMAT MINCOLWIDTH and MAXCOLWIDTH.
  enum ColumnWidthUnits {
    kUnitsPoints = 0,
    kUnitsInches = 1,
    kUnitsCm = 2,
  };

  // How empty cells show (FORMAT EMPTY).
  enum FormatEmpty {
    kEmptyFormatBlank = 0,
    kEmptyFormatZero = 1,
    kString = 2,  // the user's literal
  };
};
