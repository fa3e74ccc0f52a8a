# Builds for 64-bit ARM under Linux on any other machine; what is built runs under qemu's user mode.
# The libraries that the tests need are put into build/aarch64-libraries by scripts/elsewhere.sh.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L /usr/aarch64-linux-gnu)

set(libraries ${CMAKE_CURRENT_LIST_DIR}/../build/aarch64-libraries/usr)
set(CMAKE_FIND_ROOT_PATH /usr/aarch64-linux-gnu ${libraries})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
foreach(kind IN ITEMS LIBRARY INCLUDE PACKAGE)
  set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES ${libraries}/include ${libraries}/include/aarch64-linux-gnu)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
