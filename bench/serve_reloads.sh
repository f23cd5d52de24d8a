#!/usr/bin/env bash
# The server's resident memory across many reloads: starts `serve` on a copy of
# a journal, then N times changes the page's colour scheme (a reload of all five
# widgets' timelines and views in the workers), waits until every widget shows
# its new picture and fetches each widget's PNG (drawn in the server), and
# prints the server's RSS after the first round and at the end.
#
# Usage: bench/serve_reloads.sh PATH/TO/quillan-widgets [GROUP_CONTAINER] [N=1000]
# Without a group container a sample journal is written.
set -euo pipefail
binary="$(realpath "$1")"
source_container="${2:-}"
rounds="${3:-1000}"
scratch="$(mktemp -d)"
server=""
cleanup() {
  [[ -n "$server" ]] && kill "$server" 2>/dev/null && wait "$server" 2>/dev/null
  rm -rf "$scratch"
}
trap cleanup EXIT

mkdir -p "$scratch/group" "$scratch/Application Support"
if [[ -n "$source_container" ]]; then
  cp "$source_container"/Quillan.sqlite* "$scratch/group/"
else
  "$binary" sample-journal --group-container "$scratch/group" --time-zone Europe/Berlin >/dev/null
fi
"$binary" --group-container "$scratch/group" --app-support "$scratch/Application Support" \
  --time-zone Europe/Berlin --locale en_US serve --port 0 >"$scratch/serving" &
server=$!
until grep -q serving "$scratch/serving" 2>/dev/null; do sleep 0.1; done
base="$(awk '{print $2}' "$scratch/serving")"

rss_kb() { awk '/^VmRSS:/ {print $2}' "/proc/$server/status"; }
# Each widget's version, as "kind=version ..." once all five are placed.
versions() {
  curl -sf "${base}api/widgets" | python3 -c '
import json, sys
widgets = json.load(sys.stdin)["widgets"]
print(" ".join("%s=%s" % (w["kind"], w["version"]) for w in widgets) if len(widgets) == 5 else "")'
}
# Waits until every widget's version has moved past the one in $1.
wait_for_new_versions() {
  until python3 -c '
import sys
before = dict(item.split("=") for item in sys.argv[1].split())
now = dict(item.split("=") for item in sys.argv[2].split())
sys.exit(0 if now and all(int(now[k]) > int(v) for k, v in before.items()) else 1)' "$1" "$(versions)"; do
    sleep 0.01
  done
}

until [[ -n "$(versions)" ]]; do sleep 0.1; done
start="$(date +%s.%N)"
for ((round = 1; round <= rounds; round++)); do
  scheme=$([[ $((round % 2)) == 1 ]] && echo dark || echo light)
  before="$(versions)"
  curl -sf -X POST -d "{\"colorScheme\": \"$scheme\"}" "${base}api/environment" >/dev/null
  wait_for_new_versions "$before"
  for kind in OnThisDayWidget OTDComposeWidget ComposeButtonWidget StreakWidget ComposeButtonLockScreen; do
    curl -sf -o /dev/null "${base}api/render?kind=$kind&format=png"
  done
  (( round == 1 )) && first_rss="$(rss_kb)"
done
end="$(date +%s.%N)"
echo "rounds: $rounds (each: all five widgets reloaded and drawn)"
echo "server RSS after the first round: $((first_rss / 1024)) MB; after the last: $(( $(rss_kb) / 1024 )) MB"
echo "seconds per round: $(echo "($end - $start) / $rounds" | bc -l | cut -c1-6)"
