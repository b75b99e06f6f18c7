#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/platform/FileManager.h"
#include "KorvaneCore/platform/ItemExchange.h"

#include <functional>

namespace korvane {

/// A copy of an app beside the one that it is to replace. It is removed again when it does not get
/// there. Holds a lock on the folder, so that two updates of one app go one after the other.
class BundleSwap {
  public:
    using Exchange = std::function<int(const FileURL&, const FileURL&)>;

    /// Moves (from another file system: copies) `app` next to `running`, under a hidden name, after
    /// clearing what an interrupted update left there. Throws FileError.
    BundleSwap(FileURL running, const FileURL& app, FileManager& files,
               Exchange exchange = exchangeItems);
    ~BundleSwap();
    BundleSwap(const BundleSwap&) = delete;
    BundleSwap& operator=(const BundleSwap&) = delete;

    /// Puts the copy in the app's place and removes the old app. The two change places in one step
    /// where the system can do that; else the old one steps aside first, and comes back when the
    /// new one cannot follow. Throws FileError; then the old app is in its place.
    void perform();

  private:
    void clearLeftovers() const;
    void replaceInTwoSteps() const;
    void removeStaged() const noexcept;

    FileURL running_;
    FolderLock lock_;
    FileURL staged_;
    FileManager& files_;
    Exchange exchange_;
};

} // namespace korvane
