#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/ProcessLauncher.h"

#include <memory>
#include <string>
#include <string_view>

namespace korvane {

/// A file that holds an app, opened into a folder for the object's life.
class UpdateImage {
  public:
    virtual ~UpdateImage() = default;
    UpdateImage(const UpdateImage&) = delete;
    UpdateImage& operator=(const UpdateImage&) = delete;

    /// Opens a disk image (".dmg"), or unpacks an archive (anything else), into an empty folder.
    /// Throws UpdateError.
    [[nodiscard]] static std::unique_ptr<UpdateImage>
    open(const FileURL& image, const FileURL& folder, ProcessLauncher& launcher);

  protected:
    UpdateImage() = default;
};

/// What the name of an image ends in, with the dot: ".dmg", ".tar.zst" or ".tar.gz".
[[nodiscard]] std::string_view imageExtension(std::string_view path) noexcept;

} // namespace korvane
