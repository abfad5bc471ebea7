# The layout of an installed system, component "system":
#
#   cmake --install build/release --component system --prefix /usr
#
# and the Debian package of it, made by cpack (see scripts/make-package). A plain "cmake --install"
# leaves the component out: it puts the programs side by side, to be run from where they stand.

set(ZELVORA_PACKAGE_RELEASE "1" CACHE STRING "Revision of the package, behind the version")

include(GNUInstallDirs)
set(linux_dir "${CMAKE_CURRENT_LIST_DIR}")
set(debian_dir "${CMAKE_CURRENT_LIST_DIR}/../debian")
set(doc_dir "${CMAKE_INSTALL_DATADIR}/doc/zelvora")
# The launchers look there, so that it is the same with every distribution.
set(program_dir lib/zelvora)

function(zelvora_install_system)
    install(${ARGN} COMPONENT system EXCLUDE_FROM_ALL)
endfunction()

# A gzipped copy of a file, as Debian wants its papers: zelvora_install_gzipped(file directory name)
function(zelvora_install_gzipped file directory name)
    find_program(GZIP gzip REQUIRED)
    set(zipped "${CMAKE_CURRENT_BINARY_DIR}/${directory}/${name}.gz")
    get_filename_component(zipped_dir "${zipped}" DIRECTORY)
    file(MAKE_DIRECTORY "${zipped_dir}")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
    execute_process(COMMAND "${GZIP}" -9nc "${file}" OUTPUT_FILE "${zipped}" RESULT_VARIABLE failed)
    if(failed)
        message(FATAL_ERROR "${file} could not be compressed")
    endif()
    zelvora_install_system(FILES "${zipped}" DESTINATION "${directory}")
endfunction()

# Programs: read-only master copies behind the launchers. Those that know no directory of the user's
# need no launcher.
zelvora_install_system(TARGETS zelvora zelvora-batch zelvora-db zelvora-print zelvora-update
    RUNTIME DESTINATION ${program_dir})
zelvora_install_system(FILES "${linux_dir}/launcher.sh" DESTINATION ${program_dir})
zelvora_install_system(PROGRAMS "${linux_dir}/zelvora" "${linux_dir}/zelvora-print"
    DESTINATION ${CMAKE_INSTALL_BINDIR})
# The one launcher serves both: it goes by its name.
set(batch_launcher "${CMAKE_CURRENT_BINARY_DIR}/zelvora-batch")
file(CREATE_LINK zelvora-print "${batch_launcher}" SYMBOLIC)
zelvora_install_system(FILES "${batch_launcher}" DESTINATION ${CMAKE_INSTALL_BINDIR})
foreach(program zelvora-db zelvora-update)
    set(link "${CMAKE_CURRENT_BINARY_DIR}/${program}")
    file(CREATE_LINK "../${program_dir}/${program}" "${link}" SYMBOLIC)
    zelvora_install_system(FILES "${link}" DESTINATION ${CMAKE_INSTALL_BINDIR})
endforeach()

# The changes that this release brings to existing databases, if it brings any.
set(update_package "${CMAKE_CURRENT_SOURCE_DIR}/updates/dbUpdate.bin")
if(EXISTS "${update_package}")
    zelvora_install_system(FILES "${update_package}" DESTINATION ${program_dir}/updates)
endif()

# Menu entry and icons.
zelvora_install_system(FILES "${linux_dir}/zelvora.desktop" "${linux_dir}/zelvora-batch.desktop"
    DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
zelvora_install_system(FILES "${linux_dir}/org.example.zelvora.metainfo.xml"
    DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
set(icons_dir ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
foreach(size 16 24 32 48 64 128 256)
    foreach(icon zelvora zelvora-batch)
        zelvora_install_system(FILES "${PROJECT_SOURCE_DIR}/resources/appicon/${icon}-${size}.png"
            DESTINATION ${icons_dir}/${size}x${size}/apps RENAME ${icon}.png)
    endforeach()
endforeach()
zelvora_install_system(FILES "${PROJECT_SOURCE_DIR}/resources/icons/zelvora.svg"
    "${PROJECT_SOURCE_DIR}/resources/icons/zelvora-batch.svg"
    DESTINATION ${icons_dir}/scalable/apps)

# Papers.
zelvora_install_system(FILES "${debian_dir}/copyright" DESTINATION ${doc_dir})
zelvora_install_gzipped("${debian_dir}/changelog" ${doc_dir} changelog.Debian)
file(GLOB manuals CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/man/*.1")
foreach(manual ${manuals})
    get_filename_component(name "${manual}" NAME)
    zelvora_install_gzipped("${manual}" ${CMAKE_INSTALL_DATADIR}/man/man1 ${name})
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_INSTALL_CMAKE_PROJECTS "${CMAKE_BINARY_DIR};${PROJECT_NAME};system;/")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_NAME zelvora)
set(CPACK_PACKAGE_VENDOR "The Zelvora developers")
set(CPACK_PACKAGE_CONTACT "The Zelvora developers <developers@zelvora.example>")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "register of education documents, printed on paper forms")
set(CPACK_PACKAGE_DESCRIPTION
"Zelvora is for the registrar of an educational organisation. It keeps the
register of issued documents (diplomas, certificates and the like) in a local
database and prints them onto pre-printed paper forms, so that every mark
lands on its place.
.
The fields of each document type and the layout of each paper form are the
user's own. Documents are exchanged with .xlsx workbooks through templates.
The user interface is in Russian.
.
Программа для учёта выданных документов об образовании и печати их на
типографских бланках.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE "${ZELVORA_PACKAGE_RELEASE}")
set(CPACK_DEBIAN_PACKAGE_SECTION database)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Loaded at run time: the database driver, the font of the style sheet, and the one with the metrics
# that most layouts are designed with.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt5sql5-sqlite, fonts-roboto, fonts-liberation")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "cups")
# One of them shows the launcher's messages when it was started from the menu.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "zenity | kdialog | x11-utils")
include(CPack)
