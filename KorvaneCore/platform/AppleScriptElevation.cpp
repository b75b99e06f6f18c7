#include "KorvaneCore/platform/AppleScriptElevation.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/foundation/Text.h"

namespace korvane {

std::optional<std::string> appleScriptLiteral(std::string_view text) {
    constexpr std::string_view lineSeparator = "\u2028";
    constexpr std::string_view paragraphSeparator = "\u2029";
    if (!isValidUTF8(text) || text.find(lineSeparator) != std::string_view::npos ||
        text.find(paragraphSeparator) != std::string_view::npos) {
        return std::nullopt;
    }
    std::string literal = "\"";
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '\t') {
            literal += "\\t";
        } else if (c == '\n') {
            literal += "\\n";
        } else if (c == '\r') {
            literal += "\\r";
        } else if (code < 0x20 || code == 0x7F) {
            return std::nullopt;
        } else {
            literal += c == '"' || c == '\\' ? "\\" : "";
            literal += c;
        }
    }
    return literal + "\"";
}

bool AppleScriptElevation::run(const std::string& shellCommand, const LastLook& lastLook) {
    const auto literal = appleScriptLiteral(shellCommand);
    if (!literal || Task::isCancelled() || !lastLook()) {
        return false;
    }
    ProcessRequest request;
    request.executable = "/usr/bin/osascript";
    request.arguments = {"-e", "do shell script " + *literal + " with administrator privileges"};
    return launcher_.run(request).succeeded();
}

} // namespace korvane
