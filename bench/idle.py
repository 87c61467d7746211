"""Leaves Pindle, and two other tray utilities beside it, alone for a minute each and prints how
often they woke up and what memory they hold, as one table.

usage: idle.py FOLDER [--seconds N]     FOLDER holds the built programs
"""

import argparse
import os
import sys
import time

import desktop
from desktop import DesktopError, Process

SETTLING = 40.0  # seconds to come to rest after a start: the toolkit retires its threads after 30
SECONDS = 60
PEERS = {"CopyQ": "/usr/bin/copyq", "Flameshot": "/usr/bin/flameshot"}
HOSTS = {"no place for icons": None,
         "trayer": ["trayer", "--edge", "bottom", "--SetDockType", "true"],
         "xfce4-panel": ["xfce4-panel", "--disable-wm-check", "--sm-client-disable"]}


def switches(pid):
    """Context switches of every thread of a process: thread identifier to (name, count)."""
    counts = {}
    for thread in os.listdir(f"/proc/{pid}/task"):
        with open(f"/proc/{pid}/task/{thread}/status", encoding="utf-8") as file:
            fields = dict(line.split(":", 1) for line in file)
        counts[thread] = (fields["Name"].strip(), int(fields["voluntary_ctxt_switches"]) +
                          int(fields["nonvoluntary_ctxt_switches"]))
    return counts


def processes_of(executable):
    """The processes of an executable on this desktop."""
    mark = f"PINDLE_DESKTOP_ROOT={os.environ['PINDLE_DESKTOP_ROOT']}".encode()
    found = []
    for pid in filter(str.isdigit, os.listdir("/proc")):
        try:
            if os.path.realpath(f"/proc/{pid}/exe") != os.path.realpath(executable):
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


def wakeups(pids, seconds):
    """Context switches of some processes over a time, and by which threads."""
    before = {pid: switches(pid) for pid in pids}
    time.sleep(seconds)
    total, by_thread = 0, []
    for pid in pids:
        for thread, (name, count) in switches(pid).items():
            more = count - before[pid].get(thread, (name, 0))[1]
            total += more
            by_thread += [f"{name} {more}"] if more else []
    return total, ", ".join(by_thread) or "-"


def measure(name, executable, seconds):
    with Process([executable]):
        time.sleep(SETTLING)
        pids = processes_of(executable)
        if not pids:
            raise DesktopError(f"{name} does not run")
        total, by_thread = wakeups(pids, seconds)
        memory = pss(pids)
        for pid in pids:
            os.kill(pid, 15)
        desktop.wait_for(lambda: not processes_of(executable), f"{name} to end")
    return total, by_thread, memory


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("folder")
    arguments.add_argument("--seconds", type=int, default=SECONDS)
    options = arguments.parse_args()
    desktop.require_private_desktop()

    print(f"| program | place for icons | wake-ups in {options.seconds} s | by thread | "
          "memory, PSS, MiB |\n|---|---|--:|---|--:|")
    pindle = os.path.join(options.folder, "pindle")
    for place, command in HOSTS.items():
        host = Process(command) if command else None
        time.sleep(2.0 if host else 0)
        programs = {"Pindle": pindle}
        if place == "trayer":
            programs.update(PEERS)
        for name, executable in programs.items():
            total, by_thread, memory = measure(name, executable, options.seconds)
            print(f"| {name} | {place} | {total} | {by_thread} | {memory:.1f} |", flush=True)
        if host:
            host.end()


if __name__ == "__main__":
    try:
        main()
    except DesktopError as error:
        sys.exit(f"idle: {error}")
