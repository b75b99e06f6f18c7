#pragma once

#include "KorvaneCore/platform/SoftwareInventory.h"

#include <memory>
#include <string>
#include <utility>

namespace korvane::testing {

/// Answers what it was given.
class FakeSoftwareInventory final : public SoftwareInventory {
  public:
    explicit FakeSoftwareInventory(SoftwareListing listing) : listing_(std::move(listing)) {}
    [[nodiscard]] SoftwareListing read() const override { return listing_; }

    static std::shared_ptr<const SoftwareInventory>
    of(std::vector<InstalledApplication> applications, bool isComplete = true) {
        return std::make_shared<FakeSoftwareInventory>(
            SoftwareListing{std::move(applications), isComplete});
    }

  private:
    SoftwareListing listing_;
};

/// An application that is a bundle in `folder`.
inline InstalledApplication bundle(const FileURL& folder, const std::string& identifier,
                                   const std::string& name) {
    return {.kind = InstalledApplication::Kind::bundle,
            .identifier = identifier,
            .name = name,
            .location = folder.appending(name + ".app")};
}

} // namespace korvane::testing
