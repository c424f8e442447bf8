# Link-time optimisation of the engine in optimised builds with GCC.
#
# Building a card calls across the engine's files on every node and every
# member (a key's property, a kind's slot, a value's kind), and inlining
# across files takes about 3% off the engine's own work. The engine's objects
# carry both forms (fat LTO objects): libmero.so and the benchmarks are
# optimised whole at their link, while the tests link the plain code and pay
# nothing for it. Sanitizer and fuzz builds, and clang, stay as they are.
include(CheckIPOSupported)

set(MERO_WHOLE_PROGRAM OFF)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo)$"
   AND NOT MERO_SANITIZE AND NOT MERO_FUZZ)
  check_ipo_supported(RESULT MERO_WHOLE_PROGRAM OUTPUT _mero_ipo_output LANGUAGES CXX)
endif()

# The engine's own library: fat objects, so that a plain link still works.
function(mero_whole_program_objects target)
  if(MERO_WHOLE_PROGRAM)
    set_property(TARGET ${target} PROPERTY INTERPROCEDURAL_OPTIMIZATION ON)
    target_compile_options(${target} PRIVATE -ffat-lto-objects)
  endif()
endfunction()

# A binary linked from the engine's objects and optimised whole.
function(mero_whole_program_link target)
  if(MERO_WHOLE_PROGRAM)
    set_property(TARGET ${target} PROPERTY INTERPROCEDURAL_OPTIMIZATION ON)
  endif()
endfunction()
