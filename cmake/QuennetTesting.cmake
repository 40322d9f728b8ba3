# quennet_add_test(NAME SOURCES... LIBS... [SESSIONS keyring nobus]): one Qt Test executable
# registered with CTest. Every run keeps its output in test-logs/ for the token check. With
# SESSIONS it runs once per desktop session (tests/run-in-session) as NAME_SESSION. Tests read
# English, whatever the developer's language. The leak checker's tracer does not intercept
# __tls_get_addr: clang 14's runtime mistakes some of glibc's dynamic TLS blocks for an old layout
# and crashes at exit, seldom and only when threads of dlopen()ed modules (dconf, GIO) are alive.
function(quennet_add_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS;LABELS;SESSIONS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE quennet_common_cfg Qt6::Test ${ARG_LIBS})
    target_compile_definitions(${name} PRIVATE QUENNET_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")

    set(sessions ${ARG_SESSIONS})
    if(NOT sessions)
        set(sessions plain)
    endif()
    set(logs ${CMAKE_BINARY_DIR}/test-logs)
    foreach(session IN LISTS sessions)
        set(test ${name})
        if(ARG_SESSIONS)
            set(test ${name}_${session})
        endif()
        add_test(NAME ${test}
            COMMAND ${PROJECT_SOURCE_DIR}/tests/run-in-session ${session} ${logs}/${test}.log
                $<TARGET_FILE:${name}>)
        set_tests_properties(${test} PROPERTIES
            LABELS "${ARG_LABELS}"
            FIXTURES_SETUP quennet_test_logs
            ENVIRONMENT "LANGUAGE=en;QT_QPA_PLATFORM=offscreen;QT_FORCE_STDERR_LOGGING=1;QT_LOGGING_RULES=app.quennet.*=true;QUENNET_TEST_TOKENS=${logs}/${test}.tokens;ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:intercept_tls_get_addr=0;UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1")
    endforeach()
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
