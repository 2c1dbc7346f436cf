# SPDX-License-Identifier: Apache-2.0
include(GNUInstallDirs)

# vandrel_manual_page(program): PROGRAM.1, which the program itself writes from the texts of its
# --help.
function(vandrel_manual_page program)
    if(VANDREL_SANITIZE OR CMAKE_CROSSCOMPILING)
        return()
    endif()
    set(page "${CMAKE_CURRENT_BINARY_DIR}/${program}.1")
    add_custom_command(OUTPUT "${page}"
        COMMAND ${program} --manual > "${page}"
        DEPENDS ${program}
        VERBATIM)
    add_custom_target(${program}-manual ALL DEPENDS "${page}")
    install(FILES "${page}" DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endfunction()
