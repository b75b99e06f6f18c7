#include "Korvane/command/CommandLine.h"
#include "Korvane/command/Interrupt.h"
#include "Korvane/tools/Services.h"
#include "KorvaneCore/platform/UserFolders.h"

#include <string>
#include <vector>

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    const korvane::Interrupt interrupt;
    korvane::Services services(korvane::UserFolders::current());
    return korvane::runCommandLine(arguments, services);
}
