# quennet_add_test(NAME SOURCES... LIBS...): one Qt Test executable registered with CTest.
function(quennet_add_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS;LABELS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE quennet_common_cfg Qt6::Test ${ARG_LIBS})
    target_compile_definitions(${name} PRIVATE QUENNET_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        LABELS "${ARG_LABELS}"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_FORCE_STDERR_LOGGING=1;ASAN_OPTIONS=detect_leaks=1:abort_on_error=1;UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1")
endfunction()

# quennet_add_fuzzer(NAME SOURCES... LIBS...): a libFuzzer target, seeded from SEEDS.
function(quennet_add_fuzzer name)
    cmake_parse_arguments(ARG "" "SEEDS" "SOURCES;LIBS" ${ARGN})
    if(NOT QUENNET_FUZZ)
        return()
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE quennet_common_cfg ${ARG_LIBS})
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    set_property(GLOBAL APPEND PROPERTY QUENNET_FUZZERS "${name}|${ARG_SEEDS}")
endfunction()
