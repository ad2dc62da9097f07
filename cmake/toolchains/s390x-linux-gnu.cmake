# System z, 64 bits, big-endian: Debian's cross compiler, and the emulator that runs what it builds.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(CMAKE_CXX_COMPILER s390x-linux-gnu-g++)
# Whole programs: the machine's libraries then need no place of their own at run time.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-s390x-static)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
