# Provides the imported target Yoga::yogacore.
#
# Yoga is not kept in this repository. The first configure downloads the pinned
# npm package (cmake/yoga.lock), verifies its integrity, extracts only Yoga's
# C++ sources into the cache and builds them there as a static library, once
# per toolchain. Later configures, clean builds and other build folders reuse
# the cache and need no network.

set(MERO_CACHE_DIR "" CACHE PATH "where downloaded and prebuilt dependencies are kept")
if(NOT MERO_CACHE_DIR)
  if(DEFINED ENV{MERO_CACHE_DIR})
    set(MERO_CACHE_DIR "$ENV{MERO_CACHE_DIR}")
  elseif(DEFINED ENV{XDG_CACHE_HOME})
    set(MERO_CACHE_DIR "$ENV{XDG_CACHE_HOME}/mero")
  else()
    set(MERO_CACHE_DIR "$ENV{HOME}/.cache/mero")
  endif()
endif()

file(STRINGS "${PROJECT_SOURCE_DIR}/cmake/yoga.lock" _yoga_package REGEX "^YOGA_NPM_PACKAGE=")
string(REPLACE "YOGA_NPM_PACKAGE=" "" _yoga_package "${_yoga_package}")
string(REPLACE "@" "-" _yoga_tag "${_yoga_package}")
set(YOGA_CACHE "${MERO_CACHE_DIR}/yoga/${_yoga_tag}")
set(YOGA_SOURCE_ROOT "${YOGA_CACHE}/src")

if(NOT EXISTS "${YOGA_SOURCE_ROOT}/yoga/Yoga.h")
  message(STATUS "Yoga: fetching ${_yoga_package} into ${YOGA_CACHE}")
  execute_process(
    COMMAND bash "${PROJECT_SOURCE_DIR}/tools/fetch-yoga.sh" "${YOGA_SOURCE_ROOT}"
    RESULT_VARIABLE _yoga_fetch_result)
  if(NOT _yoga_fetch_result EQUAL 0)
    message(FATAL_ERROR "Yoga could not be fetched (see the lines above). "
                        "Fix the cause and configure again to retry.")
  endif()
endif()

# One prebuilt library per toolchain: the host compiler's and, say, the
# Android NDK's must not be mixed.
set(_yoga_abi "${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}-${CMAKE_CXX_COMPILER_ID}-${CMAKE_CXX_COMPILER_VERSION}")
if(ANDROID_ABI)
  set(_yoga_abi "${_yoga_abi}-${ANDROID_ABI}-${ANDROID_PLATFORM}")
endif()
# "nofma": built without fused multiply-add (cmake/yoga/CMakeLists.txt);
# libraries built before that are not reused.
set(YOGA_PREFIX "${YOGA_CACHE}/lib-${_yoga_abi}-nofma")
set(YOGA_LIBRARY "${YOGA_PREFIX}/lib/libyogacore.a")

if(NOT EXISTS "${YOGA_LIBRARY}")
  message(STATUS "Yoga: building the static library into ${YOGA_PREFIX}")
  set(_yoga_build "${YOGA_CACHE}/build-${_yoga_abi}")
  file(REMOVE_RECURSE "${_yoga_build}")
  set(_yoga_args
    -S "${PROJECT_SOURCE_DIR}/cmake/yoga" -B "${_yoga_build}"
    -DYOGA_SOURCE_ROOT=${YOGA_SOURCE_ROOT}
    -DCMAKE_INSTALL_PREFIX=${YOGA_PREFIX}
    -DCMAKE_BUILD_TYPE=Release
    -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER})
  if(CMAKE_GENERATOR)
    list(APPEND _yoga_args -G "${CMAKE_GENERATOR}")
  endif()
  if(CMAKE_TOOLCHAIN_FILE)
    list(APPEND _yoga_args -DCMAKE_TOOLCHAIN_FILE=${CMAKE_TOOLCHAIN_FILE})
    foreach(_var ANDROID_ABI ANDROID_PLATFORM ANDROID_STL)
      if(DEFINED ${_var})
        list(APPEND _yoga_args -D${_var}=${${_var}})
      endif()
    endforeach()
  endif()
  execute_process(COMMAND ${CMAKE_COMMAND} ${_yoga_args}
                  OUTPUT_QUIET RESULT_VARIABLE _yoga_result)
  if(_yoga_result EQUAL 0)
    execute_process(COMMAND ${CMAKE_COMMAND} --build "${_yoga_build}" --target install -j 2
                    OUTPUT_QUIET RESULT_VARIABLE _yoga_result)
  endif()
  if(NOT _yoga_result EQUAL 0)
    file(REMOVE_RECURSE "${YOGA_PREFIX}")
    message(FATAL_ERROR "Building Yoga in ${_yoga_build} failed. "
                        "Delete ${YOGA_CACHE} and configure again to retry.")
  endif()
  file(REMOVE_RECURSE "${_yoga_build}")
endif()

add_library(Yoga::yogacore STATIC IMPORTED GLOBAL)
set_target_properties(Yoga::yogacore PROPERTIES
  IMPORTED_LOCATION "${YOGA_LIBRARY}"
  INTERFACE_SYSTEM_INCLUDE_DIRECTORIES "${YOGA_SOURCE_ROOT}"
  INTERFACE_INCLUDE_DIRECTORIES "${YOGA_SOURCE_ROOT}")
if(ANDROID)
  set_property(TARGET Yoga::yogacore APPEND PROPERTY INTERFACE_LINK_LIBRARIES log)
endif()
