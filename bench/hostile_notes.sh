#!/usr/bin/env bash
# Times every widget's cold `render --format png` on journals whose memory notes
# are hostile: 100,000 "*" around one letter, 100,000 "[" and "]", and a
# megabyte of prose. Prints, per input and widget, the median of five runs and
# the median floor of the same run (one SQLite scan of the note dates).
# Usage: bench/hostile_notes.sh [path to quillan-widgets] (default: the release build)
set -euo pipefail
cd "$(dirname "$0")/.."
Q="${1:-build/release/src/quillan-widgets}"
NOW=2026-11-22T09:00:00Z
root="$(mktemp -d)"
trap 'rm -rf "$root"' EXIT
python3 - "$root" <<'PY'
import sys
root = sys.argv[1]
open(root + '/stars.txt', 'w').write('*' * 100000 + 'x' + '*' * 100000)
open(root + '/brackets.txt', 'w').write('[' * 100000 + 'x' + ']' * 100000)
open(root + '/megabyte.txt', 'w').write(('lorem ipsum dolor sit amet ' * 40000)[:1048576])
PY
median() { sort -n | awk '{v[NR] = $1} END {print v[int((NR + 1) / 2)]}'; }
milliseconds() { local s e; s=$(date +%s%N); "$@" >/dev/null 2>&1 || true; e=$(date +%s%N); echo $(((e - s) / 1000000)); }
for input in stars brackets megabyte; do
  journal="$root/$input"
  "$Q" sample-journal --group-container "$journal" --now $NOW --time-zone UTC >/dev/null
  # Every note of 2025-11-22 (UTC), the memories drawn on 2026-11-22.
  sqlite3 "$journal/Quillan.sqlite" "UPDATE ZNOTE SET ZINFO = CAST(readfile('$root/$input.txt') AS TEXT)
                                     WHERE ZDATE >= 785462400 AND ZDATE < 785548800"
  for kind in OnThisDayWidget OTDComposeWidget ComposeButtonWidget StreakWidget ComposeButtonLockScreen; do
    render=$(for _ in 1 2 3 4 5; do milliseconds "$Q" render --kind $kind --format png --output "$root/out.png" \
      --group-container "$journal" --now $NOW --time-zone UTC; done | median)
    floor=$(for _ in 1 2 3 4 5; do milliseconds sqlite3 -readonly "$journal/Quillan.sqlite" \
      "select count(*) from ZNOTE where ZDATE > 0"; done | median)
    printf '%-9s %-24s %5d ms  floor %3d ms\n' "$input" "$kind" "$render" "$floor"
  done
done
