# SPDX-License-Identifier: Apache-2.0
include(PrecompiledHeaders)

# vandrel_folder_library(name [FOLDERS folders...] LINKS targets... [PRIVATE_LINKS targets...]):
# one static library of the sources of the current folder (all but main.cpp) and of the FOLDERS
# in it.
#
# Headers are included by their path from the project's root, and only those of linked
# libraries are found: each library publishes a view of the root that holds links to its own
# headers alone, so an include in the wrong direction does not build.
function(vandrel_folder_library name)
    cmake_parse_arguments(ARG "" "" "FOLDERS;LINKS;PRIVATE_LINKS" ${ARGN})
    list(TRANSFORM ARG_FOLDERS APPEND "/*.cpp" OUTPUT_VARIABLE sources)
    list(TRANSFORM ARG_FOLDERS APPEND "/*.h" OUTPUT_VARIABLE headers)
    file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h ${sources} ${headers})
    list(REMOVE_ITEM sources "${CMAKE_CURRENT_SOURCE_DIR}/main.cpp")

    add_library(${name} STATIC ${sources})
    target_link_libraries(${name} PUBLIC vandrel_options ${ARG_LINKS} PRIVATE ${ARG_PRIVATE_LINKS})
    target_precompile_headers(${name} REUSE_FROM vandrel_headers)
    # moc's step does not notice by itself that a header was added.
    list(FILTER sources INCLUDE REGEX "\\.h$")
    set_property(TARGET ${name} PROPERTY AUTOGEN_TARGET_DEPENDS ${sources})
    _vandrel_publish_headers(${name} ${sources})
endfunction()

function(_vandrel_publish_headers name)
    set(view "${PROJECT_BINARY_DIR}/views/${name}")
    # Rebuilt by each configuration, so that a deleted header is not found any more.
    file(REMOVE_RECURSE "${view}")
    foreach(header ${ARGN})
        get_filename_component(header "${header}" ABSOLUTE)
        file(RELATIVE_PATH path "${PROJECT_SOURCE_DIR}" "${header}")
        get_filename_component(folder "${view}/${path}" DIRECTORY)
        file(MAKE_DIRECTORY "${folder}")
        file(CREATE_LINK "${header}" "${view}/${path}" SYMBOLIC)
    endforeach()
    target_include_directories(${name} PUBLIC "${view}")
endfunction()
