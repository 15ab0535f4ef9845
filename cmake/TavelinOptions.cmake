# Warnings, sanitizers and build speed in one place; everything of ours links tavelin_options.
include_guard()

option(TAVELIN_SANITIZE_ADDRESS "build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(TAVELIN_SANITIZE_THREAD "build with ThreadSanitizer" OFF)
option(TAVELIN_FUZZERS "build the libFuzzer targets (clang only)" OFF)
set(TAVELIN_BUILD_TAG "" CACHE STRING "name of a build that is no release, for its window title and splash screen")

add_library(tavelin_options INTERFACE)
target_compile_options(tavelin_options INTERFACE -Wall -Wextra -Wshadow -Wconversion -Werror
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual>)
# What g++ does not count to these two: signs in C++, and names of the neighbours in a unity build.
target_compile_options(tavelin_options INTERFACE
    "$<$<COMPILE_LANG_AND_ID:CXX,Clang>:-Wno-sign-conversion;-Wno-shadow>")
target_compile_definitions(tavelin_options INTERFACE
    OPENSSL_API_COMPAT=30000 OPENSSL_NO_DEPRECATED
    QT_NO_CAST_FROM_BYTEARRAY QT_DISABLE_DEPRECATED_BEFORE=0x050F00
    $<$<NOT:$<CONFIG:Debug>>:_FORTIFY_SOURCE=2>)

if(TAVELIN_SANITIZE_ADDRESS)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -U_FORTIFY_SOURCE)
    add_link_options(-fsanitize=address,undefined)
    add_compile_definitions(QT_FORCE_ASSERTS) # release builds leave them out
    add_compile_definitions($<$<C_COMPILER_ID:Clang>:__SANITIZE_ADDRESS__>) # g++ says so by itself
elseif(TAVELIN_SANITIZE_THREAD)
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer -U_FORTIFY_SOURCE)
    add_link_options(-fsanitize=thread)
    add_compile_definitions(QT_FORCE_ASSERTS)
    add_compile_definitions($<$<C_COMPILER_ID:Clang>:__SANITIZE_THREAD__>)
endif()

# Test sources are compiled once and run for milliseconds, so they go without the optimiser, which takes longer for them
# than all else does under sanitizers. What they test does not.
set(TAVELIN_TEST_OPTIONS -O0 -U_FORTIFY_SOURCE)

# For what is made of Qt's classes: three checks of the undefined behaviour sanitizer that take a third of all the
# compiler's time there and find little. Where a null pointer is used the address sanitizer stops as well, and bytes of
# others are read, and cast, in the rooms without Qt, which have all checks.
set(TAVELIN_QT_OPTIONS "")
if(TAVELIN_SANITIZE_ADDRESS)
    set(TAVELIN_QT_OPTIONS -fno-sanitize=null,alignment,vptr)
endif()

# Unity builds: several sources are one for the compiler, which then reads headers and makes templates once. A file
# that shares a name of its unnamed namespace with a neighbour stays alone.
function(tavelin_compile_alone)
    set_source_files_properties(${ARGN} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# Tells a source the tag and the revision of a build that has a tag. Others get neither, and so each commit compiles no
# more than it changed.
set(TAVELIN_REVISION "")
if(TAVELIN_BUILD_TAG)
    execute_process(COMMAND git -C ${PROJECT_SOURCE_DIR} rev-parse HEAD OUTPUT_VARIABLE TAVELIN_REVISION
        OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    if(NOT TAVELIN_REVISION MATCHES "^[0-9a-f]+$")
        message(FATAL_ERROR "a build with a tag needs its sources in a git repository, for their revision")
    endif()
endif()
function(tavelin_tell_build)
    if(TAVELIN_BUILD_TAG)
        set_property(SOURCE ${ARGN} APPEND PROPERTY COMPILE_DEFINITIONS
            TAVELIN_BUILD_TAG="${TAVELIN_BUILD_TAG}" TAVELIN_REVISION="${TAVELIN_REVISION}")
    endif()
endfunction()

if(CMAKE_UNITY_BUILD)
    # what stands in a source stands in an included file here, where g++ finds unnamed namespaces strange
    add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-subobject-linkage>)
endif()

if(TAVELIN_FUZZERS)
    # all of our code reports its coverage; its runtime comes with the address sanitizer
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

find_program(TAVELIN_CCACHE ccache)
if(TAVELIN_CCACHE)
    set(CMAKE_C_COMPILER_LAUNCHER ${TAVELIN_CCACHE})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${TAVELIN_CCACHE})
    # let ccache see through precompiled headers
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>
        "$<$<COMPILE_LANG_AND_ID:CXX,Clang>:SHELL:-Xclang -fno-pch-timestamp>")
endif()

find_program(TAVELIN_LLD ld.lld)
if(TAVELIN_LLD)
    add_link_options(-fuse-ld=lld)
endif()
