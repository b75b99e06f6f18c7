#pragma once

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// One live line on stderr: message, bar, percentage. Shows nothing unless stderr is a terminal.
/// `report` may be called from any thread. The line is wiped when the object goes.
class ProgressLine {
  public:
    explicit ProgressLine(bool wanted);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// `fraction` is 0…1, absent when it cannot be told.
    void report(std::string_view message, std::optional<double> fraction);
    void clear();

  private:
    bool shown_;
    bool drawn_ = false;
    std::mutex lock_;
    std::chrono::steady_clock::time_point lastDrawn_;
};

} // namespace korvane
