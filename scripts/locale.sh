# shellcheck shell=bash
# Sourced by ./run and ./check. File names with Cyrillic letters need a UTF-8 locale, and a bare
# machine has none set.
if [[ $(locale charmap 2>/dev/null) != UTF-8 ]]; then
    export LC_ALL=C.UTF-8
fi
