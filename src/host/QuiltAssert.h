// QuiltAssert.h - assertions for internal contradictions, naming file, line and condition
#pragma once

#include <stdexcept>
#include <string>

/// Thrown when code finds a state that no input can produce. Carries the source file,
/// line and the failed condition so a report points at the contradiction itself.
class QuiltAssertionFailure : public std::logic_error {
public:
  QuiltAssertionFailure(const char* file, int line, const char* condition, const std::string& message);
  const char* GetFile() const { return _file; }
  int GetLine() const { return _line; }

private:
  const char* _file;
  int _line;
};

/// Throws QuiltAssertionFailure; never returns.
[[noreturn]] void QuiltAssertFailed(const char* file, int line, const char* condition, const std::string& message);

/// QUILT_ASSERT(condition, "what it means"): no user input may ever make it fail.
#define QUILT_ASSERT(condition, message)                                    \
  do {                                                                      \
    if (!(condition)) QuiltAssertFailed(__FILE__, __LINE__, #condition, message); \
  } while (false)
