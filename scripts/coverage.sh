#!/usr/bin/env bash
# Usage: coverage.sh [GCOVR_ARGUMENT...]
# Runs the tests and shows which lines and branches of the library they reach. Fails below 97% of
# the lines and 90% of the branches. build/coverage/report.html shows each line.
set -euo pipefail

cd "$(dirname "$0")/.."
scripts/need.sh gcovr
find build/coverage -name '*.gcda' -delete 2>/dev/null || true
scripts/test.sh coverage
gcovr --root . --filter sip_utility/src --object-directory build/coverage/sip_utility \
  --exclude-throw-branches --exclude-unreachable-branches --sort-percentage \
  --html-details build/coverage/report.html --txt - \
  --fail-under-line 97 --fail-under-branch 90 "$@"
