# Compiles for 64-bit Windows on Debian, with the libraries that scripts/build-windows-dependencies has
# built into $ZELVORA_DEPS_DIR/windows or, without that variable, into .deps/windows of the source tree.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# Of the compiler's two variants the one with the threads of the C++ library.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

if(DEFINED ENV{ZELVORA_DEPS_DIR})
    file(TO_CMAKE_PATH "$ENV{ZELVORA_DEPS_DIR}/windows" zelvora_windows_deps_dir)
else()
    set(zelvora_windows_deps_dir "${CMAKE_CURRENT_LIST_DIR}/../.deps/windows")
endif()

# Libraries and headers of Windows only, programs of this machine only.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
foreach(library sqlite qt libzip qxlsx)
    list(APPEND CMAKE_FIND_ROOT_PATH "${zelvora_windows_deps_dir}/${library}")
endforeach()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
