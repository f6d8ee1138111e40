# What makes mistakes in memory harder to exploit, where compiler and linker have it. For everything in this folder and
# below; sanitizers look for the same mistakes in their own way.
include(CheckCXXSourceCompiles)

# -fhardened gives the same to the compiler, and warns of each option that is given beside it.
if(NOT "${CMAKE_CXX_FLAGS} " MATCHES "-fhardened ")
    # Frames with arrays have a guard, large ones touch each of their pages, and jumps go to marked places only (x86).
    foreach(option IN ITEMS -fstack-protector-strong -fstack-clash-protection -fcf-protection=full)
        string(MAKE_C_IDENTIFIER "DCM_HAS${option}" known)
        set(CMAKE_REQUIRED_FLAGS "-Werror ${option}")
        check_cxx_source_compiles("int main() { return 0; }" ${known})
        if(${known})
            add_compile_options(${option})
        endif()
    endforeach()
    unset(CMAKE_REQUIRED_FLAGS)

    # libc checks the bounds that the compiler knows, in optimised code only. A level that is given holds.
    if(NOT "${CMAKE_C_FLAGS} ${CMAKE_CXX_FLAGS}" MATCHES "_FORTIFY_SOURCE")
        set(optimised "$<OR:$<CONFIG:Release>,$<CONFIG:RelWithDebInfo>,$<CONFIG:MinSizeRel>>")
        # Some compilers define it by default.
        add_compile_options("$<${optimised}:-U_FORTIFY_SOURCE>" "$<${optimised}:-D_FORTIFY_SOURCE=2>")
    endif()
endif()

# All addresses are bound when a program starts; what held them is read-only from then on.
set(CMAKE_REQUIRED_LINK_OPTIONS -Wl,-z,relro,-z,now)
check_cxx_source_compiles("int main() { return 0; }" DCM_HAS_BIND_NOW)
unset(CMAKE_REQUIRED_LINK_OPTIONS)
if(DCM_HAS_BIND_NOW)
    add_link_options(-Wl,-z,relro,-z,now)
endif()
