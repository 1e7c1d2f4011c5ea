# Functions that give every library, plugin, program and test of the project the same shape.
include(GenerateExportHeader)

# Warnings and sanitizers that all of the project's own code is compiled with.
add_library(vyr_options INTERFACE)
target_compile_options(
  vyr_options
  INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wcast-qual -Wformat=2 -Wundef -Werror
            $<$<CONFIG:Release>:-fno-plt>)
# Repeatable physics needs one way of rounding: no contraction of a*b+c, whatever the processor offers.
target_compile_options(vyr_options INTERFACE -ffp-contract=off)
if(VYR_SANITIZE)
  # Enumerations come from scripts with any value; the compiler keeps what their integers keep (no -fstrict-enums).
  # The tests' own code is left as it is: the checks are for the product, and test macros take longest to compile.
  target_compile_options(
    vyr_options
    INTERFACE $<$<NOT:$<BOOL:$<TARGET_PROPERTY:VYR_TEST_CODE>>>:-fsanitize=address,undefined
              -fno-sanitize-recover=undefined -fno-omit-frame-pointer -fno-sanitize=enum>)
  # The instrumented code of the standard library's regular expressions looks uninitialised to the compiler; it is not.
  target_compile_options(vyr_options INTERFACE -Wno-maybe-uninitialized)
  target_link_options(vyr_options INTERFACE -fsanitize=address,undefined)
  # Settings belong to programs only; libraries share those of the program that loads them.
  target_sources(
    vyr_options
    INTERFACE $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${CMAKE_CURRENT_LIST_DIR}/sanitizerOptions.cpp>)
endif()

# Counts the executed lines and branches of a target's sources, where that is asked for.
function(vyr_count_lines target)
  if(VYR_COVERAGE)
    target_compile_options(${target} PRIVATE -O0 --coverage -fprofile-update=atomic)
  endif()
endfunction()

# Places an own library beside the others, with its export header, public headers and install rules.
#   vyr_add_library(<name> SOURCES <file>... [PUBLIC <target>...] [PRIVATE <target>...])
function(vyr_add_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(${name} SHARED ${ARG_SOURCES})
  add_library(Vyr::${name} ALIAS ${name})
  string(TOUPPER ${name} upper)
  generate_export_header(${name} BASE_NAME ${upper} EXPORT_MACRO_NAME ${upper}_EXPORT EXPORT_FILE_NAME
                         ${PROJECT_BINARY_DIR}/include/${name}/export.h)
  target_include_directories(
    ${name} PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
                   $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
    PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/src)
  target_compile_features(${name} PUBLIC cxx_std_17)
  target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE} $<BUILD_INTERFACE:vyr_options>)
  if(NOT VYR_SANITIZE)
    target_link_options(${name} PRIVATE -Wl,--no-undefined)
  endif()
  set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN" BUILD_RPATH "$ORIGIN")
  install(TARGETS ${name} EXPORT VyrTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  install(FILES ${PROJECT_BINARY_DIR}/include/${name}/export.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${name})
endfunction()

# Adds a GoogleTest program and registers each of its tests with CTest.
#   vyr_add_test(<name> SOURCES <file>... LIBRARIES <target>... [LABELS <label>...] [LEAKS])
# LEAKS: under the sanitizers the tests also fail for memory that nobody frees. Left out where that says nothing: programs
# that unload plugins and drivers before the report, and tests that keep references on purpose.
function(vyr_add_test name)
  cmake_parse_arguments(ARG "LEAKS" "" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  set(environment "")
  if(ARG_LEAKS AND VYR_SANITIZE)
    set(environment ENVIRONMENT "ASAN_OPTIONS=detect_leaks=1")
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} GTest::gtest GTest::gmock GTest::gtest_main vyr_options)
  target_compile_definitions(${name} PRIVATE VYR_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                                             VYR_BINARY_DIR="${PROJECT_BINARY_DIR}")
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests VYR_TEST_CODE ON)
  target_compile_options(${name} PRIVATE -O0)
  gtest_discover_tests(
    ${name}
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR}
    DISCOVERY_MODE PRE_TEST
    PROPERTIES LABELS "${ARG_LABELS}" TIMEOUT 300 ${environment})
endfunction()
