# Writes the pages of rules as a C++ array: cmake -DOUTPUT=FILE -P embed_pages.cmake PAGE...
set(pages "")
math(EXPR last "${CMAKE_ARGC} - 1")
set(isPage FALSE)
foreach(i RANGE ${last})
    set(argument "${CMAKE_ARGV${i}}")
    if(isPage)
        get_filename_component(name "${argument}" NAME_WE)
        file(READ "${argument}" text)
        string(APPEND pages "    {\"${name}\", R\"PAGE(${text})PAGE\"},\n")
    elseif(argument MATCHES "embed_pages.cmake$")
        set(isPage TRUE)
    endif()
endforeach()
file(WRITE "${OUTPUT}" "#include \"tools/dcm/check/pages.h\"

#include <iterator>

namespace dcmtool {

const EmbeddedPage kPages[] = {
${pages}};
const size_t kPageCount = std::size(kPages);

} // namespace dcmtool
")
