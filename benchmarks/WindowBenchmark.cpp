// What the window costs the eye: `korvane-window-benchmark [ROWS [SCAN-FOLDER]]` prints a line a
// figure. Runs with whatever renderer and platform Qt is told to use.

#include "Korvane/tools/Services.h"
#include "Korvane/window/shell/WindowApplication.h"
#include "Korvane/window/shell/WindowContext.h"

#include <QElapsedTimer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>
#include <QtPlugin>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

Q_IMPORT_PLUGIN(Korvane_ThemePlugin)
Q_IMPORT_PLUGIN(Korvane_StylePlugin)
Q_IMPORT_PLUGIN(Korvane_WindowPlugin)

namespace korvane {
namespace {

double milliseconds(const QElapsedTimer& clock) {
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

double processorMilliseconds() {
    std::timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

void print(const char* what, std::vector<double> times) {
    std::sort(times.begin(), times.end());
    std::printf("%-34s median %7.2f ms   95 %% %7.2f ms   most %7.2f ms   (%zu)\n", what,
                times[times.size() / 2], times[times.size() * 95 / 100], times.back(),
                times.size());
    std::fflush(stdout);
}

void waitUntil(const std::function<bool()>& isDone) {
    while (!isDone()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
}

/// A saved result of so many items, as a scan of a large home would leave it.
void saveResult(Services& services, int rows) {
    ScanResult result;
    result.scannerID = "cache-cleaner";
    for (int row = 0; row < rows; ++row) {
        ScanItem item;
        item.url =
            services.home().appending("Library/Caches/org.vendor.app" + std::to_string(row % 97) +
                                      "/entry-" + std::to_string(row * 7919 % rows));
        item.sizeBytes = 1000 + static_cast<std::int64_t>(row) * 7919 % 9'000'000;
        item.category = "Group " + std::to_string(row % 6);
        item.heuristicID = "cache.user";
        item.lastModified = Date::fromUnixSeconds(1'700'000'000 + row);
        result.items.push_back(std::move(item));
    }
    services.scanCache().save(result);
}

QQuickItem* findItem(QQuickItem* root, const QString& name) {
    if (root->objectName() == name) {
        return root;
    }
    for (QQuickItem* child : root->childItems()) {
        if (QQuickItem* found = findItem(child, name)) {
            return found;
        }
    }
    return nullptr;
}

/// The longest the interface thread was away while `isDone` came true.
std::vector<double> gapsUntil(const std::function<bool()>& isDone) {
    std::vector<double> gaps;
    QElapsedTimer clock;
    QTimer timer;
    timer.setInterval(1);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        gaps.push_back(milliseconds(clock));
        clock.restart();
    });
    clock.start();
    timer.start();
    waitUntil(isDone);
    gaps.push_back(milliseconds(clock));
    return gaps;
}

void scroll(QQuickWindow& window, QQuickItem& list, double step, const char* what) {
    std::vector<double> frames;
    std::vector<double> processor;
    constexpr int count = 300;
    list.setProperty("contentY", 0);
    for (int frame = 0; frame < count; ++frame) {
        bool swapped = false;
        const auto connection = QObject::connect(&window, &QQuickWindow::frameSwapped, &window,
                                                 [&] { swapped = true; });
        QElapsedTimer clock;
        clock.start();
        const double before = processorMilliseconds();
        list.setProperty("contentY", list.property("contentY").toDouble() + step);
        window.requestUpdate();
        waitUntil([&] { return swapped; });
        QObject::disconnect(connection);
        frames.push_back(milliseconds(clock));
        processor.push_back(processorMilliseconds() - before);
    }
    print(what, frames);
    print("  of these on the processor", processor);
}

int run(WindowApplication& application, int rows, const char* scanFolder) {
    Services services(UserFolders::current());
    saveResult(services, rows);
    QQuickWindow* window =
        application.open(services, {{QStringLiteral("startPage"), QStringLiteral("cache-cleaner")},
                                    {QStringLiteral("startSize"), QSize(1180, 760)}});
    if (window == nullptr) {
        return 1;
    }
    ToolModel* tool = application.context().tool(QStringLiteral("cache-cleaner"));
    tool->showPrevious();
    print("stalls while the result is read",
          gapsUntil([&] { return tool->phase() == ToolModel::Results; }));
    std::printf("%d rows\n", tool->results()->rowCount());
    waitUntil([&] { return findItem(window->contentItem(), QStringLiteral("resultList")); });
    QQuickItem* list = findItem(window->contentItem(), QStringLiteral("resultList"));
    scroll(*window, *list, 60, "a frame of scrolling");
    scroll(*window, *list, 3901, "a frame of leaping");

    std::vector<double> answers;
    for (const char* text : {"e", "en", "ent", "entr", "entry", "entry-9", "entry-99", "app4",
                             "Group 3", "nothing", ""}) {
        QElapsedTimer clock;
        clock.start();
        tool->results()->setFilter(QString::fromLatin1(text));
        answers.push_back(milliseconds(clock));
    }
    print("a key press in the search", answers);
    std::vector<double> sorts;
    for (const auto order : {ResultModel::ByName, ResultModel::ByDate, ResultModel::ByRisk,
                             ResultModel::BySize, ResultModel::BySize}) {
        QElapsedTimer clock;
        clock.start();
        tool->results()->sortBy(order);
        sorts.push_back(milliseconds(clock));
    }
    print("a click on a column", sorts);
    std::vector<double> ticks;
    for (int turn = 0; turn < 20; ++turn) {
        QElapsedTimer clock;
        clock.start();
        tool->results()->toggle(turn % 2);
        ticks.push_back(milliseconds(clock));
    }
    print("a tick of a row or a group", ticks);

    if (scanFolder != nullptr) {
        ToolModel* large = application.context().tool(QStringLiteral("large-files"));
        large->setFolder(QUrl::fromLocalFile(QString::fromLocal8Bit(scanFolder)));
        large->scan();
        print("stalls while large files are sought",
              gapsUntil([&] { return large->phase() == ToolModel::Results; }));
        ToolModel* smart = application.context().tool(QStringLiteral("smart-scan"));
        smart->scan();
        print("stalls during a Smart Scan",
              gapsUntil([&] { return smart->phase() == ToolModel::Results; }));
    }
    application.closeAll();
    return 0;
}

} // namespace
} // namespace korvane

int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    // Its own user, so that nobody's results are replaced; a home to scan may be named.
    const fs::path own = fs::temp_directory_path() / ("korvane-window-" + std::to_string(getpid()));
    fs::create_directories(own);
    qputenv("XDG_DATA_HOME", (own / "data").c_str());
    qputenv("XDG_CONFIG_HOME", (own / "config").c_str());
    if (argc > 2) {
        qputenv("HOME", argv[2]);
    }
    korvane::WindowApplication::prepare();
    korvane::WindowApplication application(argc, argv);
    const int status = korvane::run(application, argc > 1 ? std::atoi(argv[1]) : 100'000,
                                    argc > 2 ? argv[2] : nullptr);
    fs::remove_all(own);
    return status;
}
