#pragma once

#include <map>
#include <string>
#include <string_view>

namespace korvane {

/// The texts directly in the outermost dictionary of a property list, XML or binary, by key.
/// Everything deeper is passed over without recursion. What is damaged is left out; empty for a
/// document of another kind. Any thread.
[[nodiscard]] std::map<std::string, std::string> propertyListTexts(std::string_view document);

} // namespace korvane
