# One static library per folder. What a folder may include is what its
# `target_link_libraries` lists; nothing else is on its include path but `src`.

find_program(TARNVALE_CCACHE ccache)
if(TARNVALE_CCACHE)
  # It leaves out what uses a precompiled header unless it is told so.
  set(CMAKE_CXX_COMPILER_LAUNCHER
    env CCACHE_SLOPPINESS=pch_defines,time_macros ${TARNVALE_CCACHE})
endif()

add_library(tarnvale_flags INTERFACE)
target_compile_options(tarnvale_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
  -Wold-style-cast -Wcast-qual -Wformat=2 -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # When it optimises, GCC 12 sees overlapping copies and uninitialised bytes in
  # sound std::string code. Clang checks the same code without them.
  target_compile_options(tarnvale_flags INTERFACE -Wno-restrict -Wno-maybe-uninitialized)
endif()
if(TARNVALE_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# Most of a file's compile time is its headers': several files of a target at once
# take much less time than one after the other. For whole builds; after a change of
# one line the debug preset, without this, is done sooner.
option(TARNVALE_UNITY "Compile several source files of a target together" OFF)
set(CMAKE_UNITY_BUILD_BATCH_SIZE 8)
if(NOT WIN32)
  # There only the libraries and tests: its headers bring names along that programs use.
  set(CMAKE_UNITY_BUILD ${TARNVALE_UNITY})
endif()

# tarnvale_library(NAME SOURCES ... LINKS ...)
function(tarnvale_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_LINKS} PRIVATE tarnvale_flags)
  set_target_properties(${name} PROPERTIES UNITY_BUILD ${TARNVALE_UNITY})
endfunction()

# Everything that the unit tests run: what the sanitizers' build makes.
add_custom_target(unit_tests)

# tarnvale_test(NAME SOURCES ... LINKS ...): a GoogleTest program whose suites
# ctest lists one by one.
function(tarnvale_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${ARG_LINKS} GTest::gmock_main tarnvale_flags)
  set_target_properties(${name} PROPERTIES UNITY_BUILD ${TARNVALE_UNITY})
  if(TARGET tarnvale_test_headers)
    target_precompile_headers(${name} REUSE_FROM tarnvale_test_headers)
  endif()
  add_dependencies(unit_tests ${name})
  if(CMAKE_CROSSCOMPILING)
    # Starting a program takes longer than its tests: one start for all of them.
    if(CMAKE_CROSSCOMPILING_EMULATOR)
      add_test(NAME windows.${name} COMMAND ${name})
      set_tests_properties(windows.${name} PROPERTIES TIMEOUT 300 LABELS windows)
    endif()
    return()
  endif()
  # One start for each suite: starting a program takes longer than most tests, and several
  # times as long with the sanitizers.
  set(suites ${CMAKE_CURRENT_BINARY_DIR}/${name}_suites.cmake)
  add_custom_command(TARGET ${name} POST_BUILD BYPRODUCTS ${suites}
    COMMAND ${CMAKE_COMMAND} -D PROGRAM=$<TARGET_FILE:${name}> -D SUITES=${suites}
            -P ${PROJECT_SOURCE_DIR}/cmake/TarnvaleSuites.cmake VERBATIM)
  file(CONFIGURE OUTPUT ${name}_tests.cmake @ONLY CONTENT [[
if(EXISTS "@suites@")
  include("@suites@")
else()
  add_test("@name@_NOT_BUILT" "@name@_NOT_BUILT")
endif()
]])
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES
    ${CMAKE_CURRENT_BINARY_DIR}/${name}_tests.cmake)
endfunction()

# tarnvale_windows_program(NAME DESCRIPTION): gives the program version, icon and manifest,
# checks what it imports, and parts it from its debug information. `./test --windows` prints
# the sizes of all of them.
function(tarnvale_windows_program name description)
  get_target_property(file ${name} OUTPUT_NAME)
  if(NOT file)
    set(file ${name})
  endif()
  string(APPEND file .exe)
  set(icon ${PROJECT_BINARY_DIR}/tarnvale.ico)
  if(NOT TARGET tarnvale_windows_icon)
    include(TarnvalePictures)
    tarnvale_ico(${icon})
    add_custom_target(tarnvale_windows_icon DEPENDS ${icon})
  endif()
  set(manifest ${CMAKE_CURRENT_BINARY_DIR}/${name}.manifest)
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${name}.rc)
  set(resources ${CMAKE_CURRENT_BINARY_DIR}/${name}_resources.o)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.manifest.in ${manifest} @ONLY)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/windows/program.rc.in ${script} @ONLY)
  add_custom_command(OUTPUT ${resources} DEPENDS ${script} ${manifest} ${icon}
                     COMMAND ${CMAKE_RC_COMPILER} -O coff ${script} ${resources} VERBATIM)
  add_custom_target(${name}_resources DEPENDS ${resources})
  add_dependencies(${name}_resources tarnvale_windows_icon)
  add_dependencies(${name} ${name}_resources)
  target_link_libraries(${name} PRIVATE ${resources})
  set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${resources})
  set(program $<TARGET_FILE:${name}>)
  add_custom_command(TARGET ${name} POST_BUILD
    COMMAND ${PROJECT_SOURCE_DIR}/scripts/check_imports ${program}
    COMMAND ${CMAKE_OBJCOPY} --only-keep-debug ${program} ${program}.debug
    COMMAND ${CMAKE_STRIP} ${program}
    COMMAND ${CMAKE_OBJCOPY} --add-gnu-debuglink=${program}.debug ${program}
    COMMAND ${PROJECT_SOURCE_DIR}/scripts/check_program ${PROJECT_VERSION} ${program}
    VERBATIM)
endfunction()
