# Build settings shared by every Vellum target, carried by one interface target instead of global
# flags: warnings, and the sanitizer choice of VELLUM_SANITIZE.
add_library(vellum_build_flags INTERFACE)
add_library(Vellum::build_flags ALIAS vellum_build_flags)
target_compile_options(vellum_build_flags INTERFACE -Wall -Wextra -Wshadow -Wnon-virtual-dtor)

if(VELLUM_SANITIZE STREQUAL "address")
    target_compile_options(vellum_build_flags INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(vellum_build_flags INTERFACE -fsanitize=address,undefined)
elseif(VELLUM_SANITIZE STREQUAL "thread")
    target_compile_options(vellum_build_flags INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(vellum_build_flags INTERFACE -fsanitize=thread)
elseif(NOT VELLUM_SANITIZE STREQUAL "")
    message(FATAL_ERROR "VELLUM_SANITIZE must be empty, 'address' or 'thread'")
endif()

# Every program of a sanitizer build carries the sanitizers' suppressions of libraries that are
# not Vellum's (cmake/SanitizerDefaults.cpp).
if(NOT VELLUM_SANITIZE STREQUAL "")
    target_sources(vellum_build_flags INTERFACE
        $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${PROJECT_SOURCE_DIR}/cmake/SanitizerDefaults.cpp>)
endif()

# Fuzzing: every library carries libFuzzer's coverage instrumentation and the sanitizers that
# turn a bug into a finding; the fuzz targets themselves link libFuzzer (fuzz/CMakeLists.txt).
if(VELLUM_BUILD_FUZZ)
    target_compile_options(vellum_build_flags INTERFACE -fsanitize=fuzzer-no-link,address,undefined
        -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(vellum_build_flags INTERFACE -fsanitize=fuzzer-no-link,address,undefined)
endif()

# vellum_library(NAME SOURCES...): a shared core library. Shared, so that plug-ins loaded at run
# time use the very same graph and rule types (and vtables) as the program that loads them.
function(vellum_library name)
    add_library(vellum_${name} SHARED ${ARGN})
    add_library(Vellum::${name} ALIAS vellum_${name})
    target_include_directories(vellum_${name} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
    target_link_libraries(vellum_${name} PRIVATE Vellum::build_flags)
    set_target_properties(vellum_${name} PROPERTIES OUTPUT_NAME vellum-${name})
    install(TARGETS vellum_${name} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endfunction()

# vellum_plugin(NAME FILE_NAME SOURCES...): a run-time extension with its exact file name
# (for example "DirectedGraph.gc" or "sphere.layout"), built into the plug-in folder.
function(vellum_plugin name file_name)
    add_library(${name} MODULE ${ARGN})
    target_link_libraries(${name} PRIVATE Vellum::build_flags)
    set_target_properties(${name} PROPERTIES
        PREFIX "" SUFFIX "" OUTPUT_NAME ${file_name}
        LIBRARY_OUTPUT_DIRECTORY ${VELLUM_PLUGIN_OUTPUT_DIRECTORY}
        INSTALL_RPATH "$ORIGIN/../..")
    install(TARGETS ${name} LIBRARY DESTINATION ${VELLUM_PLUGIN_INSTALL_DIR})
endfunction()

# vellum_test(NAME SOURCES... LIBS ...): a GoogleTest executable registered with CTest.
function(vellum_test name)
    cmake_parse_arguments(T "" "" "SOURCES;LIBS;LABELS" ${ARGN})
    add_executable(${name} ${T_SOURCES})
    target_link_libraries(${name} PRIVATE ${T_LIBS} Vellum::test_support GTest::gtest
        GTest::gtest_main GTest::gmock Vellum::build_flags)
    # A list of labels must reach the test properties as one value.
    string(REPLACE ";" "\\;" labels "${T_LABELS}")
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST
        PROPERTIES LABELS "${labels}" TIMEOUT 300)
endfunction()
