# Finds the interpreter that runs the scripts of the tests and benchmarks: Debian's, the one that has
# openpyxl, before any other that stands first in the path.

find_program(ZELVORA_PYTHON NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH)
if(NOT ZELVORA_PYTHON)
    find_program(ZELVORA_PYTHON NAMES python3 REQUIRED)
endif()
