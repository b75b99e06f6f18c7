#include "tests/support/FaultInjection.h"
#include "tests/support/Sandbox.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>

#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane::testing {

namespace {

constexpr const char* errors[] = {"EIO", "ENOSPC", "EROFS", "EACCES", "EBUSY"};

/// Name to kind and content of everything below a folder->
using Snapshot = std::map<std::string, std::string>;

Snapshot snapshotOf(const FileURL& top) {
    Snapshot all;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(top.path())) {
        std::string& what = all[entry.path().string().substr(top.path().size() + 1)];
        if (entry.is_symlink()) {
            what = "link " + std::filesystem::read_symlink(entry.path()).string();
        } else if (entry.is_directory()) {
            what = "folder";
        } else {
            std::ifstream file(entry.path(), std::ios::binary);
            what = "file " + std::string(std::istreambuf_iterator<char>(file), {});
        }
    }
    return all;
}

/// Of a snapshot, the item at `path` with what is in it, under `as`; empty when it is not there.
Snapshot itemIn(const Snapshot& all, const std::string& path, const std::string& as) {
    Snapshot item;
    for (const auto& [name, what] : all) {
        if (name == path || name.starts_with(path + "/")) {
            item[as + name.substr(path.size())] = what;
        }
    }
    return item;
}

/// Runs a file operation in a process of its own again and again, each time with one system call
/// failing, or the process killed at it, in a world made anew, and asks what is true of the world
/// afterwards.
class FaultInjection : public FaultInjectionTest {
  protected:
    struct Outcome {
        std::string fault;
        bool succeeded = false;
        bool wasKilled = false;
        Snapshot before;
        Snapshot after;
        Snapshot elsewhere; ///< what is on the other file system
    };

    struct Operation {
        std::vector<std::string> arguments; ///< paths in the world, or "OTHER/" for elsewhere
        std::vector<std::string> calls;     ///< to be made to fail, one after another
        std::vector<std::string> always;    ///< faults in every run: "openat2:error=ENOSYS"
    };

    void run(const Operation& operation, const std::function<void(const Outcome&)>& check) {
        std::size_t turn = 0;
        for (const std::string& call : operation.calls) {
            for (const std::size_t when : occasionsOf(call, operation)) {
                const std::string error = errors[turn++ % std::size(errors)];
                for (const std::string& fault : {":error=" + error, std::string(":signal=KILL")}) {
                    check(outcomeOf(call + fault + ":when=" + std::to_string(when), operation));
                }
            }
        }
        EXPECT_GT(turn, 5U) << "hardly anything was made to fail";
    }

    std::optional<TemporaryFolder> folder{std::in_place, quickPlace()};
    std::unique_ptr<TemporaryFolder> other; ///< on another file system, for what moves there

  private:
    Snapshot makeWorld() const {
        std::filesystem::remove_all(folder->at("world").path());
        folder->makeFile("world/outside/letter", "precious");
        folder->makeFile("world/items/tree/a/b/deep", "deep");
        folder->makeFile("world/items/tree/a/file", "file");
        folder->makeLink("world/items/tree/a/link", "../../../outside");
        folder->makeFolder("world/items/tree/empty");
        folder->makeFile("world/items/file", "lone");
        folder->makeLink("world/items/link", "../outside");
        folder->makeFile("world/Trash/files/file", "older");
        folder->makeFile("world/Trash/info/file.trashinfo", "older note");
        if (other) {
            std::filesystem::remove_all(other->at("world").path());
            other->makeFolder("world");
        }
        return snapshotOf(folder->at("world"));
    }

    /// Runs the operation with these system calls traced and these faults; its exit status.
    int trace(const Operation& operation, std::string traced,
              std::vector<std::string> faults) const {
        faults.insert(faults.end(), operation.always.begin(), operation.always.end());
        std::vector<std::string> command{"strace", "-f", "-o", folder->at("trace").path()};
        for (const std::string& fault : faults) {
            traced += "," + fault.substr(0, fault.find(':'));
            command.insert(command.end(), {"-e", "inject=" + fault});
        }
        command.insert(command.end(), {"-e", "trace=" + traced, KORVANE_FILE_MANAGER_TOOL,
                                       folder->at("world/Trash").path(), operation.arguments[0]});
        for (std::size_t i = 1; i < operation.arguments.size(); ++i) {
            const std::string& path = operation.arguments[i];
            command.push_back(path.starts_with("OTHER/") ? other->path() + "/world" + path.substr(5)
                                                         : folder->at("world/" + path).path());
        }
        return runProgram(command);
    }

    /// Which of the calls of this name to make fail: all but those that load the program.
    std::vector<std::size_t> occasionsOf(const std::string& call,
                                         const Operation& operation) const {
        makeWorld();
        EXPECT_EQ(trace(operation, call, {}), 0) << "fails without a fault";
        std::ifstream file(folder->at("trace").path());
        std::vector<std::size_t> occasions;
        std::size_t number = 0;
        for (std::string line; std::getline(file, line);) {
            if (line.find(" " + call + "(") != std::string::npos) {
                ++number;
                if (line.find("lib") == std::string::npos &&
                    line.find("/etc/") == std::string::npos) {
                    occasions.push_back(number);
                }
            }
        }
        return occasions;
    }

    Outcome outcomeOf(const std::string& fault, const Operation& operation) const {
        Outcome outcome;
        outcome.fault = fault;
        outcome.before = makeWorld();
        const int status = trace(operation, fault.substr(0, fault.find(':')), {fault});
        outcome.succeeded = status == 0;
        outcome.wasKilled = status >= 128;
        outcome.after = snapshotOf(folder->at("world"));
        if (other) {
            outcome.elsewhere = snapshotOf(other->at("world"));
        }
        return outcome;
    }
};

void expectOutsideUntouched(const Snapshot& before, const Snapshot& after,
                            const std::string& fault) {
    for (const std::string place : {"outside", "Trash/files/file", "Trash/info/file.trashinfo"}) {
        EXPECT_EQ(itemIn(after, place, place), itemIn(before, place, place)) << fault;
    }
}

/// Each item is whole in its place or whole in the Bin with a note, and nowhere else.
void expectTrashedOrInPlace(const Snapshot& before, const Snapshot& after, bool succeeded,
                            const std::string& fault) {
    expectOutsideUntouched(before, after, fault);
    const std::pair<const char*, const char*> items[] = {{"items/tree", "Trash/files/tree"},
                                                         {"items/file", "Trash/files/file 2"},
                                                         {"items/link", "Trash/files/link"}};
    std::size_t trashed = 0;
    for (const auto& [original, inBin] : items) {
        const Snapshot whole = itemIn(before, original, "item");
        const Snapshot here = itemIn(after, original, "item");
        const Snapshot there = itemIn(after, inBin, "item");
        EXPECT_TRUE((here == whole && there.empty()) || (here.empty() && there == whole))
            << fault << ", " << original;
        if (!there.empty()) {
            ++trashed;
            const std::string note = "Trash/info" + std::string(inBin).substr(11) + ".trashinfo";
            const auto text = after.find(note);
            EXPECT_TRUE(text != after.end() &&
                        text->second.find("DeletionDate=") != std::string::npos)
                << fault << ", " << original;
        }
    }
    EXPECT_TRUE(!succeeded || trashed == std::size(items)) << fault;
    std::size_t inFiles = 0;
    for (const auto& [name, what] : after) {
        inFiles += name.starts_with("Trash/files/") && name.find('/', 12) == std::string::npos;
    }
    EXPECT_EQ(inFiles, trashed + 1) << fault << ": something else is in the Bin";
}

const std::vector<std::string> trashing{"trash", "items/tree", "items/file", "items/link"};

} // namespace

TEST_F(FaultInjection, leavesEveryItemInItsPlaceOrInTheBinWithItsNote) {
    run({trashing,
         {"openat", "openat2", "mkdirat", "write", "renameat2", "newfstatat", "statx", "syncfs"},
         {}},
        [](const Outcome& outcome) {
            expectTrashedOrInPlace(outcome.before, outcome.after, outcome.succeeded, outcome.fault);
        });
}

TEST_F(FaultInjection, needsNeitherNewSystemCallsNorRenamesThatReplaceNothing) {
    const std::vector<std::string> old{"openat2:error=ENOSYS", "renameat2:error=EINVAL",
                                       "statx:error=ENOSYS"};
    run({trashing, {"linkat", "unlinkat", "renameat", "mkdirat"}, old}, [](const Outcome& outcome) {
        Snapshot after = outcome.after;
        // Killed between the two steps a file has both its names, which loses nothing, and the
        // place of a folder is taken by an empty one.
        const std::pair<const char*, const char*> halfway[] = {{"items/file", "Trash/files/file 2"},
                                                               {"items/link", "Trash/files/link"},
                                                               {"items/tree", "Trash/files/tree"}};
        for (const auto& [here, there] : halfway) {
            if (outcome.wasKilled && after.contains(here)) {
                after.erase(there);
            }
        }
        expectTrashedOrInPlace(outcome.before, after, outcome.succeeded, outcome.fault);
    });
}

TEST_F(FaultInjection, removesOnlyWhatIsInTheTreeAndSaysWhenItIsNotAllGone) {
    const auto check = [](const Outcome& outcome) {
        const auto isOfTree = [](const auto& entry) {
            return entry.first.starts_with("items/tree");
        };
        Snapshot outside = outcome.before;
        std::erase_if(outside, isOfTree);
        Snapshot rest = outcome.after;
        std::erase_if(rest, [&](const auto& entry) {
            const auto old = outcome.before.find(entry.first);
            return isOfTree(entry) && old != outcome.before.end() && old->second == entry.second;
        });
        EXPECT_EQ(rest, outside) << outcome.fault;
        if (!outcome.wasKilled) {
            EXPECT_EQ(outcome.succeeded, !outcome.after.contains("items/tree")) << outcome.fault;
        }
    };
    run({{"remove", "items/tree"}, {"openat", "openat2", "unlinkat", "getdents64", "read"}, {}},
        check);
    run({{"remove", "items/tree"},
         {"openat", "newfstatat", "unlinkat", "statx"},
         {"openat2:error=ENOSYS"}},
        check);
}

TEST_F(FaultInjection, movesAcrossFileSystemsWholeOrNotAtAll) {
    folder.emplace();
    other = std::make_unique<TemporaryFolder>(quickPlace());
    struct stat here {};
    struct stat there {};
    ASSERT_EQ(stat(folder->path().c_str(), &here) + stat(other->path().c_str(), &there), 0);
    if (here.st_dev == there.st_dev) {
        GTEST_SKIP() << "no second file system";
    }
    run({{"move", "items/tree", "OTHER/tree"},
         {"openat", "openat2", "mkdirat", "symlinkat", "copy_file_range", "pwrite64", "fchmod",
          "ftruncate", "getdents64", "syncfs", "pread64", "renameat2", "fsync", "unlinkat"},
         {}},
        [](const Outcome& outcome) {
            expectOutsideUntouched(outcome.before, outcome.after, outcome.fault);
            const Snapshot whole = itemIn(outcome.before, "items/tree", "item");
            const Snapshot source = itemIn(outcome.after, "items/tree", "item");
            const Snapshot moved = itemIn(outcome.elsewhere, "tree", "item");
            EXPECT_TRUE(moved.empty() || moved == whole) << outcome.fault;
            EXPECT_TRUE(source == whole || moved == whole) << outcome.fault;
            if (!outcome.wasKilled) {
                EXPECT_EQ(outcome.succeeded, moved == whole) << outcome.fault;
                EXPECT_EQ(outcome.elsewhere.size(), moved.size())
                    << outcome.fault << ": a copy stays";
                EXPECT_TRUE(outcome.succeeded || source == whole) << outcome.fault;
            }
        });
}

} // namespace korvane::testing
