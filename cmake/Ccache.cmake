# Uses ccache where it is installed. Precompiled headers need the two sloppiness settings to be
# cached at all.
find_program(KORVANE_CCACHE ccache)
if(KORVANE_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros "${KORVANE_CCACHE}")
endif()
