// DataError.h - an error in the data file or its dictionary, naming where it is
#pragma once

#include <stdexcept>
#include <string>

/// Bad data or dictionary. The message says what and where, lower-case, no final period:
/// `survey.csv:12: column 'age': 'abc' is not a number`,
/// `survey.dict.json: variables[3].format: 'F8.x' is not a format`.
class DataError : public std::runtime_error {
 public:
  explicit DataError(const std::string& message) : std::runtime_error(message) {}
};
