"""Measures the conversion, and chrono-node beside it, and prints tables.

usage: conversion.py FOLDER PEER [--brief] [--cases FILE...]
       FOLDER holds the built programs, PEER the installed module or nothing; --brief tries it out
       with a tenth of the samples; with --cases only how right the answers on these files are, and
       how fast they come
"""

import argparse
import collections
import glob
import json
import os
import shutil
import subprocess
import sys
import tempfile

import report
from report import NONE, percentile

HERE = os.path.dirname(os.path.abspath(__file__))
CASES = os.path.join(HERE, "..", "tests", "conversion", "*.jsonl")
TABLES = "PindleConversion/CMakeFiles/PindleConversion.dir/LexiconTables.cpp.o"
LANGUAGES = {"de": "German", "en": "English", "es": "Spanish", "fr": "French", "it": "Italian",
             "ja": "Japanese", "nl": "Dutch", "pl": "Polish", "pt": "Portuguese", "zh": "Chinese"}
# Check, its column, and its goal for English and for the others together; of what is missed the
# share that is, of all else the share that is right.
CHECKS = [("start", "start", 97), ("end", "end", 95), ("zone", "zone", 97),
          ("location", "place", 90), ("tidy", "tidy title", 90), ("noevent", "no event", 97),
          ("missed", "missed", 1), ("all", "all fields", 85)]
TURNS = 6
ROUNDS = 20
PEER_ROUNDS = 4
STARTS = 20
LONG = 1_000_000  # bytes
DEADLINE = 300  # seconds one program of the bench may take
PROSE = ("prose", "notes")  # what people write; all other long texts are crafted
EVEN = 2.0  # times the least cost of a byte that the largest may be
NOT_MEASURED = "Not measured: peer not installed."


class Peer:
    """chrono-node where it is installed."""

    def __init__(self, folder):
        self.folder = os.path.abspath(folder)
        self.installed = shutil.which("node") is not None and os.path.isdir(
            os.path.join(self.folder, "node_modules", "chrono-node"))

    def ask(self, *words):
        """Its answer; None where it is not installed or took too long."""
        if not self.installed:
            return None
        try:
            return json.loads(run("node", os.path.join(HERE, "peer.js"), self.folder, *words,
                                  zone="UTC"))
        except subprocess.TimeoutExpired:
            return None


def run(*command, zone=None):
    environment = {**os.environ, "TZ": zone} if zone else None
    return subprocess.run(list(map(str, command)), env=environment, check=True, timeout=DEADLINE,
                          stdout=subprocess.PIPE, encoding="utf-8").stdout


def markdown(head, rows):
    lines = ["| " + " | ".join(head) + " |", "|---" + "|--:" * (len(head) - 1) + "|"]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows])


# How right it is

def share(verdicts, check):
    """Percent of the verdicts that say something about a check; None when none does."""
    if check == "all":
        values = [verdict["all"] for verdict in verdicts]
    else:
        values = [verdict["checks"][check] for verdict in verdicts if check in verdict["checks"]]
    if not values:
        return None
    good = 100 * sum(values) / len(values)
    return 100 - good if check == "missed" else good


def cell(verdicts, check, goal):
    value = share(verdicts, check)
    if value is None:
        return NONE
    met = goal is None or (value <= goal if check == "missed" else value >= goal)
    return f"{value:.1f} %" + ("" if met else " **missed**")


def accuracy_row(name, verdicts, with_goals=False):
    return [name, str(len(verdicts))] + [
        cell(verdicts, check, goal if with_goals else None) for check, _, goal in CHECKS]


def groups(verdicts, key):
    found = collections.defaultdict(list)
    for verdict in verdicts:
        found[verdict[key]].append(verdict)
    return sorted(found.items(), key=lambda group: (-len(group[1]), group[0]))


def accuracy_tables(verdicts):
    english = [verdict for verdict in verdicts if verdict["lang"] == "en"]
    others = [verdict for verdict in verdicts if verdict["lang"] != "en"]
    goals = ["goal, English and others", NONE] + [
        f"{'≤' if check == 'missed' else '≥'} {goal} %" for check, _, goal in CHECKS]
    rows = [goals, accuracy_row("English", english, True), accuracy_row("others", others, True)]
    rows += [accuracy_row(LANGUAGES.get(language, language), group)
             for language, group in groups(others, "lang")]
    rows.append(accuracy_row("total", verdicts))
    head = ["texts"] + ["count"] + [column for _, column, _ in CHECKS]
    kinds = [accuracy_row(kind or NONE, group) for kind, group in groups(verdicts, "kind")]
    return markdown(head, rows) + "\n\n" + markdown(["kind of text"] + head[1:], kinds)


def read_cases(files):
    cases = {}
    for name in files:
        with open(name, encoding="utf-8") as file:
            for line in filter(str.strip, file):
                case = json.loads(line)
                cases[case["id"]] = case
    return cases


def starts_right(case, answer):
    """Whether the peer found the wanted start, as Pindle's is judged."""
    def is_one_of(wanted, value):
        return value in (wanted if isinstance(wanted, list) else [wanted])
    expect = case["expect"]
    return is_one_of(expect["startDate"], answer["date"]) and \
        is_one_of(expect["startTime"], answer["time"])


def peer_accuracy(peer, files, verdicts):
    answers = peer.ask("answers", *files)
    if answers is None:
        return NOT_MEASURED
    cases = read_cases(files)
    good = {answer["id"]: starts_right(cases[answer["id"]], answer) for answer in answers
            if "startDate" in cases[answer["id"]]["expect"]}
    def peer_share(ids):
        found = [good[name] for name in ids if name in good]
        return f"{100 * sum(found) / len(found):.1f} %" if found else NONE
    def row(name, group):
        return [name, str(sum(verdict["id"] in good for verdict in group)),
                cell(group, "start", None), peer_share([verdict["id"] for verdict in group])]
    rows = [row(LANGUAGES.get(language, language), group)
            for language, group in groups(verdicts, "lang")]
    return markdown(["start date and time right", "texts with an event", "Pindle", "chrono-node"],
                    rows + [row("total", verdicts)])


# How fast it is

def number(value):
    return f"{value:,.0f}" if value >= 100 else f"{value:.3g}"


def figure(name, value, goal=None, peer=None, least=False):
    """A row: with `least` the goal is a lower bound."""
    cells = [name, number(value), NONE, NONE, number(peer) if peer is not None else NONE]
    if goal is not None:
        cells[2] = f"{'≥' if least else '≤'} {goal:,}"
        cells[3] = "met" if (value >= goal if least else value <= goal) else "**missed**"
    return cells


def fastest(runs):
    """What else the machine does only ever slows a run down."""
    return max(runs, key=lambda each: each["perSecond"]) if all(runs) else None


def pace(bench, peer, files, few):
    """Pindle's fastest run over the cases of the files, the peer's, and rows that tell both."""
    # In turns, so that both meet the same machine.
    runs = [
        (json.loads(run(bench, "cases", max(3, ROUNDS // few), *files)),
         peer.ask("cases", max(2, PEER_ROUNDS // few), *files))
        for _ in range(TURNS)
    ]
    cases, other = fastest([each[0] for each in runs]), fastest([each[1] for each in runs])
    def of_peer(share_of_samples):
        return percentile(other["samples"], share_of_samples) if other else None
    rows = [
        figure(f"texts per second, fastest of {TURNS} runs", cases["perSecond"], 50_000,
               other and other["perSecond"], True),
        figure("a text, median, µs", percentile(cases["samples"], 0.5), 20, of_peer(0.5)),
        figure("a text, p95, µs", percentile(cases["samples"], 0.95), None, of_peer(0.95)),
    ]
    return cases, other, rows


def speed_markdown(rows, other):
    note = "" if other else "\n\nchrono-node: " + NOT_MEASURED[0].lower() + NOT_MEASURED[1:]
    return markdown(["speed, one core", "Pindle", "goal", "", "chrono-node"], rows) + note


def speed_table(bench, peer, files, long_texts, few):
    cases, other, rows = pace(bench, peer, files, few)
    starts = [json.loads(run(bench, "first")) for _ in range(max(3, STARTS // few))]
    other_starts = [peer.ask("first") for _ in range(max(3, STARTS // few))] if other else []
    def late(samples):
        return percentile([sample["first"] - sample["warm"] for sample in samples], 0.5) / 1e3
    tables = table_bytes(bench)
    heap = max(start["heap"] for start in starts)
    rows += [
        figure("1 MB of prose, MB/s", LONG / long_texts[0]["times"][str(LONG)], 20,
               peer_prose(bench, peer), True),
        figure("20,000 characters of prose, ms", long_texts[0]["highlight"] / 1e3),
        figure("20,000 characters of the slowest crafted text below, ms",
               max(text["highlight"] for text in long_texts if text["name"] not in PROSE) / 1e3, 2),
        figure("first conversion of a process beyond a later one, ms", late(starts), 2,
               late(other_starts) if other else None),
        figure("tables and heap after the first conversion, MB", (tables + heap) / 1e6, 8),
        figure("memory of the process after all texts, RSS, MB", cases["memory"] * 1024 / 1e6, None,
               other and other["memory"] * 1024 / 1e6),
    ]
    return speed_markdown(rows, other)


def peer_prose(bench, peer):
    """MB/s of the peer on the same prose."""
    with tempfile.NamedTemporaryFile("w", suffix=".txt", encoding="utf-8") as file:
        file.write(run(bench, "print", "prose", LONG))
        file.flush()
        took = peer.ask("long", file.name)
    return LONG / took if took else None


def table_bytes(bench):
    """Bytes of the lexicon's tables in the program."""
    sections = run("size", "-A", os.path.join(os.path.dirname(bench), TABLES)).splitlines()
    return sum(int(line.split()[1]) for line in sections if line.startswith((".rodata", ".data")))


def length(size):
    return f"{size // 1_000_000} MB" if size >= 1_000_000 else f"{size // 1000} kB"


def slope_table(long_texts):
    sizes = sorted({int(size) for text in long_texts for size in text["times"]})
    rows = []
    for text in long_texts:
        cost = {int(size): took / (int(size) / 1e3) for size, took in text["times"].items()}
        long = [value for size, value in sorted(cost.items()) if size >= 10_000]
        # What could not be measured within its time is not even. To cost less by the kilobyte the
        # longer a text is, as a list of dates of which only the head is read, is no fault.
        growth = [later / earlier for i, earlier in enumerate(long) for later in long[i + 1:]]
        even = max(growth) if len(cost) == len(sizes) else None
        speed = 1e3 / cost[LONG] if LONG in cost else None
        rows.append(
            [text["title"]] + [f"{cost[size]:.1f}" if size in cost else NONE for size in sizes] +
            [judged(even, even is not None and even <= EVEN),
             judged(speed, speed is not None and speed >= 20),
             judged(text["highlight"] / 1e3, text["highlight"] <= 2000)])
    goals = ["goal"] + [NONE] * len(sizes) + [f"near 1 (≤ {EVEN:g})", "≥ 20", "≤ 2"]
    head = ["µs per kB of long texts, least of three rounds, of"] + [length(size) for size in sizes]
    return markdown(head + ["most growth from 10 kB on", "MB/s at 1 MB", "20,000 characters, ms"],
                    [goals] + rows)


def judged(value, met):
    return (NONE if value is None else f"{value:.3g}") + ("" if met else " **missed**")


def say(text):
    print(f"bench: {text}", file=sys.stderr, flush=True)


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("folder")
    arguments.add_argument("peer")
    arguments.add_argument("--brief", action="store_true")
    arguments.add_argument("--cases", nargs="+")
    options = arguments.parse_args()
    bench = os.path.abspath(os.path.join(options.folder, "conversion-bench"))
    peer = Peer(options.peer)
    files = options.cases or sorted(glob.glob(CASES))

    machine = report.Machine()
    machine.look()
    say("how right the conversion is")
    verdicts = [json.loads(line) for line in run(bench, "judge", *files).splitlines()]
    accuracy = accuracy_tables(verdicts) + "\n\n" + peer_accuracy(peer, files, verdicts)
    # Everything that takes times runs on one core, the peer too.
    os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})
    few = 10 if options.brief else 1
    if options.cases:
        say("texts one by one")
        _, other, rows = pace(bench, peer, files, few)
        machine.look()
        print("\n\n".join(filter(None, [machine.description(), machine.note(), accuracy,
                                        speed_markdown(rows, other)])))
        return
    say("long texts")
    long_texts = [json.loads(line) for line in run(bench, "long").splitlines()]
    machine.look()
    say("texts one by one")
    speed = speed_table(bench, peer, files, long_texts, few)
    machine.look()
    print("\n\n".join(filter(None, [machine.description(), machine.note(), accuracy, speed,
                                    slope_table(long_texts)])))


if __name__ == "__main__":
    try:
        main()
    except (OSError, ValueError, subprocess.SubprocessError) as error:
        sys.exit(f"bench: {error}")
