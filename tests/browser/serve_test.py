#!/usr/bin/python3
"""The page of `quillan-widgets serve` in a real browser (headless Chromium).

Starts `serve --port 0` on a fresh sample journal, checks that the five widgets
appear, taps the streak's today circle, then writes a note dated now into the
journal as the app does (SQLite, WAL mode) and waits for the compose button to
turn grey on the page.

Usage: serve_test.py PATH/TO/quillan-widgets [--journal GROUP_CONTAINER] [--commits N]

--journal copies that group container's journal (e.g. the 100,000-note
benchmark journal) instead of writing a sample one; --commits N writes N notes
one after another and prints the median time from a commit to the new picture.
"""

import argparse

import json
import os
import statistics
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import time
import urllib.request

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.actions.action_builder import ActionBuilder
from selenium.webdriver.common.by import By
from selenium.webdriver.support.ui import WebDriverWait

KINDS = ["OnThisDayWidget", "OTDComposeWidget", "ComposeButtonWidget", "StreakWidget", "ComposeButtonLockScreen"]
REFERENCE_DATE_UNIX = 978307200.0  # the journal's dates count from 2001-01-01


def start_server(binary, container):
    server = subprocess.Popen(
        [binary, "serve", "--port", "0", "--group-container", container, "--time-zone", "Europe/Berlin"],
        stdout=subprocess.PIPE, text=True)
    line = server.stdout.readline().strip()
    if not line.startswith("serving http://127.0.0.1:"):
        server.kill()
        raise SystemExit(f"unexpected first line from serve: {line!r}")
    return server, line.split(" ", 1)[1]


def start_browser(profile):
    options = webdriver.ChromeOptions()
    options.binary_location = shutil.which("chromium")
    for flag in ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
                 "--disable-background-networking", "--disable-component-update", "--disable-sync",
                 "--window-size=1300,1000", f"--user-data-dir={profile}"]:
        options.add_argument(flag)
    return webdriver.Chrome(service=Service(shutil.which("chromedriver")), options=options)


def widget_image(browser, kind):
    return browser.find_element(By.CSS_SELECTOR, f'figure[data-kind="{kind}"] img.widget')


def shown(browser, kind):
    """True once the widget's picture has loaded."""
    images = browser.find_elements(By.CSS_SELECTOR, f'figure[data-kind="{kind}"] img.widget')
    return bool(images) and browser.execute_script(
        "return arguments[0].complete && arguments[0].naturalWidth > 0", images[0])


def background_colour(browser, kind):
    """The button's colour near its bottom-left corner (clear of the prompt and the symbol), as [r, g, b, a]."""
    return browser.execute_script("""
        const image = arguments[0];
        const canvas = document.createElement('canvas');
        canvas.width = image.naturalWidth; canvas.height = image.naturalHeight;
        const context = canvas.getContext('2d');
        context.drawImage(image, 0, 0);
        const pixel = context.getImageData(image.naturalWidth * 0.15, image.naturalHeight * 0.85, 1, 1).data;
        return [pixel[0], pixel[1], pixel[2], pixel[3]];""", widget_image(browser, kind))


def is_grey(rgba):
    return rgba[3] > 200 and max(rgba[:3]) - min(rgba[:3]) < 24


def is_orange(rgba):
    return rgba[3] > 200 and rgba[0] > 200 and rgba[0] - rgba[2] > 100


def tap_streak_today(browser, base):
    with urllib.request.urlopen(base + "api/render?kind=StreakWidget&format=json") as answer:
        picture = json.load(answer)
    region = next(r for r in picture["regions"] if r["url"] == "widget-deeplink://AddRecord")
    image = widget_image(browser, "StreakWidget")
    left, top = browser.execute_script(
        "const r = arguments[0].getBoundingClientRect(); return [r.left, r.top]", image)
    # The picture is shown one CSS pixel per point.
    x = left + region["x"] + region["width"] / 2
    y = top + region["y"] + region["height"] / 2
    actions = ActionBuilder(browser)
    actions.pointer_action.move_to_location(int(x), int(y))
    actions.pointer_action.click()
    actions.perform()
    try:
        WebDriverWait(browser, 10).until(
            lambda b: b.find_element(By.ID, "tap-url").text == "widget-deeplink://AddRecord")
    except Exception:
        shown_text = browser.find_element(By.ID, "tap-url").text
        layout = browser.execute_script(
            "const r = arguments[0].getBoundingClientRect();"
            "return [r.left, r.top, r.width, r.height, arguments[0].naturalWidth, window.scrollY]", image)
        raise SystemExit(f"tap at {region} (offset {x}, {y}; image {layout}, size {image.size}) "
                         f"showed {shown_text!r}, not widget-deeplink://AddRecord")


def open_as_app(journal):
    database = sqlite3.connect(journal)
    database.execute("PRAGMA journal_mode = WAL")
    return database  # kept open, as the app keeps its connection


def write_note_now(database):
    """Adds a note dated now, as the app commits one: primary key bookkeeping, one transaction."""
    with database:
        entity, last = database.execute("SELECT Z_ENT, Z_MAX FROM Z_PRIMARYKEY WHERE Z_NAME = 'Note'").fetchone()
        database.execute("INSERT INTO ZNOTE (Z_PK, Z_ENT, Z_OPT, ZDATE, ZINFO) VALUES (?, ?, 1, ?, ?)",
                         (last + 1, entity, time.time() - REFERENCE_DATE_UNIX, "Written just now"))
        database.execute("UPDATE Z_PRIMARYKEY SET Z_MAX = ? WHERE Z_NAME = 'Note'", (last + 1,))


def shown_version(browser, kind):
    return widget_image(browser, kind).get_attribute("data-shown-version")


def time_to_new_picture(browser, app, ready):
    """Seconds from the app's commit until the compose button shows a new picture that passes `ready`."""
    version = shown_version(browser, "ComposeButtonWidget")
    committed = time.monotonic()
    write_note_now(app)
    WebDriverWait(browser, 2, poll_frequency=0.02).until(
        lambda b: shown_version(b, "ComposeButtonWidget") != version and ready(b),
        "the compose button did not show a new picture within 2 s of the app's commit")
    return time.monotonic() - committed


def copy_journal(source, container):
    os.makedirs(container)
    for suffix in ["", "-wal", "-shm"]:
        path = os.path.join(source, "Quillan.sqlite" + suffix)
        if os.path.exists(path):
            shutil.copy2(path, container)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("binary")
    parser.add_argument("--journal", help="a group container whose journal is copied and served")
    parser.add_argument("--commits", type=int, default=1, help="notes to commit one after another")
    arguments = parser.parse_args()
    binary = os.path.abspath(arguments.binary)
    scratch = tempfile.mkdtemp(prefix="quillan-browser-")
    container = os.path.join(scratch, "group")
    server = browser = app = None
    try:
        if arguments.journal:
            copy_journal(arguments.journal, container)
        else:
            subprocess.run([binary, "sample-journal", "--group-container", container, "--time-zone", "Europe/Berlin"],
                           check=True, capture_output=True)
        server, base = start_server(binary, container)
        browser = start_browser(os.path.join(scratch, "profile"))
        browser.get(base)
        WebDriverWait(browser, 30).until(lambda b: all(shown(b, kind) for kind in KINDS))
        print("five widgets shown")

        tap_streak_today(browser, base)
        print("streak's today circle opens widget-deeplink://AddRecord")

        try:
            WebDriverWait(browser, 10).until(lambda b: is_orange(background_colour(b, "ComposeButtonWidget")))
        except Exception:
            raise SystemExit("the compose button is not orange before a note is written today: "
                             f"{background_colour(browser, 'ComposeButtonWidget')}")
        app = open_as_app(os.path.join(container, "Quillan.sqlite"))
        turned_grey = time_to_new_picture(browser, app, lambda b: is_grey(background_colour(b, "ComposeButtonWidget")))
        print(f"compose button grey {turned_grey:.2f} s after the app's commit")
        times = [turned_grey] + [time_to_new_picture(browser, app, lambda b: True)
                                 for _ in range(arguments.commits - 1)]
        if len(times) > 1:
            print(f"commit to new picture: median {statistics.median(times):.3f} s over {len(times)} commits")
        if os.environ.get("QUILLAN_BROWSER_SCREENSHOT"):
            browser.save_screenshot(os.environ["QUILLAN_BROWSER_SCREENSHOT"])
    finally:
        if app:
            app.close()
        if browser:
            browser.quit()
        if server:
            server.terminate()
            status = server.wait(timeout=10)
            if status != 0:
                raise SystemExit(f"serve ended with status {status} on SIGTERM")
        shutil.rmtree(scratch, ignore_errors=True)
    print("browser test passed")


if __name__ == "__main__":
    main()
