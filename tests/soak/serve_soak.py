#!/usr/bin/python3
"""A bounded soak of `quillan-widgets serve`: load, commits, clock jumps and killed workers at once.

Writes a journal of 20,000 notes in a temporary group container, starts `serve --port 0` on it and, until
the time is up, keeps at once: renders of every widget as PNG, SVG and JSON with taps and widget lists,
event streams opening and closing, notes committed as the app commits them, clock jumps posted as the page
posts them, and SIGKILLs of the server's worker processes (the keeper among them). Then, after a settle:

- every widget is `ok` in /api/widgets, and no request went wrong during the load;
- no process under the server (or under a worker it started) is a zombie, and none outlives the server;
- the server wrote no file: the group container held nothing but the journal until the app first wrote,
  and then only the app's own -wal/-shm; nothing appeared in the server's TMPDIR, HOME or working folder
  (all folders of this test); no process of the server was seen holding a file open for writing in the
  shared temporary folders or the real home (other programs write there, so a listing would not say who);
- the server's resident memory at the end is within 10% of its figure after the warm-up.

Prints a summary and exits 1 with one line per failed check. The server gets SIGTERM in every case.

Usage: serve_soak.py PATH/TO/quillan-widgets [--seconds 60] [--notes 20000] [--seed N]
"""

import argparse
import http.client
import json
import os
import random
import selectors
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import threading
import time

KINDS = ["OnThisDayWidget", "OTDComposeWidget", "ComposeButtonWidget", "StreakWidget", "ComposeButtonLockScreen"]
FORMATS = ["png", "svg", "json"]
ZONE = "Europe/Berlin"
REFERENCE_DATE_UNIX = 978307200.0  # the journal's dates count from 2001-01-01
JOURNAL = "Quillan.sqlite"
APP_FILES = {JOURNAL, JOURNAL + "-wal", JOURNAL + "-shm"}  # what the app itself keeps beside its journal

REQUEST_SECONDS = 20  # no single request may take longer, under any load
START_SECONDS = 90  # for `serve` to print its address on a journal this size
STOP_SECONDS = 10  # for `serve` to end after SIGTERM
EVENT_STREAMS = 3  # at once; the server allows 8, so it must never refuse one of these
RSS_GROWTH_ALLOWED = 0.10

NOTE_TEXTS = [
    "Walked to the bakery. **Still warm** bread.",
    "Long day. *Tired*, but the plan for the garden is done.",
    "Call with an old friend:\n\n- the move\n- her new job",
    "Read [an essay](https://example.org/quiet) about quiet mornings.",
    "Rain all day; `tea` and letters.",
]


class Tally:
    """Counts and problems from every load thread; the first few distinct problems are kept, with how
    often each came."""

    KEPT_PROBLEMS = 12

    def __init__(self):
        self.lock = threading.Lock()
        self.counts = {}
        self.problems = {}
        self.problemCount = 0

    def count(self, name, amount=1):
        with self.lock:
            self.counts[name] = self.counts.get(name, 0) + amount

    def problem(self, text):
        with self.lock:
            self.problemCount += 1
            if text in self.problems or len(self.problems) < self.KEPT_PROBLEMS:
                self.problems[text] = self.problems.get(text, 0) + 1

    def get(self, name):
        with self.lock:
            return self.counts.get(name, 0)


class Api:
    """Requests to the server on 127.0.0.1 only, each with a timeout, sent as the page sends them."""

    def __init__(self, port):
        self.port = port
        self.origin = f"http://127.0.0.1:{port}"

    def request(self, method, path, body=None, headers=None, timeout=REQUEST_SECONDS):
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=timeout)
        try:
            connection.request(method, path, body=body, headers=headers or {})
            answer = connection.getresponse()
            return answer.status, answer.getheader("Content-Type", ""), answer.read()
        finally:
            connection.close()

    def get(self, path):
        return self.request("GET", path)

    def postJson(self, path, value):
        headers = {"Content-Type": "application/json", "Origin": self.origin, "Referer": self.origin + "/",
                   "Sec-Fetch-Site": "same-origin", "Sec-Fetch-Mode": "cors"}
        return self.request("POST", path, json.dumps(value).encode(), headers)

    def openStream(self, path, timeout):
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=timeout)
        try:
            connection.request("GET", path, headers={"Accept": "text/event-stream"})
            return connection, connection.getresponse()
        except BaseException:
            connection.close()
            raise


# ---- the journal, written as the app writes it ----

def writeJournal(binary, container, environment, notes, generator):
    made = subprocess.run([binary, "sample-journal", "--group-container", container, "--time-zone", ZONE],
                          env=environment, capture_output=True, text=True, timeout=120)
    if made.returncode != 0:
        raise SystemExit(f"sample-journal failed with status {made.returncode}: {made.stderr.strip()[:300]}")
    database = sqlite3.connect(os.path.join(container, JOURNAL))
    try:
        have = database.execute("SELECT COUNT(*) FROM ZNOTE").fetchone()[0]
        addOlderNotes(database, notes - have, generator)
    finally:
        database.close()


def addOlderNotes(database, count, generator):
    """Adds notes spread over the last eight years, before today, in one transaction as one big import."""
    now = time.time() - REFERENCE_DATE_UNIX
    with database:
        entity, last = database.execute("SELECT Z_ENT, Z_MAX FROM Z_PRIMARYKEY WHERE Z_NAME = 'Note'").fetchone()
        rows = []
        for i in range(max(0, count)):
            date = now - 86400 * (1 + generator.random() * 8 * 365)
            rows.append((last + 1 + i, entity, date, date, generator.choice(NOTE_TEXTS), generator.randbytes(16)))
        database.executemany("INSERT INTO ZNOTE (Z_PK, Z_ENT, Z_OPT, ZDATE, ZLASTUPDATE, ZINFO, ZUUID) "
                             "VALUES (?, ?, 1, ?, ?, ?, ?)", rows)
        database.execute("UPDATE Z_PRIMARYKEY SET Z_MAX = ? WHERE Z_NAME = 'Note'", (last + len(rows),))


def openAsApp(journal):
    database = sqlite3.connect(journal, timeout=5, check_same_thread=False)
    database.execute("PRAGMA journal_mode = WAL")
    return database  # kept open, as the app keeps its connection


def writeNoteNow(database):
    with database:
        entity, last = database.execute("SELECT Z_ENT, Z_MAX FROM Z_PRIMARYKEY WHERE Z_NAME = 'Note'").fetchone()
        database.execute("INSERT INTO ZNOTE (Z_PK, Z_ENT, Z_OPT, ZDATE, ZINFO) VALUES (?, ?, 1, ?, ?)",
                         (last + 1, entity, time.time() - REFERENCE_DATE_UNIX, "Written during the soak"))
        database.execute("UPDATE Z_PRIMARYKEY SET Z_MAX = ? WHERE Z_NAME = 'Note'", (last + 1,))


# ---- processes, through /proc ----

def processTable():
    """{pid: (ppid, state, start time)} of every process still readable."""
    table = {}
    for name in os.listdir("/proc"):
        if name.isdigit():
            fields = readStat(int(name))
            if fields:
                table[int(name)] = fields
    return table


def readStat(pid):
    try:
        with open(f"/proc/{pid}/stat") as stat:
            text = stat.read()
    except OSError:
        return None
    after = text[text.rindex(")") + 2:].split()  # the command name may hold spaces and parentheses
    return int(after[1]), after[0], int(after[19])


def descendants(root, table):
    children = {}
    for pid, (parent, _, _) in table.items():
        children.setdefault(parent, []).append(pid)
    found, pending = [], list(children.get(root, []))
    while pending:
        pid = pending.pop()
        found.append(pid)
        pending.extend(children.get(pid, []))
    return found


def residentMegabytes(pid):
    with open(f"/proc/{pid}/status") as status:
        for line in status:
            if line.startswith("VmRSS:"):
                return int(line.split()[1]) / 1024
    raise RuntimeError(f"no VmRSS for process {pid}")


def pathsOpenForWriting(pid):
    paths = []
    try:
        descriptors = os.listdir(f"/proc/{pid}/fd")
    except OSError:
        return paths
    for descriptor in descriptors:
        try:
            with open(f"/proc/{pid}/fdinfo/{descriptor}") as info:
                flags = next(int(line.split()[1], 8) for line in info if line.startswith("flags:"))
            if flags & (os.O_WRONLY | os.O_RDWR):
                paths.append(os.readlink(f"/proc/{pid}/fd/{descriptor}"))
        except (OSError, StopIteration):
            pass  # closed meanwhile
    return paths


def killIfSame(pid, startTime):
    """SIGKILL `pid` only if it is still the process seen (pids are reused)."""
    fields = readStat(pid)
    if not fields or fields[2] != startTime:
        return False
    try:
        os.kill(pid, signal.SIGKILL)
        return True
    except ProcessLookupError:
        return False


# ---- files the server must not write ----

def listing(folder):
    """Every path under `folder`, relative to it."""
    found = set()
    for root, folders, files in os.walk(folder):
        for name in folders + files:
            found.add(os.path.relpath(os.path.join(root, name), folder))
    return found


def sharedFolders():
    home = os.path.expanduser("~")
    candidates = ["/tmp", "/var/tmp", "/dev/shm", home] + [os.path.join(home, sub) for sub in
                                                          [".cache", ".config", ".local/share", ".local/state"]]
    return [folder for folder in candidates if os.path.isdir(folder)]


def isUnder(path, folders):
    return any(path == folder or path.startswith(folder.rstrip("/") + "/") for folder in folders)


class Soak:
    def __init__(self, binary, arguments):
        self.binary = binary
        self.arguments = arguments
        self.generator = random.Random(arguments.seed)
        self.tally = Tally()
        self.stop = threading.Event()
        self.appReady = threading.Event()
        self.failures = []
        self.server = None
        self.app = None
        self.appLock = threading.Lock()
        self.scratch = tempfile.mkdtemp(prefix="quillan-soak-")
        self.folders = {name: os.path.join(self.scratch, name) for name in
                        ["group", "Application Support", "tmp", "home", "cwd"]}
        for folder in self.folders.values():
            os.makedirs(folder)
        self.logPath = os.path.join(self.scratch, "serve.log")
        self.environment = self.isolatedEnvironment()
        self.heldOpen = set()  # files in shared folders the server's processes were seen writing
        self.seenWorkers = set()  # (pid, start time) of every process seen under the server

    def isolatedEnvironment(self):
        """The server's HOME and TMPDIR are this test's, so whatever it writes there is seen exactly."""
        environment = {key: value for key, value in os.environ.items() if not key.startswith("XDG_")}
        environment.update(HOME=self.folders["home"], TMPDIR=self.folders["tmp"])
        return environment

    def fail(self, line):
        self.failures.append(line)

    # ---- the server ----

    def startServer(self):
        with open(self.logPath, "wb") as log:
            self.server = subprocess.Popen(
                [self.binary, "serve", "--port", "0", "--group-container", self.folders["group"],
                 "--app-support", self.folders["Application Support"], "--time-zone", ZONE, "--locale", "en_US"],
                stdout=subprocess.PIPE, stderr=log, cwd=self.folders["cwd"], env=self.environment, text=True)
        line = self.firstLine(START_SECONDS)
        prefix = "serving http://127.0.0.1:"
        if not line.startswith(prefix) or not line.rstrip("/")[len(prefix):].isdigit():
            raise SystemExit(f"serve did not print a loopback address within {START_SECONDS} s: {line!r}")
        threading.Thread(target=self.server.stdout.read, daemon=True).start()  # nothing else is expected
        return Api(int(line.rstrip("/")[len(prefix):]))

    def firstLine(self, seconds):
        with selectors.DefaultSelector() as selector:
            selector.register(self.server.stdout, selectors.EVENT_READ)
            if not selector.select(timeout=seconds):
                return ""
        return self.server.stdout.readline().strip()

    def stopServer(self):
        """SIGTERM, then checks it ended well and took its worker processes with it."""
        if not self.server or self.server.poll() is not None:
            return
        table = processTable()
        workers = dict(self.seenWorkers)
        workers.update((pid, table[pid][2]) for pid in self.family(table))
        self.server.terminate()
        try:
            status = self.server.wait(timeout=STOP_SECONDS)
            if status != 0:
                self.fail(f"serve ended with status {status} on SIGTERM")
        except subprocess.TimeoutExpired:
            self.fail(f"serve did not end within {STOP_SECONDS} s of SIGTERM")
            self.server.kill()
            self.server.wait(timeout=STOP_SECONDS)
        self.endLeftovers(workers)

    def endLeftovers(self, workers):
        deadline = time.monotonic() + 5
        while time.monotonic() < deadline and any(self.stillRunning(pid, start) for pid, start in workers.items()):
            time.sleep(0.1)
        left = [pid for pid, start in workers.items() if self.stillRunning(pid, start)]
        if left:
            self.fail(f"{len(left)} worker processes outlived the server (or the worker that forked them): "
                      f"{sorted(left)}")
            for pid in left:
                killIfSame(pid, workers[pid])

    @staticmethod
    def stillRunning(pid, startTime):
        fields = readStat(pid)
        return bool(fields) and fields[2] == startTime and fields[1] != "Z"

    # ---- the load ----

    def until(self, deadline, limit, pause):
        """Yields loop turns until the load stops, the deadline passes or `limit` turns were done."""
        for turn in range(limit):
            if self.stop.is_set() or time.monotonic() >= deadline:
                return
            yield turn
            self.stop.wait(pause())

    def expect(self, what, call, check):
        try:
            status, contentType, body = call()
        except (OSError, http.client.HTTPException) as error:
            self.tally.problem(f"{what}: no answer ({error.__class__.__name__}: {error})")
            return None
        self.tally.count("requests")
        why = check(status, contentType, body)
        if why:
            self.tally.problem(f"{what}: {why}")
        return body if not why else None

    def renderLoop(self, api, deadline, generator):
        lastVersions = {}
        turns = self.until(deadline, 100000, lambda: generator.uniform(0, 0.02))
        for turn in turns:
            kind = KINDS[turn % len(KINDS)]
            format = FORMATS[(turn // len(KINDS)) % len(FORMATS)]
            self.expect(f"render {kind} {format}", lambda: api.get(f"/api/render?kind={kind}&format={format}"),
                        lambda s, t, b: judgePicture(kind, format, s, t, b))
            x, y = generator.uniform(0, 160), generator.uniform(0, 160)
            self.expect(f"tap {kind}", lambda: api.get(f"/api/tap?kind={kind}&x={x:.1f}&y={y:.1f}"), judgeTap)
            if turn % 5 == 0:
                body = self.expect("widgets", lambda: api.get("/api/widgets"), judgeWidgets)
                if body:
                    self.checkVersionsGrow(json.loads(body), lastVersions)

    def checkVersionsGrow(self, answer, lastVersions):
        for widget in answer["widgets"]:
            before = lastVersions.get(widget["kind"], 0)
            if widget["version"] < before:
                self.tally.problem(f"widgets: {widget['kind']} went from version {before} back to {widget['version']}")
            lastVersions[widget["kind"]] = max(before, widget["version"])

    def eventLoop(self, api, deadline, generator):
        for _ in self.until(deadline, 10000, lambda: generator.uniform(0, 0.3)):
            self.holdStream(api, generator.uniform(0.1, 3.0))

    def holdStream(self, api, seconds):
        try:
            connection, answer = api.openStream("/api/events", REQUEST_SECONDS)
        except (OSError, http.client.HTTPException) as error:
            self.tally.problem(f"events: no answer ({error.__class__.__name__}: {error})")
            return
        try:
            self.tally.count("requests")
            if answer.status != 200 or not answer.getheader("Content-Type", "").startswith("text/event-stream"):
                body = answer.read(300).decode(errors="replace")
                self.tally.problem(f"events: {answer.status} with {EVENT_STREAMS} or fewer streams open: {body}")
                return
            self.tally.count("event streams")
            self.readEvents(connection, answer, time.monotonic() + seconds)
        finally:
            connection.close()

    def readEvents(self, connection, answer, until):
        pending = b""
        while not self.stop.is_set() and time.monotonic() < until:
            connection.sock.settimeout(max(0.05, until - time.monotonic()))
            try:
                chunk = answer.read1(4096)
            except (TimeoutError, OSError):
                return  # quiet until the stream was to close: fine
            if not chunk:
                self.tally.problem("events: the server ended a stream while the load ran")
                return
            pending += chunk
            *lines, pending = pending.split(b"\n")
            for line in lines:
                if line.startswith(b"data:"):
                    self.judgeEvent(line[5:])

    def judgeEvent(self, data):
        try:
            event = json.loads(data)
            if event["kind"] in KINDS and isinstance(event["version"], int):
                self.tally.count("events")
                return
        except (ValueError, KeyError, TypeError):
            pass
        self.tally.problem(f"events: not a widget event: {data[:200]!r}")

    def commitLoop(self, deadline, generator):
        self.appReady.wait(timeout=max(0, deadline - time.monotonic()))
        for _ in self.until(deadline, 1000, lambda: generator.uniform(0.3, 1.5)):
            self.commit()

    def commit(self):
        with self.appLock:
            try:
                writeNoteNow(self.app)
                self.tally.count("commits")
            except sqlite3.Error as error:
                self.tally.problem(f"commit: the app could not write its journal: {error}")

    def clockLoop(self, api, deadline, generator):
        for _ in self.until(deadline, 2000, lambda: generator.uniform(0.5, 2.0)):
            change = self.clockChange(generator)
            self.expect(f"clock {json.dumps(change)}", lambda: api.postJson("/api/clock", change), judgeClock)
            self.tally.count("clock changes")

    @staticmethod
    def clockChange(generator):
        choice = generator.random()
        if choice < 0.6:
            moment = time.time() + generator.uniform(-40, 40) * 86400
            return {"now": time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime(moment))}
        if choice < 0.85:
            return {"rate": generator.choice([2, 60, 600, 3600])}
        return {"live": True}

    def killLoop(self, deadline, generator):
        """Every few seconds SIGKILLs one of the server's worker processes; every third time one it forked
        itself (the keeper); between kills, notes any file the workers hold open in a shared folder."""
        nextKill = time.monotonic() + generator.uniform(1, 3)
        for _ in self.until(deadline, 100000, lambda: 0.25):
            table = processTable()
            workers = [pid for pid in self.family(table) if table[pid][1] != "Z"]
            self.seenWorkers.update((pid, table[pid][2]) for pid in workers)
            self.noteSharedFiles([self.server.pid] + workers)
            if time.monotonic() >= nextKill and workers:
                direct = [pid for pid in workers if table[pid][0] == self.server.pid]
                pool = direct if self.tally.get("kills") % 3 == 0 and direct else workers
                victim = generator.choice(pool)
                if killIfSame(victim, table[victim][2]):
                    self.tally.count("kills")
                    self.tally.count("kills of the server's own children", int(victim in direct))
                nextKill = time.monotonic() + generator.uniform(1.5, 4)

    def family(self, table):
        """The server's descendants, and those of workers seen before: a worker whose parent was killed
        moves under init and may go on serving the server."""
        alive = [pid for pid, start in self.seenWorkers
                 if pid in table and table[pid][2] == start and table[pid][1] != "Z"]
        members = set(alive)
        for root in [self.server.pid] + alive:
            members.update(descendants(root, table))
        return members

    def noteSharedFiles(self, pids):
        shared = sharedFolders()
        for pid in pids:
            for path in pathsOpenForWriting(pid):
                if isUnder(path, shared) and not isUnder(path, [self.scratch]):
                    self.heldOpen.add(path)

    # ---- the run ----

    def run(self):
        arguments = self.arguments
        writeJournal(self.binary, self.folders["group"], self.environment, arguments.notes, self.generator)
        before = {name: listing(folder) for name, folder in self.folders.items()}
        api = self.startServer()
        print(f"serving on 127.0.0.1:{api.port}, {arguments.notes} notes, {arguments.seconds} s of load")
        self.startRss = residentMegabytes(self.server.pid)
        started = time.monotonic()
        deadline = started + arguments.seconds
        threads = self.startLoad(api, deadline)
        self.firstCommitCheck(before["group"], started)
        warmRss = self.rssAt(started + min(arguments.warm_up, arguments.seconds / 3))
        while time.monotonic() < deadline and self.server.poll() is None:
            time.sleep(0.2)
        self.stop.set()
        for thread in threads:
            thread.join(timeout=REQUEST_SECONDS + 5)
        if self.server.poll() is not None:
            self.fail(f"serve stopped during the load with status {self.server.returncode}")
            self.checkProblems()
            return
        states = self.settle(api)
        endRss = residentMegabytes(self.server.pid)
        self.checkZombies()
        self.stopServer()
        with self.appLock:
            self.app.close()
        self.checkFiles(before)
        self.checkRss(warmRss, endRss)
        self.checkProblems()
        self.printSummary(warmRss, endRss, states)

    def startLoad(self, api, deadline):
        loops = [(self.renderLoop, (api,)), (self.renderLoop, (api,)), (self.clockLoop, (api,)),
                 (self.commitLoop, ()), (self.killLoop, ())] + [(self.eventLoop, (api,))] * EVENT_STREAMS
        threads = []
        for loop, head in loops:
            generator = random.Random(self.generator.getrandbits(64))
            thread = threading.Thread(target=self.guarded, args=(loop, head + (deadline, generator)), daemon=True)
            thread.start()
            threads.append(thread)
        return threads

    def guarded(self, loop, arguments):
        try:
            loop(*arguments)
        except Exception as error:  # a fault of this test, not of the server: said, and the others go on
            self.tally.problem(f"{loop.__name__} stopped: {error.__class__.__name__}: {error}")

    def firstCommitCheck(self, groupBefore, started):
        """Before the app writes anything, the group container must be as the app left it: the server
        only reads. Then the app opens its journal (in WAL mode) and starts committing."""
        time.sleep(max(0, started + min(3, self.arguments.seconds / 4) - time.monotonic()))
        added = listing(self.folders["group"]) - groupBefore
        if added:
            self.fail(f"serve added files beside the journal before the app wrote anything: {sorted(added)}")
        self.app = openAsApp(os.path.join(self.folders["group"], JOURNAL))
        self.appReady.set()

    def rssAt(self, moment):
        time.sleep(max(0, moment - time.monotonic()))
        try:
            return residentMegabytes(self.server.pid)
        except (OSError, RuntimeError):
            return None  # the server is gone: said once the load ends

    def settle(self, api):
        """Lets the clock run live again (a jump back: every widget asked again), commits one note (the
        app's reload of all timelines) and waits for every widget to be `ok`."""
        self.expect("clock live", lambda: api.postJson("/api/clock", {"live": True}), judgeClock)
        self.commit()
        deadline = time.monotonic() + self.arguments.settle
        states = {}
        while time.monotonic() < deadline:
            body = self.expect("widgets", lambda: api.get("/api/widgets"), judgeWidgets)
            if body:
                states = {w["kind"]: w["state"] + (f" ({w['reason']})" if w.get("reason") else "")
                          for w in json.loads(body)["widgets"]}
                if sorted(states) == sorted(KINDS) and all(state == "ok" for state in states.values()):
                    return states
            time.sleep(0.25)
        bad = {kind: state for kind, state in states.items() if state != "ok"}
        missing = sorted(set(KINDS) - set(states))
        self.fail(f"{self.arguments.settle:g} s after the load, widgets not ok: {bad}" +
                  (f", missing: {missing}" if missing else ""))
        return states

    def checkZombies(self):
        """Zombies seen twice a second apart: a child the server (or a worker) never reaped."""
        first = self.zombies()
        time.sleep(1)
        lasting = sorted(set(first) & set(self.zombies()))
        if lasting:
            self.fail(f"{len(lasting)} zombie processes under the server after the settle: {lasting}")

    def zombies(self):
        table = processTable()
        return [(pid, table[pid][2]) for pid in self.family(table) if table[pid][1] == "Z"]

    def checkFiles(self, before):
        for name, folder in self.folders.items():
            added = listing(folder) - before[name]
            if name == "group":
                added -= APP_FILES
            if added:
                self.fail(f"files written in the {name} folder: {sorted(added)[:8]}")
        # Other programs write in the shared folders too, so a listing there would not say who wrote:
        # what counts is a file the server's processes were seen holding open for writing.
        if self.heldOpen:
            self.fail(f"the server's processes wrote files outside the test's folders: {sorted(self.heldOpen)[:8]}")

    def checkRss(self, warmRss, endRss):
        if endRss > warmRss * (1 + RSS_GROWTH_ALLOWED):
            self.fail(f"server RSS grew from {warmRss:.1f} MB after the warm-up to {endRss:.1f} MB at the end "
                      f"(+{(endRss / warmRss - 1) * 100:.0f}%, at most {RSS_GROWTH_ALLOWED * 100:.0f}% allowed)")

    def checkProblems(self):
        if self.tally.problemCount:
            first = next(iter(self.tally.problems))
            self.fail(f"{self.tally.problemCount} requests or commits went wrong during the load, first: {first}")

    def printSummary(self, warmRss, endRss, states):
        counts = ", ".join(f"{name} {self.tally.get(name)}" for name in
                           ["requests", "event streams", "events", "commits", "clock changes", "kills",
                            "kills of the server's own children"])
        print(counts)
        print(f"server RSS: {self.startRss:.1f} MB at the start, {warmRss:.1f} MB after the warm-up, "
              f"{endRss:.1f} MB at the end")
        for kind in KINDS:
            print(f"  {kind}: {states.get(kind, 'missing')}")
        for problem, times in self.tally.problems.items():
            print(f"  problem ({times}x): {problem}")

    def cleanUp(self):
        try:
            self.stopServer()
        finally:
            if self.app:
                self.app.close()
            if self.failures and os.path.exists(self.logPath):
                with open(self.logPath, errors="replace") as log:
                    tail = log.readlines()[-8:]
                if tail:
                    print("last lines of serve's standard error:\n  " + "  ".join(tail), end="")
            shutil.rmtree(self.scratch, ignore_errors=True)


# ---- what a right answer looks like ----

def judgePicture(kind, format, status, contentType, body):
    if status == 503:
        return None  # the widget's extension failed (a killed worker): documented, and checked at the end
    if status != 200:
        return f"{status}: {body[:200]!r}"
    if format == "png" and not body.startswith(b"\x89PNG\r\n\x1a\n"):
        return f"not a PNG ({contentType}, {len(body)} bytes)"
    if format == "svg" and b"<svg" not in body[:2000]:
        return f"not an SVG ({contentType}, {len(body)} bytes)"
    if format == "json":
        try:
            picture = json.loads(body)
            if picture["kind"] != kind or not isinstance(picture["regions"], list) or "view" not in picture:
                return f"the picture of another kind or without its view: {body[:200]!r}"
        except (ValueError, KeyError, TypeError):
            return f"not the picture's JSON: {body[:200]!r}"
    return None


def judgeJson(isRight):
    """A judge of JSON answers: 200 with a body `isRight` accepts, else the status and the body's start."""
    def judge(status, contentType, body):
        try:
            if status == 200 and isRight(json.loads(body)):
                return None
        except (ValueError, KeyError, TypeError):
            pass
        return f"{status}: {body[:200]!r}"
    return judge


def judgeTap(status, contentType, body):
    # 503: the widget's extension failed (a killed worker), as for pictures.
    return None if status == 503 else judgeJson(lambda answer: answer["url"] is None or isinstance(answer["url"], str))(
        status, contentType, body)


judgeWidgets = judgeJson(lambda answer: all(w["kind"] in KINDS and isinstance(w["version"], int)
                                            for w in answer["widgets"]))
judgeClock = judgeJson(lambda answer: isinstance(answer["now"], str))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("binary")
    parser.add_argument("--seconds", type=float, default=60, help="length of the load (default 60)")
    parser.add_argument("--notes", type=int, default=20000, help="notes in the journal (default 20000)")
    parser.add_argument("--warm-up", type=float, default=10, help="load before the server's RSS is taken (default 10)")
    parser.add_argument("--settle", type=float, default=20, help="seconds for every widget to be ok after it")
    parser.add_argument("--seed", type=int, default=random.randrange(2 ** 32), help="seeds every choice")
    arguments = parser.parse_args()
    if arguments.seconds <= 0 or arguments.notes < 0 or arguments.settle <= 0:
        parser.error("--seconds and --settle must be above 0, --notes at least 0")
    soak = Soak(os.path.abspath(arguments.binary), arguments)
    print(f"seed {arguments.seed}")
    try:
        soak.run()
    except SystemExit as stop:
        soak.fail(str(stop.code))
    finally:
        soak.cleanUp()
    for line in soak.failures:
        print(f"FAIL {line}")
    if soak.failures:
        sys.exit(1)
    print("soak test passed")


if __name__ == "__main__":
    main()
