#pragma once

#include "Korvane/updater/BundleSwap.h"
#include "Korvane/updater/Relauncher.h"
#include "Korvane/updater/UpdatePhase.h"
#include "Korvane/updater/UpdaterConfiguration.h"
#include "KorvaneCore/platform/FileManager.h"
#include "KorvaneCore/platform/ProcessLauncher.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <string_view>

namespace korvane {

/// Keeps the app current: asks the feed, downloads and proves a newer release, puts it in the place
/// of the running one and has it started. `check` and `install` block the calling thread; a window
/// calls them in a Task, whose cancellation ends them early. A call while another one is at work
/// does nothing. Every failure is a phase; nothing is thrown. Any thread.
class AppUpdater {
  public:
    using Phase = UpdatePhase;
    using Release = UpdateRelease;

    /// What an update does to the computer.
    struct System {
        FileManager& files = FileManager::standard();
        ProcessLauncher& launcher = ProcessLauncher::standard();
        BundleSwap::Exchange exchange = exchangeItems;
        DetachedStart start = startDetached;
        std::function<void(const FileURL&)> reveal = revealInFileManager;
    };

    /// `onChange` is called with every new phase, on the thread that works.
    explicit AppUpdater(UpdaterConfiguration configuration,
                        std::function<void(const Phase&)> onChange = {})
        : AppUpdater(std::move(configuration), System(), std::move(onChange)) {}
    AppUpdater(UpdaterConfiguration configuration, System system,
               std::function<void(const Phase&)> onChange = {});

    [[nodiscard]] Phase phase() const;

    /// Whether the user asked for what is going on: only then is it shown that there is nothing
    /// new, or that the check failed.
    [[nodiscard]] bool wasUserInitiated() const noexcept { return wasUserInitiated_; }

    /// Whether the phase is for the user to see.
    [[nodiscard]] bool isShown() const;

    /// Asks the feed. Ends in `upToDate`, `available` or `failed`.
    void check(bool userInitiated);

    /// Ends in `relaunching`, whereupon the program is to end, `needsManualInstall` or `failed`.
    void install(const Release& release);

    /// The user has seen how it ended: back to `idle`. Nothing while it is at work.
    void dismiss();

  private:
    void work(const std::function<void()>& steps);
    void enter(const Phase& phase);
    [[nodiscard]] WebAddress feedAddress() const;
    [[nodiscard]] HTTPSDownload connection() const;
    [[nodiscard]] Phase evaluate(const Release& release) const;
    void download(const Release& release, const FileURL& image,
                  const std::function<void(double)>& onProgress) const;
    void performInstall(const Release& release);
    void saveForAdministrator(const Release& release, const FileURL& image);

    UpdaterConfiguration configuration_;
    System system_;
    std::function<void(const Phase&)> onChange_;
    mutable std::mutex lock_;
    Phase phase_;
    bool isWorking_ = false;
    std::atomic<bool> wasUserInitiated_ = false;
};

} // namespace korvane
