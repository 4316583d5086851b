#!/usr/bin/env bash
# A power cut at each platform call, not at some of them.
set -euo pipefail
cd "$(dirname "$0")/../.."
VX_FULL=1 build/sanitize/tests/power/power_tests --gtest_brief=1
