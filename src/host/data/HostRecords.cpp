// HostRecords.cpp - the two host byte records and their helpers
#include "host/data/HostRecords.h"

#include <cstring>

#include "host/data/Dataset.h"

namespace {

unsigned char systemRecord[kHostRecordSize] = {};
unsigned char commonRecord[kHostRecordSize] = {};

}  // namespace

unsigned char* CmaSys = systemRecord;
unsigned char* CmnGlb = commonRecord;

std::int64_t ReadHostWord(const unsigned char* record, std::size_t offset) {
  std::int64_t value = 0;
  std::memcpy(&value, record + offset, sizeof value);
  return value;
}

void WriteHostWord(unsigned char* record, std::size_t offset, std::int64_t value) {
  std::memcpy(record + offset, &value, sizeof value);
}

void SetFrontEndId(const char* id) {
  char field[2] = {' ', ' '};
  for (int i = 0; i < 2 && id != nullptr && id[i] != '\0'; ++i) field[i] = id[i];
  std::memcpy(CmaSys + kCmaSysCallerIdOffset, field, sizeof field);
}

std::string GetFrontEndId() {
  return std::string(reinterpret_cast<const char*>(CmaSys) + kCmaSysCallerIdOffset, 2);
}

void ResetHostRecords() {
  std::memset(CmaSys, 0, kHostRecordSize);
  std::memset(CmnGlb, 0, kHostRecordSize);
}

void SetUpHostRecords(const Dataset& dataset, bool controlPackage) {
  SetFrontEndId(controlPackage ? kControlPackageFrontEndId : kQuiltFrontEndId);
  WriteHostWord(CmnGlb, kCmnGlbWeightWordOffset, dataset.GetWeightVariable() >= 0 ? 1 : 0);
  WriteHostWord(CmnGlb, kCmnGlbSecondWordOffset, 0);
}
