# The dependencies for the tests: as native, with both sanitizers.
include(${CMAKE_CURRENT_LIST_DIR}/sanitizers.cmake)
set(CMAKE_C_FLAGS_INIT "${NELVA_SANITIZERS}")
set(CMAKE_CXX_FLAGS_INIT "${NELVA_SANITIZERS}")
