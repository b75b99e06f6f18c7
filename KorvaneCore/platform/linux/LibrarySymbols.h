#pragma once

#include <dlfcn.h>

namespace korvane {

/// Finds functions in a loaded library and in those that it was linked with.
class LibrarySymbols {
  public:
    explicit LibrarySymbols(void* library) : library_(library) {}

    template <typename Function>
    void find(const char* name, Function& function) {
        function = reinterpret_cast<Function>(dlsym(library_, name));
        complete_ = complete_ && function != nullptr;
    }
    /// Whether everything asked for was found.
    [[nodiscard]] bool complete() const { return complete_; }

  private:
    void* library_;
    bool complete_ = true;
};

} // namespace korvane
