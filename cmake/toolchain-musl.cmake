# A small libc: C with musl's compiler wrapper, C++ with the system's compiler and musl's headers. C++ objects made
# this way must need no C++ runtime, since the one that is installed belongs to the other libc.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${CMAKE_HOST_SYSTEM_PROCESSOR})
set(CMAKE_C_COMPILER musl-gcc)
set(CMAKE_CXX_COMPILER g++)

# The header folders of the compiler, which are between two lines of its verbose output.
function(dcm_header_folders compiler language result)
    execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C ${compiler} -E -v -x ${language} /dev/null
        OUTPUT_QUIET ERROR_VARIABLE said RESULT_VARIABLE status)
    if(NOT status EQUAL 0 OR NOT said MATCHES "<\\.\\.\\.> search starts here:\n(.*)\nEnd of search list")
        message(FATAL_ERROR "${compiler} does not tell where it looks for headers: ${said}")
    endif()
    string(STRIP "${CMAKE_MATCH_1}" folders)
    string(REGEX REPLACE "\n +" ";" folders "${folders}")
    set(${result} "${folders}" PARENT_SCOPE)
endfunction()

dcm_header_folders(${CMAKE_CXX_COMPILER} c++ cxx_folders)
list(FILTER cxx_folders INCLUDE REGEX "/c\\+\\+/")
dcm_header_folders(${CMAKE_C_COMPILER} c c_folders)

# The C++ headers were made for glibc: they ask for its version and use a name of its own for a standard type.
set(CMAKE_CXX_FLAGS_INIT "-nostdinc '-D__GLIBC_PREREQ(major,minor)=0' -D__locale_t=locale_t")
foreach(folder IN LISTS cxx_folders c_folders)
    string(APPEND CMAKE_CXX_FLAGS_INIT " -isystem ${folder}")
endforeach()
