#pragma once

#include "KorvaneCore/platform/ProcessLauncher.h"

#include <functional>
#include <vector>

namespace korvane::testing {

/// Starts nothing: remembers what it was asked for and answers what the test says.
class FakeProcessLauncher final : public ProcessLauncher {
  public:
    using Answer = std::function<ProcessOutcome(const ProcessRequest&)>;
    explicit FakeProcessLauncher(Answer answer) : answer_(std::move(answer)) {}

    ProcessOutcome run(const ProcessRequest& request) override {
        requests.push_back(request);
        return answer_(request);
    }

    /// What a program that ended well says.
    static ProcessOutcome saying(std::string output) {
        ProcessOutcome outcome;
        outcome.launched = true;
        outcome.exitStatus = 0;
        outcome.output = std::move(output);
        return outcome;
    }

    std::vector<ProcessRequest> requests;

  private:
    Answer answer_;
};

} // namespace korvane::testing
