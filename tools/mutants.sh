#!/usr/bin/env bash
# Runs the test suite against hand-made mutants of the library, one at a time: each line of the
# list names a file, a text found exactly once in it and its replacement. The mutant is applied,
# the build folder rebuilt and the suite run; the file is restored from git afterwards.
#   tools/mutants.sh BUILD_DIR [LIST]        (LIST defaults to tools/mutants.txt)
# Configure BUILD_DIR with -DCMAKE_LINK_DEPENDS_NO_SHARED=ON so that a changed library does not
# relink every test. Prints one line per mutant and the totals; the tree must be clean.
set -uo pipefail
cd "$(dirname "$0")/.."
build=$1
list=${2:-tools/mutants.txt}
python=/usr/bin/python3
killed=0 survived=0 missing=0 stillborn=0

apply() {  # file old new: replaces the one occurrence, or fails
  "$python" - "$@" <<'PY'
import sys
path, old, new = sys.argv[1:]
text = open(path).read()
if text.count(old) != 1:
    sys.exit(1)
open(path, "w").write(text.replace(old, new))
PY
}

while IFS=$'\t' read -r file old new; do
  [[ -z "$file" || "$file" == \#* ]] && continue
  if ! apply "$file" "$old" "$new"; then
    echo "n/a       $file: $old"
    missing=$((missing + 1))
    continue
  fi
  if ! cmake --build "$build" -j2 >/dev/null 2>&1; then
    echo "stillborn $file: $new"
    stillborn=$((stillborn + 1))
  elif ctest --test-dir "$build" -j2 --stop-on-failure -E 'InstallAndConsume|fuzz' \
      >/dev/null 2>&1; then
    echo "SURVIVED  $file: $new"
    survived=$((survived + 1))
  else
    echo "killed    $file: $new"
    killed=$((killed + 1))
  fi
  git checkout -q -- "$file"
done < "$list"
cmake --build "$build" -j2 >/dev/null 2>&1
echo "mutants: $killed killed, $survived survived, $stillborn did not build, $missing not found"
