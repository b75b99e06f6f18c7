#pragma once

#include "Korvane/updater/UpdateImage.h"

namespace korvane {

/// A disk image, mounted read-only and out of sight on a folder for the object's life.
class DiskImage final : public UpdateImage {
  public:
    /// Throws UpdateError when it cannot be mounted.
    DiskImage(const FileURL& image, FileURL folder, ProcessLauncher& launcher);
    ~DiskImage() override;

  private:
    FileURL folder_;
    ProcessLauncher& launcher_;
};

} // namespace korvane
