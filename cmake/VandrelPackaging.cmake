# SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
# SPDX-License-Identifier: Apache-2.0
# How the libraries reach an integrator: every public header of every library sits in one folder,
# include/VandrelPensioen/, and is included with that prefix (<VandrelPensioen/pensmain.h>). One
# folder for all libraries because they ship and version together as one package; the prefix is
# what keeps generic names such as formats.h or hint.h from clashing with a host's own headers.
#
# Inside the installed folder the headers find each other through their quoted includes
# ("hostmodel.h" next to pensmain.h). In the build tree the same prefixed names resolve to small
# forwarding headers under ${VANDREL_PREFIXED_INCLUDE_DIR}, so that a prefixed include names the
# very file the library was compiled with and flat includes inside the tree keep working.

set(VANDREL_PREFIXED_INCLUDE_DIR ${PROJECT_BINARY_DIR}/include)
set(VANDREL_INCLUDE_PREFIX VandrelPensioen)

# vandrel_public_headers(target header...): installs the headers (relative to the current source
# folder, or absolute for generated ones) into include/VandrelPensioen/ and makes them reachable
# as <VandrelPensioen/name.h> from the build tree and from the installed tree.
function(vandrel_public_headers target)
    foreach(header ${ARGN})
        if(NOT IS_ABSOLUTE ${header})
            set(header ${CMAKE_CURRENT_SOURCE_DIR}/${header})
        endif()
        get_filename_component(name ${header} NAME)
        set(forward ${VANDREL_PREFIXED_INCLUDE_DIR}/${VANDREL_INCLUDE_PREFIX}/${name})
        set(text "#pragma once\n#include \"${header}\"\n")
        if(EXISTS ${forward})
            file(READ ${forward} old)
        else()
            set(old "")
        endif()
        if(NOT old STREQUAL text)
            file(WRITE ${forward} "${text}")
        endif()
        install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${VANDREL_INCLUDE_PREFIX})
    endforeach()
    target_include_directories(${target} PUBLIC
        $<BUILD_INTERFACE:${VANDREL_PREFIXED_INCLUDE_DIR}>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
endfunction()

# Installed libraries and programs find the package's own libraries next to them, wherever the
# package was installed: RUNPATH relative to $ORIGIN. Relative, because the prefix is often only
# known at install time (cmake --install --prefix); in a system prefix it costs nothing.
function(vandrel_install_rpath target destination)
    file(RELATIVE_PATH to_libs /${destination} /${CMAKE_INSTALL_LIBDIR})
    if(to_libs STREQUAL "")
        set(rpath "$ORIGIN")
    else()
        set(rpath "$ORIGIN/${to_libs}")
    endif()
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "${rpath}")
endfunction()
