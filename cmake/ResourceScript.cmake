# vexa_resources(TARGET SCRIPT FUNCTION): compiles the dialog templates of a resource script into TARGET, which then
# has the function std::span<const framework::DialogTemplate> FUNCTION(). On Windows the same script also goes to the
# resource compiler.
function(vexa_resources target script function)
    cmake_path(ABSOLUTE_PATH script OUTPUT_VARIABLE source)
    cmake_path(GET source PARENT_PATH folder)
    file(GLOB headers CONFIGURE_DEPENDS ${folder}/*.h)
    set(generated ${CMAKE_CURRENT_BINARY_DIR}/${target}_${function}.cpp)
    add_custom_command(OUTPUT ${generated}
        COMMAND vexa-resources ${source} ${generated} ${function}
        DEPENDS vexa-resources ${source} ${headers}
        COMMENT "Compiling ${script}")
    target_sources(${target} PRIVATE ${generated})
    if(WIN32)
        target_sources(${target} PRIVATE ${source})
    endif()
endfunction()
