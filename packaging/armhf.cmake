# CMake toolchain file for the meter: 32-bit ARM with hardware floating point, Linux, by Debian's cross compiler.
# docs/arm.md tells how to use it.
#
# The libraries that are linked are those of the sysroot that VX63_SYSROOT (cache variable or environment) names;
# of the one that script/armhf-sysroot makes; where there is neither, this machine's own armhf packages.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)

set(sysroot ${CMAKE_CURRENT_LIST_DIR}/../build/armhf-sysroot)
if(DEFINED ENV{VX63_SYSROOT})
    set(sysroot $ENV{VX63_SYSROOT})
elseif(NOT EXISTS ${sysroot})
    set(sysroot "")
endif()
if(sysroot)
    get_filename_component(sysroot ${sysroot} ABSOLUTE)
endif()
set(VX63_SYSROOT "${sysroot}" CACHE PATH "Where the meter's libraries are; empty: this machine's armhf packages")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VX63_SYSROOT)

set(folders lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig share/pkgconfig)
list(TRANSFORM folders PREPEND ${VX63_SYSROOT}/usr/)
list(JOIN folders : folders)
set(ENV{PKG_CONFIG_LIBDIR} ${folders})

# Nobody has code of a compiler so old that it passes arguments otherwise.
set(flags -Wno-psabi)
if(VX63_SYSROOT)
    set(CMAKE_SYSROOT ${VX63_SYSROOT})
    # The compiler looks into its own libc first; this comes before it.
    foreach(folder lib/${CMAKE_LIBRARY_ARCHITECTURE} usr/lib/${CMAKE_LIBRARY_ARCHITECTURE} lib usr/lib)
        if(IS_DIRECTORY ${VX63_SYSROOT}/${folder})
            string(APPEND flags " -B${VX63_SYSROOT}/${folder}")
        endif()
    endforeach()
    set(CMAKE_FIND_ROOT_PATH ${VX63_SYSROOT})
    set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
    set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
    set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
    set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
    set(ENV{PKG_CONFIG_SYSROOT_DIR} ${VX63_SYSROOT})
endif()

set(CMAKE_C_FLAGS_INIT "${flags}")
set(CMAKE_CXX_FLAGS_INIT "${flags}")
# No room for what a tool might add to a library later: the device's memory is small.
set(CMAKE_SHARED_LINKER_FLAGS_INIT -Wl,--spare-dynamic-tags=0)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -L ${VX63_SYSROOT}/)
