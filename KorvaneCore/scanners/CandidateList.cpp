#include "KorvaneCore/scanners/CandidateList.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/DirectoryReader.h"
#include "KorvaneCore/scan/FolderListing.h"
#include "KorvaneCore/scanners/FileKind.h"

#include <cstring>
#include <string_view>
#include <utility>

#include <fcntl.h>

namespace korvane {

namespace {

using Kind = DirectoryReader::Kind;

bool isPackage(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    return dot != std::string_view::npos && dot > 0 && isPackageExtension(name.substr(dot + 1));
}

} // namespace

/// The walk that fills a list.
class CandidateList::Walk {
  public:
    Walk(CandidateList& list, std::int64_t minimumBytes)
        : list_(list), minimumBytes_(minimumBytes), buffer_(DirectoryReader::makeBuffer()) {}

    void run() {
        const ReachablePath place(list_.root_.path());
        if (place.error() != 0) {
            return;
        }
        list_.folders_.push_back({list_.keepName(""), 0});
        FolderListing names;
        FileDescriptor root = openFolderFollowingLinks(place.parent(), place.name());
        if (!readNames(root, names)) {
            return;
        }
        trail_.start(std::move(root), list_.root_.path());
        pending_.push_back({std::move(names), 0});
        while (!pending_.empty()) {
            if (Task::isCancelled()) {
                list_.candidates_.clear();
                return;
            }
            step();
        }
    }

  private:
    struct Pending {
        FolderListing names;
        std::uint32_t folder = 0;
    };

    // False when there is nothing to visit. Half a listing counts as none.
    bool readNames(const FileDescriptor& folder, FolderListing& names) {
        if (!folder || names.readAll(folder.get(), buffer_) != 0 || names.remaining() == 0) {
            return false;
        }
        names.sort();
        return true;
    }

    void step() {
        if (pending_.back().names.remaining() == 0) {
            pending_.pop_back();
            trail_.leave();
            return;
        }
        const char* name = pending_.back().names.takeFirst();
        if (name[0] == '.' || isPackage(name) || trail_.descriptor() < 0) {
            return;
        }
        FileFacts facts;
        if (readFacts(trail_.descriptor(), name, facts) != 0) {
            return;
        }
        if (facts.kind == Kind::folder) {
            enter(name);
        } else if (facts.kind == Kind::file && facts.sizeBytes >= minimumBytes_) {
            list_.candidates_.push_back(
                {list_.keepName(name), pending_.back().folder, facts.sizeBytes, facts.modified});
        }
    }

    void enter(const char* name) {
        FolderListing names;
        FileDescriptor folder = openFolder(trail_.descriptor(), name);
        if (!readNames(folder, names)) {
            return;
        }
        const auto number = static_cast<std::uint32_t>(list_.folders_.size());
        list_.folders_.push_back({list_.keepName(name), pending_.back().folder});
        trail_.push(std::move(folder), name);
        pending_.push_back({std::move(names), number});
    }

    CandidateList& list_;
    std::int64_t minimumBytes_;
    DirectoryReader::Buffer buffer_;
    FolderTrail trail_;
    std::vector<Pending> pending_; ///< one a level of the trail
};

CandidateList::CandidateList(const FileURL& root, std::int64_t minimumBytes)
    : root_(root.standardized()) {
    Walk(*this, minimumBytes).run();
}

std::size_t CandidateList::keepName(const char* name) {
    const std::size_t start = names_.size();
    names_.insert(names_.end(), name, name + std::strlen(name) + 1);
    return start;
}

FileURL CandidateList::url(const Candidate& candidate) const {
    std::vector<const char*> below{name(candidate)};
    for (std::uint32_t folder = candidate.folder; folder != 0; folder = folders_[folder].parent) {
        below.push_back(names_.data() + folders_[folder].name);
    }
    std::string path = root_.path() == "/" ? "" : root_.path();
    for (auto name = below.rbegin(); name != below.rend(); ++name) {
        path += '/';
        path += *name;
    }
    return FileURL(std::move(path));
}

CandidateOpener::CandidateOpener(const CandidateList& list) : list_(list) {
    const ReachablePath place(list.root_.path());
    if (place.error() != 0) {
        return;
    }
    if (FileDescriptor root = openFolderFollowingLinks(place.parent(), place.name())) {
        trail_.start(std::move(root), list.root_.path());
        here_.push_back(0);
    }
}

bool CandidateOpener::goTo(std::uint32_t folder) {
    if (here_.empty()) {
        return false;
    }
    if (here_.back() == folder) {
        return trail_.descriptor() >= 0;
    }
    way_.clear();
    for (std::uint32_t one = folder; one != 0; one = list_.folders_[one].parent) {
        way_.push_back(one);
    }
    way_.push_back(0);
    // As far as both ways go together there is nothing to do.
    std::size_t shared = 1;
    while (shared < here_.size() && shared < way_.size() &&
           here_[shared] == way_[way_.size() - 1 - shared]) {
        ++shared;
    }
    for (; here_.size() > shared; here_.pop_back()) {
        trail_.leave();
    }
    for (; here_.size() < way_.size(); here_.push_back(way_[way_.size() - 1 - here_.size()])) {
        const std::uint32_t next = way_[way_.size() - 1 - here_.size()];
        const char* name = list_.names_.data() + list_.folders_[next].name;
        FileDescriptor opened = openFolder(trail_.descriptor(), name);
        if (!opened) {
            return false;
        }
        trail_.push(std::move(opened), name);
    }
    return trail_.descriptor() >= 0;
}

bool CandidateOpener::open(const CandidateList::Candidate& candidate, ContentFile& file) {
    if (!goTo(candidate.folder) || !file.open(trail_.descriptor(), list_.name(candidate))) {
        return false;
    }
    const ContentFile::State& state = file.state();
    const bool isAsListed = state.sizeBytes == candidate.sizeBytes &&
                            state.modified.tv_sec == candidate.modified.tv_sec &&
                            state.modified.tv_nsec == candidate.modified.tv_nsec;
    if (!isAsListed) {
        file.close();
    }
    return isAsListed;
}

} // namespace korvane
