# shellcheck shell=bash
# Sourced. Steps of a script with their output in a log. The script sets script_name, and log_file
# before the first step.

fail() {
    echo "${script_name:?}: $*" >&2
    exit 1
}

# Runs a command with its output kept in the log; on failure tells where the log is.
logged() {
    local -r purpose=$1
    shift
    "$@" </dev/null >>"${log_file:?}" 2>&1 || fail "$purpose failed; details: $log_file"
}
