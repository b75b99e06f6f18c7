#include "Korvane/window/tool/OutcomeModel.h"

#include "Korvane/window/support/Texts.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/scan/ByteDisplay.h"

#include <algorithm>

namespace korvane {

OutcomeModel::OutcomeModel(FileURL home, QObject* parent)
    : QAbstractListModel(parent), home_(std::move(home)) {}

int OutcomeModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(result_.failed.size() + result_.skipped.size());
}

QHash<int, QByteArray> OutcomeModel::roleNames() const {
    return {{Title, "title"},   {Path, "path"},     {Sentence, "sentence"}, {Guidance, "guidance"},
            {Failed, "failed"}, {Section, "group"}, {Spoken, "spoken"}};
}

QVariant OutcomeModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const auto row = static_cast<std::size_t>(index.row());
    const bool failed = row < result_.failed.size();
    const CleanupFailure* failure = failed ? &result_.failed[row] : nullptr;
    const CleanupSkip* skip = failed ? nullptr : &result_.skipped[row - result_.failed.size()];
    const ScanItem& item = failed ? failure->item : skip->item;
    const QString title = Texts::data(item.url.lastPathComponent());
    const QString sentence =
        failed ? Texts::sentence(failure->error) : Texts::sentence(description(skip->reason));
    switch (role) {
    case Qt::DisplayRole:
    case Title:
        return title;
    case Path:
        return Texts::path(item.path(), home_);
    case Sentence:
        return sentence;
    case Guidance:
        return failed ? Texts::sentence(guidance(failure->kind)) : QString();
    case Failed:
        return failed;
    case Section:
        return failed ? tr("Not removed") : tr("Skipped");
    case Spoken:
        return tr("%1: %2").arg(title, sentence);
    default:
        return {};
    }
}

void OutcomeModel::show(CleanupResult result, bool wasStopped) {
    beginResetModel();
    result_ = std::move(result);
    hasResult_ = true;
    wasStopped_ = wasStopped;
    endResetModel();
    emit changed();
}

void OutcomeModel::clear() {
    beginResetModel();
    result_ = CleanupResult();
    hasResult_ = false;
    endResetModel();
    emit changed();
}

QString OutcomeModel::title() const {
    std::int64_t bytes = 0;
    for (const ScanItem& item : result_.succeeded) {
        bytes = checkedAdd(bytes, item.sizeBytes);
    }
    if (result_.succeeded.empty()) {
        return tr("Nothing was removed");
    }
    const QString amount = Texts::sentence(ByteDisplay::formatAmount(bytes));
    return result_.mode == DeletionMode::trash ? tr("%1 moved to the Bin").arg(amount)
                                               : tr("%1 deleted permanently").arg(amount);
}

QString OutcomeModel::detail() const {
    QStringList sentences;
    if (wasStopped_) {
        sentences << tr("You stopped it. What was removed before stays removed.");
    }
    if (!result_.succeeded.empty() && result_.mode == DeletionMode::trash) {
        sentences << tr("The space is free once the Bin is emptied. Until then everything can be "
                        "put back.");
    }
    if (result_.spaceFreedOnDisk) {
        sentences << tr("%1 more free on the disk.").arg(Texts::bytes(*result_.spaceFreedOnDisk));
    }
    return sentences.join(u' ');
}

QString OutcomeModel::succeededText() const {
    return Texts::count(static_cast<std::int64_t>(result_.succeeded.size()));
}

QString OutcomeModel::failedText() const {
    return Texts::count(static_cast<std::int64_t>(result_.failed.size()));
}

QString OutcomeModel::skippedText() const {
    return Texts::count(static_cast<std::int64_t>(result_.skipped.size()));
}

bool OutcomeModel::canRestore() const {
    return result_.mode == DeletionMode::trash && !result_.succeeded.empty();
}

bool OutcomeModel::rightsCouldHelp() const {
    return std::any_of(result_.failed.begin(), result_.failed.end(), [](const auto& failure) {
        return failure.kind == CleanupFailure::Kind::permission;
    });
}

QString OutcomeModel::auditFailure() const {
    return result_.auditFailure ? Texts::sentence(*result_.auditFailure) : QString();
}

} // namespace korvane
