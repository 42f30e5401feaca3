#!/usr/bin/env bash
# Runs the fuzz harnesses one after another, SECONDS each, with their committed corpus and
# regressions and their dictionary. New inputs go to a scratch corpus, never to fuzz/corpus.
# Fails if any harness finds a crash, leak, timeout or out-of-memory; prints the executions of
# each harness at the end.
#
#   fuzz/run.sh SECONDS [HARNESS...]
#
# The harnesses come from the build in $ZEPHRA_FUZZ_BUILD (default: build-fuzz, configured with
# CC=clang CXX=clang++ and -DZEPHRA_FUZZ=ON); scratch corpora, findings and logs go to
# $ZEPHRA_FUZZ_WORK (default: $ZEPHRA_FUZZ_BUILD/fuzz-work).
set -uo pipefail
cd "$(dirname "$0")/.."

if [ $# -lt 1 ] || ! [[ $1 =~ ^[0-9]+$ ]]; then
  echo "usage: $0 SECONDS [HARNESS...]" >&2
  exit 2
fi
seconds=$1
shift
build=${ZEPHRA_FUZZ_BUILD:-build-fuzz}
work=${ZEPHRA_FUZZ_WORK:-$build/fuzz-work}
if [ $# -gt 0 ]; then
  harnesses=("$@")
else
  harnesses=()
  for source in fuzz/harness/*.cpp; do
    harnesses+=("$(basename "$source" .cpp)")
  done
fi

failed=0
summary=()
for harness in "${harnesses[@]}"; do
  binary=$build/fuzz/fuzz_$harness
  if [ ! -x "$binary" ]; then
    echo "run.sh: $binary is missing; build the target zephra_fuzz first" >&2
    exit 2
  fi
  scratch=$work/$harness/corpus
  findings=$work/$harness/findings
  log=$work/$harness/fuzz.log
  mkdir -p "$scratch" "$findings"
  inputs=("$scratch" "fuzz/corpus/$harness")
  [ -d "fuzz/regressions/$harness" ] && inputs+=("fuzz/regressions/$harness")

  echo "=== $harness: $seconds s"
  "$binary" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
    -dict="fuzz/dict/$harness.dict" -artifact_prefix="$findings/" -print_final_stats=1 \
    "${inputs[@]}" >"$log" 2>&1
  status=$?
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
  found=$(find "$findings" -type f | wc -l)
  if [ "$status" -ne 0 ] || [ "$found" -ne 0 ]; then
    failed=1
    result="FAILED (exit $status, findings in $findings, log $log)"
    grep -m 3 -E '^(==[0-9]+==ERROR|SUMMARY|.*runtime error)' "$log"
  else
    result="ok"
  fi
  summary+=("$(printf '%-14s %12s executions  %s' "$harness" "${executions:-?}" "$result")")
done

echo "=== summary"
printf '%s\n' "${summary[@]}"
exit "$failed"
