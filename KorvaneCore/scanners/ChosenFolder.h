#pragma once

#include "KorvaneCore/foundation/FileURL.h"

namespace korvane {

/// A folder that the user named. It may be a link to one, although walks enter no links: then the
/// walk goes through where it leads, and what is found is shown below the name that was given.
class ChosenFolder {
  public:
    /// Reads the links along the path.
    explicit ChosenFolder(const FileURL& chosen);

    /// Where a walk is to start.
    [[nodiscard]] const FileURL& real() const noexcept { return real_; }

    /// Something found below `real` as the user knows it.
    [[nodiscard]] FileURL shown(const FileURL& found) const;

  private:
    FileURL chosen_;
    FileURL real_;
};

} // namespace korvane
