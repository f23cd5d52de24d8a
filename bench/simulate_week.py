#!/usr/bin/python3
"""A week of `simulate` on the 100,000-note journal, beside the scan floor.

Every widget placed, a week from the journal's last note with 50 notes written
on the way (one every 3 h 20 min, each dated when it is written), as the user
runs it: one whole `simulate` process per round. Each round also times the
floor, SQLite's scan of the note dates on the same journal (the statement of
bench_cold_commands), five times, and keeps its median. Prints the medians of
the rounds, wall and CPU (the command's and its children's), and the ratio to
the floor's median. CPU is counted by `perf stat` over the command and every
process it starts (the worker's children are not all reaped by the command
itself, so its own rusage misses them). Several binaries given as NAME=PATH are timed in the same
rounds, so a build before a change and one after can be compared on a busy
machine.

Usage: bench/simulate_week.py NAME=BINARY [NAME=BINARY ...] [--rounds N] [--journal GROUP_CONTAINER]
"""

import argparse
import datetime
import json
import os
import shutil
import statistics
import subprocess
import tempfile
import time

JOURNAL = "/tmp/quillan-budget-journal-v1/group"
START = datetime.datetime(2026, 5, 9, 16, 53, 20, tzinfo=datetime.timezone.utc)
NOTES = 50


def iso(moment):
    return moment.strftime("%Y-%m-%dT%H:%M:%SZ")


def write_events(path):
    step = datetime.timedelta(days=7) / (NOTES + 1)
    events = [{"at": iso(START + step * (n + 1)), "note": {"date": iso(START + step * (n + 1)),
                                                          "text": f"Week note {n + 1}: a *short* entry."}}
              for n in range(NOTES)]
    with open(path, "w") as file:
        json.dump(events, file)


def timed(command, scratch=None):
    """Wall seconds, and CPU seconds of the whole process tree when `scratch` is given (perf stat)."""
    counted = os.path.join(scratch, "task-clock") if scratch else None
    if counted:
        command = ["perf", "stat", "-x,", "-e", "task-clock", "-o", counted, "--"] + command
    started = time.monotonic()
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    wall = time.monotonic() - started
    if not counted:
        return wall, 0.0
    with open(counted) as stat:
        cpu_ms = next(float(line.split(",")[0]) for line in stat if "task-clock" in line)
    return wall, cpu_ms / 1000


def floor_seconds(journal):
    database = os.path.join(journal, "Quillan.sqlite")
    return statistics.median(timed(["sqlite3", "-readonly", database,
                                    "select count(*) from ZNOTE where ZDATE > 0"])[0] for _ in range(5))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("binaries", nargs="+", help="NAME=PATH of a quillan-widgets")
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--journal", default=JOURNAL, help="a group container (default: the benchmarks' 100k one)")
    arguments = parser.parse_args()
    named = [entry.split("=", 1) for entry in arguments.binaries]
    scratch = tempfile.mkdtemp(prefix="quillan-simulate-week-")
    try:
        events = os.path.join(scratch, "events.json")
        write_events(events)
        floors = []
        results = {name: [] for name, _ in named}
        for round_number in range(arguments.rounds):
            floors.append(floor_seconds(arguments.journal))
            # Each round starts with the next binary, and no output is removed
            # before the end: ext4 makes new files slow right after many were
            # deleted, which would otherwise tax whichever ran second.
            shift = round_number % len(named)
            for name, binary in named[shift:] + named[:shift]:
                output = os.path.join(scratch, f"{name}-{round_number}")
                results[name].append(timed([binary, "--group-container", arguments.journal, "--time-zone",
                                            "Europe/Berlin", "--locale", "en_US", "--seed", "7", "simulate",
                                            "--from", iso(START), "--to", iso(START + datetime.timedelta(days=7)),
                                            "--events", events, "--output", output], scratch))
        floor = statistics.median(floors)
        print(f"floor (SQLite's scan of the dates): median {floor * 1000:.1f} ms over {len(floors)} rounds")
        for name, runs in results.items():
            wall = statistics.median(run[0] for run in runs)
            cpu = statistics.median(run[1] for run in runs)
            print(f"{name}: simulate week, median wall {wall:.2f} s ({wall / floor:.0f}x floor), "
                  f"CPU {cpu:.2f} s, over {len(runs)} rounds")
    finally:
        shutil.rmtree(scratch, ignore_errors=True)


if __name__ == "__main__":
    main()
