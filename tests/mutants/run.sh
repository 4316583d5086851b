#!/usr/bin/env bash
# ./check --mutants: installs what it needs and runs mutants.py with the distribution's Python, which
# has clang's bindings.
set -euo pipefail
cd "$(dirname "$0")/../.."
. packaging/requirements.sh
need_packages "${build_packages[@]}" "${check_packages[@]}"
exec /usr/bin/python3 -B tests/mutants/mutants.py "$@"
