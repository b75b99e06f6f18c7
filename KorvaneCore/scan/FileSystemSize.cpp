#include "KorvaneCore/scan/FileSystemSize.h"

#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/ProcessLauncher.h"
#include "KorvaneCore/scan/TreeSizer.h"

#include <algorithm>
#include <charconv>
#include <list>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>

namespace korvane::FileSystemSize {

namespace {

constexpr std::string_view whitespace = " \t\n\v\f\r";

std::vector<TreeSize> allocated(std::span<const FileURL> urls) {
    SizingRules rules;
    rules.measure = SizingRules::Measure::allocated;
    return sizeTrees(urls, rules);
}

/// Tasks nobody waits for. Ended ones go when the next one starts, the rest at the program's end.
class DetachedTasks {
  public:
    void start(std::function<void()> work) {
        const std::lock_guard lock(mutex_);
        tasks_.remove_if([](const Task& task) { return task.isFinished(); });
        tasks_.emplace_back(std::move(work));
    }

  private:
    std::mutex mutex_;
    std::list<Task> tasks_;
};

// The number of kilobytes that the first field of the output says; 0 when it is none.
std::int64_t firstField(std::string_view output) {
    const std::size_t begin = std::min(output.find_first_not_of(whitespace), output.size());
    const std::size_t end = std::min(output.find_first_of(whitespace, begin), output.size());
    std::int64_t value = 0;
    const auto [rest, error] = std::from_chars(output.data() + begin, output.data() + end, value);
    return error == std::errc() && rest == output.data() + end ? std::max<std::int64_t>(value, 0)
                                                               : 0;
}

} // namespace

std::int64_t allocatedSize(const FileURL& url) {
    return allocated({&url, 1}).front().bytes;
}

std::vector<std::int64_t> allocatedSizes(std::span<const FileURL> urls) {
    std::vector<std::int64_t> sizes;
    sizes.reserve(urls.size());
    for (const TreeSize& size : allocated(urls)) {
        sizes.push_back(size.bytes);
    }
    return sizes;
}

std::future<std::int64_t> allocatedSizeAsync(FileURL url) {
    static DetachedTasks tasks;
    auto promise = std::make_shared<std::promise<std::int64_t>>();
    std::future<std::int64_t> size = promise->get_future();
    tasks.start([promise, url = std::move(url)] { promise->set_value(allocatedSize(url)); });
    return size;
}

std::int64_t diskUsage(const FileURL& url, ProcessLauncher& launcher) {
    ProcessRequest request;
    request.executable = "/usr/bin/du";
    request.arguments = {"-sk", url.path()};
    const ProcessOutcome outcome = launcher.run(request);
    if (!outcome.succeeded()) {
        return 0;
    }
    std::int64_t bytes = 0;
    if (__builtin_mul_overflow(firstField(outcome.output), std::int64_t{1024}, &bytes)) {
        fatalError("arithmetic overflow in a size");
    }
    return bytes;
}

} // namespace korvane::FileSystemSize
