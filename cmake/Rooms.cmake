# The rooms of the house: one static library a folder of src/. A room names the rooms that it may include
# (ARROWS); the same list links it and is handed to the test that reads the #include lines.

set_property(GLOBAL PROPERTY QUORVIA_ROOMS "")

add_library(quorvia_options INTERFACE)
target_include_directories(quorvia_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_definitions(quorvia_options INTERFACE
  QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_CAST_FROM_BYTEARRAY QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_compile_options(quorvia_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wnull-dereference
  -Wimplicit-fallthrough -Werror)
if(QUORVIA_SANITIZE)
  target_compile_options(quorvia_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer -Wno-null-dereference
    $<IF:$<CXX_COMPILER_ID:GNU>,-Wno-maybe-uninitialized,-Wno-format-nonliteral>)
  target_link_options(quorvia_options INTERFACE -fsanitize=address,undefined)
endif()

# quorvia_room(NAME [ARROWS room...] [LIBS target...] SOURCES file...)
function(quorvia_room NAME)
  cmake_parse_arguments(ROOM "" "" "ARROWS;LIBS;SOURCES" ${ARGN})
  add_library(quorvia_${NAME} STATIC ${ROOM_SOURCES})
  target_link_libraries(quorvia_${NAME} PUBLIC quorvia_options ${ROOM_LIBS})
  foreach(lower IN LISTS ROOM_ARROWS)
    target_link_libraries(quorvia_${NAME} PUBLIC quorvia_${lower})
  endforeach()
  string(JOIN " " arrows ${ROOM_ARROWS})
  set_property(GLOBAL APPEND PROPERTY QUORVIA_ROOMS "${NAME}: ${arrows}")
endfunction()

# The tests that also run under the sanitizers.
add_custom_target(hostile-tests)

# quorvia_program(NAME ROOMS room... [SOURCES file...] [LIBS target...]): a Qt Test program, not yet run by ctest; its
# source is NAME.cpp unless SOURCES names others.
function(quorvia_program NAME)
  cmake_parse_arguments(T "" "" "ROOMS;SOURCES;LIBS" ${ARGN})
  if(NOT T_SOURCES)
    set(T_SOURCES ${NAME}.cpp)
  endif()
  add_executable(${NAME} ${T_SOURCES})
  target_link_libraries(${NAME} PRIVATE quorvia_options quorvia_testsupport Qt6::Test ${T_LIBS})
  foreach(room IN LISTS T_ROOMS)
    target_link_libraries(${NAME} PRIVATE quorvia_${room})
  endforeach()
  set_target_properties(${NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
endfunction()

# quorvia_run(PROGRAM LABEL unit|window|hostile [ARGUMENT word] [ENV variable=value...]): lets ctest run it without a
# display; the test's name is the program's, with the argument behind it.
function(quorvia_run PROGRAM)
  cmake_parse_arguments(T "" "LABEL;ARGUMENT" "ENV" ${ARGN})
  string(JOIN "_" name ${PROGRAM} ${T_ARGUMENT})
  add_test(NAME ${name} COMMAND ${PROGRAM} ${T_ARGUMENT})
  set_tests_properties(${name} PROPERTIES
    LABELS ${T_LABEL} TIMEOUT 300
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;UBSAN_OPTIONS=print_stacktrace=1;ASAN_OPTIONS=detect_leaks=0;${T_ENV}")
endfunction()

# quorvia_test(NAME [LABEL unit|window|hostile] ROOMS room... [SOURCES file...] [LIBS target...] [ENV variable=value...])
# A program that ctest runs once. "hostile" marks the ones that feed broken input: check runs them under the sanitizers
# too.
function(quorvia_test NAME)
  cmake_parse_arguments(T "" "LABEL" "ROOMS;SOURCES;LIBS;ENV" ${ARGN})
  if(NOT T_LABEL)
    set(T_LABEL unit)
  endif()
  quorvia_program(${NAME} ROOMS ${T_ROOMS} SOURCES ${T_SOURCES} LIBS ${T_LIBS})
  quorvia_run(${NAME} LABEL ${T_LABEL} ENV ${T_ENV})
  if(T_LABEL STREQUAL hostile)
    add_dependencies(hostile-tests ${NAME})
  endif()
endfunction()

# quorvia_at_ratios(LABEL unit|window TESTS name...): lets ctest run tests once more on screens with other device pixel
# ratios.
function(quorvia_at_ratios)
  cmake_parse_arguments(T "" "LABEL" "TESTS" ${ARGN})
  foreach(ratio 2 1.5)
    foreach(test ${T_TESTS})
      add_test(NAME ${test}_at_${ratio} COMMAND ${test})
      get_test_property(${test} ENVIRONMENT environment)
      set_tests_properties(${test}_at_${ratio} PROPERTIES
        LABELS ${T_LABEL} TIMEOUT 300 ENVIRONMENT "${environment};QT_SCALE_FACTOR=${ratio}")
    endforeach()
  endforeach()
endfunction()
