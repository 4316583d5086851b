#!/usr/bin/env bash
# The torture in full: every call of every loop and every allocation. Prints how many a scenario.
#
#     tests/torture/long.sh [BUILD]        build/sanitize
set -euo pipefail
cd "$(dirname "$0")/../.."
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=0:strict_string_checks=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
VX_TORTURE=full "${1:-build/sanitize}/tests/torture/torture_tests" |
  grep -E "^torture: |Failure|again: |FAILED|PASSED"
