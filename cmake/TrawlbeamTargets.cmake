# One function a kind of target. A room is a static library made of one folder; USES names the rooms that it may
# include, and scripts/lint holds the includes to that list.

include(GoogleTest)

add_library(tb_options INTERFACE)
target_include_directories(tb_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(tb_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Werror -fno-strict-aliasing)
if(TRAWLBEAM_SANITIZE)
  # clang counts it to -Wconversion, g++ not; one set of warnings is enough.
  target_compile_options(tb_options INTERFACE -Wno-sign-conversion)
  target_compile_options(tb_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(tb_options INTERFACE -fsanitize=address,undefined)
endif()
if(WIN32)
  # GCC 12 at -O3 takes a literal joined to a moved text for an overlapping copy.
  target_compile_options(tb_options INTERFACE -Wno-restrict)
  # Windows 7 is the oldest system served; the narrow API is the one whose text is the system code page.
  target_compile_definitions(tb_options INTERFACE _WIN32_WINNT=0x0601 WINVER=0x0601 NOMINMAX WIN32_LEAN_AND_MEAN)
endif()

# tb_precompile(NAME header ...): a target whose precompiled headers others reuse, with its options.
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/precompile.cpp CONTENT "")
function(tb_precompile name)
  add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/precompile.cpp)
  target_link_libraries(${name} PRIVATE tb_options)
  target_precompile_headers(${name} PRIVATE ${ARGN})
endfunction()

# The language's headers are read once, and not once a source: half of the work of compiling. But only by clang: GCC 12,
# when it optimizes, gives false alarms about texts whose headers come precompiled.
set(TB_COMMON_HEADERS <algorithm> <cstdint> <filesystem> <functional> <map> <memory> <optional> <set> <string> <utility> <vector>)
set(TB_PRECOMPILED_ROOMS ${TRAWLBEAM_SANITIZE})
if(TB_PRECOMPILED_ROOMS)
  tb_precompile(tb_headers ${TB_COMMON_HEADERS})
endif()
if(TRAWLBEAM_SANITIZE)
  # What fuzz targets drive tells them which ways it goes.
  set(TB_TRACED -fsanitize=fuzzer-no-link)
  target_compile_options(tb_headers PRIVATE ${TB_TRACED})
endif()
function(tb_compiled target)
  target_compile_options(${target} PRIVATE ${TB_TRACED})
  if(TB_PRECOMPILED_ROOMS)
    target_precompile_headers(${target} REUSE_FROM tb_headers)
  endif()
endfunction()

# tb_tidy(TARGET a.cpp ...): clang-tidy reads these sources of src/ in the target `tidy`, and once more with the slow checks
# of its analyzer in `deep`. A source is read anew when its object is made anew: after a change of it, of a header or flag.
if(TRAWLBEAM_LINT)
  add_custom_target(tidy)
  add_custom_target(deep)
  # The commands as clang takes them: the precompiled headers of g++ are none to it.
  set(commands compile_commands.json)
  add_custom_target(tidy_commands
    COMMAND ${CMAKE_COMMAND} -E make_directory tidy
    COMMAND sed "s/ -Winvalid-pch -include [^ ]*//" ${commands} > tidy/${commands}.new
    COMMAND mv tidy/${commands}.new tidy/${commands}
    WORKING_DIRECTORY ${CMAKE_BINARY_DIR} VERBATIM)
endif()
function(tb_tidy target)
  set(folder ${CMAKE_SOURCE_DIR}/src)
  cmake_path(IS_PREFIX folder ${CMAKE_CURRENT_SOURCE_DIR} in_src)
  if(NOT TRAWLBEAM_LINT OR NOT in_src)
    return()
  endif()
  foreach(step IN ITEMS tidy deep)
    set(stamps "")
    foreach(source IN LISTS ARGN)
      string(REPLACE / _ stamp ${source})
      set(stamp ${CMAKE_CURRENT_BINARY_DIR}/${stamp}.${step})
      add_custom_command(OUTPUT ${stamp}
        COMMAND ${CMAKE_SOURCE_DIR}/scripts/lint ${step} ${CMAKE_CURRENT_SOURCE_DIR}/${source}
        COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
        DEPENDS $<FILTER:$<TARGET_OBJECTS:${target}>,INCLUDE,/${source}.o$> ${CMAKE_SOURCE_DIR}/.clang-tidy
        VERBATIM)
      list(APPEND stamps ${stamp})
    endforeach()
    add_custom_target(${target}_${step} DEPENDS ${stamps})
    add_dependencies(${target}_${step} tidy_commands)
    add_dependencies(${step} ${target}_${step})
  endforeach()
endfunction()

# tb_room(NAME SOURCES a.cpp ... [USES room ...] [LINKS library ...])
function(tb_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;USES;LINKS" ${ARGN})
  add_library(tb_${name} STATIC ${ROOM_SOURCES})
  list(TRANSFORM ROOM_USES PREPEND tb_)
  target_link_libraries(tb_${name} PUBLIC tb_options ${ROOM_USES} ${ROOM_LINKS})
  tb_compiled(tb_${name})
  tb_tidy(tb_${name} ${ROOM_SOURCES})
endfunction()

# Each program file holds the one manifest. Libraries hold none: what they show is their caller's.
set(TB_MANIFEST ${CMAKE_SOURCE_DIR}/cmake/Program.manifest)
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/manifest.rc CONTENT "1 24 \"${TB_MANIFEST}\"\n")
function(tb_manifest target)
  if(WIN32)
    set_source_files_properties(${CMAKE_BINARY_DIR}/manifest.rc PROPERTIES OBJECT_DEPENDS ${TB_MANIFEST})
    target_sources(${target} PRIVATE ${CMAKE_BINARY_DIR}/manifest.rc)
  endif()
endfunction()

# tb_program(NAME SOURCES main.cpp ... [USES room ...] [LINKS library ...] [WINDOWED]): its sources know the version as
# TRAWLBEAM_VERSION, a string.
function(tb_program name)
  cmake_parse_arguments(PROGRAM "WINDOWED" "" "SOURCES;USES;LINKS" ${ARGN})
  add_executable(${name} ${PROGRAM_SOURCES})
  tb_manifest(${name})
  if(PROGRAM_WINDOWED)
    set_target_properties(${name} PROPERTIES WIN32_EXECUTABLE ON)
  endif()
  target_compile_definitions(${name} PRIVATE TRAWLBEAM_VERSION="${PROJECT_VERSION}")
  list(TRANSFORM PROGRAM_USES PREPEND tb_)
  target_link_libraries(${name} PRIVATE tb_options ${PROGRAM_USES} ${PROGRAM_LINKS})
  tb_compiled(${name})
  tb_tidy(${name} ${PROGRAM_SOURCES})
endfunction()

# Seconds after which ctest gives a test up. It only matters when one hangs, for no machine is so slow.
set(TB_TEST_TIMEOUT 1800)
# They wait more than they compute, and for each other, so they begin first.
set(TB_ONE_AT_A_TIME RESOURCE_LOCK screen COST 1000)

# tb_test(NAME SOURCES a_test.cpp ... [USES room ...] [ALONE] [ONLY_PROGRAM] [WATCHED]): a GoogleTest program. ctest finds
# its cases, except where a start costs much, under Wine and with sanitizers: there a program is one test. Tests run beside
# others. But of ALONE ones, which need the keyboard's focus or would take it, and ONLY_PROGRAM ones, which hold the right
# to be the one program, one runs at a time. WATCHED ones run programs under Wine, which must not meet an access violation
# even if they survive it.
function(tb_test name)
  cmake_parse_arguments(TEST "ALONE;ONLY_PROGRAM;WATCHED" "" "SOURCES;USES" ${ARGN})
  set(properties TIMEOUT ${TB_TEST_TIMEOUT})
  if(TEST_ALONE OR TEST_ONLY_PROGRAM)
    list(APPEND properties ${TB_ONE_AT_A_TIME})
  endif()
  if(TEST_WATCHED)
    list(APPEND properties ENVIRONMENT WATCH_EXCEPTIONS=1)
  endif()
  add_executable(${name} ${TEST_SOURCES})
  tb_manifest(${name})
  list(TRANSFORM TEST_USES PREPEND tb_)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  # Tests are built far more often than they run long.
  target_compile_options(${name} PRIVATE -O0)
  target_precompile_headers(${name} REUSE_FROM tb_test_headers)
  target_link_libraries(${name} PRIVATE tb_options ${TEST_USES} GTest::gmock GTest::gtest_main)
  if(WIN32 OR TRAWLBEAM_SANITIZE)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES ${properties})
  else()
    gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST PROPERTIES ${properties})
  endif()
endfunction()

# What lies in a program folder is built twice: as this version, into bin/, and as the version after it, into bin/next/,
# which the tests of the update publish.
math(EXPR next_patch "${PROJECT_VERSION_PATCH} + 1")
set(TRAWLBEAM_NEXT_VERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}.${next_patch})
# The targets program_folder and program_folder_next make all of it. The global property TRAWLBEAM_INSTALLED names the
# files, in the folders bin/ and bin/next/. They are stripped as they are linked, so that what is tested, staged, installed
# and published is one and the same file; what was taken from FILE lies in symbols/ and symbols/next/ as FILE.debug.
if(WIN32)
  add_custom_target(program_folder ALL)
  add_custom_target(program_folder_next ALL)
endif()

# tb_installed(NAME FILE file DESCRIPTION text SOURCES a.cpp ... [RESOURCES a.rc NEEDS a.ico ...] [USES room ...]
# [LINKS library ...] [VERSIONED]): a program or component that is installed and replaced by updates, with a version
# resource. It is a library unless the file is an .exe. The next version is linked from the same objects, unless VERSIONED
# says that sources ask for TRAWLBEAM_VERSION, a string. NEEDS names the files that its resources take in.
function(tb_installed name)
  cmake_parse_arguments(PART "VERSIONED" "FILE;DESCRIPTION" "SOURCES;RESOURCES;NEEDS;USES;LINKS" ${ARGN})
  list(TRANSFORM PART_USES PREPEND tb_)
  get_filename_component(stem ${PART_FILE} NAME_WLE)
  get_filename_component(suffix ${PART_FILE} LAST_EXT)
  foreach(edition IN ITEMS "" _next)
    set(version ${PROJECT_VERSION})
    set(folder "")
    if(edition)
      set(version ${TRAWLBEAM_NEXT_VERSION})
      set(folder /next)
    endif()
    set(target ${name}${edition})
    set(sources ${PART_SOURCES})
    if(edition AND NOT PART_VERSIONED)
      set(sources $<FILTER:$<TARGET_OBJECTS:${name}>,EXCLUDE,[.]rc[.]>)
    endif()
    if(suffix STREQUAL ".exe")
      set(file_type VFT_APP)
      add_executable(${target} WIN32 ${sources})
      tb_manifest(${target})
    else()
      set(file_type VFT_DLL)
      add_library(${target} SHARED ${sources})
      target_link_options(${target} PRIVATE -Wl,--exclude-all-symbols)
    endif()
    string(REPLACE . , file_version ${version}.0)
    set(resources ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    list(TRANSFORM PART_RESOURCES REPLACE "(.+)" "#include \"\\1\"\n" OUTPUT_VARIABLE includes)
    string(REPLACE ";" "" includes "${includes}")
    configure_file(${CMAKE_SOURCE_DIR}/cmake/Installed.rc.in ${resources} @ONLY)
    set_source_files_properties(${resources} PROPERTIES OBJECT_DEPENDS "${PART_RESOURCES};${PART_NEEDS}")
    target_sources(${target} PRIVATE ${resources})
    set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME ${stem} SUFFIX ${suffix}
      RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin${folder} ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib${folder})
    if(PART_VERSIONED)
      target_compile_definitions(${target} PRIVATE TRAWLBEAM_VERSION="${version}")
    endif()
    target_include_directories(${target} PRIVATE ${CMAKE_BINARY_DIR}/generated)
    target_link_libraries(${target} PRIVATE tb_options ${PART_USES} ${PART_LINKS})
    tb_compiled(${target})
    set(symbols ${CMAKE_BINARY_DIR}/symbols${folder})
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND ${CMAKE_COMMAND} -E make_directory ${symbols}
      COMMAND ${CMAKE_OBJCOPY} --only-keep-debug $<TARGET_FILE:${target}> ${symbols}/${PART_FILE}.debug
      COMMAND ${CMAKE_OBJCOPY} --strip-all --add-gnu-debuglink=${symbols}/${PART_FILE}.debug $<TARGET_FILE:${target}>
      VERBATIM)
    add_dependencies(program_folder${edition} ${target})
  endforeach()
  set_property(GLOBAL APPEND PROPERTY TRAWLBEAM_INSTALLED ${PART_FILE})
endfunction()
