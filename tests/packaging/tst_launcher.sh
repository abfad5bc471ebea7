#!/usr/bin/env bash
# Installs the build as a system would have it, below a temporary directory, and uses it there as
# several users do.
#
#   tst_launcher.sh CMAKE BUILD_DIR [CASE...]
set -euo pipefail

readonly cmake=$1 build_dir=$2
shift 2

work=$(mktemp -d)
chmod 755 "$work" # one case runs as another user
readonly work
pids=()
clean_up() {
    ((${#pids[@]} == 0)) || kill "${pids[@]}" 2>/dev/null || true
    chmod -R u+w "$work"
    rm -rf "$work"
}

fail() {
    echo "FAILED: $*" >&2
    [[ ! -s $log ]] || sed 's/^/  log: /' "$log" >&2
    exit 1
}

# assert COMMAND...: the case fails unless the command succeeds.
assert() {
    "$@" || fail "$*"
}

refute() {
    ! "$@" || fail "not expected: $*"
}

assert_equal() {
    [[ $1 == "$2" ]] || fail "expected '$2', got '$1'"
}

install_component() {
    DESTDIR=$2 "$cmake" --install "$build_dir" --component "$1" --prefix "$3" >/dev/null
}

# A fresh system and a fresh user for each case.
set_up() {
    local -r place=$work/$1
    mkdir "$place"
    cp -al "$work/installed" "$place/system" # files of it may be replaced, but not written to
    system=$place/system/usr
    launcher=$system/bin/zelvora
    installed=$system/lib/zelvora
    log=$place/log
    become_user "$place/home"
}

become_user() {
    mkdir "$1"
    export HOME=$1
    app_dir=$HOME/.local/share/zelvora-app
}

# Whether the process is the application in the user's directory, with its database open and no
# update pending.
has_started() {
    [[ $(readlink "/proc/$1/exe") == "$app_dir/zelvora" && ! -e $app_dir/dbUpdate.bin ]] &&
        find "/proc/$1/fd" -lname "$app_dir/docs.db" 2>/dev/null | grep -q .
}

# Starts the application and waits until it runs on its database.
start() {
    "$launcher" >"$log" 2>&1 &
    pid=$!
    pids+=("$pid")
    local attempt
    for ((attempt = 0; attempt < 300; attempt++)); do
        ! has_started "$pid" || return 0
        kill -0 "$pid" 2>/dev/null || fail "the application ended"
        sleep 0.1
    done
    fail "the application did not open $app_dir/docs.db"
}

stop() {
    kill "$pid"
    wait "$pid" 2>/dev/null || true
}

# Runs the launcher where it must give up with a message.
start_in_vain() {
    local status=0
    "$@" >"$log" 2>&1 || status=$?
    assert_equal "$status" 1
    assert grep -q "^zelvora: " "$log"
}

# Runs a command that can't write files longer than some kilobytes, as on a full disk.
with_full_disk() {
    local -r kilobytes=$1
    shift
    (
        trap '' XFSZ
        ulimit -f "$kilobytes"
        exec "$@"
    )
}

# Installs a release whose program differs.
upgrade() {
    { cat "$installed/zelvora" && echo "another release"; } >"$installed/new"
    chmod 755 "$installed/new"
    mv "$installed/new" "$installed/zelvora"
}

# Delivers an update package that brings the version and renames the lists to it.
deliver_update() {
    cat >"$work/manifest.json" <<END
{ "update_version": "$1", "parts": [
  { "version": "$1", "sql": "UPDATE lists SET LIST_NAME = '$1'" } ] }
END
    make_update "$installed/updates/dbUpdate.bin"
}

make_update() {
    mkdir -p "$(dirname "$1")"
    rm -f "$1"
    "$system/bin/zelvora-update" make "$work/manifest.json" "$1" >/dev/null
}

sql() {
    sqlite3 "$app_dir/docs.db" "$1"
}

database_version() {
    sql "SELECT DB_VERSION FROM zvsys"
}

files() {
    find "$1" -mindepth 1 -printf '%P\n' | LC_ALL=C sort | tr '\n' ' '
}

readonly fresh_files="blanks docs.db exports imports storage templates zelvora "

case_first_start_makes_the_directory() {
    start
    assert_equal "$(files "$app_dir")" "$fresh_files"
    assert_equal "$(stat -c %a "$app_dir")" 700
    assert cmp "$installed/zelvora" "$app_dir/zelvora"
    refute test -L "$app_dir/zelvora"
    assert "$system/bin/zelvora-db" check "$app_dir/docs.db" >/dev/null
    assert_equal "$(sql "SELECT count(*) FROM docs")" 0
    assert test "$(sql "SELECT count(*) FROM forms")" -gt 0
    stop
}

case_second_start_changes_nothing() {
    start
    stop
    sql "INSERT INTO docs (LNAME) VALUES ('Иванов')"
    local -r before=$(stat -c '%n %i %Y %Z' "$app_dir"/*)
    start
    assert_equal "$(stat -c '%n %i %Y %Z' "$app_dir"/*)" "$before"
    assert_equal "$(sql "SELECT LNAME FROM docs")" Иванов
    stop
}

case_upgrade_renews_the_program_alone() {
    start
    local -r old_pid=$pid old_program=$(stat -c %i "$app_dir/zelvora")
    local -r database=$(stat -c '%i %Y %Z' "$app_dir/docs.db")
    upgrade
    start
    assert cmp "$installed/zelvora" "$app_dir/zelvora"
    assert_equal "$(stat -c '%i %Y %Z' "$app_dir/docs.db")" "$database"
    assert_equal "$(files "$app_dir")" "$fresh_files"
    # The one that was running runs on, from its own file in the same directory.
    assert kill -0 "$old_pid"
    assert_equal "$(stat -L -c %i "/proc/$old_pid/exe")" "$old_program"
    assert_equal "$(readlink "/proc/$old_pid/cwd")" "$app_dir"
    stop
}

case_users_have_directories_of_their_own() {
    start
    stop
    sql "INSERT INTO docs (LNAME) VALUES ('Иванов')"
    become_user "$work/${FUNCNAME[0]}/other"
    start
    assert_equal "$(sql "SELECT count(*) FROM docs")" 0
    stop
}

case_data_home_is_heeded_if_absolute() {
    app_dir=$HOME/data/zelvora-app
    export XDG_DATA_HOME=$HOME/data
    start
    stop
    assert_equal "$(files "$app_dir")" "$fresh_files"
    assert_equal "$(files "$HOME")" "data $(cd "$HOME" && find data/* | LC_ALL=C sort | tr '\n' ' ')"
    app_dir=$HOME/.local/share/zelvora-app
    XDG_DATA_HOME=data start
    stop
}

case_two_first_starts_at_once() {
    "$launcher" >"$log.other" 2>&1 &
    local -r other=$!
    pids+=("$other")
    start
    assert kill -0 "$other"
    assert_equal "$(files "$app_dir")" "$fresh_files"
    assert "$system/bin/zelvora-db" check "$app_dir/docs.db" >/dev/null
    stop
}

case_home_may_not_be_writable() {
    echo "no directory" >"$HOME/.local"
    start_in_vain "$launcher"
    assert_equal "$(files "$HOME")" ".local "
    rm "$HOME/.local"

    chmod 555 "$HOME"
    local as_user=()
    if ((EUID == 0)); then
        as_user=(setpriv --reuid=65534 --regid=65534 --clear-groups)
    fi
    start_in_vain "${as_user[@]}" "$launcher"
    assert_equal "$(files "$HOME")" ""
    chmod 755 "$HOME"
}

case_disk_may_be_full_at_the_first_start() {
    start_in_vain with_full_disk 100 "$launcher"
    assert_equal "$(files "$app_dir")" ""
    # Enough for the program, which is there, but not for the database.
    cp "$installed/zelvora" "$app_dir"
    start_in_vain with_full_disk 8 "$launcher"
    refute test -e "$app_dir/docs.db"
    start
    stop
}

case_disk_may_be_full_at_an_upgrade() {
    start
    stop
    local -r program=$(stat -c %i "$app_dir/zelvora")
    upgrade
    deliver_update 8.0.0.0
    local -r plain_launcher=$launcher
    launcher=with_full_disk_launcher
    start # the previous program, with its database as it was
    assert grep -q "^zelvora: .*previous" "$log"
    assert_equal "$(stat -c %i "$app_dir/zelvora")" "$program"
    assert_equal "$(files "$app_dir")" "$fresh_files"
    stop
    launcher=$plain_launcher
    start
    assert cmp "$installed/zelvora" "$app_dir/zelvora"
    assert_equal "$(database_version)" 8.0.0.0
    stop
}

with_full_disk_launcher() {
    trap '' XFSZ
    ulimit -f 100
    exec "$system/bin/zelvora"
}

case_backup_returns_if_the_database_is_gone() {
    start
    stop
    sql "INSERT INTO docs (LNAME) VALUES ('Иванов')"
    mv "$app_dir/docs.db" "$app_dir/docs_backup.db"
    start
    assert_equal "$(sql "SELECT LNAME FROM docs")" Иванов
    assert cmp "$app_dir/docs.db" "$app_dir/docs_backup.db"
    stop
}

case_update_is_delivered_once() {
    start
    stop
    deliver_update 8.0.0.0
    start
    assert_equal "$(database_version)" 8.0.0.0
    refute test -e "$app_dir/dbUpdate.bin"
    stop
    sql "UPDATE zvsys SET DB_VERSION = '1.0.0.0'" # it would be applied if it came again
    start
    assert_equal "$(database_version)" 1.0.0.0
    stop
    deliver_update 8.0.0.1
    start
    assert_equal "$(database_version)" 8.0.0.1
    stop
}

# The packages are looked at before the application removes them.
case_waiting_packages_keep_their_order() {
    start
    stop
    printf '#!/bin/sh\n' >"$installed/idle"
    chmod 755 "$installed/idle"
    mv "$installed/idle" "$installed/zelvora"

    deliver_update 8.0.0.0
    "$launcher"
    assert cmp "$app_dir/dbUpdate.bin" "$installed/updates/dbUpdate.bin"
    # A newer release replaces a package of an older one that still waits.
    deliver_update 8.0.0.1
    "$launcher"
    assert cmp "$app_dir/dbUpdate.bin" "$installed/updates/dbUpdate.bin"
    # One that the user has put there is left alone until it is done.
    echo "the user's own" >"$app_dir/dbUpdate.bin"
    deliver_update 8.0.0.2
    "$launcher"
    assert_equal "$(cat "$app_dir/dbUpdate.bin")" "the user's own"
    rm "$app_dir/dbUpdate.bin"
    "$launcher"
    assert cmp "$app_dir/dbUpdate.bin" "$installed/updates/dbUpdate.bin"
}

case_version_needs_no_directory() {
    assert_equal "$("$launcher" --v)" 1.1.0.9
    assert_equal "$("$launcher" --V)" 1.1.0.9
    assert_equal "$(files "$HOME")" ""
}

case_print_uses_the_users_directory() {
    local message
    message=$("$system/bin/zelvora-print" --all --output "$HOME/out" 2>&1) || true
    assert grep -qF "$app_dir/docs.db" <<<"$message"
    message=$("$system/bin/zelvora-print" --dir "$HOME" --all --output "$HOME/out" 2>&1) || true
    assert grep -qF "$HOME/docs.db" <<<"$message"
}

case_batch_uses_the_users_directory() {
    assert_equal "$("$system/bin/zelvora-batch" --version)" 1.1.0.9
    "$system/bin/zelvora-db" sample "$app_dir" >/dev/null
    "$system/bin/zelvora-batch" >"$log" 2>&1 &
    pid=$!
    pids+=("$pid")
    local attempt
    for ((attempt = 0; attempt < 300; attempt++)); do
        ! find "/proc/$pid/fd" -lname "$app_dir/docs.db" 2>/dev/null | grep -q . || break
        kill -0 "$pid" 2>/dev/null || fail "the window ended"
        sleep 0.1
    done
    assert [ "$attempt" -lt 300 ]
    stop
}

case_print_heeds_the_callers_directory() {
    "$system/bin/zelvora-db" sample "$app_dir" >/dev/null
    mkdir "$HOME/here"
    cd "$HOME/here"
    assert_equal "$("$system/bin/zelvora-print" --id 1 --output one.pdf)" one.pdf
    # Behind a line about the check of several documents.
    assert_equal "$("$system/bin/zelvora-print" --id 1,2 --output out --name '{#ID}' | tail -n 2)" \
        "out/1.pdf"$'\n'"out/2.pdf"
    assert_equal "$("$system/bin/zelvora-print" --dir ../.local/share/zelvora-app --id 2 \
        --output two.pdf)" two.pdf
    assert_equal "$("$system/bin/zelvora-print" --dir=../.local/share/zelvora-app --id 2 \
        --output two.pdf)" two.pdf
    assert_equal "$(files .)" "one.pdf out out/1.pdf out/2.pdf two.pdf "
    # Nothing of it goes to the application's directory.
    assert_equal "$(find "$app_dir" -name '*.pdf')" ""
}

case_message_in_a_window() {
    echo "no directory" >"$HOME/.local"
    mkdir "$HOME/bin"
    printf '#!/bin/sh\nprintf "%%s\\n" "$@" >"%s"\n' "$HOME/shown" >"$HOME/bin/zenity"
    chmod +x "$HOME/bin/zenity"
    start_in_vain env DISPLAY=:none LC_ALL=ru_RU.UTF-8 PATH="$HOME/bin:$PATH" "$launcher"
    assert grep -q "^--text=Не удалось поместить программу в каталог $app_dir\." "$HOME/shown"
}

case_portable_layout_is_separate() {
    assert_equal "$(files "$work/portable")" "zelvora zelvora-batch zelvora-db zelvora-print zelvora-update "
}

case_desktop_files_are_valid() {
    assert desktop-file-validate "$system/share/applications/zelvora.desktop" \
        "$system/share/applications/zelvora-batch.desktop"
    local size icon
    for size in 16 24 32 48 64 128 256; do
        # Width and height in the header of a PNG file.
        for icon in zelvora zelvora-batch; do
            assert_equal "$(od -An -tu4 --endian=big -j16 -N8 \
                "$system/share/icons/hicolor/${size}x$size/apps/$icon.png" | xargs)" "$size $size"
        done
    done
    if command -v appstreamcli >/dev/null; then
        assert appstreamcli validate --no-net "$system"/share/metainfo/*.xml >/dev/null
    fi
}

trap clean_up EXIT
unset XDG_DATA_HOME DISPLAY WAYLAND_DISPLAY
export QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8
install_component system "$work/installed" /usr
install_component portable "" "$work/portable"

cases=("$@")
if ((${#cases[@]} == 0)); then
    mapfile -t cases < <(compgen -A function case_)
fi
failures=0
for name in "${cases[@]}"; do
    # A process of its own, so that a failure ends the case alone. Not in a condition, where "set -e"
    # would not hold.
    set +e
    (
        set -e
        pids=()
        trap '((${#pids[@]} == 0)) || kill "${pids[@]}" 2>/dev/null || true' EXIT
        set_up "$name"
        "$name"
    )
    status=$?
    set -e
    if ((status == 0)); then
        echo "PASS   $name"
    else
        echo "FAIL!  $name"
        ((++failures))
    fi
done
((failures == 0))
