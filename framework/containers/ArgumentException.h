#pragma once

#include <stdexcept>

/// Raised for an argument that is not valid, such as an index beyond an array.
class CInvalidArgException : public std::invalid_argument {
  public:
    using std::invalid_argument::invalid_argument;
};
