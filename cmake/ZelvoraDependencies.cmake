# Finds the libraries beside Qt. Include after Qt5 is found.
#
# QXlsx, target QXlsx::QXlsx, reads and writes .xlsx workbooks.
#
# The distribution's package is used where there is one. Otherwise it is the copy that
# scripts/install-dependencies has built into $ZELVORA_DEPS_DIR/qxlsx or, without that variable,
# into .deps/qxlsx of the source tree.

if(DEFINED ENV{ZELVORA_DEPS_DIR})
    file(TO_CMAKE_PATH "$ENV{ZELVORA_DEPS_DIR}" zelvora_deps_dir)
    list(APPEND CMAKE_PREFIX_PATH "${zelvora_deps_dir}/qxlsx")
endif()
get_filename_component(zelvora_source_dir "${CMAKE_CURRENT_LIST_DIR}" DIRECTORY)
list(APPEND CMAKE_PREFIX_PATH "${zelvora_source_dir}/.deps/qxlsx")

find_package(QXlsx CONFIG QUIET)
if(NOT QXlsx_FOUND)
    message(FATAL_ERROR "QXlsx was not found. Run scripts/install-dependencies, or add the prefix "
                        "of an installed QXlsx to CMAKE_PREFIX_PATH.")
endif()
message(STATUS "Found QXlsx: ${QXlsx_DIR} (version ${QXlsx_VERSION})")

# QXlsx exports the private headers of Qt Gui that only its own sources need. They are not
# installed everywhere, and this project must not come to depend on them.
set_target_properties(QXlsx::QXlsx PROPERTIES INTERFACE_LINK_LIBRARIES "Qt5::Core;Qt5::Gui")

# Reads the packages of workbooks, and makes those that QXlsx gets in their place. Found by its
# headers: its own configuration asks for programs that the distribution packs apart from it.
find_path(ZELVORA_LIBZIP_INCLUDE_DIR zip.h)
find_library(ZELVORA_LIBZIP_LIBRARY zip)
if(NOT ZELVORA_LIBZIP_INCLUDE_DIR OR NOT ZELVORA_LIBZIP_LIBRARY)
    message(FATAL_ERROR "libzip was not found. Run scripts/install-dependencies.")
endif()
add_library(Zelvora::libzip UNKNOWN IMPORTED)
set_target_properties(Zelvora::libzip PROPERTIES
    IMPORTED_LOCATION "${ZELVORA_LIBZIP_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${ZELVORA_LIBZIP_INCLUDE_DIR}")
if(MINGW)
    # There it is an archive of objects, which tells nothing of what it needs itself.
    find_library(ZELVORA_ZLIB_LIBRARY NAMES libz.a REQUIRED)
    set_target_properties(Zelvora::libzip PROPERTIES
        INTERFACE_LINK_LIBRARIES "${ZELVORA_ZLIB_LIBRARY}")
endif()

# Copies a database that may be in use, on connections of its own: the toolkit's driver does not give
# that interface.
find_package(SQLite3 REQUIRED)
