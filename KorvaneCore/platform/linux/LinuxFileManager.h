#pragma once

#include "KorvaneCore/platform/FileManager.h"
#include "KorvaneCore/platform/linux/MountTable.h"

namespace korvane {

/// The file manager on Linux.
class LinuxFileManager final : public FileManager {
  public:
    /// Without a home Trash of its own it is the current user's at the time a Bin is opened.
    explicit LinuxFileManager(std::optional<FileURL> homeTrash = std::nullopt);

    std::unique_ptr<BinSession> openBin() override;
    void removeItem(const FileURL& url) override;
    void moveItem(const FileURL& source, const FileURL& destination) override;
    void restoreItem(const FileURL& trashed, const FileURL& destination) override;
    void createDirectory(const FileURL& folder) override;
    [[nodiscard]] bool itemExists(const FileURL& url) const override;
    [[nodiscard]] std::optional<std::int64_t> availableCapacity(const FileURL& url) const override;

  private:
    std::optional<FileURL> homeTrash_;
    std::shared_ptr<MountTable> mounts_;
};

} // namespace korvane
