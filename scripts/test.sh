#!/usr/bin/env bash
# Installs what is needed, builds the release preset and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-packages.sh
cmake --preset release
cmake --build --preset release
VORTEL_RANDOM_BANKS=300 ctest --preset release
