# What the builds of the dependencies for tests and fuzz targets have in common. Every finding ends the program.
#
# espeak-ng compiles itself with -fwrapv: its arithmetic wraps around on purpose. So the compilers do not take the
# overflow of its signed numbers for a finding; all other checks hold there too.
set(NELVA_SANITIZERS "-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -g1")
# Assertions hold as well.
set(CMAKE_C_FLAGS_RELEASE "-O2" CACHE STRING "")
set(CMAKE_CXX_FLAGS_RELEASE "-O2" CACHE STRING "")
# PCRE is not optimised: its one big function takes the compilers many minutes with these checks in it.
if(CMAKE_SOURCE_DIR MATCHES "/pcre$")
  set(CMAKE_C_FLAGS_RELEASE "-O0" CACHE STRING "" FORCE)
endif()
