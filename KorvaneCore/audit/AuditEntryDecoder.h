#pragma once

#include "KorvaneCore/audit/AuditEntry.h"

#include <memory>
#include <string_view>

namespace korvane {

/// Reads the lines of the audit log; every reader of the log goes through it, so that what is shown
/// is what is hashed. Keys may come in any order and unknown ones are ignored. A line fails when it
/// is not UTF-8, is not exactly one object, lacks a required key, holds a value of another type, or
/// names a known key twice: other programs would disagree about which of the two counts. "null"
/// stands for absence where a key may be absent. Used by one thread at a time.
class AuditEntryDecoder {
  public:
    AuditEntryDecoder();
    ~AuditEntryDecoder();
    AuditEntryDecoder(const AuditEntryDecoder&) = delete;
    AuditEntryDecoder& operator=(const AuditEntryDecoder&) = delete;

    /// Fills `entry`, whose memory is used again. False when the line fails; then `entry` holds
    /// nothing of use.
    [[nodiscard]] bool decode(std::string_view line, AuditEntry& entry);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace korvane
