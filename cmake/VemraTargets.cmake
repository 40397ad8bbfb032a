# What the targets of all rooms share.

add_library(vemra_options INTERFACE)
target_compile_options(vemra_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
# GCC 12 takes `"text" + std::string` for an overlapping copy when it inlines at -O3 (its bug 105651).
target_compile_options(vemra_options INTERFACE $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:-Wno-restrict>)
target_include_directories(vemra_options INTERFACE ${PROJECT_SOURCE_DIR})

# vemra_library(NAME SOURCES ... [LIBS ...]): a static library of one room.
function(vemra_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC ${ARG_LIBS} PRIVATE $<BUILD_INTERFACE:vemra_options>)
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
endfunction()

set(VEMRA_LSAN_OPTIONS
    "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/leaks_of_others.txt:print_suppressions=0")

# vemra_test(NAME SOURCES ... [LIBS ...]): a test program under CTest.
function(vemra_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} GTest::gmock GTest::gtest_main vemra_options)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(${name} PRIVATE VEMRA_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                                             VEMRA_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}"
                                             VEMRA_LIB_DIR="${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
  set(environment "")
  if(VEMRA_SANITIZE)
    set(environment ENVIRONMENT ${VEMRA_LSAN_OPTIONS})
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300 ${environment})
endfunction()
