# Builds the Windows library and its tests on Linux; the tests run under Wine. TAVLYN_PROCESSOR may be i686.
set(TAVLYN_PROCESSOR x86_64 CACHE STRING "x86_64 or i686")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TAVLYN_PROCESSOR)
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${TAVLYN_PROCESSOR})
set(prefix ${TAVLYN_PROCESSOR}-w64-mingw32)

set(CMAKE_C_COMPILER ${prefix}-gcc-posix)
set(CMAKE_CXX_COMPILER ${prefix}-g++-posix)
set(CMAKE_RC_COMPILER ${prefix}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${prefix})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# -static-libgcc and -static-libstdc++ alone would still need libwinpthread-1.dll.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -static)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -static)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine)
