#pragma once

#include <curl/curl.h>

namespace korvane {

/// What is used of libcurl. Loaded when the first address is asked: it brings thirty libraries, and
/// most runs of the program need none of them.
struct Libcurl {
    decltype(&::curl_global_init) globalInit = nullptr;
    decltype(&::curl_easy_init) easyInit = nullptr;
    decltype(&::curl_easy_setopt) easySetopt = nullptr;
    decltype(&::curl_easy_getinfo) easyGetinfo = nullptr;
    decltype(&::curl_easy_perform) easyPerform = nullptr;
    decltype(&::curl_easy_cleanup) easyCleanup = nullptr;

    /// Null when the library is not installed. Any thread; never unloaded.
    [[nodiscard]] static const Libcurl* shared();
};

} // namespace korvane
