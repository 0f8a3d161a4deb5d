# MinGW-w64; MINGW_ARCH is i686 (what ships) or x86_64. Uses its run-time library without POSIX threads: with the imports of
# the other one, no Windows before Vista loads a library.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${MINGW_ARCH})
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES MINGW_ARCH)
set(CMAKE_C_COMPILER ${MINGW_ARCH}-w64-mingw32-gcc-win32)
set(CMAKE_CXX_COMPILER ${MINGW_ARCH}-w64-mingw32-g++-win32)
set(CMAKE_RC_COMPILER ${MINGW_ARCH}-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${MINGW_ARCH}-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
