# shellcheck shell=bash disable=SC2154
# Getting one pinned file out of Debian's archive, for the scripts that fetch
# sources. Sourced; the script names itself in `name`, the folder that it works
# in, `work`, and the file's SHA-256, `sha256`. apt runs with a private
# configuration below that folder: the machine's own sources stay as they are.

die() { echo "$name: $*" >&2; exit 1; }

has_hash() { [ -f "$1" ] && [ "$(sha256sum "$1" | cut -d' ' -f1)" = "$sha256" ]; }

# use_archive TYPE SUITE: reads the lists (deb or deb-src) of that suite's main;
# then private_apt is apt-get, and `options` is what makes it so.
use_archive() {
  local mirror keyring=/usr/share/keyrings/debian-archive-keyring.gpg
  mkdir -p "$work/lists/partial" "$work/cache/archives/partial"
  : > "$work/preferences"
  mirror=$(apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' |
    awk '$3 == "main" && $2 !~ /security|updates|backports/ && $1 !~ /security/ { print $1; exit }')
  [ -n "$mirror" ] || die "apt knows no Debian mirror here"
  echo "$1 [signed-by=$keyring] $mirror $2 main" > "$work/sources.list"
  options=(
    -q
    -o "Dir::Etc::sourcelist=$work/sources.list"
    -o Dir::Etc::sourceparts=/dev/null
    -o "Dir::State::lists=$work/lists"
    -o "Dir::Cache=$work/cache"
    -o "Dir::Etc::preferences=$work/preferences"
    -o Dir::Etc::preferencesparts=/dev/null
    -o Acquire::Languages=none
    -o Acquire::Retries=3
  )
  [ "$(id -u)" -ne 0 ] || options+=(-o APT::Sandbox::User=root)
  private_apt update >"$work/apt.log" 2>&1 || die_of_apt "apt-get update failed"
}

private_apt() { apt-get "${options[@]}" "$@"; }

die_of_apt() { cat "$work/apt.log" >&2; die "$@"; }

# offered FILE ARGUMENT...: the address under which apt would get this file with
# these arguments. Ends the script when the archive has it not, or another one.
offered() {
  local file=$1 line
  shift
  line=$(private_apt "$@" --print-uris 2>>"$work/apt.log" | grep -F " $file " | head -n 1) || true
  [ -n "$line" ] || die_of_apt "the mirror does not offer $file"
  case "$line" in *"SHA256:$sha256"*) ;; *) die "the mirror offers another $file than the pinned one" ;; esac
  printf '%s\n' "$line" | sed -n "s/^'\([^']*\)'.*/\1/p"
}

# download URI FILE
download() {
  /usr/lib/apt/apt-helper "${options[@]}" download-file "$1" "$2" "SHA256:$sha256" >>"$work/apt.log" 2>&1 ||
    die_of_apt "download failed"
  has_hash "$2" || die "the downloaded file has the wrong hash"
}

# is_ready DEST WANTED: whether the folder holds what an earlier run put there.
is_ready() { [ -f "$1/.mirelon-stamp" ] && [ "$(cat "$1/.mirelon-stamp")" = "$2" ]; }

# put_in_place DEST WANTED: the finished DEST.new becomes DEST.
put_in_place() {
  echo "$2" > "$1.new/.mirelon-stamp"
  rm -rf "$1"
  mv "$1.new" "$1"
}
