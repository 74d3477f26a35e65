# Per-target build settings shared by every target we own.

function(quirnel_target_defaults target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wimplicit-fallthrough -Werror
        # GCC 12 at -O3 reports overlapping copies inside libstdc++'s std::string operator+
        # that cannot happen; it stays a warning so that release builds still finish.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-error=restrict>)
    target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
    if(QUIRNEL_SANITIZE)
        target_compile_options(${target} PUBLIC
            -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(${target} PUBLIC -fsanitize=address,undefined)
    endif()
endfunction()

# Where tests find their golden data, compiled in so that no environment is needed.
function(quirnel_test_definitions target)
    target_compile_definitions(${target} PRIVATE
        QUIRNEL_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data"
        QUIRNEL_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
endfunction()

# A GoogleTest executable over the toolkit-free code.
#   quirnel_add_gtest(NAME document_tests SOURCES a_test.cpp LIBS quirnel_document)
function(quirnel_add_gtest)
    cmake_parse_arguments(ARG "" "NAME" "SOURCES;LIBS" ${ARGN})
    add_executable(${ARG_NAME} ${ARG_SOURCES} ${PROJECT_SOURCE_DIR}/tests/support/sanitizer_options.cpp)
    quirnel_target_defaults(${ARG_NAME})
    quirnel_test_definitions(${ARG_NAME})
    target_link_libraries(${ARG_NAME} PRIVATE ${ARG_LIBS} test_support GTest::gtest GTest::gtest_main)
    gtest_discover_tests(${ARG_NAME}
        DISCOVERY_TIMEOUT 60
        NO_PRETTY_VALUES)
endfunction()

# A Qt Test executable for one widget area; always runs offscreen.
#   quirnel_add_qtest(NAME tst_grid_model SOURCES tst_grid_model.cpp LIBS quirnel_gui)
function(quirnel_add_qtest)
    cmake_parse_arguments(ARG "" "NAME" "SOURCES;LIBS" ${ARGN})
    add_executable(${ARG_NAME} ${ARG_SOURCES} ${PROJECT_SOURCE_DIR}/tests/support/sanitizer_options.cpp)
    quirnel_target_defaults(${ARG_NAME})
    quirnel_test_definitions(${ARG_NAME})
    set_target_properties(${ARG_NAME} PROPERTIES AUTOMOC ON)
    target_link_libraries(${ARG_NAME} PRIVATE ${ARG_LIBS} Qt6::Test Qt6::Widgets)
    add_test(NAME ${ARG_NAME} COMMAND ${ARG_NAME})
    set_tests_properties(${ARG_NAME} PROPERTIES
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()
