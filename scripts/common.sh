# shellcheck shell=bash
# What the scripts share. Sourced while the working folder is still the user's.
# (Sourced from bash -c, there is its $0 only.)
script=$(realpath -- "${BASH_SOURCE[1]:-$0}")
name=${script##*/}
# The project's folder, from which the scripts work.
top=${script%/scripts/*}

# The comment at the head of the script, without its first line's path to bash.
usage() { sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$script"; }
fail() { echo "$name: FAILED: $*" >&2; exit 1; }

# build PRESET [CMAKE-OPTION ...] [-- TARGET ...]: configures build/PRESET and
# builds the targets (all of them if none is named). Ends the script with the
# end of the log, build/logs/NAME.log, when that fails.
build() {
  local preset=$1 options=()
  shift
  while [ $# -gt 0 ] && [ "$1" != -- ]; do
    options+=("$1")
    shift
  done
  [ $# -eq 0 ] || shift
  mkdir -p build/logs
  log=build/logs/$name.log
  echo "$name: building (log in $log)"
  if ! { cmake --preset "$preset" "${options[@]}" &&
    cmake --build --preset "$preset" ${1:+--target "$@"}; } >"$log" 2>&1; then
    tail -n 40 "$log" >&2
    fail "it does not build"
  fi
}

# as_new_user COMMAND...: with an empty home, so that the plug-in finds no
# defaults that this user has stored. The home is gone with the script.
as_new_user() {
  if [ -z "${new_home:-}" ]; then
    new_home=$(mktemp -d)
    trap 'rm -rf "$new_home"' EXIT
  fi
  HOME=$new_home XDG_CONFIG_HOME=$new_home/.config XDG_DATA_HOME=$new_home/.local/share "$@"
}
