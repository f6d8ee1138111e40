# What "cmake --install" puts where. Everything finds its neighbours from where it lies, so that an installed tree may be
# moved, or built into an image with DESTDIR or --prefix. "--component" installs a part: "runtime" is what programs that
# link the shared library run with, "development" what they are built with, "tool" the tool and what its users read.
include(CMakePackageConfigHelpers)

set(DCM_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/dcm)

# --- The library -----------------------------------------------------------------------------------------------------

install(FILES include/dcm.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

# An export for each library: a program that links the shared one needs nothing of libxml2's to build.
foreach(library IN ITEMS shared static)
    string(TOUPPER ${library} kind)
    if(DCM_BUILD_${kind})
        install(TARGETS dcm_${library} EXPORT dcm-${library}
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
        install(EXPORT dcm-${library} NAMESPACE dcm:: FILE dcm-${library}-targets.cmake
            DESTINATION ${DCM_CMAKE_DIR} COMPONENT development)
    endif()
endforeach()

configure_package_config_file(cmake/dcm-config.cmake.in ${PROJECT_BINARY_DIR}/dcm-config.cmake
    INSTALL_DESTINATION ${DCM_CMAKE_DIR} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/dcm-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/dcm-config.cmake ${PROJECT_BINARY_DIR}/dcm-config-version.cmake
    DESTINATION ${DCM_CMAKE_DIR} COMPONENT development)

# --- pkg-config: folders below the prefix are named by the way to them from the file ----------------------------------

file(RELATIVE_PATH DCM_PC_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" DCM_PC_PREFIX "\${pcfiledir}/${DCM_PC_PREFIX}")
foreach(folder IN ITEMS INCLUDEDIR LIBDIR)
    if(IS_ABSOLUTE "${CMAKE_INSTALL_${folder}}")
        set(DCM_PC_${folder} "${CMAKE_INSTALL_${folder}}")
    else()
        set(DCM_PC_${folder} "\${prefix}/${CMAKE_INSTALL_${folder}}")
    endif()
endforeach()
# The shared library brings libxml2 with it; who links the static one has to name both.
if(DCM_BUILD_SHARED)
    set(DCM_PC_REQUIRES Requires.private)
else()
    set(DCM_PC_REQUIRES Requires)
endif()
configure_file(cmake/dcm.pc.in ${PROJECT_BINARY_DIR}/dcm.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/dcm.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# --- The tool and what is read ---------------------------------------------------------------------------------------

# install_all COMPONENT PATTERN DESTINATION: every file of the sources whose name matches.
function(install_all component pattern destination)
    file(GLOB files CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${pattern})
    if(files)
        install(FILES ${files} DESTINATION ${destination} COMPONENT ${component})
    endif()
endfunction()

install_all(development man/*.3 ${CMAKE_INSTALL_MANDIR}/man3)
if(DCM_BUILD_TOOL)
    install(TARGETS dcm_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
    install(FILES ${DCM_EXPORT_SCHEMA} DESTINATION ${CMAKE_INSTALL_DATADIR}/dcm/schema COMPONENT tool)
    install_all(tool man/*.1 ${CMAKE_INSTALL_MANDIR}/man1)
    # Where each shell looks. Distributions keep a folder of their own for zsh.
    set(DCM_ZSH_COMPLETIONS ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING "Folder of the completion for zsh")
    install_all(tool completions/dcm ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install_all(tool completions/_dcm ${DCM_ZSH_COMPLETIONS})
    install_all(tool completions/dcm.fish ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
endif()
install_all(tool schema/*.rnc ${CMAKE_INSTALL_DATADIR}/dcm/schema)
if(TARGET dcm_reference)
    install(FILES ${PROJECT_BINARY_DIR}/man/dcm-description.5 DESTINATION ${CMAKE_INSTALL_MANDIR}/man5 COMPONENT tool)
    install(FILES ${PROJECT_BINARY_DIR}/schema/dcm-description.rng DESTINATION ${CMAKE_INSTALL_DATADIR}/dcm/schema
        COMPONENT tool)
endif()
install_all(tool examples/*.xml ${CMAKE_INSTALL_DOCDIR}/examples)

# --- What it is made of ----------------------------------------------------------------------------------------------

include(cmake/bom.cmake)
install(FILES ${PROJECT_BINARY_DIR}/bom.cdx.json DESTINATION ${CMAKE_INSTALL_DATADIR}/dcm COMPONENT development)
