#pragma once

#include <stdexcept>

namespace korvane {

/// Why an update cannot go on; what() is a sentence to be shown as it is.
class UpdateError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace korvane
