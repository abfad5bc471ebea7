# Icon, manifest and version of the application, and its installer, target "installer". The companion
# programs are console programs that run with the rights of whoever starts them.
set(ZELVORA_ICON "${CMAKE_CURRENT_LIST_DIR}/zelvora.ico")
set(ZELVORA_MANIFEST "${CMAKE_CURRENT_BINARY_DIR}/zelvora.manifest")
string(REPLACE "." "," ZELVORA_VERSION_NUMBERS "${PROJECT_VERSION}")
configure_file("${CMAKE_CURRENT_LIST_DIR}/zelvora.manifest.in" "${ZELVORA_MANIFEST}" @ONLY)
configure_file("${CMAKE_CURRENT_LIST_DIR}/zelvora.rc.in" zelvora.rc @ONLY)
target_sources(zelvora PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/zelvora.rc")
set_target_properties(zelvora PROPERTIES WIN32_EXECUTABLE ON)
if(MSVC)
    target_link_options(zelvora PRIVATE /MANIFEST:NO) # the resource file brings it
endif()

# The installer packs what stands in the directory that "cmake --install" and windeployqt have filled.
find_program(MAKENSIS makensis)
if(MAKENSIS)
    set(stage "${CMAKE_BINARY_DIR}/installer")
    get_target_property(qmake Qt5::qmake IMPORTED_LOCATION)
    get_filename_component(qt_bin_dir "${qmake}" DIRECTORY)
    find_program(WINDEPLOYQT windeployqt HINTS "${qt_bin_dir}" REQUIRED)
    add_custom_target(installer
        COMMAND "${CMAKE_COMMAND}" -E rm -rf "${stage}"
        COMMAND "${CMAKE_COMMAND}" --install "${CMAKE_BINARY_DIR}" --config $<CONFIG>
            --component portable --prefix "${stage}"
        COMMAND "${WINDEPLOYQT}" --no-translations "${stage}/zelvora.exe" "${stage}/zelvora-print.exe"
        COMMAND "${MAKENSIS}" /INPUTCHARSET UTF8 "/DVERSION=${PROJECT_VERSION}" "/DSTAGE=${stage}"
            "/DOUTPUT=${CMAKE_BINARY_DIR}/zelvora-${PROJECT_VERSION}-setup.exe"
            "${CMAKE_CURRENT_LIST_DIR}/zelvora.nsi"
        VERBATIM)
    add_dependencies(installer zelvora zelvora-db zelvora-print zelvora-update)
endif()
