# Precompiled headers. Making one takes seconds, so there is one for each set of flags and not for each target;
# g++ says when one does not fit a source's flags and macros (-Winvalid-pch), which is an error here.
# There is none of the standard headers alone: it would save 0.3 s a source, and lets g++ 12 warn of strings that are
# none of its business (array-bounds within std::string).
include_guard()

file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/precompiled.cpp CONTENT "") # CMake wants a source in each target

# _tavelin_add_precompiled(<name> <header> [LINK ...] [OPTIONS ...]): precompiled_<name> of precompiled/<header>.h
function(_tavelin_add_precompiled name header)
    cmake_parse_arguments(ARG "" "" "LINK;OPTIONS" ${ARGN})
    add_library(precompiled_${name} OBJECT EXCLUDE_FROM_ALL ${PROJECT_BINARY_DIR}/precompiled.cpp)
    target_link_libraries(precompiled_${name} PRIVATE ${ARG_LINK} tavelin_options)
    target_include_directories(precompiled_${name} PRIVATE ${PROJECT_SOURCE_DIR})
    target_compile_options(precompiled_${name} PRIVATE ${ARG_OPTIONS})
    target_precompile_headers(precompiled_${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/precompiled/${header}.h)
endfunction()

_tavelin_add_precompiled(qt qt LINK Qt5::Widgets OPTIONS ${TAVELIN_QT_OPTIONS})
_tavelin_add_precompiled(test test LINK GTest::gtest GTest::gmock OPTIONS ${TAVELIN_TEST_OPTIONS})
_tavelin_add_precompiled(guitest guitest LINK Qt5::Widgets Qt5::Test GTest::gtest GTest::gmock
    OPTIONS ${TAVELIN_TEST_OPTIONS} ${TAVELIN_QT_OPTIONS})

# tavelin_use_precompiled(<target> qt|test|guitest)
function(tavelin_use_precompiled target name)
    target_precompile_headers(${target} REUSE_FROM precompiled_${name})
    if(NOT name STREQUAL "test")
        target_compile_options(${target} PRIVATE ${TAVELIN_QT_OPTIONS})
    endif()
endfunction()
