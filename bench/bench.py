"""Measures Pindle, and CopyQ beside it, on a private desktop, and prints one table.

usage: bench.py FOLDER [--brief]     FOLDER holds the built programs; --brief tries it out with a
                                     tenth of the samples
"""

import argparse
import json
import os
import signal
import subprocess
import sys
import time

import desktop
import report
from desktop import DesktopError, Editor, Pindle, Process
from report import Goal, Row

SENTENCE = "Team lunch on Friday, March 12, 2027 from 12:30 to 13:30 at Café Luna"
TITLE = "Team lunch"
PLAIN_APP = os.path.join(os.path.dirname(__file__), "..", "tests", "endtoend", "plain_app.py")
COPYQ = "/usr/bin/copyq"
COPYQ_LETTER = "g"
COPYQ_SHORTCUT = """setCommands([{name: "Show/hide main window", isGlobalShortcut: true,
    globalShortcuts: ["meta+shift+%s"], cmd: "copyq: toggle()"}])""" % COPYQ_LETTER

PRESSES = 200
STROKES = 200
STARTS = 30
MEMORY_STARTS = 5
CLIPBOARD_WAITS = 140 + 280  # milliseconds the clipboard path waits by design
SETTLING = 2.0  # seconds before the memory is read
RUN_DEADLINE = 600  # seconds one program of the bench may take


class Bench:
    """All measurements; each keeps its samples under a name."""

    def __init__(self, folder, share):
        self.pindle = os.path.join(folder, "pindle")
        self.press_bench = os.path.join(folder, "press-bench")
        self.outside_bench = os.path.join(folder, "outside-bench")
        self.share = share
        self.samples = {}

    def count(self, full):
        return max(3, round(full * self.share))

    def run(self, command):
        """Runs a program of the bench to its end; its samples by their names."""
        output = os.path.join(os.environ["PINDLE_DESKTOP_ROOT"], "samples.json")
        process = Process([command[0], output, *map(str, command[1:])])
        try:
            if process.process.wait(RUN_DEADLINE) != 0:
                raise DesktopError(f"{os.path.basename(command[0])} failed:\n{process.log()}")
        finally:
            process.end()
        with open(output, encoding="utf-8") as file:
            return json.load(file)

    # Inside the program

    def accessibility_path(self):
        say("presses with a text editor in front")
        with Editor(f"Hello,\n{SENTENCE}\nSee you there!\n") as editor:
            editor.select_line(2)
            run = self.run([self.press_bench, self.count(PRESSES), self.count(STROKES), TITLE])
        for name in ("handler", "painted", "ready", "stroke"):
            self.samples[name] = run[name]

    def clipboard_path(self):
        say("presses with an application in front that offers its text to nobody")
        with Process(["/usr/bin/python3", PLAIN_APP, SENTENCE]):
            window = desktop.wait_for(lambda: desktop.window_with_class("plainapp"),
                                      "the plain application to open")
            desktop.activate(window)
            run = self.run([self.press_bench, self.count(PRESSES), 0, TITLE])
        self.samples["clipboard"] = [total - CLIPBOARD_WAITS for total in run["ready"]]

    # From outside, both programs alike

    def windows(self):
        say("presses as another program sees them")
        with Editor(SENTENCE + "\n") as editor:
            editor.select_line()
            with Pindle(self.pindle) as pindle:
                self.samples["seen"] = self.run(
                    [self.outside_bench, "window", self.count(PRESSES),
                     *self.panel_and_close_button(pindle)])["painted"]
            say("the same for CopyQ")
            with CopyQ():
                self.samples["seen copyq"] = self.run(
                    [self.outside_bench, "window", self.count(PRESSES), CopyQ.window_after_toggle(),
                     COPYQ_LETTER])["painted"]

    @staticmethod
    def panel_and_close_button(pindle):
        """The panel's window, the shortcut's letter, and where in the window to click to close."""
        desktop.move_pointer(700, 140)
        desktop.press_shortcut()
        window = pindle.wait_for_panel()
        button = desktop.wait_for(lambda: desktop.find(pindle.pid, "Close"), "the close button")
        x, y = desktop.center(button)
        left, top, _, _ = desktop.geometry(window)
        desktop.click(button)
        pindle.wait_until_hidden()
        time.sleep(0.5)
        return window, "e", int(x - left), int(y - top)

    def starts(self):
        say("starts")
        self.samples["start"] = self.run(
            [self.outside_bench, "start", self.count(STARTS), self.pindle])["start"]
        say("starts of CopyQ")
        self.samples["start copyq"] = self.run(
            [self.outside_bench, "start", self.count(STARTS), COPYQ])["start"]

    def memory(self):
        say("memory")
        for name in ("idle", "shown"):
            self.samples[name] = []
            self.samples[f"{name} copyq"] = []
        with Editor(SENTENCE + "\n") as editor:
            for _ in range(self.count(MEMORY_STARTS)):
                editor.select_line()
                self.memory_of_pindle()
                self.memory_of_copyq()

    def memory_of_pindle(self):
        # The panel is looked at from the X server only, and read over the accessibility bus when
        # the memory has been: answering there takes memory of its own.
        with Process([self.pindle]) as process:
            time.sleep(SETTLING)
            self.samples["idle"].append(pss([process.pid]))
            desktop.press_shortcut()
            desktop.wait_for(lambda: desktop.windows_of(process.pid), "the panel to be shown")
            time.sleep(SETTLING)
            self.samples["shown"].append(pss([process.pid]))
            if not desktop.find(process.pid, "Event Details"):
                raise DesktopError("the panel whose memory was read shows no draft")

    def memory_of_copyq(self):
        with CopyQ():
            time.sleep(SETTLING)
            self.samples["idle copyq"].append(pss(CopyQ.processes()))
            CopyQ.window_after_toggle(hide=False)
            time.sleep(SETTLING)
            self.samples["shown copyq"].append(pss(CopyQ.processes()))


class CopyQ:
    """A running CopyQ with one global shortcut, which shows and hides its window."""

    def __enter__(self):
        self.server = Process([COPYQ])
        desktop.wait_for(lambda: self.tell("eval", COPYQ_SHORTCUT), "CopyQ to take its shortcut")
        time.sleep(1.0)
        return self

    def __exit__(self, *_):
        self.tell("exit")
        desktop.wait_for(lambda: not self.server.is_running() and not self.processes(),
                         "CopyQ to end")

    @staticmethod
    def tell(*words):
        done = subprocess.run([COPYQ, *words], capture_output=True, timeout=10, check=False)
        return done.returncode == 0

    @staticmethod
    def window_after_toggle(hide=True):
        """Its window, shown by its shortcut, and hidden again unless it is to stay."""
        desktop.press_shortcut(COPYQ_LETTER)
        window = desktop.wait_for(lambda: desktop.window_with_class("copyq"), "CopyQ's window")
        if hide:
            time.sleep(0.5)
            desktop.press_shortcut(COPYQ_LETTER)
            desktop.wait_for(lambda: not desktop.window_with_class("copyq"), "CopyQ's window to go")
            time.sleep(0.5)
        return window

    @staticmethod
    def processes():
        """All its processes on this desktop."""
        mark = f"PINDLE_DESKTOP_ROOT={os.environ['PINDLE_DESKTOP_ROOT']}".encode()
        found = []
        for pid in filter(str.isdigit, os.listdir("/proc")):
            try:
                if os.path.realpath(f"/proc/{pid}/exe") != COPYQ:
                    continue
                with open(f"/proc/{pid}/environ", "rb") as file:
                    if mark in file.read().split(b"\0"):
                        found.append(int(pid))
            except OSError:
                continue  # it has just ended
        return found


def pss(pids):
    """Proportional share of memory of some processes together, in MiB."""
    kilobytes = 0
    for pid in pids:
        with open(f"/proc/{pid}/smaps_rollup", encoding="ascii") as file:
            kilobytes += sum(int(line.split()[1]) for line in file if line.startswith("Pss:"))
    return kilobytes / 1024


def say(text):
    print(f"bench: {text}", file=sys.stderr, flush=True)


def rows(samples):
    def row(figure, name, goal=None):
        return Row(figure, samples[name], goal, samples.get(f"{name} copyq"))

    return [
        row("press → handler, ms", "handler"),
        row("press → panel painted and sent, ms", "painted", Goal(16.7)),
        row("press → window painted, as another program sees it, ms", "seen", Goal(16.7)),
        row("press → draft ready and painted, accessibility path, ms", "ready", Goal(33)),
        row(f"clipboard path → draft ready and painted, beyond its {CLIPBOARD_WAITS} ms, ms",
            "clipboard", Goal(10)),
        row("key stroke in the title → refreshed links, ms", "stroke", Goal(1)),
        row("start → shortcut live, warm, ms", "start", Goal(120)),
        row("memory idle, PSS, MiB", "idle", Goal(35)),
        row("memory with the window shown, PSS, MiB", "shown", Goal(45)),
    ]


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("folder")
    arguments.add_argument("--brief", action="store_true")
    options = arguments.parse_args()
    desktop.require_private_desktop()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))

    machine = report.Machine()
    bench = Bench(options.folder, 0.1 if options.brief else 1)
    for measure in (bench.accessibility_path, bench.clipboard_path, bench.windows, bench.starts,
                    bench.memory):
        machine.look()
        measure()
    machine.look()
    print(report.table(machine, rows(bench.samples)))


if __name__ == "__main__":
    try:
        main()
    except DesktopError as error:
        sys.exit(f"bench: {error}")
