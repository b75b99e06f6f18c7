#pragma once

#include "KorvaneCore/platform/DirectoryReader.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <vector>

namespace korvane {

/// Names of one folder that are still to be looked at, kept in two blocks of memory however many
/// they are. Taken from the front.
class FolderListing {
  public:
    void add(std::string_view name) {
        starts_.push_back(bytes_.size());
        bytes_.insert(bytes_.end(), name.begin(), name.end());
        bytes_.push_back('\0');
    }

    /// Adds every name in an open folder. Answers 0 or the errno of a failed read.
    [[nodiscard]] int readAll(int folder, DirectoryReader::Buffer& buffer) {
        DirectoryReader reader(folder, buffer);
        while (true) {
            const auto entry = reader.next();
            if (!entry) {
                return reader.error();
            }
            add(entry->name);
        }
    }

    /// Ascending order of the names' bytes.
    void sort() {
        std::sort(starts_.begin(), starts_.end(), [this](std::size_t a, std::size_t b) {
            return std::strcmp(bytes_.data() + a, bytes_.data() + b) < 0;
        });
    }

    [[nodiscard]] std::size_t remaining() const noexcept { return starts_.size() - position_; }

    /// The next name; valid as long as nothing is added. `remaining()` must not be 0.
    [[nodiscard]] const char* takeFirst() noexcept { return bytes_.data() + starts_[position_++]; }

    /// Moves the last `count` remaining names into a listing of their own.
    [[nodiscard]] FolderListing takeLast(std::size_t count) {
        FolderListing taken;
        for (std::size_t i = starts_.size() - count; i < starts_.size(); ++i) {
            taken.add(bytes_.data() + starts_[i]);
        }
        starts_.resize(starts_.size() - count);
        return taken;
    }

  private:
    std::vector<char> bytes_;
    std::vector<std::size_t> starts_;
    std::size_t position_ = 0;
};

} // namespace korvane
