# Cross-build for 64-bit Windows with mingw-w64: the route that runs at native speed under
# 64-bit Wine on hosts that cannot start 32-bit programs.
set(TOOLCHAIN_PREFIX x86_64-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-toolchain.cmake)
