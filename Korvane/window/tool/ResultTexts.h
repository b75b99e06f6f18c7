#pragma once

#include "Korvane/tools/ReviewSelection.h"
#include "Korvane/tools/ReviewTable.h"

#include <QCoreApplication>
#include <QString>
#include <QVariant>

namespace korvane {

/// What the rows and the head of a tool's results say. Refers to what it is made of; the thread of
/// the interface.
class ResultTexts {
    Q_DECLARE_TR_FUNCTIONS(ResultTexts)

  public:
    ResultTexts(const ReviewTable& table, const ReviewSelection& selection, const FileURL& home)
        : table_(table), selection_(selection), home_(home) {}

    [[nodiscard]] QString groupTitle(const ReviewTable::Group& group) const;
    [[nodiscard]] QString groupReason(const ReviewTable::Group& group) const;
    /// Why an item was found; why it must stay, where it must.
    [[nodiscard]] QString reasonOrRefusal(std::size_t item) const;
    /// New, grown, kept before, the copy that stays; may be empty.
    [[nodiscard]] QString mark(std::size_t item) const;
    /// The address of a thumbnail; empty for what is no picture.
    [[nodiscard]] QString picture(const ScanItem& item) const;
    /// That of the picture which stays of a group of similar ones.
    [[nodiscard]] QString pictureKept(const ReviewTable::Group& group) const;
    /// What changed since the scan before; empty when there was none.
    [[nodiscard]] QString changes() const;
    /// The largest groups and the rest: {title, text, share}.
    [[nodiscard]] QVariantList breakdown() const;
    /// Everything the details of an item show.
    [[nodiscard]] QVariantMap details(const ReviewTable::Group& group, std::size_t item) const;

  private:
    [[nodiscard]] QString reason(std::size_t item) const;
    [[nodiscard]] QString refusal(const ScanItem& item) const;

    const ReviewTable& table_;
    const ReviewSelection& selection_;
    const FileURL& home_;
};

[[nodiscard]] bool isSimilarImage(const ScanItem& item);

} // namespace korvane
