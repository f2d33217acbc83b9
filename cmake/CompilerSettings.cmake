# Settings that every target of the project shares. Link a target to vexa_settings to get them.
add_library(vexa_settings INTERFACE)
target_compile_features(vexa_settings INTERFACE cxx_std_20)
target_include_directories(vexa_settings INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(vexa_settings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor -Woverloaded-virtual
    -Wimplicit-fallthrough -Werror
    # Specified arithmetic is kept bit for bit: no fused multiply-add behind our back.
    -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 reports false positives from inside the standard library at -O2 and above.
    target_compile_options(vexa_settings INTERFACE
        -Wno-restrict -Wno-stringop-overflow -Wno-array-bounds -Wno-maybe-uninitialized)
endif()
if(VEXA_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer -O1 -g1)
    add_link_options(-fsanitize=address,undefined)
endif()

# vexa_exports(TARGET LIST): keeps instances of the standard library inside a shared library, and tests that it shows
# just what the list names.
function(vexa_exports target list)
    cmake_path(ABSOLUTE_PATH list)
    if(NOT WIN32)
        set(script ${PROJECT_SOURCE_DIR}/cmake/standard-library.version)
        target_link_options(${target} PRIVATE -Wl,--version-script=${script})
        set_target_properties(${target} PROPERTIES LINK_DEPENDS ${script})
    endif()
    if(VEXA_TESTS)
        add_test(NAME exports_${target}
            COMMAND ${PROJECT_SOURCE_DIR}/scripts/check-exports $<TARGET_FILE:${target}> ${list})
    endif()
endfunction()
