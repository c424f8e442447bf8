# Warnings are errors on our own code (never on Yoga's).
function(mero_warnings target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wimplicit-fallthrough -Werror)
  # GCC 12 at -O3 (a Release build) warns of overlapping copies inside
  # std::string's own operator+, falsely: a known fault of that compiler,
  # fixed in 13. Kept as a warning there, so that a Release build builds.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-error=restrict)
  endif()
endfunction()
