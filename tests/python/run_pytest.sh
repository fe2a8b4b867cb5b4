#!/usr/bin/env bash
# run_pytest.sh PYTHON TEST_FILE - runs one pytest file for ctest. Where Python or pytest is
# missing, or every test of the file skipped itself (a reader or a browser is not installed),
# it says why and exits 77, which ctest reports as "Skipped": never as passed.
set -u
python=$1
file=$2
if [ -z "$python" ] || ! command -v "$python" >/dev/null 2>&1; then
  echo "SKIPPED: no Python 3 interpreter was found when the build was configured (Debian: python3)"
  exit 77
fi
if ! "$python" -c 'import pytest' 2>/dev/null; then
  echo "SKIPPED: pytest is not installed for $python (Debian: python3-pytest)"
  exit 77
fi
cd "$(dirname "$file")" || exit 2
export PYTHONDONTWRITEBYTECODE=1  # no __pycache__ left in the source tree
# -rs lists the reason of every skip; no cache directory is left in the source tree.
output=$("$python" -m pytest -q -rs -p no:cacheprovider "$(basename "$file")" 2>&1)
status=$?
echo "$output"
# pytest exits 5 when it collected no test, which is also what a file that skips itself as a
# whole (a reader or a browser is missing) gives: skipped when pytest says so, else a failure.
case $status in
  0 | 5)
    if [ $status = 0 ] && grep -Eq '[0-9]+ passed' <<<"$output"; then exit 0; fi
    if grep -Eq '[0-9]+ skipped' <<<"$output"; then
      echo "SKIPPED: every test of $(basename "$file") skipped itself (reasons above)"
      exit 77
    fi
    echo "FAILED: pytest ran no test from $(basename "$file")"
    exit 1
    ;;
  *) exit 1 ;;
esac
