// HostRecords.h - the host's system and common records: front-end id and weight words
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

class Dataset;

/// The system record (kHostRecordSize zero-filled bytes). The two characters at
/// kCmaSysCallerIdOffset hold the id of the calling front end.
extern unsigned char* CmaSys;
/// The common record (kHostRecordSize zero-filled bytes). The 64-bit word at
/// kCmnGlbWeightWordOffset is positive while case weighting is active; the one at
/// kCmnGlbSecondWordOffset is saved and restored by the procedure.
extern unsigned char* CmnGlb;

inline constexpr std::size_t kHostRecordSize = 2048;
inline constexpr std::size_t kCmaSysCallerIdOffset = 1024;
inline constexpr std::size_t kCmnGlbWeightWordOffset = 224;
inline constexpr std::size_t kCmnGlbSecondWordOffset = 928;

/// The program's own front-end id, and the control package's.
inline constexpr const char* kQuiltFrontEndId = "QT";
inline constexpr const char* kControlPackageFrontEndId = "KZ";

/// Reads the 64-bit word at `offset` of a record (unaligned access is fine).
std::int64_t ReadHostWord(const unsigned char* record, std::size_t offset);
/// Writes the 64-bit word at `offset` of a record.
void WriteHostWord(unsigned char* record, std::size_t offset, std::int64_t value);
/// Writes the two characters of `id` at kCmaSysCallerIdOffset of CmaSys (blank-padded).
void SetFrontEndId(const char* id);
/// The two characters at kCmaSysCallerIdOffset of CmaSys.
std::string GetFrontEndId();
/// Zero-fills both records.
void ResetHostRecords();
/// Sets the records up for a data set: front-end id "QT", or "KZ" for the control
/// package; weight word 1 when the data set has a weight variable, else 0; second word 0.
void SetUpHostRecords(const Dataset& dataset, bool controlPackage);
