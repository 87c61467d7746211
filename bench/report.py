"""The table of a run."""

import dataclasses
import datetime
import math
import os
import time
from typing import List, Optional

QUIET = 0.10  # share of the processors that others may use
LOOK = 1.0  # seconds of one look at what the machine does
NONE = "—"


@dataclasses.dataclass
class Goal:
    """What the 95th percentile may come to."""

    most: float


@dataclasses.dataclass
class Row:
    """One figure, with the same figure of the peer where it has one."""

    figure: str
    samples: List[float]
    goal: Optional[Goal] = None
    peer: Optional[List[float]] = None


class Machine:
    """What was measured on, and whether anybody else used it meanwhile."""

    def __init__(self):
        self.busy = []

    def look(self):
        """To be called when nothing of the bench runs."""
        idle, total = _ticks()
        time.sleep(LOOK)
        idle_after, total_after = _ticks()
        self.busy.append(1 - (idle_after - idle) / max(1, total_after - total))

    def description(self):
        pages = os.sysconf("SC_PHYS_PAGES") * os.sysconf("SC_PAGE_SIZE")
        return (f"{datetime.date.today().isoformat()}, {os.cpu_count()} cores "
                f"({_processor()}), {pages / 2**30:.1f} GiB of memory")

    def note(self):
        most = max(self.busy)
        if most <= QUIET:
            return None
        return (f"Note: the machine was not quiet. Between the measurements other programs used up "
                f"to {most:.0%} of its processors, so all times are too long.")


def _ticks():
    with open("/proc/stat", encoding="ascii") as file:
        fields = [int(field) for field in file.readline().split()[1:9]]
    return fields[3] + fields[4], sum(fields)


def _processor():
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        for line in file:
            if line.startswith("model name"):
                return line.split(":", 1)[1].strip()
    return os.uname().machine


def percentile(samples, share):
    """The smallest sample that at least this share of all samples does not exceed."""
    return sorted(samples)[math.ceil(share * len(samples)) - 1]


def _number(value):
    return f"{value:.3f}" if value < 1 else f"{value:.1f}"


def _cells(row):
    p95 = percentile(row.samples, 0.95)
    goal, verdict = NONE, NONE
    if row.goal:
        goal = f"≤ {row.goal.most:g}"
        verdict = "met" if p95 <= row.goal.most else "missed"
    cells = [row.figure, _number(percentile(row.samples, 0.5)), _number(p95),
             str(len(row.samples)), goal, verdict]
    if row.peer:
        return cells + [_number(percentile(row.peer, 0.5)), _number(percentile(row.peer, 0.95)),
                        str(len(row.peer))]
    return cells + [NONE] * 3


HEAD = ("figure", "p50", "p95", "samples", "goal (p95)", "", "CopyQ p50", "CopyQ p95",
        "CopyQ samples")


def table(machine, rows):
    """The whole report as Markdown."""
    lines = [machine.description(), ""]
    if machine.note():
        lines += [machine.note(), ""]
    lines.append("| " + " | ".join(HEAD) + " |")
    lines.append("|---" + "|--:" * 4 + "|---" + "|--:" * 3 + "|")
    lines += ["| " + " | ".join(_cells(row)) + " |" for row in rows]
    return "\n".join(lines)
