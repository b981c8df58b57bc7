# The Debian packages, one for each component of LvpInstall.cmake, made by CPack: scripts/package.sh builds what is shipped
# and calls it. Who builds packages is their maintainer, as for other Debian tools: DEBFULLNAME and DEBEMAIL say who.
# Without an address the field holds a name alone, which apt takes and lintian does not.
set(LVP_DEBIAN_REVISION 0lvp1 CACHE STRING "What stands behind the version in the version of the Debian packages")
set(version ${PROJECT_VERSION}-${LVP_DEBIAN_REVISION})
set(maintainer "The lvp_data developers")
if(NOT "$ENV{DEBFULLNAME}" STREQUAL "")
    set(maintainer "$ENV{DEBFULLNAME}")
endif()
set(signature "${maintainer} <$ENV{DEBEMAIL}>")
if(NOT "$ENV{DEBEMAIL}" STREQUAL "")
    set(maintainer "${signature}")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME lvp-data)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "${maintainer}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL library postgres development tools documentation)
if(NOT TARGET lvp_stores_postgres)
    list(REMOVE_ITEM CPACK_COMPONENTS_ALL postgres)
endif()
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SOURCE lvp-data)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${LVP_DEBIAN_REVISION})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# lvp_package(<component> <package> <section> <what it is, in a word or two> <what it holds>)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # else it becomes the first line of all
macro(lvp_package component package section what holds)
    string(TOUPPER ${component} upper)
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "structured, typed, localizable data - ${what}
lvp_data keeps structured, typed and localizable data inside the process of a
design application: containers of named arrays of values with units, in a tree
that lives in memory or in one file, and is read from and written to XML.

This package holds ${holds}.
")
endmacro()
lvp_package(library liblvp-data-6-1 libs "shared libraries" "the shared libraries")
lvp_package(postgres liblvp-data-postgres-6-1 libs "stores in PostgreSQL databases"
    "the shared library for stores in PostgreSQL databases, which\nmany processes and machines change together")
lvp_package(development liblvp-data-6-1-dev libdevel "development files"
    "the headers, the files by which CMake and pkg-config find\nthe library, and the exam for stores of one's own")
lvp_package(tools lvp-data-tools utils "command-line tool"
    "lvp-data, which reads and writes documents, and shows,\nchecks, mends, copies and compacts stores")
lvp_package(documentation liblvp-data-doc doc "documentation"
    "the pages of the documentation, the description of the\ninterfaces, and examples")

# What they need. The tool goes with the libraries of its own version, since it is tried with no others. The files for
# CMake ask for no other package but GoogleTest, and for that with the exam alone, which says so itself.
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_POSTGRES_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(postgres)
if(TARGET lvp_stores_postgres)
    set(postgres lvp_stores_postgres)
endif()
foreach(library IN ITEMS lvp_core lvp_data lvp_stores ${postgres})
    get_target_property(folder ${library} BINARY_DIR)
    list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${folder})
endforeach()
set(CPACK_DEBIAN_POSTGRES_PACKAGE_DEPENDS "liblvp-data-6-1 (= ${version})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "liblvp-data-6-1 (= ${version})")
if(postgres)
    string(APPEND CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS ", liblvp-data-postgres-6-1 (= ${version})")
endif()
# The headers of two series have the same places.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_PROVIDES liblvp-data-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_CONFLICTS liblvp-data-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "cmake, liblvp-data-doc, libgtest-dev, pkg-config")
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS ${CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS})
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)

# Later releases of the series add to the libraries: who was built with this one needs it or a later one.
set(debian ${PROJECT_BINARY_DIR}/debian)
set(lines)
foreach(library IN ITEMS core data stores)
    string(APPEND lines "liblvp_${library} 6_1 liblvp-data-6-1 (>= ${PROJECT_VERSION})\n")
endforeach()
file(CONFIGURE OUTPUT ${debian}/shlibs CONTENT "${lines}")
file(CONFIGURE OUTPUT ${debian}/postgres/shlibs
    CONTENT "liblvp_stores_postgres 6_1 liblvp-data-postgres-6-1 (>= ${PROJECT_VERSION})\n")
file(CONFIGURE OUTPUT ${debian}/triggers CONTENT "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${debian}/shlibs ${debian}/triggers)
set(CPACK_DEBIAN_POSTGRES_PACKAGE_CONTROL_EXTRA ${debian}/postgres/shlibs ${debian}/triggers)

# What packages have beside what is installed.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(${PROJECT_SOURCE_DIR}/cmake/debian/changelog.in ${debian}/changelog @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/Finish.cmake)
set(CPACK_LVP_CHANGELOG ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
set(CPACK_LVP_DEBIAN_CHANGELOG ${debian}/changelog)
set(CPACK_LVP_COPYRIGHT ${PROJECT_SOURCE_DIR}/cmake/debian/copyright)
set(CPACK_LVP_OVERRIDES ${PROJECT_SOURCE_DIR}/cmake/debian/overrides)
set(CPACK_LVP_PACKAGES library=liblvp-data-6-1 postgres=liblvp-data-postgres-6-1 development=liblvp-data-6-1-dev tools=lvp-data-tools
    documentation=liblvp-data-doc)
include(CPack)
