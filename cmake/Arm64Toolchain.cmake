# Builds for 64-bit ARM on another machine: Debian's cross compiler, the libraries that `scripts/setup.sh --arm64` has
# unpacked, and an emulator for what is built and run at once, as the tests are. With ORVO_ARM64_SYSROOT empty, libraries
# come from the system's own folders for that processor, as packages' builders have them.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

set(ORVO_ARM64_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../.deps/arm64" CACHE PATH "Root of the libraries for 64-bit ARM")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ORVO_ARM64_SYSROOT)

if(ORVO_ARM64_SYSROOT)
    get_filename_component(CMAKE_SYSROOT "${ORVO_ARM64_SYSROOT}" ABSOLUTE)
    if(NOT EXISTS "${CMAKE_SYSROOT}/usr/include")
        message(FATAL_ERROR "No libraries for 64-bit ARM at ${CMAKE_SYSROOT}: run scripts/setup.sh --arm64")
    endif()
    set(orvo_emulated_root "${CMAKE_SYSROOT}")

    # pkg-config would otherwise tell of this machine's libraries.
    set(ENV{PKG_CONFIG_SYSROOT_DIR} "${CMAKE_SYSROOT}")
    set(ENV{PKG_CONFIG_LIBDIR} "${CMAKE_SYSROOT}/usr/lib/aarch64-linux-gnu/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig")
else()
    # Where Debian's cross compiler has its C library.
    set(orvo_emulated_root /usr/aarch64-linux-gnu)
    set(PKG_CONFIG_EXECUTABLE aarch64-linux-gnu-pkg-config)
endif()

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

find_program(ORVO_ARM64_EMULATOR NAMES qemu-aarch64 qemu-aarch64-static)
if(ORVO_ARM64_EMULATOR)
    set(CMAKE_CROSSCOMPILING_EMULATOR "${ORVO_ARM64_EMULATOR};-L;${orvo_emulated_root}")
endif()
