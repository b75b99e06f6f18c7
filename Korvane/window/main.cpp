#include "Korvane/tools/Services.h"
#include "Korvane/window/shell/WindowApplication.h"
#include "KorvaneCore/platform/UserFolders.h"

#include <QtPlugin>

Q_IMPORT_PLUGIN(Korvane_ThemePlugin)
Q_IMPORT_PLUGIN(Korvane_StylePlugin)
Q_IMPORT_PLUGIN(Korvane_WindowPlugin)

int main(int argc, char** argv) {
    korvane::WindowApplication::prepare();
    korvane::WindowApplication application(argc, argv);
    korvane::Services services(korvane::UserFolders::current());
    return application.run(services);
}
