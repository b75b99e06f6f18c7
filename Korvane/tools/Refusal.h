#pragma once

#include "KorvaneCore/cleaning/SafetyGuard.h"
#include "KorvaneCore/scan/ScanItem.h"

#include <optional>
#include <string>
#include <string_view>

namespace korvane {

class ExclusionStore;
class Services;

/// Says of places and items why they could not be removed, before anybody tries: the protected
/// paths are asked first, then the guard, as a cleanup does. A guard of the moment it was made.
class Refusal {
  public:
    /// `services` must outlive it.
    explicit Refusal(Services& services);

    /// The sentence; nothing for what may be removed.
    [[nodiscard]] std::optional<std::string> sentence(const FileURL& url) const;
    [[nodiscard]] std::optional<std::string> sentence(const ScanItem& item) const;

  private:
    const ExclusionStore& exclusions_;
    SafetyGuard guard_;
};

/// Why no cleanup may touch what a catalogue row justified: it is freed in a way of its own, and
/// removing it would do something else than the row promises. Nothing for all other rows.
[[nodiscard]] std::optional<std::string_view> freedOtherwise(std::string_view heuristicID) noexcept;

} // namespace korvane
