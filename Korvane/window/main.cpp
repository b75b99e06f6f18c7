#include "Korvane/tools/Services.h"
#include "Korvane/window/shell/WindowApplication.h"
#include "KorvaneCore/platform/UserFolders.h"

#include <QtPlugin>
#include <cstdio>

Q_IMPORT_PLUGIN(Korvane_ThemePlugin)
Q_IMPORT_PLUGIN(Korvane_StylePlugin)
Q_IMPORT_PLUGIN(Korvane_WindowPlugin)

int main(int argc, char** argv) {
    if (!korvane::WindowApplication::hasDisplay()) {
        std::fputs("korvane: there is no display to open a window on; everything it does, the "
                   "command does too\n",
                   stderr);
        return 1;
    }
    korvane::WindowApplication::prepare();
    korvane::Services services(korvane::UserFolders::current());
    korvane::WindowApplication application(argc, argv);
    return application.run(services);
}
