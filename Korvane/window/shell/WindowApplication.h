#pragma once

#include "Korvane/tools/Services.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <memory>

namespace korvane {

class UpdateModel;
class WindowContext;

/// The program around the window: its names, renderer, style and engine. One a process.
class WindowApplication : public QGuiApplication {
    Q_OBJECT

  public:
    /// Whether the environment names anything that a window could be shown on. Without it the
    /// toolkit ends the process.
    [[nodiscard]] static bool hasDisplay();

    /// What must be decided before the object is made: the renderer and the style.
    static void prepare();

    WindowApplication(int& argc, char** argv);
    ~WindowApplication() override;

    /// Loads the window over a user's stores; null when its QML does not load. `services` must
    /// outlive this object.
    QQuickWindow* open(Services& services, const QVariantMap& properties = {},
                       std::unique_ptr<UpdateModel> updates = nullptr);

    /// Opens the window and runs until it is closed. Answers the exit code of the process.
    int run(Services& services);

    /// Closes what `open` opened.
    void closeAll();

    [[nodiscard]] WindowContext& context() { return *context_; }
    [[nodiscard]] QQmlApplicationEngine& engine() { return *engine_; }

  private:
    std::unique_ptr<WindowContext> context_;
    std::unique_ptr<QQmlApplicationEngine> engine_;
};

} // namespace korvane
