#pragma once

#include "KorvaneCore/platform/FileManager.h"
#include "KorvaneCore/platform/linux/MountTable.h"
#include "KorvaneCore/platform/linux/TrashDirectory.h"

#include <map>
#include <memory>

namespace korvane {

/// The freedesktop.org Trash: the home Trash for what is on its mount, the volume's own for the
/// rest. Keeps every Trash folder open that it met.
class LinuxBin final : public BinSession {
  public:
    LinuxBin(FileURL homeTrash, std::shared_ptr<MountTable> mounts);

    FileURL trashItem(const FileURL& url) override;
    bool synchronize() noexcept override;

  private:
    TrashDirectory& trashFor(const ItemPlace& item);
    [[nodiscard]] std::unique_ptr<TrashDirectory> openFor(std::uint64_t mount) const;

    FileURL homeTrash_;
    std::shared_ptr<MountTable> mounts_;
    std::map<std::uint64_t, std::unique_ptr<TrashDirectory>> trashes_; ///< by mount
};

} // namespace korvane
