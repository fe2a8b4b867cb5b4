// QuiltAssert.cpp - builds the text of an internal-contradiction report
#include "host/QuiltAssert.h"

namespace {
std::string DescribeFailure(const char* file, int line, const char* condition, const std::string& message) {
  return std::string("internal error at ") + file + ":" + std::to_string(line) + ": assertion '" + condition +
         "' failed: " + message;
}
}  // namespace

QuiltAssertionFailure::QuiltAssertionFailure(const char* file, int line, const char* condition,
                                             const std::string& message)
    : std::logic_error(DescribeFailure(file, line, condition, message)), _file(file), _line(line) {}

void QuiltAssertFailed(const char* file, int line, const char* condition, const std::string& message) {
  throw QuiltAssertionFailure(file, line, condition, message);
}
