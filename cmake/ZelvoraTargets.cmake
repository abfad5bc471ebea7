# Settings that all targets of the tree share, and the functions that declare tests, benchmarks
# and fuzz targets.

# Compiler settings of one target.
function(zelvora_set_defaults target)
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
        QT_DEPRECATED_WARNINGS)
    if(MSVC)
        target_compile_options(${target} PRIVATE /W4 /utf-8)
    else()
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow
            -Wconversion -Wold-style-cast)
        if(ZELVORA_WERROR)
            target_compile_options(${target} PRIVATE -Werror)
        endif()
    endif()
    if(ZELVORA_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${ZELVORA_SANITIZE}
            -fno-omit-frame-pointer -fno-sanitize-recover=all)
        target_link_options(${target} PUBLIC -fsanitize=${ZELVORA_SANITIZE})
    endif()
endfunction()

# A program of the product: zelvora_add_program(name source...), built by the target "programs" too and
# installed beside the others. The layout of a system package is another component, see packaging/.
function(zelvora_add_program name)
    add_executable(${name} ${ARGN})
    if(NOT TARGET programs)
        add_custom_target(programs)
    endif()
    add_dependencies(programs ${name})
    target_link_libraries(${name} PRIVATE zelvora_lib)
    zelvora_set_defaults(${name})
    install(TARGETS ${name} RUNTIME DESTINATION . COMPONENT portable)
endfunction()

# A Qt Test program: zelvora_add_test(tst_Name [SOURCES more...] [LIBS more...] [TIMEOUT s]
# [ENVIRONMENT VAR=value...]). The main source is tst_Name.cpp in the current folder. Tests run
# headless, each with a private data location, so that they can run side by side.
function(zelvora_add_test name)
    cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LIBS;ENVIRONMENT" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    add_executable(${name} ${name}.cpp ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE zelvora_test_support zelvora_lib Qt5::Test ${ARG_LIBS})
    zelvora_set_defaults(${name})
    add_test(NAME ${name} COMMAND ${name})
    set(data_home "${CMAKE_CURRENT_BINARY_DIR}/${name}.data")
    file(MAKE_DIRECTORY "${data_home}")
    # The leak sanitizer guesses where the thread storage of plugins begins, and falls over its guess.
    set(leaks "suppressions=${PROJECT_SOURCE_DIR}/tests/support/lsan.supp")
    string(APPEND leaks ":print_suppressions=0:intercept_tls_get_addr=0")
    # A picture that no memory holds is an empty one for the toolkit, with the sanitizer too.
    set(environment "QT_QPA_PLATFORM=offscreen;XDG_DATA_HOME=${data_home};LC_ALL=C.UTF-8")
    list(APPEND environment "LSAN_OPTIONS=${leaks}" "ASAN_OPTIONS=allocator_may_return_null=1")
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${ARG_TIMEOUT}
        ENVIRONMENT "${environment};${ARG_ENVIRONMENT}")
endfunction()

# A Google Benchmark program: zelvora_add_benchmark(bench_name [LIBS more...]). The source is
# bench_name.cpp in the current folder.
function(zelvora_add_benchmark name)
    cmake_parse_arguments(ARG "" "" "LIBS" ${ARGN})
    add_executable(${name} ${name}.cpp)
    target_link_libraries(${name} PRIVATE zelvora_lib benchmark::benchmark ${ARG_LIBS})
    zelvora_set_defaults(${name})
endfunction()

# A fuzz target: zelvora_add_fuzz_target(fuzz_name). The source is fuzz_name.cpp in the current
# folder, the inputs known so far are the files of corpus/fuzz_name. With ZELVORA_FUZZ libFuzzer
# drives it; otherwise it is a test that runs the known inputs.
function(zelvora_add_fuzz_target name)
    add_executable(${name} ${name}.cpp)
    target_link_libraries(${name} PRIVATE fuzz_support)
    zelvora_set_defaults(${name})
    if(ZELVORA_FUZZ)
        target_link_options(${name} PRIVATE -fsanitize=fuzzer)
        return()
    endif()
    target_sources(${name} PRIVATE replay.cpp)
    add_test(NAME ${name} COMMAND ${name} "${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name}")
    set_tests_properties(${name} PROPERTIES
        TIMEOUT 120
        # Leaks are for scripts/fuzz: Qt's JSON parser has one of its own.
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;ASAN_OPTIONS=detect_leaks=0")
endfunction()
