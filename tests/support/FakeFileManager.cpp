#include "tests/support/FakeFileManager.h"

#include "KorvaneCore/foundation/FileError.h"

namespace korvane::testing {

class FakeFileManager::Session final : public BinSession {
  public:
    Session(FakeFileManager& owner, std::unique_ptr<BinSession> real)
        : owner_(owner), real_(std::move(real)) {}

    FileURL trashItem(const FileURL& url) override {
        owner_.note("trash " + url.path());
        owner_.throwIfAsked(url, "move to the Bin:");
        return real_->trashItem(url);
    }

    bool synchronize() noexcept override {
        owner_.note("synchronize");
        const std::lock_guard guard(owner_.lock_);
        return real_->synchronize() && !owner_.failsSynchronizing_;
    }

  private:
    FakeFileManager& owner_;
    std::unique_ptr<BinSession> real_;
};

FakeFileManager::FakeFileManager(FileURL trash)
    : trash_(std::move(trash)), real_(FileManager::withHomeTrash(trash_)) {}

FakeFileManager::~FakeFileManager() = default;

void FakeFileManager::failAt(const FileURL& url, int posixError) {
    const std::lock_guard guard(lock_);
    failures_[url.path()] = posixError;
}

void FakeFileManager::failSynchronizing() {
    const std::lock_guard guard(lock_);
    failsSynchronizing_ = true;
}

void FakeFileManager::setAvailableCapacities(std::vector<std::optional<std::int64_t>> capacities) {
    const std::lock_guard guard(lock_);
    capacities_ = std::move(capacities);
}

void FakeFileManager::onCall(std::function<void(const std::string&)> observer) {
    const std::lock_guard guard(lock_);
    observer_ = std::move(observer);
}

std::vector<std::string> FakeFileManager::calls() const {
    const std::lock_guard guard(lock_);
    return calls_;
}

std::unique_ptr<BinSession> FakeFileManager::openBin() {
    note("openBin");
    return std::make_unique<Session>(*this, real_->openBin());
}

void FakeFileManager::removeItem(const FileURL& url) {
    note("remove " + url.path());
    throwIfAsked(url, "remove");
    real_->removeItem(url);
}

void FakeFileManager::moveItem(const FileURL& source, const FileURL& destination) {
    note("move " + source.path() + " -> " + destination.path());
    throwIfAsked(source, "move");
    throwIfAsked(destination, "move to");
    real_->moveItem(source, destination);
}

void FakeFileManager::restoreItem(const FileURL& trashed, const FileURL& destination) {
    note("restore " + trashed.path() + " -> " + destination.path());
    throwIfAsked(trashed, "restore");
    throwIfAsked(destination, "restore to");
    real_->restoreItem(trashed, destination);
}

void FakeFileManager::createDirectory(const FileURL& folder) {
    note("createDirectory " + folder.path());
    throwIfAsked(folder, "create the folder");
    real_->createDirectory(folder);
}

bool FakeFileManager::itemExists(const FileURL& url) const {
    return real_->itemExists(url);
}

std::optional<std::int64_t> FakeFileManager::availableCapacity(const FileURL& url) const {
    note("availableCapacity " + url.path());
    const std::lock_guard guard(lock_);
    if (capacities_.empty()) {
        return real_->availableCapacity(url);
    }
    const std::optional<std::int64_t> answer = capacities_.front();
    if (capacities_.size() > 1) {
        capacities_.erase(capacities_.begin());
    }
    return answer;
}

// The observer runs unlocked, so that it may ask this object.
void FakeFileManager::note(const std::string& call) const {
    std::function<void(const std::string&)> observer;
    {
        const std::lock_guard guard(lock_);
        calls_.push_back(call);
        observer = observer_;
    }
    if (observer) {
        observer(call);
    }
}

void FakeFileManager::throwIfAsked(const FileURL& url, std::string_view action) const {
    const std::lock_guard guard(lock_);
    const auto failure = failures_.find(url.path());
    if (failure != failures_.end()) {
        throw FileError(failure->second, action, url.path());
    }
}

} // namespace korvane::testing
