# shellcheck shell=bash
# Sourced. Takes sources of Debian's packages through apt, which verifies them. The machine's own
# sources, lists and caches stay untouched.

readonly debian_keyring=/usr/share/keyrings/debian-archive-keyring.gpg

# The code name of the machine's own release.
own_release() {
    # shellcheck source=/dev/null
    (. /etc/os-release && echo "${VERSION_CODENAME:-stable}")
}

# The archives from which the machine gets its own release, whatever format they are listed in.
own_archives() {
    apt-get --print-uris update 2>/dev/null |
        sed -nE "s,^'([^']+)/dists/($(own_release)|stable|oldstable|oldoldstable)/InRelease'.*,\1,p" | sort -u
}

# Downloads from one archive, as download_sources does from any.
download_sources_from() {
    local -r archive=$1 dir=$2 release=$3
    shift 3
    rm -rf "$dir"
    mkdir -p "$dir"/{lists,cache,source}
    echo "deb-src [signed-by=$debian_keyring] $archive $release main" >"$dir/sources.list"
    if ((EUID == 0)) && id _apt >/dev/null 2>&1; then
        chown _apt "$dir/source"
    fi
    local -r options=(
        -q
        -o "Dir::Etc::sourcelist=$dir/sources.list"
        -o Dir::Etc::sourceparts=-
        -o "Dir::State::lists=$dir/lists"
        -o "Dir::Cache=$dir/cache"
        -o Acquire::Languages=none
        -o Acquire::Retries=3
        -o APT::Update::Error-Mode=any
    )
    (
        cd "$dir/source" &&
            apt-get "${options[@]}" update &&
            apt-get "${options[@]}" source --download-only "$@"
    )
}

# download_sources DIR RELEASE [OPTION_OF_APT_GET_SOURCE...] PACKAGE...
# Downloads the sources of packages of a release of Debian into DIR/source. DIR is made anew, and
# everybody has to be able to enter it: apt downloads without root's rights.
download_sources() {
    local archive
    for archive in $(own_archives); do
        if download_sources_from "$archive" "$@"; then
            return 0
        fi
    done
    return 1
}
