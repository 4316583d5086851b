#!/usr/bin/env bash
# Waits out the time-outs that the tests cut short: a silent cloud holds a check-in for 120 seconds, and
# a silent clock a request for the time for 20.
set -euo pipefail
cd "$(dirname "$0")/../.."
cmake --preset sanitize >/dev/null
cmake --build --preset sanitize --target lab_cloud vx_cloud_sim
export VX_BUILD=$PWD/build/sanitize PYTHONPATH=tools:tests/end_to_end
python3 -B -m unittest -v tests/hostile/time_outs.py
