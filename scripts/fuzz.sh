#!/usr/bin/env bash
# Usage: scripts/fuzz.sh [SECONDS [NAME...]]
# Builds the fuzzers and runs each for that long (60), two at a time. What they find on the way is kept in build/fuzz;
# an input that breaks something is kept there too, and ends the script with a failure. Leaks are looked for at the end,
# when everything has been taken down: until then a document rightly keeps some of what it has read.
set -euo pipefail
source "$(dirname "$0")/help.sh"
cd "$(dirname "$0")/.."

seconds=${1:-60}
shift || true
names=("$@")
if [ ${#names[@]} -eq 0 ]; then
  names=(bank program chunk preferences color row list theme fonts image midi bank-text)
fi

scripts/install-packages.sh
cmake --preset fuzz
cmake --build --preset fuzz --target "${names[@]/#/fuzz-}"

run() {
  name=$1
  work=build/fuzz/found/$name
  mkdir -p "$work" build/fuzz/broken
  if ! build/fuzz/bin/fuzz-"$name" "$work" fuzz/corpus/"$name" -dict=fuzz/xml.dict -max_total_time="$2" \
    -max_len=20000 -timeout=20 -rss_limit_mb=4096 -detect_leaks=0 -print_final_stats=1 \
    -artifact_prefix=build/fuzz/broken/"$name"- > build/fuzz/"$name".log 2>&1; then
    tail -n 60 build/fuzz/"$name".log
    echo "fuzz-$name: FAILED"
    return 1
  fi
  echo "fuzz-$name: $(awk '/number_of_executed_units/ { print $2 }' build/fuzz/"$name".log) inputs"
}
export -f run
printf '%s\n' "${names[@]}" | xargs -P 2 -I {} bash -c "run {} $seconds"
