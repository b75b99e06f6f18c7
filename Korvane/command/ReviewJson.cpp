#include "Korvane/command/ReviewJson.h"

#include "Korvane/command/Terminal.h"
#include "KorvaneCore/foundation/Json.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>

namespace korvane {

namespace {

/// The members of a list or an object, one a line.
class Members {
  public:
    Members(char open, char close, std::string_view indent) : close_(close), indent_(indent) {
        Terminal::print(std::string_view(&open, 1));
    }
    ~Members() {
        Terminal::print(isEmpty_ ? std::string(1, close_) : fmt::format("\n{}{}", indent_, close_));
    }
    Members(const Members&) = delete;
    Members& operator=(const Members&) = delete;

    void add(const Json& value) { addText("", compactJson(value)); }
    void add(const std::string& key, const Json& value) {
        addText(compactJson(key) + ": ", compactJson(value));
    }

  private:
    void addText(std::string_view key, std::string_view value) {
        Terminal::print(fmt::format("{}\n{}  {}{}", isEmpty_ ? "" : ",", indent_, key, value));
        isEmpty_ = false;
    }

    char close_;
    std::string_view indent_;
    bool isEmpty_ = true;
};

void printResult(const ScanResult& result) {
    Terminal::print(fmt::format("{{\n    \"scannerID\": {},\n    \"startedAt\": \"{}\",\n    "
                                "\"finishedAt\": \"{}\",\n    \"items\": ",
                                compactJson(result.scannerID), result.startedAt.iso8601(),
                                result.finishedAt.iso8601()));
    {
        Members items('[', ']', "    ");
        for (const ScanItem& item : result.items) {
            items.add(item.toJson(DateForm::iso8601));
        }
    }
    Terminal::print("\n  }");
}

void printDiff(const ScanDiff& diff) {
    std::vector<std::string> newPaths;
    std::transform(diff.newPaths.begin(), diff.newPaths.end(), std::back_inserter(newPaths),
                   pathText);
    std::sort(newPaths.begin(), newPaths.end());
    std::vector<std::pair<std::string, std::int64_t>> growth;
    for (const auto& [path, bytes] : diff.growth) {
        growth.emplace_back(pathText(path), bytes);
    }
    std::sort(growth.begin(), growth.end());
    Terminal::print(fmt::format("{{\n    \"previousScanDate\": \"{}\",\n    \"newPaths\": ",
                                diff.previousScanDate.iso8601()));
    {
        Members members('[', ']', "    ");
        for (const std::string& path : newPaths) {
            members.add(path);
        }
    }
    Terminal::print(",\n    \"growth\": ");
    {
        Members members('{', '}', "    ");
        for (const auto& [path, bytes] : growth) {
            members.add(path, bytes);
        }
    }
    Terminal::print(fmt::format(",\n    \"vanishedCount\": {},\n    \"vanishedBytes\": {}\n  }}",
                                diff.vanishedCount, diff.vanishedBytes));
}

void printPreselected(const ToolReview& review) {
    Members members('[', ']', "  ");
    for (const ScanItem& item : review.result.items) {
        if (review.preselected.contains(item.id)) {
            members.add(item.id.text());
        }
    }
}

/// An object with a member for every item that `notes` knows, in the order of the items.
template <typename Notes, typename Text>
void printNotes(const ToolReview& review, const Notes& notes, Text text) {
    Members members('{', '}', "  ");
    for (const ScanItem& item : review.result.items) {
        if (const auto found = notes.find(item.id); found != notes.end()) {
            members.add(item.id.text(), text(found->second));
        }
    }
}

} // namespace

void printReviewJson(const ToolReview& review) {
    Terminal::print("{\n  \"result\": ");
    printResult(review.result);
    Terminal::print(",\n  \"preselected\": ");
    printPreselected(review);
    Terminal::print(",\n  \"diff\": ");
    if (review.diff) {
        printDiff(*review.diff);
    } else {
        Terminal::print("null");
    }
    Terminal::print(",\n  \"skippedBefore\": ");
    printNotes(review, review.skippedBefore, [](const Date& date) { return date.iso8601(); });
    Terminal::print(",\n  \"refused\": ");
    printNotes(review, review.refused, [](const std::string& sentence) { return sentence; });
    Terminal::print("\n}\n");
}

} // namespace korvane
