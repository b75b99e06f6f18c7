# One place for what comes from outside; docs/dependencies.md says why each is here.
find_package(Threads REQUIRED)
find_package(fmt REQUIRED)
find_package(nlohmann_json REQUIRED)
find_package(OpenSSL 3 REQUIRED COMPONENTS Crypto)
find_package(ICU REQUIRED COMPONENTS uc)
find_package(CLI11 REQUIRED)
find_package(PkgConfig REQUIRED)
find_package(simdjson REQUIRED)
# Only the headers are used: the library itself is loaded when the first secret is asked for.
pkg_check_modules(libsecret REQUIRED libsecret-1)
# The same holds for libvips and libheif and the first picture.
pkg_check_modules(libvips REQUIRED IMPORTED_TARGET vips)
pkg_check_modules(libheif REQUIRED libheif)
# And for these two and the first update. Their headers, as libheif's, are on the compiler's own
# path.
pkg_check_modules(libcurl REQUIRED libcurl)
pkg_check_modules(libarchive REQUIRED libarchive)
