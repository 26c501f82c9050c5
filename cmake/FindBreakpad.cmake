# Breakpad::Client, which writes dumps of processes on Linux, and Breakpad_STACKWALK, the program that reads dumps of all
# systems. From the sources that scripts/setup fetches, of which only the client's part is built, or from vcpkg.
set(BRVUTILS_MINIDUMP_PACKAGE "${PROJECT_SOURCE_DIR}/build/npm/minidump@0.26.0" CACHE PATH "The npm package minidump, as scripts/setup fetches it")
mark_as_advanced(BRVUTILS_MINIDUMP_PACKAGE)

find_program(Breakpad_STACKWALK minidump_stackwalk HINTS "${BRVUTILS_MINIDUMP_PACKAGE}/bin/linux-x64" NO_CMAKE_FIND_ROOT_PATH)
find_path(Breakpad_SOURCES client/linux/minidump_writer/minidump_writer.cc
  PATHS "${BRVUTILS_MINIDUMP_PACKAGE}/deps/breakpad/src" NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
mark_as_advanced(Breakpad_STACKWALK Breakpad_SOURCES)

if(Breakpad_SOURCES AND CMAKE_SYSTEM_NAME STREQUAL Linux AND NOT TARGET Breakpad::Client)
  set(sources
    client/linux/dump_writer_common/thread_info.cc
    client/linux/dump_writer_common/ucontext_reader.cc
    client/linux/minidump_writer/linux_dumper.cc
    client/linux/minidump_writer/linux_ptrace_dumper.cc
    client/linux/minidump_writer/minidump_writer.cc
    client/linux/minidump_writer/pe_file.cc
    client/minidump_file_writer.cc
    common/convert_UTF.cc
    common/linux/elfutils.cc
    common/linux/file_id.cc
    common/linux/linux_libc_support.cc
    common/linux/memory_mapped_file.cc
    common/linux/safe_readlink.cc
    common/string_conversion.cc)
  list(TRANSFORM sources PREPEND "${Breakpad_SOURCES}/")
  add_library(breakpad_client STATIC EXCLUDE_FROM_ALL ${sources})
  add_library(Breakpad::Client ALIAS breakpad_client)
  target_include_directories(breakpad_client SYSTEM PUBLIC "${Breakpad_SOURCES}" "${Breakpad_SOURCES}/../..")
  # A crash must not lead into the sanitizers' own code, nor other people's code to our warnings.
  target_compile_options(breakpad_client PRIVATE -w -fno-sanitize=all)
  set_target_properties(breakpad_client PROPERTIES
    CXX_STANDARD 17 CXX_EXTENSIONS ON CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON POSITION_INDEPENDENT_CODE ON)
elseif(NOT TARGET Breakpad::Client)
  find_package(unofficial-breakpad CONFIG QUIET)
  if(TARGET unofficial::breakpad::libbreakpad_client)
    add_library(Breakpad::Client ALIAS unofficial::breakpad::libbreakpad_client)
  endif()
endif()

set(Breakpad_TARGET Breakpad_TARGET-NOTFOUND)
if(TARGET Breakpad::Client)
  set(Breakpad_TARGET Breakpad::Client)
endif()
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Breakpad REQUIRED_VARS Breakpad_TARGET)
