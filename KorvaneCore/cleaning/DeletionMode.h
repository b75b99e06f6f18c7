#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace korvane {

class UserDefaults;

/// Where removed items go.
enum class DeletionMode { trash, permanent };

[[nodiscard]] std::string_view rawValue(DeletionMode mode) noexcept;
[[nodiscard]] std::optional<DeletionMode> deletionModeFromRawValue(std::string_view text) noexcept;

/// The words of the confirmation dialogs.
[[nodiscard]] std::string_view actionTitle(DeletionMode mode) noexcept;
/// "Move 3 items to the Bin?"; an "s" is put behind `noun` unless `count` is 1.
[[nodiscard]] std::string confirmationQuestion(DeletionMode mode, std::size_t count,
                                               std::string_view noun);
/// What it will mean; `selectedBytes` is the size of everything selected.
[[nodiscard]] std::string consequence(DeletionMode mode, std::int64_t selectedBytes);

/// The user's choice, kept in the user defaults. Anything but "permanent" means the Bin.
namespace DeletionPreference {
inline constexpr std::string_view key = "korvane.deletionMode";
[[nodiscard]] DeletionMode current(const UserDefaults& defaults);
/// Throws what storing a default throws.
void setCurrent(UserDefaults& defaults, DeletionMode mode);
} // namespace DeletionPreference

} // namespace korvane
