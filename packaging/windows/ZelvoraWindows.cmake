# What the programs are on Windows: icon, version, description, rights, and a window or a console. The
# database is written in the application directory, which belongs to the administrators, so that the
# application asks for their rights; the companions have the rights of whoever starts them.

set(windows_dir "${CMAKE_CURRENT_LIST_DIR}")
set(ZELVORA_ICON "${windows_dir}/zelvora.ico")
string(REPLACE "." "," ZELVORA_VERSION_NUMBERS "${PROJECT_VERSION}")

# zelvora_windows_program(name LEVEL DESCRIPTION [MENU entry]): LEVEL is the execution level of the
# manifest. A program with an entry in the start menu has windows and no console.
function(zelvora_windows_program name level description)
    cmake_parse_arguments(ARG "" "MENU" "" ${ARGN})
    set(ZELVORA_PROGRAM ${name})
    set(ZELVORA_LEVEL ${level})
    set(ZELVORA_DESCRIPTION "${description}")
    set(ZELVORA_MANIFEST "${CMAKE_CURRENT_BINARY_DIR}/${name}.manifest")
    set(resources "${CMAKE_CURRENT_BINARY_DIR}/${name}.rc")
    configure_file("${windows_dir}/program.manifest.in" "${ZELVORA_MANIFEST}" @ONLY)
    configure_file("${windows_dir}/program.rc.in" "${resources}" @ONLY)
    target_sources(${name} PRIVATE "${resources}")
    set_source_files_properties("${resources}" TARGET_DIRECTORY ${name} PROPERTIES
        OBJECT_DEPENDS "${ZELVORA_MANIFEST};${ZELVORA_ICON}")
    if(ARG_MENU)
        set_target_properties(${name} PROPERTIES WIN32_EXECUTABLE ON)
        set_property(GLOBAL APPEND_STRING PROPERTY ZELVORA_MENU "${name}|${ARG_MENU}\n")
    endif()
    if(MSVC)
        target_link_options(${name} PRIVATE /MANIFEST:NO) # the resource file brings it
    endif()
endfunction()

# One line a program.
zelvora_windows_program(zelvora requireAdministrator
    "Zelvora: учёт и печать документов об образовании" MENU "Zelvora")
zelvora_windows_program(zelvora-batch asInvoker "Zelvora: печать партии"
    MENU "Zelvora - Печать партии")
zelvora_windows_program(zelvora-db asInvoker "Zelvora: базы данных, проверка и архивы")
zelvora_windows_program(zelvora-print asInvoker "Zelvora: печать из командной строки")
zelvora_windows_program(zelvora-update asInvoker "Zelvora: пакеты обновления")

# For scripts/make-windows-package: the version, and the programs of the start menu.
get_property(menu GLOBAL PROPERTY ZELVORA_MENU)
file(WRITE "${CMAKE_BINARY_DIR}/version.txt" "${PROJECT_VERSION}\n")
file(WRITE "${CMAKE_BINARY_DIR}/menu.txt" "${menu}")
