# The dependencies for the fuzz targets: clang, both sanitizers, and the counters that libFuzzer steers by.
include(${CMAKE_CURRENT_LIST_DIR}/sanitizers.cmake)
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(NELVA_COUNTERS "-fsanitize-coverage=inline-8bit-counters,pc-table")
set(CMAKE_C_FLAGS_INIT "${NELVA_SANITIZERS} ${NELVA_COUNTERS}")
set(CMAKE_CXX_FLAGS_INIT "${NELVA_SANITIZERS} ${NELVA_COUNTERS}")
