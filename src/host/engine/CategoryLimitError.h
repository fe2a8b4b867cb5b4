// CategoryLimitError.h - a variable of a table met more distinct values than cells can address
#pragma once

#include <stdexcept>
#include <string>

/// Thrown by the engine while it reads cases, when a categorical variable of a table meets
/// more distinct values than a cell key can encode (typically an identifier used as a
/// category by mistake). The run reports it and ends the command; nothing is delivered
/// for it, since a table of that many categories would be wrong, not merely large.
class CategoryLimitError : public std::runtime_error {
public:
  CategoryLimitError(const std::string& variableName, int limit)
      : std::runtime_error("variable '" + variableName + "' has more than " + std::to_string(limit) +
                           " distinct values"),
        _variableName(variableName),
        _limit(limit) {}

  const std::string& GetVariableName() const { return _variableName; }
  int GetLimit() const { return _limit; }

private:
  std::string _variableName;
  int _limit;
};
