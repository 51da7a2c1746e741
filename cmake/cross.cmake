# Builds for another processor of Linux, which TAVLYN_PROCESSOR names; its programs run under qemu, those of 32-bit x86 on
# the x86-64 itself. The compilers are Debian's; scripts/setup --processors installs them.
set(CMAKE_SYSTEM_NAME Linux)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TAVLYN_PROCESSOR)

#               Debian's name, CMake's name, compiler's prefix, qemu
set(row_arm64   aarch64        aarch64-linux-gnu      qemu-aarch64)
set(row_armhf   armv7l         arm-linux-gnueabihf    qemu-arm)
set(row_i686    i686           i686-linux-gnu)
set(row_s390x   s390x          s390x-linux-gnu        qemu-s390x)
list(POP_FRONT row_${TAVLYN_PROCESSOR} CMAKE_SYSTEM_PROCESSOR prefix qemu)

set(CMAKE_C_COMPILER ${prefix}-gcc)
set(CMAKE_CXX_COMPILER ${prefix}-g++)
# g++ for armhf notes each argument that g++ 6 passed in another way; the interface has none.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)

set(CMAKE_FIND_ROOT_PATH /usr/${prefix})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

if(qemu)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${qemu} -L /usr/${prefix})
endif()
