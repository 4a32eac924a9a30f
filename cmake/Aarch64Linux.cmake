# Cross-compiles for 64-bit ARM on Debian: its own compiler, and packages of that architecture that
# are installed beside the machine's. What was built is run by qemu.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(triplet aarch64-linux-gnu)
set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${triplet})
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64)

# Packages of this architecture only; headers that serve all lie in /usr/include.
set(CMAKE_FIND_ROOT_PATH /usr/lib/${triplet} /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/${triplet}/pkgconfig:/usr/share/pkgconfig)
