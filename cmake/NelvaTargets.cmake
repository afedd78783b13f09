# What every target of ours is compiled with, and the imported targets for the pinned dependencies.

add_library(nelva_options INTERFACE)
target_include_directories(nelva_options INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>)
target_compile_options(nelva_options INTERFACE -Wall -Wextra -Wpedantic -Werror)
# GCC 12 sees overlapping copies in std::string's own operator+ when it optimises (GCC bug 105651).
target_compile_options(nelva_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(NELVA_SANITIZE)
  # Not vptr: a COM interface is called through a table of functions that carries no type information.
  target_compile_options(nelva_options INTERFACE -fsanitize=address,undefined -fno-sanitize=vptr
                                                 -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(nelva_options INTERFACE -fsanitize=address,undefined)
endif()
if(NELVA_FUZZ)
  # Coverage, which libFuzzer steers by.
  target_compile_options(nelva_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(WIN32)
  # The shipped DLL must not depend on any compiler runtime DLL.
  target_link_options(nelva_options INTERFACE -static -static-libgcc -static-libstdc++)
  # The same commit gives the same bytes: no time of linking, no path of the building machine.
  target_link_options(nelva_options INTERFACE -Wl,--no-insert-timestamp)
  target_compile_options(nelva_options INTERFACE $<BUILD_INTERFACE:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>)
  target_compile_definitions(nelva_options INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX)
  # printf of this CRT differs from the C standard's; the compiler's own does not.
  target_compile_definitions(nelva_options INTERFACE __USE_MINGW_ANSI_STDIO=1)
endif()

# nelva_import(NAME LIBRARY...): static libraries of the dependency prefix, in link order.
function(nelva_import name)
  add_library(${name} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${name} SYSTEM INTERFACE ${NELVA_DEPS}/include)
  foreach(library IN LISTS ARGN)
    target_link_libraries(${name} INTERFACE ${NELVA_DEPS}/lib/lib${library}.a)
  endforeach()
endfunction()

nelva_import(dep_pcre pcrecpp pcre)
target_compile_definitions(dep_pcre INTERFACE PCRE_STATIC)
nelva_import(dep_expat expat)
# XML_GE: expat.h declares the bounds on entities only to those who say that it was built with entities.
target_compile_definitions(dep_expat INTERFACE XML_STATIC XML_GE=1)
nelva_import(dep_gtest gmock gtest)

# Sonic is one C file, built with each preset so that the sanitizers see it too.
get_filename_component(nelva_deps_root ${NELVA_DEPS} DIRECTORY)
set(NELVA_SONIC_DIR ${nelva_deps_root}/src/sonic)
set(NELVA_ESPEAK_DIR ${nelva_deps_root}/src/espeak-ng)
add_library(dep_sonic STATIC ${NELVA_SONIC_DIR}/sonic.c)
target_include_directories(dep_sonic SYSTEM PUBLIC ${NELVA_SONIC_DIR})
if(NELVA_SANITIZE)
  target_compile_options(dep_sonic PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=all)
endif()

# So is libsamplerate in the one quality that is used.
set(NELVA_SAMPLERATE_DIR ${nelva_deps_root}/src/samplerate)
set(samplerate_sources samplerate.c src_linear.c src_sinc.c src_zoh.c)
list(TRANSFORM samplerate_sources PREPEND ${NELVA_SAMPLERATE_DIR}/src/)
add_library(dep_samplerate STATIC EXCLUDE_FROM_ALL ${samplerate_sources})
target_include_directories(dep_samplerate SYSTEM PUBLIC ${NELVA_SAMPLERATE_DIR}/include)
target_compile_definitions(dep_samplerate PRIVATE ENABLE_SINC_MEDIUM_CONVERTER HAVE_STDBOOL_H
                                                  PACKAGE="libsamplerate" VERSION="0.2.2")
if(NELVA_SANITIZE)
  target_compile_options(dep_samplerate PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=all)
endif()

# And utf8proc, whose one file includes its tables.
set(NELVA_UTF8PROC_DIR ${nelva_deps_root}/src/utf8proc)
add_library(dep_utf8proc STATIC EXCLUDE_FROM_ALL ${NELVA_UTF8PROC_DIR}/utf8proc.c)
target_include_directories(dep_utf8proc SYSTEM PUBLIC ${NELVA_UTF8PROC_DIR})
target_compile_definitions(dep_utf8proc PUBLIC UTF8PROC_STATIC)
if(NELVA_SANITIZE)
  target_compile_options(dep_utf8proc PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=all)
endif()

find_package(Threads REQUIRED)

# Header-only helpers of the tools come from the system's packages. A cross compiler must not see the rest of the
# system's headers, so only these folders are linked into one of ours.
find_path(NELVA_JSON_INCLUDE nlohmann/json.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
set(NELVA_HEADER_ONLY ${CMAKE_BINARY_DIR}/header-only)
file(MAKE_DIRECTORY ${NELVA_HEADER_ONLY})
file(CREATE_LINK ${NELVA_JSON_INCLUDE}/nlohmann ${NELVA_HEADER_ONLY}/nlohmann SYMBOLIC)
add_library(dep_header_only INTERFACE)
target_include_directories(dep_header_only SYSTEM INTERFACE ${NELVA_HEADER_ONLY})
