# The native tests as 32-bit ARM programs, run under qemu as on the processor of a unit: ARMv6
# without Thumb-2.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv6)
set(CMAKE_C_COMPILER arm-linux-gnueabi-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabi-g++)
# Files of more than 2 GiB, and inodes of as many bits as those of the machine below.
set(CMAKE_CXX_FLAGS_INIT "-D_FILE_OFFSET_BITS=64 -D_TIME_BITS=64 -Wno-psabi") # GCC 7.1 is long ago
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -cpu arm1176 -L /usr/arm-linux-gnueabi)
set(CMAKE_FIND_ROOT_PATH /usr/arm-linux-gnueabi)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
