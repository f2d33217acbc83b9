# What a build for Windows adds to its programs and libraries.

# vexa_version_information(TARGET DESCRIPTION): the version that the properties of the file show.
function(vexa_version_information target description)
    string(REPLACE "." "," VERSION_NUMBERS "${PROJECT_VERSION},0")
    set(DESCRIPTION "${description}")
    set(FILE_STEM ${target})
    set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/Version.rc.in ${script} @ONLY)
    target_sources(${target} PRIVATE ${script})
endfunction()

# The compiler's runtime is shared, so that exceptions and allocations cross the libraries: its files stand beside the
# programs, as they must wherever the libraries go.
foreach(name libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
        OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT IS_ABSOLUTE "${file}")
        message(FATAL_ERROR "the compiler ${CMAKE_CXX_COMPILER} has no ${name}; install g++-mingw-w64-x86-64-posix")
    endif()
    file(COPY ${file} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
    install(FILES ${file} DESTINATION bin)
endforeach()
