# The drawer that stands beside the program at run time (PROGDIR:), in the build tree as it will be installed.

set(SOLVANE_SHARE ${CMAKE_BINARY_DIR}/share/solvane)
set(SOLVANE_INSTALL_SHARE ${CMAKE_INSTALL_DATADIR}/solvane)
file(MAKE_DIRECTORY ${SOLVANE_SHARE})

# Everything of the drawer that a build makes; "cmake --build ... --target solvane_share" makes it alone.
add_custom_target(solvane_share ALL)

# solvane_share_drawer(NAME) keeps share/solvane/NAME like the source drawer NAME, without its build description.
function(solvane_share_drawer name)
    set(from ${CMAKE_SOURCE_DIR}/${name})
    file(GLOB_RECURSE files CONFIGURE_DEPENDS LIST_DIRECTORIES false RELATIVE ${from} ${from}/*)
    list(FILTER files EXCLUDE REGEX "(^|/)(CMakeLists\\.txt|drawers\\.list)$")
    set(copies)
    foreach(file IN LISTS files)
        set(copy ${SOLVANE_SHARE}/${name}/${file})
        add_custom_command(OUTPUT ${copy} DEPENDS ${from}/${file}
            COMMAND ${CMAKE_COMMAND} -E copy ${from}/${file} ${copy} VERBATIM)
        list(APPEND copies ${copy})
    endforeach()
    file(MAKE_DIRECTORY ${SOLVANE_SHARE}/${name})
    string(TOLOWER ${name} lower)
    add_custom_target(solvane_share_${lower} DEPENDS ${copies})
    add_dependencies(solvane_share solvane_share_${lower})
endfunction()

# solvane_host_tool(NAME) makes share/solvane/Tools/NAME a link to the host's program of that name.
function(solvane_host_tool name)
    find_program(SOLVANE_TOOL_${name} ${name} NO_CMAKE_FIND_ROOT_PATH)
    set(host ${SOLVANE_TOOL_${name}})
    if(NOT host)
        set(host /usr/bin/${name})
        message(STATUS "${name} is not installed; Tools/${name} will point at ${host}")
    endif()
    file(MAKE_DIRECTORY ${SOLVANE_SHARE}/Tools)
    file(CREATE_LINK ${host} ${SOLVANE_SHARE}/Tools/${name} SYMBOLIC)
endfunction()

foreach(name ARexx Docs)
    solvane_share_drawer(${name})
endforeach()
