#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/SecretStore.h"

#include <optional>

namespace korvane {

/// Keeps secrets as files that only the user may read: `<root>/<service>/<account>`, the bytes and
/// nothing else. For systems on which no service keeps them. Any thread.
class FileSecretStore final : public SecretStore {
  public:
    explicit FileSecretStore(FileURL root) : root_(std::move(root)) {}

    /// A file of the user's own that others may read or write is closed to them and read. A link, a
    /// special file or another user's file is `unavailable`; root reads everybody's.
    [[nodiscard]] SecretReading read(std::string_view service, std::string_view account) override;

    bool store(std::string_view service, std::string_view account, std::string_view data) override;

  private:
    /// Nothing for names that would lead out of the folder.
    [[nodiscard]] std::optional<FileURL> fileOf(std::string_view service,
                                                std::string_view account) const;

    FileURL root_;
};

} // namespace korvane
