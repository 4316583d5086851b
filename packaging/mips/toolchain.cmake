# Debian's cross compilers for the switch's processor, a private root made by make_sysroot.sh, and
# qemu's user mode, which runs what was built:
#
#     cmake ... -DCMAKE_TOOLCHAIN_FILE=packaging/mips/toolchain.cmake -DVX_SYSROOT=SYSROOT
#           [-DVX_ARCHITECTURE=mipsel]
set(VX_ARCHITECTURE mipsel CACHE STRING "The target, as Debian and qemu call it")
set(VX_SYSROOT "" CACHE PATH "Root of the target's libraries")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VX_ARCHITECTURE VX_SYSROOT)
set(triple ${VX_ARCHITECTURE}-linux-gnu)

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${VX_ARCHITECTURE})
set(CMAKE_C_COMPILER ${triple}-gcc)
set(CMAKE_CXX_COMPILER ${triple}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${triple})
set(CMAKE_SYSROOT ${VX_SYSROOT})
set(CMAKE_FIND_ROOT_PATH ${VX_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_PATH} "")
set(ENV{PKG_CONFIG_LIBDIR}
    "${VX_SYSROOT}/usr/lib/${triple}/pkgconfig:${VX_SYSROOT}/usr/share/pkgconfig")
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${VX_SYSROOT}")
# Where the libraries of libraries are.
foreach(kind IN ITEMS EXE SHARED)
  string(APPEND CMAKE_${kind}_LINKER_FLAGS_INIT " -Wl,-rpath-link,${VX_SYSROOT}/usr/lib/${triple}"
                                                ":${VX_SYSROOT}/lib/${triple}")
endforeach()
set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-${VX_ARCHITECTURE}-static;-L;${VX_SYSROOT}")
