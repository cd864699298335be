#!/usr/bin/env bash
# Installs what is needed, builds the release preset and runs every test. Takes a quarter of an hour the first time.
# Usage: scripts/test.sh
set -euo pipefail
source "$(dirname "$0")/help.sh"
cd "$(dirname "$0")/.."

scripts/install-packages.sh
cmake --preset release
cmake --build --preset release
VORTEL_RANDOM_BANKS=300 ctest --preset release
