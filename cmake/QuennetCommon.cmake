# Flags and Qt strictness defines shared by every target of the project.
add_library(quennet_common_cfg INTERFACE)

target_compile_features(quennet_common_cfg INTERFACE cxx_std_20)
set(CMAKE_CXX_EXTENSIONS OFF)

# Designated initializers leave defaulted members out on purpose.
target_compile_options(quennet_common_cfg INTERFACE -Wall -Wextra -Wpedantic -Wno-missing-field-initializers)
if(QUENNET_WARNINGS_AS_ERRORS)
    target_compile_options(quennet_common_cfg INTERFACE -Werror)
endif()

target_compile_definitions(quennet_common_cfg INTERFACE
    QT_NO_KEYWORDS
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_USE_QSTRINGBUILDER
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_FOREACH
    QUENNET_VERSION="${PROJECT_VERSION}"
)

if(QUENNET_SANITIZE)
    set(_sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        # clang 14 cannot lay out the function-type check of a split coroutine when sanitizer
        # coverage is on as well ("Cannot represent a difference across sections").
        list(APPEND _sanitizers -fno-sanitize=function)
    endif()
    target_compile_options(quennet_common_cfg INTERFACE ${_sanitizers})
    target_link_options(quennet_common_cfg INTERFACE ${_sanitizers})
endif()

# Coverage instrumentation for the code the fuzzers drive; the fuzzer's main comes per target.
if(QUENNET_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "QUENNET_FUZZ needs clang")
    endif()
    target_compile_options(quennet_common_cfg INTERFACE -fsanitize=fuzzer-no-link)
endif()

# A static library of the project: one folder under src/.
function(quennet_add_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC quennet_common_cfg ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
endfunction()
