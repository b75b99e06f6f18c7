#pragma once

#include "KorvaneCore/scan/ModuleScanner.h"

#include <string>
#include <utility>

namespace korvane {

/// Keeps the two names that every scanner has.
class NamedScanner : public ModuleScanner {
  public:
    using ModuleScanner::scan;
    [[nodiscard]] const std::string& id() const final { return id_; }
    [[nodiscard]] const std::string& displayName() const final { return displayName_; }

  protected:
    NamedScanner(std::string id, std::string displayName)
        : id_(std::move(id)), displayName_(std::move(displayName)) {}

  private:
    std::string id_;
    std::string displayName_;
};

} // namespace korvane
