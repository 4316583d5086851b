#!/usr/bin/env bash
# Builds the agent's suites so that they count what they take of it, runs them, and says what they miss.
set -euo pipefail
cd "$(dirname "$0")/../.."
. packaging/requirements.sh
need_packages "${build_packages[@]}" "${check_packages[@]}" llvm-14
cmake --preset coverage >/dev/null
cmake --build --preset coverage --target base_tests json_tests driver_tests section_tests \
  transport_tests core_tests torture_tests
exec python3 -B tests/coverage/report.py build/coverage
