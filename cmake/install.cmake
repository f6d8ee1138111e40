# The files that "cmake --install" installs. They find one another by relative paths, so that an installed tree may be
# moved, or installed into an image with DESTDIR or --prefix. "--component" installs a part: "runtime" is the shared library
# for programs to run with, "development" what they are built with and all documents, "tool" the tool with its manual pages.
include(CMakePackageConfigHelpers)

set(DCM_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/dcm)

# --- The library -----------------------------------------------------------------------------------------------------

install(FILES include/dcm.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

# An export for each library: a program that links the shared one does not need libxml2's headers to build.
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

# --- pkg-config: folders below the prefix are relative to the file ----------------------------------------------------

file(RELATIVE_PATH DCM_PC_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" DCM_PC_PREFIX "\${pcfiledir}/${DCM_PC_PREFIX}")
foreach(folder IN ITEMS INCLUDEDIR LIBDIR)
    if(IS_ABSOLUTE "${CMAKE_INSTALL_${folder}}")
        set(DCM_PC_${folder} "${CMAKE_INSTALL_${folder}}")
    else()
        set(DCM_PC_${folder} "\${prefix}/${CMAKE_INSTALL_${folder}}")
    endif()
endforeach()
# The shared library is linked with libxml2; a program that links the static one has to name both.
if(DCM_BUILD_SHARED)
    set(DCM_PC_REQUIRES Requires.private)
else()
    set(DCM_PC_REQUIRES Requires)
endif()
configure_file(cmake/dcm.pc.in ${PROJECT_BINARY_DIR}/dcm.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/dcm.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# --- The tool, manual pages, documents, schemas and examples ---------------------------------------------------------

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
    install_all(tool man/*.1 ${CMAKE_INSTALL_MANDIR}/man1)
    # The folders where the shells look. Distributions have their own folder for zsh.
    set(DCM_ZSH_COMPLETIONS ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING "Folder of the completion for zsh")
    install_all(tool completions/dcm ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install_all(tool completions/_dcm ${DCM_ZSH_COMPLETIONS})
    install_all(tool completions/dcm.fish ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
    # The build generates it from the tool's field tables.
    install(FILES ${DCM_EXPORT_SCHEMA} DESTINATION ${CMAKE_INSTALL_DATADIR}/dcm/schema COMPONENT development)
endif()
# The build generates them from the library's tables.
if(TARGET dcm_reference)
    install(FILES ${PROJECT_BINARY_DIR}/man/dcm-description.5 DESTINATION ${CMAKE_INSTALL_MANDIR}/man5 COMPONENT tool)
    install(FILES ${PROJECT_BINARY_DIR}/schema/dcm-description.rng DESTINATION ${CMAKE_INSTALL_DATADIR}/dcm/schema
        COMPONENT development)
endif()

# The documents keep their places relative to one another, since they link to one another.
install_all(development *.md ${CMAKE_INSTALL_DOCDIR})
foreach(folder IN ITEMS docs docs/api docs/checks)
    install_all(development ${folder}/*.md ${CMAKE_INSTALL_DOCDIR}/${folder})
endforeach()
install_all(development docs/pictures/*.svg ${CMAKE_INSTALL_DOCDIR}/docs/pictures)
install_all(development examples/*.xml ${CMAKE_INSTALL_DOCDIR}/examples)
install_all(development examples/client/* ${CMAKE_INSTALL_DOCDIR}/examples/client)
foreach(pattern IN ITEMS schema/*.rnc docs/schema/*.json)
    install_all(development ${pattern} ${CMAKE_INSTALL_DATADIR}/dcm/schema)
endforeach()

# --- The bill of materials --------------------------------------------------------------------------------------------

include(cmake/bom.cmake)
install(FILES ${PROJECT_BINARY_DIR}/bom.cdx.json DESTINATION ${CMAKE_INSTALL_DATADIR}/dcm COMPONENT development)
