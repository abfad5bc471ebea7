# shellcheck shell=bash
# Sourced, behind logged.sh and apt-source.sh. Builds QXlsx from the source that a newer release of
# Debian has, for releases and systems without a package of it.

readonly qxlsx_release=trixie

# make_qxlsx WORK_DIR PREFIX [CMAKE_OPTION...]
make_qxlsx() {
    local -r dir=$1 prefix=$2
    shift 2
    download_sources "$dir/apt" "$qxlsx_release" --tar-only libqt5qxlsx </dev/null >>"${log_file:?}" 2>&1 ||
        fail "QXlsx is missing and its source could not be downloaded" \
            "(is the network there?); details: $log_file"

    echo "Building QXlsx into $prefix"
    local -r staging=$dir/staging
    logged "unpacking QXlsx" tar -x -f "$(echo "$dir"/apt/source/*.orig.tar.*)" -C "$dir" \
        --one-top-level=qxlsx --strip-components=1
    logged "configuring QXlsx" cmake -S "$dir/qxlsx/QXlsx" -B "$dir/build" -G Ninja \
        -DQT_VERSION_MAJOR=5 -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF \
        -DCMAKE_POSITION_INDEPENDENT_CODE=ON "-DCMAKE_INSTALL_PREFIX=$prefix" "$@"
    logged "building QXlsx" cmake --build "$dir/build"
    logged "installing QXlsx" env "DESTDIR=$staging" cmake --install "$dir/build"
    # Moved into place whole, so that an interrupted run leaves no half library behind.
    mkdir -p "$(dirname "$prefix")"
    rm -rf "$prefix" "$prefix.new"
    mv "$staging$prefix" "$prefix.new"
    mv "$prefix.new" "$prefix"
}
