include(PrecompiledHeaders)

# vandrel_folder_library(name [SOURCES files...] LINKS targets... [PRIVATE_LINKS targets...]):
# one static library of the sources of the current folder (all of them but main.cpp, unless
# SOURCES says which).
#
# Headers are included by their path from the project's root, and only those of linked
# libraries are found: each library publishes a view of the root that holds links to its own
# headers alone, so an include in the wrong direction does not build.
function(vandrel_folder_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    if(NOT ARG_SOURCES)
        file(GLOB ARG_SOURCES CONFIGURE_DEPENDS *.cpp *.h)
        list(REMOVE_ITEM ARG_SOURCES "${CMAKE_CURRENT_SOURCE_DIR}/main.cpp")
    endif()
    if(NOT ARG_SOURCES)
        add_library(${name} INTERFACE)
        target_link_libraries(${name} INTERFACE vandrel_options ${ARG_LINKS})
        return()
    endif()

    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC vandrel_options ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS})
    target_precompile_headers(${name} REUSE_FROM vandrel_headers)
    # moc's step does not notice by itself that a header was added.
    list(FILTER ARG_SOURCES INCLUDE REGEX "\\.h$")
    set_property(TARGET ${name} PROPERTY AUTOGEN_TARGET_DEPENDS ${ARG_SOURCES})
    _vandrel_publish_headers(${name} ${ARG_SOURCES})
endfunction()

function(_vandrel_publish_headers name)
    set(view "${PROJECT_BINARY_DIR}/views/${name}")
    # Made anew at each configuration, so that a deleted header is not found any more.
    file(REMOVE_RECURSE "${view}")
    foreach(header ${ARGN})
        if(NOT header MATCHES "\\.h$")
            continue()
        endif()
        get_filename_component(header "${header}" ABSOLUTE)
        file(RELATIVE_PATH path "${PROJECT_SOURCE_DIR}" "${header}")
        get_filename_component(folder "${view}/${path}" DIRECTORY)
        file(MAKE_DIRECTORY "${folder}")
        file(CREATE_LINK "${header}" "${view}/${path}" SYMBOLIC)
    endforeach()
    target_include_directories(${name} PUBLIC "${view}")
endfunction()
