#include "KorvaneCore/platform/Libcurl.h"

#include "KorvaneCore/platform/linux/LibrarySymbols.h"

#include <optional>

// With these names as macros the compiler checks the arguments of calls; here they are only names.
#undef curl_easy_setopt
#undef curl_easy_getinfo

namespace korvane {

namespace {

std::optional<Libcurl> load() {
    void* library = dlopen("libcurl.so.4", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        return std::nullopt;
    }
    LibrarySymbols symbols(library);
    Libcurl api;
    symbols.find("curl_global_init", api.globalInit);
    symbols.find("curl_easy_init", api.easyInit);
    symbols.find("curl_easy_setopt", api.easySetopt);
    symbols.find("curl_easy_getinfo", api.easyGetinfo);
    symbols.find("curl_easy_perform", api.easyPerform);
    symbols.find("curl_easy_cleanup", api.easyCleanup);
    if (!symbols.complete() || api.globalInit(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
        return std::nullopt;
    }
    return api;
}

} // namespace

const Libcurl* Libcurl::shared() {
    static const std::optional<Libcurl> api = load();
    return api ? &*api : nullptr;
}

} // namespace korvane
