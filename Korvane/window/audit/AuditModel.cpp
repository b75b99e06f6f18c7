#include "Korvane/window/audit/AuditModel.h"

#include "Korvane/audit/AuditExport.h"
#include "Korvane/audit/AuditQuery.h"
#include "Korvane/audit/AuditText.h"
#include "Korvane/audit/ModuleNames.h"
#include "Korvane/window/audit/ModuleIcon.h"
#include "Korvane/window/support/Texts.h"
#include "KorvaneCore/cleaning/Restorer.h"
#include "KorvaneCore/foundation/FileError.h"

#include <QDesktopServices>
#include <algorithm>

namespace korvane {

AuditModel::AuditModel(Services& services, QObject* parent)
    : QAbstractListModel(parent), services_(services), chain_(services), run_(services) {
    connect(&reading_, &Work::runningChanged, this, &AuditModel::verifyingChanged);
    connect(&chain_, &AuditChain::recorded, this, &AuditModel::recorded);
    connect(&chain_, &AuditChain::ended, this, &AuditModel::showProblem);
    connect(&run_, &RestoreRun::finished, this, &AuditModel::recorded);
}

// Rows

int AuditModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(view_.rows.size());
}

QVariant AuditModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const auto number = static_cast<std::size_t>(index.row());
    const Row& row = view_.rows[number];
    switch (role) {
    case Kind:
        return row.kind;
    case Foldable:
    case Open:
    case CanPutBack:
        if (row.kind != Operation) {
            return false;
        }
        break;
    default:
        break;
    }
    if (row.kind == Day) {
        const QString label = Texts::sentence(view_.log->days[row.entry].label);
        const bool isTitle = role == Qt::DisplayRole || role == Title || role == Spoken;
        return isTitle ? label : role > Qt::UserRole ? QVariant(QString()) : QVariant();
    }
    const AuditEntry& entry = view_.log->entries[row.entry];
    return row.kind == Operation ? operationData(entry, number, role)
                                 : pathData(entry.paths[row.path], role);
}

QVariant AuditModel::operationData(const AuditEntry& entry, std::size_t row, int role) const {
    switch (role) {
    case Qt::DisplayRole:
    case Title:
        return Texts::data(moduleName(entry.scannerID));
    case Subtitle:
        return Texts::sentence(AuditText::operationSummary(entry));
    case When:
        return Texts::timeOfDay(entry.timestamp);
    case SizeText: {
        const bool removes = !entry.chainRestart && entry.scannerID != Restorer::scannerID;
        return removes ? Texts::bytes(entry.bytesReclaimed) : QString();
    }
    case IconName:
        return moduleIcon(entry.scannerID);
    case Foldable:
        return !entry.paths.empty();
    case Open:
        return isOpen(row);
    case FoldText:
        return Texts::sentence(isOpen(row) ? AuditText::hidePaths : AuditText::showPaths);
    case CanPutBack:
        return inBin_.contains(entry.operationID);
    case Path:
        return QString();
    case Spoken: {
        QStringList parts{Texts::dayAndTime(entry.timestamp)};
        for (const int part : {int{Title}, int{Subtitle}, int{SizeText}}) {
            const QString text = operationData(entry, row, part).toString();
            if (!text.isEmpty()) {
                parts.append(text);
            }
        }
        return parts.join(QStringLiteral(", "));
    }
    default:
        return {};
    }
}

QVariant AuditModel::pathData(const std::string& text, int role) const {
    const FileURL url(pathFromText(text));
    switch (role) {
    case Qt::DisplayRole:
    case Title:
        return Texts::data(url.lastPathComponent());
    case Subtitle:
        return Texts::path(url.deletingLastPathComponent().path(), services_.home());
    case Path:
    case Spoken:
        return Texts::path(url.path(), services_.home());
    case IconName:
        return QStringLiteral("file");
    default:
        return role > Qt::UserRole ? QVariant(QString()) : QVariant();
    }
}

QHash<int, QByteArray> AuditModel::roleNames() const {
    return {{Kind, "kind"},         {Title, "title"},
            {Subtitle, "subtitle"}, {When, "when"},
            {SizeText, "sizeText"}, {IconName, "iconName"},
            {Foldable, "foldable"}, {Open, "open"},
            {FoldText, "foldText"}, {CanPutBack, "canPutBack"},
            {Path, "path"},         {Spoken, "spoken"}};
}

bool AuditModel::isOpen(std::size_t row) const {
    return row + 1 < view_.rows.size() && view_.rows[row + 1].kind == AffectedPath;
}

void AuditModel::setOpen(int row, bool open) {
    const auto number = static_cast<std::size_t>(row);
    if (row < 0 || row >= rowCount() || view_.rows[number].kind != Operation ||
        isOpen(number) == open) {
        return;
    }
    const std::uint32_t place = view_.rows[number].entry;
    const AuditEntry& entry = view_.log->entries[place];
    const auto count = static_cast<int>(entry.paths.size());
    if (count == 0) {
        return;
    }
    const auto first = view_.rows.begin() + row + 1;
    if (open) {
        std::vector<Row> paths;
        for (int path = 0; path < count; ++path) {
            paths.push_back({AffectedPath, place, static_cast<std::uint32_t>(path)});
        }
        beginInsertRows({}, row + 1, row + count);
        view_.rows.insert(first, paths.begin(), paths.end());
        endInsertRows();
        open_.insert(entry.operationID);
    } else {
        beginRemoveRows({}, row + 1, row + count);
        view_.rows.erase(first, first + count);
        endRemoveRows();
        open_.erase(entry.operationID);
    }
    emit dataChanged(index(row), index(row), {Open, FoldText});
}

// Reading

void AuditModel::refresh() {
    // A reading cannot be cut short, and the interface does not wait for one.
    if (reading_.isRunning()) {
        readsAgain_ = true;
        return;
    }
    reading_.start([this, &services = services_](const Work::Post& post) {
        const auto log = AuditReading::of(services.auditLog());
        post([this, log] {
            log_ = log;
            emit modulesChanged();
            chart_.show(log);
            search();
        });
        const Restorer restorer(services.auditLog(), services.fileManager());
        const auto inBin = std::make_shared<InBin>();
        for (const AuditEntry& entry : log->entries) {
            for (const RestorableItem& item :
                 entry.restorable.value_or(std::vector<RestorableItem>())) {
                if (restorer.isStillInBin(item)) {
                    (*inBin)[entry.operationID].push_back(item);
                }
            }
        }
        post([this, inBin] { showInBin(std::move(*inBin)); });
        const AuditChainResult result = services.auditLog().verifyChain();
        return Work::Step([this, result, warning = services.keyWarning().value_or("")] {
            chain_.show(result, warning);
            if (std::exchange(readsAgain_, false)) {
                refresh();
            }
        });
    });
}

void AuditModel::search() {
    if (!log_) {
        return;
    }
    searching_.start(
        [this, log = log_,
         query = AuditQuery{query_.trimmed().toStdString(), module_}](const Work::Post&) {
            auto places =
                std::make_shared<std::vector<std::size_t>>(matchingPlaces(log->entries, query));
            return Work::Step([this, log, places] { show(log, std::move(*places)); });
        });
}

void AuditModel::show(std::shared_ptr<const AuditReading> log, std::vector<std::size_t> places) {
    std::vector<Row> rows;
    rows.reserve(places.size());
    std::size_t day = 0;
    bool isDayShown = false;
    for (const std::size_t place : places) {
        for (; place >= log->days[day].end; ++day) {
            isDayShown = false;
        }
        if (!isDayShown) {
            rows.push_back({Day, static_cast<std::uint32_t>(day), 0});
            isDayShown = true;
        }
        const auto entry = static_cast<std::uint32_t>(place);
        rows.push_back({Operation, entry, 0});
        if (!open_.empty() && open_.contains(log->entries[place].operationID)) {
            for (std::uint32_t path = 0; path < log->entries[place].paths.size(); ++path) {
                rows.push_back({AffectedPath, entry, path});
            }
        }
    }
    beginResetModel();
    view_ = {std::move(log), std::move(places), std::move(rows)};
    endResetModel();
    emit shown();
}

void AuditModel::showInBin(InBin inBin) {
    inBin_ = std::move(inBin);
    if (rowCount() > 0) {
        emit dataChanged(index(0), index(rowCount() - 1), {CanPutBack});
    }
}

AuditModel::State AuditModel::state() const {
    if (!view_.log) {
        return Loading;
    }
    if (view_.log->entries.empty()) {
        return Empty;
    }
    return view_.places.empty() ? NoMatch : Listed;
}

QString AuditModel::countText() const {
    if (!view_.log) {
        return {};
    }
    return Texts::sentence(
        AuditText::shownOperations(view_.places.size(), view_.log->entries.size()));
}

// What is shown

void AuditModel::setQuery(const QString& query) {
    if (query != query_) {
        query_ = query;
        emit queryChanged();
        search();
    }
}

QStringList AuditModel::modules() const {
    QStringList names{tr("All modules")};
    for (const std::string& id : log_ ? log_->modules : std::vector<std::string>()) {
        names.append(Texts::data(moduleName(id)));
    }
    return names;
}

int AuditModel::module() const {
    if (module_.empty() || !log_) {
        return 0;
    }
    const auto found = std::find(log_->modules.begin(), log_->modules.end(), module_);
    return found == log_->modules.end() ? -1 : static_cast<int>(found - log_->modules.begin()) + 1;
}

void AuditModel::setModule(int module) {
    if (!log_ || module < 0 || module > static_cast<int>(log_->modules.size())) {
        return;
    }
    const std::string id = module == 0 ? "" : log_->modules[static_cast<std::size_t>(module - 1)];
    if (id != module_) {
        module_ = id;
        emit modulesChanged();
        search();
    }
}

// Actions

void AuditModel::putBack(int row) {
    if (row < 0 || row >= rowCount()) {
        return;
    }
    const Row& chosen = view_.rows[static_cast<std::size_t>(row)];
    if (chosen.kind != Operation) {
        return;
    }
    const auto found = inBin_.find(view_.log->entries[chosen.entry].operationID);
    if (found != inBin_.end()) {
        run_.start(found->second);
    }
}

void AuditModel::exportTo(const QUrl& file, bool replace) {
    const FileURL target = Texts::fileURL(file);
    if (!view_.log || writing_.isRunning()) {
        return;
    }
    if (!target.isAbsolute()) {
        showProblem(tr("The log can only be saved on this computer."));
        return;
    }
    showProblem({});
    writing_.start([this, &services = services_, log = view_.log, places = view_.places, target,
                    file, replace](const Work::Post&) {
        const QString name = Texts::path(target.path(), services.home());
        if (!replace && services.fileManager().itemExists(target)) {
            return Work::Step([this, file, name] {
                emit replacementAsked(file, tr("%1 is there already. Replace it?").arg(name));
            });
        }
        try {
            std::vector<AuditEntry> entries;
            entries.reserve(places.size());
            for (const std::size_t place : places) {
                entries.push_back(log->entries[place]);
            }
            exportAuditLog(entries, target);
        } catch (const std::exception& error) {
            return Work::Step([this, problem = Texts::data(localizedDescription(error))] {
                showProblem(tr("The log could not be exported: %1").arg(problem));
            });
        }
        return Work::Step([this, sentence = Texts::sentence(
                                     AuditText::exported(places.size(), name.toStdString()))] {
            emit notified(sentence);
        });
    });
}

QUrl AuditModel::startFolder() const {
    return Texts::qtURL(services_.home());
}

QUrl AuditModel::proposedFile(const QUrl& folder) const {
    return Texts::qtURL(Texts::fileURL(folder).appending(auditExportName));
}

void AuditModel::openFolder() {
    const FileURL& folder = services_.auditLog().rootURL();
    if (!QDesktopServices::openUrl(Texts::qtURL(folder))) {
        showProblem(tr("No program could show the folder. The log files are in %1.")
                        .arg(Texts::path(folder.path(), services_.home())));
    }
}

void AuditModel::showProblem(const QString& problem) {
    if (problem != problem_) {
        problem_ = problem;
        emit problemChanged();
    }
}

void AuditModel::dismissProblem() {
    showProblem({});
}

QVariantMap AuditModel::words() {
    const auto word = [](const char* name, std::string_view text) {
        return std::pair(QLatin1String(name), QVariant(Texts::sentence(text)));
    };
    QVariantMap words;
    for (const auto& [name, text] :
         {word("reading", AuditText::reading), word("searchPrompt", AuditText::searchPrompt),
          word("emptyTitle", AuditText::emptyTitle),
          word("emptyExplanation", AuditText::emptyExplanation),
          word("noMatchTitle", AuditText::noMatchTitle),
          word("noMatchExplanation", AuditText::noMatchExplanation),
          word("emptyPeriod", AuditText::emptyPeriod), word("acknowledge", AuditText::acknowledge),
          word("acknowledgeHelp", AuditText::acknowledgeHelp),
          word("acknowledgeTitle", AuditText::acknowledgeTitle),
          word("acknowledgeExplanation", AuditText::acknowledgeExplanation),
          word("acknowledgeConsequence", AuditText::acknowledgeConsequence),
          word("restoreHelp", AuditText::restoreHelp), word("folderHelp", AuditText::folderHelp),
          word("exportHelp", AuditText::exportHelp), word("exportTitle", AuditText::exportTitle),
          word("operationsRecorded", AuditText::operationsRecorded),
          word("lifetimeReclaimed", AuditText::lifetimeReclaimed)}) {
        words.insert(name, text);
    }
    return words;
}

} // namespace korvane
