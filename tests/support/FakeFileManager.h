#pragma once

#include "KorvaneCore/platform/FileManager.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace korvane::testing {

/// The real file manager with a Bin of the test's own, which a test can make fail and watch. Things
/// really move and really go: tests look at the folders afterwards. Any thread.
class FakeFileManager final : public FileManager {
  public:
    /// The Bin is the `files` folder in `trash`, which is made when the first item goes there. Must
    /// be on the file system of what the test trashes.
    explicit FakeFileManager(FileURL trash);
    ~FakeFileManager() override;

    /// Every later attempt to change the item at this path fails so, before anything happens.
    void failAt(const FileURL& url, int posixError);
    /// Makes `synchronize` of every later Bin session answer false.
    void failSynchronizing();
    /// What `availableCapacity` answers, one a call, the last one from then on; nothing stands for
    /// "cannot be read". The real figure when never set.
    void setAvailableCapacities(std::vector<std::optional<std::int64_t>> capacities);

    /// Called before each operation, with the text that `calls` keeps of it.
    void onCall(std::function<void(const std::string&)> observer);

    /// What was asked for, in order: "trash /a", "remove /a", "move /a -> /b", "restore /a -> /b",
    /// "createDirectory /a", "availableCapacity /a", "openBin", "synchronize". `itemExists` is left
    /// out: it is asked at will.
    [[nodiscard]] std::vector<std::string> calls() const;

    /// The Bin's `files` folder.
    [[nodiscard]] FileURL binFiles() const { return trash_.appending("files"); }

    std::unique_ptr<BinSession> openBin() override;
    void removeItem(const FileURL& url) override;
    void moveItem(const FileURL& source, const FileURL& destination) override;
    void restoreItem(const FileURL& trashed, const FileURL& destination) override;
    void createDirectory(const FileURL& folder) override;
    [[nodiscard]] bool itemExists(const FileURL& url) const override;
    [[nodiscard]] std::optional<std::int64_t> availableCapacity(const FileURL& url) const override;

  private:
    class Session;

    void note(const std::string& call) const;
    void throwIfAsked(const FileURL& url, std::string_view action) const;

    FileURL trash_;
    std::unique_ptr<FileManager> real_;
    mutable std::mutex lock_;
    std::map<std::string, int> failures_;
    bool failsSynchronizing_ = false;
    mutable std::vector<std::optional<std::int64_t>> capacities_;
    std::function<void(const std::string&)> observer_;
    mutable std::vector<std::string> calls_;
};

} // namespace korvane::testing
