// TARN_Format.h - a print format packed in four bytes: width, type and decimals
#pragma once

#include <cstdint>

/// Print format types. The numbers are the host's; the statistics clause names them.
enum FormatType : std::uint8_t {
  kFormatNone = 0,
  kFormatA = 1,         // string
  kFormatAHEX = 2,      // string shown as hexadecimal
  kFormatCOMMA = 3,     // grouping commas
  kFormatDOLLAR = 4,    // leading dollar sign and grouping commas
  kFormatF = 5,         // plain fixed
  kFormatDATE = 20,     // dd-mmm-yyyy
  kFormatTIME = 21,     // hh:mm:ss.s
  kFormatDATETIME = 22, // dd-mmm-yyyy hh:mm:ss
  kFormatADATE = 23,    // mm/dd/yyyy
  kFormatJDATE = 24,    // yyyyddd
  kFormatDTIME = 25,    // dd hh:mm:ss
  kFormatWKDAY = 26,    // weekday name
  kFormatMONTH = 27,    // month name
  kFormatMOYR = 28,     // mmm yyyy
  kFormatQYR = 29,      // q Q yyyy
  kFormatWKYR = 30,     // ww WK yyyy
  kFormatPCT = 31,      // trailing percent sign
  kFormatDOT = 32,      // grouping dots, decimal comma
  kFormatCCA = 33,      // custom currencies A to E
  kFormatCCB = 34,
  kFormatCCC = 35,
  kFormatCCD = 36,
  kFormatCCE = 37,
  kFormatN = 16,        // leading zeros
  kFormatE = 17,        // scientific
  kFormatEDATE = 38,    // dd.mm.yyyy
  kFormatSDATE = 39,    // yyyy/mm/dd
  kFormatMTIME = 85,    // mm:ss
  kFormatYMDHMS = 86,   // yyyy-mm-dd hh:mm:ss
};

/// A print format in 4 bytes: width (16 bits), type (8 bits), decimals (8 bits).
/// Plain value type.
class TARN_Format {
public:
  /// Widest width of a non-string format; wider requests are cut to it.
  static constexpr unsigned short kMaximumNumericWidth = 40;

  TARN_Format() = default;
  TARN_Format(int type, int width, int decimals);
  /// Unpacks: type from bits 16 and up, width from bits 8-15, decimals from bits 0-7.
  /// A string type (1) carries its long width in both low bytes: width += decimals * 256.
  explicit TARN_Format(long packed);

  /// Packs into the layout the constructor from long reads back.
  long Pack() const;

  unsigned short Width() const { return _width; }
  /// Sets the width; above 40 on a non-string type the width is cut to 40.
  void Width(unsigned short width);
  unsigned char Decimals() const { return _decimals; }
  void Decimals(unsigned char decimals) { _decimals = decimals; }
  FormatType Type() const { return static_cast<FormatType>(_type); }
  void Type(FormatType type) { _type = type; }
  bool IsString() const { return _type == kFormatA || _type == kFormatAHEX; }

  bool operator==(const TARN_Format& other) const = default;

private:
  unsigned short _width = 0;
  std::uint8_t _type = 0;
  std::uint8_t _decimals = 0;
};
static_assert(sizeof(TARN_Format) == 4, "a format packs into four bytes");

/// The system's default format, F8.2.
inline const TARN_Format kDefaultFormat{kFormatF, 8, 2};
