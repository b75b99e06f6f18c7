#pragma once

#include "Korvane/tools/Services.h"
#include "tests/support/FakeFileManager.h"
#include "tests/support/TemporaryFolder.h"

#include <QtTest>
#include <string>
#include <vector>

namespace korvane::testing {

/// A user with a log and a Bin of the test's own.
class Records {
  public:
    Records() : files(folder.at("trash")) {
        // The key of the log is kept in a file when there is no keyring to ask.
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        qunsetenv("XDG_RUNTIME_DIR");
    }

    /// Something that went to the Bin: `name` below the home folder.
    RestorableItem inBin(const std::string& name) const {
        const FileURL there = folder.makeFile("trash/files/" + name);
        return {folder.at("home/" + name).path(), there.path()};
    }

    UUID record(const std::string& module, const std::vector<RestorableItem>& items,
                std::vector<std::string> more = {}, const char* time = "2026-03-01T10:00:00Z",
                std::int64_t bytes = 1000) {
        std::vector<std::string> paths = std::move(more);
        for (const RestorableItem& item : items) {
            paths.push_back(item.original);
        }
        const UUID id = UUID::random();
        services.auditLog().record(module, std::move(paths), 0, bytes, id, items,
                                   *Date::fromISO8601(time));
        return id;
    }

    TemporaryFolder folder;
    FakeFileManager files;
    Services services{{folder.makeFolder("home"), folder.at("data"), folder.at("config"),
                       folder.makeFolder("tmp")},
                      files};
};

/// The texts of a role, row by row.
inline QStringList texts(const QAbstractItemModel& model, int role) {
    QStringList all;
    for (int row = 0; row < model.rowCount(); ++row) {
        all.append(model.index(row, 0).data(role).toString());
    }
    return all;
}

} // namespace korvane::testing
