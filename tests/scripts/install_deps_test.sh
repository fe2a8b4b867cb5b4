#!/usr/bin/env bash
# install_deps_test.sh SCRIPT - runs scripts/install_deps.sh against stand-ins for dpkg-query,
# apt-get, id and sudo placed first on PATH, so that nothing on this machine is queried or
# installed, and checks what it prints, what it runs and its exit status.
set -u
script=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin" "$work/bare"

# dpkg-query: every package is installed except those listed in $work/missing, which dpkg
# has either never heard of (NAME) or knows as removed with its configuration left (NAME:rc).
cat >"$work/bin/dpkg-query" <<STUB
#!/bin/sh
status=0
for name; do
  case \$name in -*) continue ;; esac
  if grep -qx "\$name:rc" "$work/missing"; then
    echo "\$name rc "
  elif grep -qx "\$name" "$work/missing"; then
    echo "dpkg-query: no packages found matching \$name" >&2; status=1
  else
    echo "\$name ii "
  fi
done
exit \$status
STUB
# apt-get: records each call, and whether it came through sudo; an install fails when
# FAKE_APT_FAILS holds its message.
cat >"$work/bin/apt-get" <<STUB
#!/bin/sh
echo "\${FAKE_VIA:-root} \${DEBIAN_FRONTEND:-} \$*" >>"$work/apt.log"
[ "\$1 \$2" = "-qq install" ] && [ -n "\$FAKE_APT_FAILS" ] && { echo "E: \$FAKE_APT_FAILS"; exit 100; }
exit 0
STUB
cat >"$work/bin/id" <<'STUB'
#!/bin/sh
echo "$FAKE_UID"
STUB
# sudo: works without a password only when FAKE_SUDO=yes.
cat >"$work/bin/sudo" <<'STUB'
#!/bin/sh
[ "$FAKE_SUDO" = yes ] || { echo "sudo: a password is required" >&2; exit 1; }
[ "$1" = -n ] && shift
FAKE_VIA=sudo exec "$@"
STUB
chmod +x "$work"/bin/*
ln -s "$(command -v dirname)" "$work/bare/dirname"

failures=0
# case: NAME MISSING UID SUDO ARGS EXIT EXPECTED_STDERR EXPECTED_APT_LOG [APT_FAILS]
# (EXPECTED_* are extended regular expressions over the whole output, its lines ended by '|')
run_case() {
  local name=$1 missing=$2 uid=$3 sudo=$4 args=$5 want_exit=$6 want_err=$7 want_log=$8 fails=${9:-}
  local path=$work/bin:$PATH
  [ "$missing" = ABSENT ] && path=$work/bare
  tr ' ' '\n' <<<"$missing" >"$work/missing"
  : >"$work/apt.log"
  # shellcheck disable=SC2086
  out=$(PATH=$path TMPDIR=$work FAKE_UID=$uid FAKE_SUDO=$sudo FAKE_APT_FAILS=$fails "$BASH" "$script" $args 2>"$work/err")
  local got_exit=$? err log
  err=$(tr '\n' '|' <"$work/err")
  log=$(tr '\n' '|' <"$work/apt.log")
  if [ "$got_exit" != "$want_exit" ] || [ -n "$out" ] || ! [[ $err =~ $want_err ]] || ! [[ $log =~ $want_log ]]; then
    printf 'FAIL %s\n  exit %s (want %s)\n  stdout: %s\n  stderr: %s\n  apt-get: %s\n' \
      "$name" "$got_exit" "$want_exit" "$out" "$err" "$log"
    failures=$((failures + 1))
  fi
}

two="nlohmann-json3-dev libcli11-dev"
line="apt-get install -y nlohmann-json3-dev libcli11-dev"
run_case "all present: silent, no apt-get" "" 1000 no "" 0 '^$' '^$'
run_case "all present, --check: silent" "" 1000 no --check 0 '^$' '^$'
run_case "missing, user without sudo: the line to run" "nlohmann-json3-dev libcli11-dev:rc" 1000 no "" 1 \
  "missing Debian packages: $two.*needs root.*\|  (sudo )?apt-get update && (sudo )?$line\|$" '^$'
run_case "missing, --check as root: reported, not installed" "$two" 0 yes --check 1 \
  "missing Debian packages: $two.*$line" '^$'
run_case "missing, root: one update, then only the missing" "nlohmann-json3-dev:rc libcli11-dev" 0 no "" 0 \
  "installing the missing Debian packages: $two" \
  "^root noninteractive -qq update\|root noninteractive -qq install -y $two\|$"
run_case "missing, user with sudo: through sudo" "libcli11-dev" 1000 yes "" 0 \
  'installing' '^sudo noninteractive -qq update\|sudo noninteractive -qq install -y libcli11-dev\|$'
run_case "apt-get fails: its message shown, status 2" "libcli11-dev" 0 no "" 2 \
  'E: Unable to locate package libcli11-dev.*could not install: libcli11-dev' 'install' 'Unable to locate package libcli11-dev'
run_case "not Debian: says so, build goes on" ABSENT 1000 no "" 0 'not a Debian-like system' '^$'
run_case "not Debian, --check: cannot tell" ABSENT 1000 no --check 3 'not a Debian-like system' '^$'
run_case "unknown option" "" 0 no --install 2 "unknown option '--install'" '^$'

[ $failures -eq 0 ] || { echo "$failures case(s) failed"; exit 1; }
echo "all cases passed"
