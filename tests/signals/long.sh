#!/usr/bin/env bash
# Ten thousand local requests and a thousand restarts of the keeper, each at a moment of its own.
set -euo pipefail
cd "$(dirname "$0")/../.."
cmake --preset sanitize >/dev/null
cmake --build --preset sanitize --target signal_tests
VX_REQUESTS=10000 VX_RESTARTS=1000 build/sanitize/tests/signals/signal_tests
