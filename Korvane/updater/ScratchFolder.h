#pragma once

#include "KorvaneCore/platform/FileManager.h"

#include <string_view>

namespace korvane {

/// A fresh folder that only this user may enter, gone with everything in it when the object goes.
class ScratchFolder {
  public:
    /// `prefix` begins the name. Throws FileError.
    ScratchFolder(const FileURL& parent, std::string_view prefix, FileManager& files);
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    [[nodiscard]] const FileURL& url() const noexcept { return url_; }

  private:
    FileURL url_;
    FileManager& files_;
};

} // namespace korvane
