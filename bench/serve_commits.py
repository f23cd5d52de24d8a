#!/usr/bin/python3
"""`serve`: from the app's commit to the new picture's version, beside the scan floor.

Starts `serve` on a copy of the 100,000-note journal (all five widgets placed),
opens the copy as the app does (WAL, one connection kept open) and commits N
notes dated now, one after another. For each commit it times from the commit's
return until /api/widgets shows a new version of the compose button's picture
(polled every millisecond), and beside it times the floor, SQLite's scan of
the note dates on the same journal (the statement of bench_cold_commands, the
median of three). Several binaries given as NAME=PATH are run one after the
other on their own copies; prints each one's median, its floor's median and
the ratio. Then, to show that no commit is reloaded twice and that a burst is
coalesced, it counts the compose button's app reloads over those commits and
over a burst of M commits made back to back.

Usage: bench/serve_commits.py NAME=BINARY [NAME=BINARY ...] [--commits N] [--burst M] [--journal GROUP_CONTAINER]
"""

import argparse
import json
import os
import shutil
import sqlite3
import statistics
import subprocess
import tempfile
import time
import urllib.request

JOURNAL = "/tmp/quillan-budget-journal-v1/group"
REFERENCE_DATE_UNIX = 978307200.0  # the journal's dates count from 2001-01-01
KIND = "ComposeButtonWidget"
KINDS = 5


def widgets(base):
    with urllib.request.urlopen(base + "api/widgets", timeout=60) as answer:
        return json.loads(answer.read())["widgets"]


def versions(base):
    return {w["kind"]: w["version"] for w in widgets(base)}


def app_reloads(base):
    return next(w["reloads"]["app"] for w in widgets(base) if w["kind"] == KIND)


def floor_seconds(database):
    times = []
    for _ in range(3):
        started = time.monotonic()
        subprocess.run(["sqlite3", "-readonly", database, "select count(*) from ZNOTE where ZDATE > 0"], check=True,
                       stdout=subprocess.DEVNULL)
        times.append(time.monotonic() - started)
    return statistics.median(times)


def commit_note(app):
    with app:
        entity, last = app.execute("SELECT Z_ENT, Z_MAX FROM Z_PRIMARYKEY WHERE Z_NAME = 'Note'").fetchone()
        app.execute("INSERT INTO ZNOTE (Z_PK, Z_ENT, Z_OPT, ZDATE, ZINFO) VALUES (?, ?, 1, ?, ?)",
                    (last + 1, entity, time.time() - REFERENCE_DATE_UNIX, "Written just now"))
        app.execute("UPDATE Z_PRIMARYKEY SET Z_MAX = ? WHERE Z_NAME = 'Note'", (last + 1,))


def wait_for_new_version(base, before):
    while versions(base)[KIND] == before:
        time.sleep(0.001)


def run(binary, source, commits, burst, scratch):
    group = os.path.join(scratch, "group")
    os.makedirs(group)
    for suffix in ["", "-wal", "-shm"]:
        if os.path.exists(os.path.join(source, "Quillan.sqlite" + suffix)):
            shutil.copy2(os.path.join(source, "Quillan.sqlite" + suffix), group)
    database = os.path.join(group, "Quillan.sqlite")
    server = subprocess.Popen([binary, "--group-container", group, "--time-zone", "Europe/Berlin", "--locale", "en_US",
                               "serve", "--port", "0"], stdout=subprocess.PIPE, text=True)
    app = None
    try:
        base = server.stdout.readline().split()[1]
        while len(versions(base)) < KINDS or 0 in versions(base).values():
            time.sleep(0.05)
        app = sqlite3.connect(database)
        app.execute("PRAGMA journal_mode = WAL")
        times, floors = [], []
        reloads_before = app_reloads(base)
        for _ in range(commits):
            time.sleep(0.5)  # the last commit's reloads are done
            floors.append(floor_seconds(database))
            before = versions(base)[KIND]
            commit_note(app)
            committed = time.monotonic()
            wait_for_new_version(base, before)
            times.append(time.monotonic() - committed)
        time.sleep(1.0)  # past the last burst's end
        reloads = app_reloads(base) - reloads_before
        for _ in range(burst):
            commit_note(app)
        time.sleep(1.0)
        burst_reloads = app_reloads(base) - reloads_before - reloads
        return statistics.median(times), statistics.median(floors), reloads, burst_reloads
    finally:
        if app:
            app.close()
        server.terminate()
        server.wait(timeout=10)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("binaries", nargs="+", help="NAME=PATH of a quillan-widgets")
    parser.add_argument("--commits", type=int, default=20)
    parser.add_argument("--burst", type=int, default=10, help="commits made back to back after the timed ones")
    parser.add_argument("--journal", default=JOURNAL, help="a group container (default: the benchmarks' 100k one)")
    arguments = parser.parse_args()
    for name, binary in (entry.split("=", 1) for entry in arguments.binaries):
        scratch = tempfile.mkdtemp(prefix="quillan-serve-commits-")
        try:
            median, floor, reloads, burst_reloads = run(binary, arguments.journal, arguments.commits, arguments.burst,
                                                        scratch)
        finally:
            shutil.rmtree(scratch, ignore_errors=True)
        print(f"{name}: commit to new picture version, median {median * 1000:.1f} ms over {arguments.commits} "
              f"commits; floor median {floor * 1000:.1f} ms; {median / floor:.2f}x floor; app reloads: {reloads} for "
              f"{arguments.commits} commits, {burst_reloads} for a burst of {arguments.burst}")


if __name__ == "__main__":
    main()
