# How the folders of the house become libraries, programs, tests and fuzz targets.

add_library(solvane_options INTERFACE)
target_compile_options(solvane_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Werror)
target_include_directories(solvane_options INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_definitions(solvane_options INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY)

option(SOLVANE_SANITIZE "Build with address and undefined behaviour sanitizers" OFF)
if(SOLVANE_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU") # sees uninitialised values in sanitized containers that are not there
        add_compile_options(-Wno-maybe-uninitialized)
    endif()
    add_link_options(-fsanitize=address,undefined)
endif()

find_program(SOLVANE_CCACHE ccache)
if(SOLVANE_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${SOLVANE_CCACHE})
endif()

# solvane_module(NAME SOURCES a.cpp ... [USES other_module ...] [LIBRARIES external ...] [PRECOMPILE header ...])
# makes the static library solvane_NAME. USES names modules below this one; their headers become usable.
function(solvane_module name)
    cmake_parse_arguments(ARG "" "" "SOURCES;USES;LIBRARIES;PRECOMPILE" ${ARGN})
    add_library(solvane_${name} STATIC ${ARG_SOURCES})
    target_link_libraries(solvane_${name} PRIVATE solvane_options)
    list(TRANSFORM ARG_USES PREPEND solvane_)
    target_link_libraries(solvane_${name} PUBLIC ${ARG_USES})
    target_link_libraries(solvane_${name} PRIVATE ${ARG_LIBRARIES})
    target_include_directories(solvane_${name} PUBLIC ${CMAKE_SOURCE_DIR})
    if(ARG_PRECOMPILE)
        target_precompile_headers(solvane_${name} PRIVATE ${ARG_PRECOMPILE})
    endif()
endfunction()

# solvane_test(NAME SOURCES a.cpp ... [USES module ...] [LIBRARIES external ...])
# makes the GoogleTest program NAME_tests and registers each of its cases with CTest. Tests see their data
# under SOLVANE_TEST_DATA (tests/data in the source tree).
function(solvane_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;USES;LIBRARIES" ${ARGN})
    add_executable(${name}_tests ${ARG_SOURCES})
    list(TRANSFORM ARG_USES PREPEND solvane_)
    target_link_libraries(${name}_tests PRIVATE solvane_options ${ARG_USES} ${ARG_LIBRARIES}
        GTest::gtest GTest::gmock GTest::gtest_main)
    target_compile_definitions(${name}_tests PRIVATE
        SOLVANE_TEST_DATA="${CMAKE_SOURCE_DIR}/tests/data" SOLVANE_BUILD_DIR="${CMAKE_BINARY_DIR}")
    set_target_properties(${name}_tests PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    gtest_discover_tests(${name}_tests DISCOVERY_MODE PRE_TEST PROPERTIES
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8" TIMEOUT 300)
endfunction()

# solvane_fuzz(NAME SOURCES a.cpp [USES module ...]) makes the libFuzzer program NAME_fuzz; its seeds lie in
# fuzz/corpus/NAME and its dictionary, where it has one, is fuzz/NAME.dict.
function(solvane_fuzz name)
    cmake_parse_arguments(ARG "" "" "SOURCES;USES;LIBRARIES" ${ARGN})
    add_executable(${name}_fuzz ${ARG_SOURCES})
    list(TRANSFORM ARG_USES PREPEND solvane_)
    target_link_libraries(${name}_fuzz PRIVATE solvane_options ${ARG_USES} ${ARG_LIBRARIES})
    target_link_options(${name}_fuzz PRIVATE -fsanitize=fuzzer)
    set_target_properties(${name}_fuzz PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz)
endfunction()
