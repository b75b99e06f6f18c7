# What every target of the project shares. Warnings stay private, so that nothing leaks into a
# program that links the core.
add_library(KorvaneOptions INTERFACE)
target_include_directories(KorvaneOptions INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_definitions(KorvaneOptions INTERFACE _FILE_OFFSET_BITS=64)
if(KORVANE_SANITIZERS)
  target_compile_options(KorvaneOptions INTERFACE
    -fsanitize=${KORVANE_SANITIZERS} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(KorvaneOptions INTERFACE -fsanitize=${KORVANE_SANITIZERS})
endif()

function(korvane_target target)
  target_link_libraries(${target} PUBLIC KorvaneOptions)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
  if(KORVANE_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      # At -O3 g++ 12 sees these in the inlined code of std::string and std::vector, where they are
      # not; they are shown and do not fail the build.
      target_compile_options(${target} PRIVATE -Wno-error=array-bounds -Wno-error=restrict
        -Wno-error=stringop-overflow -Wno-error=stringop-overread -Wno-error=maybe-uninitialized
        -Wno-error=dangling-pointer -Wno-error=free-nonheap-object)
    endif()
  endif()
endfunction()
