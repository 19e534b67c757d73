# Cross-build for 32-bit Windows, the product, with mingw-w64.
set(TOOLCHAIN_PREFIX i686-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR x86)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-toolchain.cmake)
