#!/usr/bin/python3
"""The server's resident memory across many reloads.

Starts `serve` on a copy of a journal (a sample journal without one), then N
times changes the page's colour scheme, which reloads all five widgets'
timelines and views in the workers, waits until every widget shows its new
picture, fetches each widget's PNG (drawn in the server), and prints the
server's RSS after the first round and after the last, and the time per round.

Usage: bench/serve_reloads.py BINARY [--journal GROUP_CONTAINER] [--rounds N]
"""

import argparse
import json
import os
import shutil
import statistics
import subprocess
import tempfile
import time
import urllib.request

KINDS = ["OnThisDayWidget", "OTDComposeWidget", "ComposeButtonWidget", "StreakWidget", "ComposeButtonLockScreen"]


def resident_megabytes(pid):
    with open(f"/proc/{pid}/status") as status:
        for line in status:
            if line.startswith("VmRSS:"):
                return int(line.split()[1]) / 1024
    return 0.0


def get(url):
    with urllib.request.urlopen(url, timeout=60) as answer:
        return answer.read()


def versions(base):
    widgets = json.loads(get(base + "api/widgets"))["widgets"]
    return {w["kind"]: w["version"] for w in widgets}


def wait_for_new_versions(base, before):
    while True:
        now = versions(base)
        if len(now) == len(KINDS) and all(now[kind] > version for kind, version in before.items()):
            return
        time.sleep(0.005)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("binary")
    parser.add_argument("--journal", help="a group container whose journal is copied and served")
    parser.add_argument("--rounds", type=int, default=200, help="reloads of all five widgets (default 200)")
    arguments = parser.parse_args()
    scratch = tempfile.mkdtemp(prefix="quillan-reloads-")
    group = os.path.join(scratch, "group")
    support = os.path.join(scratch, "Application Support")
    os.makedirs(support)
    server = None
    try:
        if arguments.journal:
            os.makedirs(group)
            for suffix in ["", "-wal", "-shm"]:
                path = os.path.join(arguments.journal, "Quillan.sqlite" + suffix)
                if os.path.exists(path):
                    shutil.copy2(path, group)
        else:
            subprocess.run([arguments.binary, "sample-journal", "--group-container", group], check=True,
                           capture_output=True)
        server = subprocess.Popen([arguments.binary, "--group-container", group, "--app-support", support,
                                   "--time-zone", "Europe/Berlin", "--locale", "en_US", "serve", "--port", "0"],
                                  stdout=subprocess.PIPE, text=True)
        base = server.stdout.readline().split()[1]
        while len(versions(base)) < len(KINDS) or 0 in versions(base).values():
            time.sleep(0.05)
        first = None
        seconds = []
        for round_number in range(1, arguments.rounds + 1):
            before = versions(base)
            started = time.monotonic()
            scheme = "dark" if round_number % 2 else "light"
            request = urllib.request.Request(base + "api/environment", data=json.dumps({"colorScheme": scheme}).encode(),
                                             method="POST")
            get(request)
            wait_for_new_versions(base, before)
            for kind in KINDS:
                get(f"{base}api/render?kind={kind}&format=png")
            seconds.append(time.monotonic() - started)
            if first is None:
                first = resident_megabytes(server.pid)
        print(f"rounds: {arguments.rounds} ({arguments.rounds * len(KINDS)} widget reloads, each drawn)")
        print(f"server RSS after the first round: {first:.1f} MB; after the last: "
              f"{resident_megabytes(server.pid):.1f} MB")
        print(f"median round: {statistics.median(seconds) * 1000:.0f} ms")
    finally:
        if server:
            server.terminate()
            server.wait(timeout=10)
        shutil.rmtree(scratch, ignore_errors=True)


if __name__ == "__main__":
    main()
