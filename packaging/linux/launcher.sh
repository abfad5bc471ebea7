# shellcheck shell=sh disable=SC2034
# Sourced by the launchers: where the user's application directory is, and how to report.

case ${XDG_DATA_HOME:-} in
/*) app_dir=$XDG_DATA_HOME/zelvora-app ;;
*) app_dir=${HOME:?}/.local/share/zelvora-app ;; # a relative location counts as none
esac

# report RUSSIAN ENGLISH: a message on the terminal, or in a window for a start from the menu.
report() {
    case ${LC_ALL:-${LC_MESSAGES:-${LANG:-}}} in
    ru*) text=$1 ;;
    *) text=$2 ;;
    esac
    echo "zelvora: $text" >&2
    if [ -t 2 ] || [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
        return 0
    elif command -v zenity >/dev/null; then
        zenity --error --no-markup --title=Zelvora --text="$text" || :
    elif command -v kdialog >/dev/null; then
        kdialog --title Zelvora --error "$text" || :
    elif command -v xmessage >/dev/null; then
        xmessage -center "$text" || :
    fi
}
