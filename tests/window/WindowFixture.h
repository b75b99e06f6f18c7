#pragma once

#include "Korvane/tools/Services.h"
#include "Korvane/window/shell/WindowApplication.h"
#include "Korvane/window/shell/WindowContext.h"
#include "tests/support/TemporaryFolder.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QtTest>
#include <memory>

namespace korvane::testing {

/// The whole window over the sample home folder, laid out anew for each test and driven by keys and
/// the mouse. Any warning of the toolkit fails the test.
class WindowFixture : public QObject {
    Q_OBJECT

  public:
    WindowFixture(WindowApplication& application, const TemporaryFolder& folder)
        : application_(application), folder_(folder) {}

    /// The main function of a program with the tests of `Tests`, a subclass.
    template <typename Tests>
    static int main(int argc, char** argv) {
        const TemporaryFolder folder;
        prepare(folder);
        WindowApplication application(argc, argv);
        QAccessible::setActive(true);
        Tests tests(application, folder);
        return QTest::qExec(&tests, argc, argv);
    }

  private slots:
    void init();
    void cleanup();

  protected:
    static constexpr int patience = 30'000; // milliseconds

    /// What is visible under an object name; null when nothing is.
    [[nodiscard]] QQuickItem* item(const char* name) const;
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;
    void click(QQuickItem* item) const;
    void open(const char* id) const;
    [[nodiscard]] QString page() const;
    [[nodiscard]] ToolModel* tool(const char* id) const;
    /// Fails when there is nothing to see; saved where KORVANE_PICTURES says.
    void picture(const QString& name) const;

    [[nodiscard]] WindowApplication& application() const { return application_; }
    [[nodiscard]] WindowContext& context() const { return application_.context(); }
    [[nodiscard]] Services& services() const { return *services_; }
    [[nodiscard]] const TemporaryFolder& folder() const { return folder_; }
    [[nodiscard]] QQuickWindow* window() const { return window_; }
    void show(QQuickWindow* window) { window_ = window; }

  private:
    static void prepare(const TemporaryFolder& folder);

    WindowApplication& application_;
    const TemporaryFolder& folder_;
    std::unique_ptr<Services> services_;
    QQuickWindow* window_ = nullptr;
};

} // namespace korvane::testing
