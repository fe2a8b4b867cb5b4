#!/usr/bin/env bash
# install_deps.sh - makes sure the Debian packages listed in scripts/packages.txt are installed.
#
#   scripts/install_deps.sh           install the missing packages with apt-get
#   scripts/install_deps.sh --check   only tell which are missing; installs nothing (also --dry-run)
#
# Exit status: 0 nothing is missing (or all were installed); 1 packages are missing and were
# not installed (--check, or no way to become root); 2 bad usage or apt-get failed;
# 3 (--check only) this is not a Debian-like system, so nothing can be told.
# Silent and quick when nothing is missing, since `make run` calls it every time.
# QUILT_SKIP_DEPS=1 skips every check, for machines whose libraries come from elsewhere.
set -u

here=$(cd "$(dirname "$0")" && pwd)
list="$here/packages.txt"
check_only=0

case "${1:-}" in
  "") ;;
  --check | --dry-run) check_only=1 ;;
  -h | --help) sed -n '1d; /^#/!q; s/^# \{0,1\}//p' "$0"; exit 0 ;;
  *) echo "install_deps.sh: unknown option '$1' (use --check, or nothing)" >&2; exit 2 ;;
esac
[ "${QUILT_SKIP_DEPS:-0}" = 1 ] && exit 0

say() { echo "quilt setup: $*" >&2; }

packages=()
while read -r line; do
  line=${line%%#*}
  line=${line//[[:space:]]/}
  [ -n "$line" ] && packages+=("$line")
done <"$list"

if ! command -v dpkg-query >/dev/null 2>&1 || ! command -v apt-get >/dev/null 2>&1; then
  # Not Debian-like: the names in the list mean nothing to this system's package manager.
  # The build goes ahead; CMake names the first library it cannot find.
  say "this is not a Debian-like system (no dpkg-query or apt-get), so the build packages"
  say "cannot be checked. The Debian names of what the build needs: ${packages[*]}."
  say "Install their equivalents; going on with the build."
  [ $check_only = 1 ] && exit 3
  exit 0
fi

# One query for the whole list. A package dpkg has never heard of is reported on standard
# error and left out of the output, so it counts as missing like a removed one does.
# (A plain variable rather than process substitution: that needs /dev/fd, which a bare
# chroot or container may lack.)
declare -A installed=()
statuses=$(dpkg-query -W -f='${Package} ${db:Status-Abbrev}\n' "${packages[@]}" 2>/dev/null)
while read -r name state; do
  [ "${state:1:1}" = i ] && installed[$name]=1
done <<<"$statuses"

missing=()
for package in "${packages[@]}"; do
  [ -n "${installed[$package]:-}" ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

install_line="apt-get install -y ${missing[*]}"
if [ $check_only = 1 ]; then
  say "missing Debian packages: ${missing[*]}"
  say "they would be installed with: $install_line"
  exit 1
fi

if [ "$(id -u)" = 0 ]; then
  as_root=()
elif command -v sudo >/dev/null 2>&1 && sudo -n true >/dev/null 2>&1; then
  as_root=(sudo -n)
else
  say "missing Debian packages: ${missing[*]}"
  # With the update too: a new machine's package lists may be empty or out of date.
  if command -v sudo >/dev/null 2>&1; then
    say "installing them needs root; run this, then the make command again:"
    echo "  sudo apt-get update && sudo $install_line" >&2
  else
    say "installing them needs root; run this as root, then the make command again:"
    echo "  apt-get update && $install_line" >&2
  fi
  exit 1
fi

# apt-get's progress (hundreds of dpkg lines) goes to a log that is shown only on failure.
log=$(mktemp "${TMPDIR:-/tmp}/quilt-install-deps.XXXXXX") || exit 2
say "installing the missing Debian packages: ${missing[*]}"
apt() { "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq "$@" </dev/null >>"$log" 2>&1; }
if ! apt update || ! apt install -y "${missing[@]}"; then
  tail -n 20 "$log" >&2
  say "apt-get could not install: ${missing[*]} (its whole output: $log)"
  say "the command was: ${as_root[*]}${as_root:+ }$install_line"
  exit 2
fi
rm -f "$log"
say "installed."
