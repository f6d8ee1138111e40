# What the toolchain files of the targets share. They set DCM_ARCHITECTURE to Debian's name of the target, DCM_TRIPLET
# to that of its compiler and DCM_EMULATOR to what runs its programs. "./dev cross" fills the sysroot.
get_filename_component(DCM_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../build/sysroot-${DCM_ARCHITECTURE}" ABSOLUTE)

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${DCM_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${DCM_TRIPLET}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${DCM_TRIPLET})

# The compiler finds libc by itself; the sysroot adds libxml2, what it needs in turn, and the loader for the emulator.
set(CMAKE_FIND_ROOT_PATH ${DCM_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
foreach(kind IN ITEMS EXE SHARED)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT
        "-Wl,-rpath-link,'${DCM_SYSROOT}/usr/lib/${DCM_TRIPLET}' -Wl,-rpath-link,'${DCM_SYSROOT}/lib/${DCM_TRIPLET}'")
endforeach()
# Headers of the libraries that libxml2's headers include.
set(CMAKE_C_FLAGS_INIT "-isystem '${DCM_SYSROOT}/usr/include'")
set(CMAKE_CXX_FLAGS_INIT "-isystem '${DCM_SYSROOT}/usr/include'")

set(CMAKE_CROSSCOMPILING_EMULATOR ${DCM_EMULATOR} -L ${DCM_SYSROOT})
