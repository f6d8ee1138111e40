# The bill of materials, in CycloneDX's form: what is linked into or needed by what is installed, in the versions that this
# build found. It tells no time and has no number of its own, so that the same build gives the same file.

file(STRINGS REUSE.toml DCM_LICENCE REGEX "^SPDX-License-Identifier = ")
string(REGEX REPLACE ".*\"(.*)\"" "\\1" DCM_LICENCE "${DCM_LICENCE}")

# What find_package found becomes a component: PACKAGE VERSION OF DESCRIPTION, where OF is what depends on it.
set(DCM_BOM_COMPONENTS "")
foreach(part IN ITEMS libdcm dcm)
    set(DCM_BOM_NEEDS_${part} "")
endforeach()
set(DCM_BOM_NEEDS_dcm "\"libdcm\"")
function(dcm_bom_component package version of description)
    if(NOT ${package}_FOUND)
        return()
    endif()
    string(TOLOWER ${package} name)
    string(APPEND DCM_BOM_COMPONENTS ",
    {
      \"type\": \"library\",
      \"bom-ref\": \"${name}\",
      \"name\": \"${package}\",
      \"version\": \"${version}\",
      \"description\": \"${description}\",
      \"purl\": \"pkg:generic/${name}@${version}\"
    }")
    string(APPEND DCM_BOM_NEEDS_${of} ", \"${name}\"")
    string(REGEX REPLACE "^, " "" DCM_BOM_NEEDS_${of} "${DCM_BOM_NEEDS_${of}}")
    set(DCM_BOM_COMPONENTS "${DCM_BOM_COMPONENTS}" PARENT_SCOPE)
    set(DCM_BOM_NEEDS_${of} "${DCM_BOM_NEEDS_${of}}" PARENT_SCOPE)
endfunction()

dcm_bom_component(LibXml2 "${LIBXML2_VERSION_STRING}" libdcm "Reads XML; linked dynamically")
if(DCM_BUILD_TOOL)
    dcm_bom_component(CLI11 "${CLI11_VERSION}" dcm "Reads the command line; headers only")
    dcm_bom_component(nlohmann_json "${nlohmann_json_VERSION}" dcm "Reads and writes JSON; headers only")
    set(librsvg_FOUND ${RSVG_FOUND})
    dcm_bom_component(librsvg "${RSVG_librsvg-2.0_VERSION}" dcm "Draws PNG and PDF; loaded when it is used")
endif()

configure_file(cmake/bom.cdx.json.in ${PROJECT_BINARY_DIR}/bom.cdx.json @ONLY)
