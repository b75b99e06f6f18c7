// Swaps bundles in a process of its own, so that a test can make its system calls fail and kill it:
// `RUNNING APP [two-steps]`.

#include "Korvane/updater/BundleSwap.h"
#include "KorvaneCore/foundation/FileError.h"

#include <cerrno>
#include <cstdio>

int main(int argc, char** argv) {
    if (argc < 3) {
        return 2;
    }
    using korvane::FileURL;
    try {
        korvane::BundleSwap swap(
            FileURL{argv[1]}, FileURL{argv[2]}, korvane::FileManager::standard(),
            argc == 3 ? korvane::exchangeItems
                      : [](const FileURL&, const FileURL&) noexcept { return ENOSYS; });
        swap.perform();
        return 0;
    } catch (const korvane::FileError& error) {
        std::fprintf(stderr, "%s\n", error.reason().c_str());
        return 1;
    }
}
