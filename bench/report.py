#!/usr/bin/env python3
"""Tells what run.py has noted: a table for each step, the bars that are asked for, and the curves of growth.

    report.py OUTPUT

Reads results.jsonl in that folder, prints the report, and writes it into report.md, and the curves into curves.svg.
Exit status: 1 when a run has failed, as one does that read anything else than was written. A missed bar is no failure.
"""

import collections
import dataclasses
import json
import pathlib
import statistics
import sys
import typing

import curves

STEPS = {
    "W1": "build the tree in a new file, one durable flush",
    "W2": "open the file and read everything",
    "W3": "random lookups by path, value read",
    "W4": "random overwrites, one durable flush",
    "W4d": "random overwrites, each flushed",
    "W5.build": "one group of N children: build",
    "W5.lookup": "one group of N children: look each up by name",
    "W5.walk": "one group of N children: walk",
    "W6": "write the tree as a document",
    "W7": "read the document",
    "W8.create": "bare records: create",
    "W8.read": "bare records: read at random",
    "W8.update": "bare records: update a tenth at random, one flush",
    "W8.commit": "bare records: durable commits of ten",
}

FLAT = 1.3  # what still counts as the same price for each item, at a hundred times the size
RECORD = 120  # bytes of a record of W8

OCAF = ("ocaf", "ocaf-data")  # the bars for it hold against the faster of its two forms


class Results:
    """Medians over the rounds, by step, subject and size."""

    def __init__(self, lines):
        runs = collections.defaultdict(list)
        self.skipped = [line for line in lines if "skipped" in line]
        self.failed = [line for line in lines if "failed" in line]
        for line in lines:
            if "step" in line:
                runs[line["step"], line["subject"], line["count"]].append(line)
        self.runs = dict(runs)
        self.load = statistics.median([line["load"] for line in lines if "load" in line] or [0])

    def median(self, step, subject, count, value):
        """The median of a value that is computed of each run; None where there was no run."""
        runs = self.runs.get((step, subject, count))
        return statistics.median(value(run) for run in runs) if runs else None

    def price(self, step, subject, count):
        """Seconds for one item."""
        return self.median(step, subject, count, lambda run: run["seconds"] / max(1, run["items"]))

    def subjects(self, step):
        return sorted({key[1] for key in self.runs if key[0] == step})

    def counts(self, step):
        return sorted({key[2] for key in self.runs if key[0] == step})

    def ours(self, step):
        return "ours" if "ours" in self.subjects(step) else "ours_memory"

    def is_cut(self, step, subject, count):
        return any(run["items"] < run["asked"] for run in self.runs.get((step, subject, count), []))


def seconds(value):
    for unit, factor in (("s", 1), ("ms", 1e3), ("us", 1e6)):
        text = f"{value * factor:.3g}"
        if float(text) >= 1:
            return f"{text} {unit}"
    return f"{value * 1e9:.3g} ns"


def times(ratio):
    if ratio < 0.001:
        return "<0.001"
    return f"{ratio:.3g}" if ratio < 1000 else f"{ratio:,.0f}"


def table(results, step):
    """A step's table: the price of an item and its ratio to ours, for each size; growth, peak of memory, file."""
    counts = results.counts(step)
    ours = results.ours(step)
    lines = [f"### {step}: {STEPS[step]}", ""]
    lines.append("| subject | " + " | ".join(f"{count:,}" for count in counts) + " | growth | peak MB | file MB |")
    lines.append("|---" * (len(counts) + 4) + "|")

    def last_price(subject):
        return next(price for count in reversed(counts) if (price := results.price(step, subject, count)) is not None)

    for subject in sorted(results.subjects(step), key=last_price):
        cells, measured = [], []
        for count in counts:
            price = results.price(step, subject, count)
            if price is None:
                cells.append("-")
                continue
            measured.append(count)
            reference = results.price(step, ours, count)
            ratio = f" ({times(price / reference)})" if reference else ""
            cells.append(seconds(price) + ratio + ("*" if results.is_cut(step, subject, count) else ""))
        first, last = measured[0], measured[-1]
        growth = results.price(step, subject, last) / results.price(step, subject, first)
        peak = results.median(step, subject, last, lambda run: run["peak"]) / 1e6
        file = results.median(step, subject, last, lambda run: run["file"]) / 1e6
        name = f"**{subject}**" if subject.startswith("ours") else subject
        cells += [f"x{growth:.2f}" if first != last else "-", f"{peak:.0f}", f"{file:.1f}" if file else "-"]
        lines.append(f"| {name} | " + " | ".join(cells) + " |")
    return lines + [""]


@dataclasses.dataclass
class Bar:
    """What is asked for. `find` gives, of the results at one size, what ours has and the most that it may have, each
    None where it was not measured."""

    name: str
    step: str
    counts: list  # the sizes at which it is held; None for all that were measured
    find: typing.Callable
    show: typing.Callable = seconds


def against(step, ours, peers, factor, of=Results.price):
    """Ours is at most `factor` times the best of the peers."""

    def find(results, count):
        peer = [value for peer in peers if (value := of(results, step, peer, count)) is not None]
        return of(results, step, ours, count), factor * min(peer) if peer else None

    return find


def growth(steps, ours, small, factor):
    """An item costs at most `factor` times what it costs at the size `small`, in all of some steps together."""

    def price_of_all(results, count):
        prices = [results.price(step, ours, count) for step in steps]
        return None if None in prices else sum(prices)

    def find(results, count):
        price = price_of_all(results, small)
        return price_of_all(results, count), None if price is None else factor * price

    return find


def peak(results, step, subject, count):
    return results.median(step, subject, count, lambda run: run["peak"])


def overhead(results, count):
    """Bytes that a store in memory keeps for a record above the record's own."""
    grown = results.median("W8.create", "ours_memory", count, lambda run: run["grown"] / run["items"])
    return None if grown is None else grown - RECORD, 60


def bars():
    usual, large = [100_000], [1_000_000]
    for step, counts, peers in (
        ("W1", usual, ("sqlite", *OCAF, "hdf5")),
        ("W2", usual, ("sqlite", "protobuf", *OCAF, "hdf5")),
        ("W3", None, ("sqlite", "hdf5", *OCAF)),
        ("W4", usual, ("hdf5", *OCAF)),
    ):
        for peer in peers:
            yield Bar(f"{step} faster than {peer}", step, counts, against(step, "ours", (peer,), 1))
    yield Bar("W4d within 1.3 x lmdb", "W4d", usual, against("W4d", "ours", ("lmdb",), 1.3))
    for ours in ("ours", "ours_memory"):
        find = growth(("W5.build", "W5.lookup", "W5.walk"), ours, 1_000, 2)
        yield Bar(f"W5 of {ours} within 2 x its price at 1,000", "W5.build", usual, find)
    for step, peers in (("W6", ("libxml2_writer", "ocaf")), ("W7", ("libxml2", "ocaf"))):
        for peer in peers:
            yield Bar(f"{step} faster than {peer}", step, usual, against(step, "ours_memory", (peer,), 1))
    for step in ("W8.create", "W8.read", "W8.update"):
        find = against(step, "ours_memory", ("floor_memory",), 3)
        yield Bar(f"{step} in memory within 3 x the floor", step, None, find)
    yield Bar("W8.commit within 1.3 x lmdb", "W8.commit", None, against("W8.commit", "ours", ("lmdb",), 1.3))
    for step in ("W1", "W2"):
        find = against(step, "ours", OCAF, 1, peak)
        yield Bar(f"{step}: peak of memory below ocaf's", step, large, find, lambda value: f"{value / 1e6:.0f} MB")
    yield Bar("W8: memory above a record's own", "W8.create", None, overhead, lambda value: f"{value:.0f} bytes")
    for step, ours in (("W1", "ours"), ("W2", "ours"), ("W6", "ours"), ("W6", "ours_memory"), ("W7", "ours_memory")):
        find = growth((step,), ours, 10_000, FLAT)
        yield Bar(f"{step} of {ours} within {FLAT} x its price at 10,000", step, large, find)


def bar_table(results):
    lines = ["## Bars", "", "| asked for | at | ours | at most | outcome |", "|---|---|---|---|---|"]
    outcomes = collections.Counter()
    for bar in bars():
        for count in bar.counts or results.counts(bar.step):
            value, limit = bar.find(results, count)
            if value is None or limit is None:
                outcome, more = "not measured", ""
            elif value <= limit:
                outcome, more = "met", ""
            else:
                outcome, more = "missed", f", {times(value / limit)} times that"
            outcomes[outcome] += 1
            shown = ["-" if number is None else bar.show(number) for number in (value, limit)]
            lines.append(f"| {bar.name} | {count:,} | {shown[0]} | {shown[1]} | {outcome}{more} |")
    return lines + ["", ", ".join(f"{number} {outcome}" for outcome, number in sorted(outcomes.items())) + ".", ""]


def report(results):
    lines = [
        "# Benchmark",
        "",
        "Medians. A cell is the time of one item and its ratio to ours: above 1 is slower than ours. A star: stopped",
        "after two seconds. Growth: the price of an item at the largest size over that at the smallest. Peak of memory",
        "and file are those of the largest size. Only ratios within one run of all programs compare.",
        "",
    ]
    if results.load > 1.5:
        lines += [f"**The machine was busy (load {results.load:.1f}): these figures are worth little.**", ""]
    for step in STEPS:
        if results.subjects(step):
            lines += table(results, step)
    for title, reason, runs in (("Not run", "skipped", results.skipped), ("Failed", "failed", results.failed)):
        if runs:
            lines += [f"## {title}", ""]
            lines += [f"- {run['workload']} of {run['count']:,}, {run['subject']}: {run[reason]}" for run in runs]
            lines += [""]
    return lines + bar_table(results)


def main():
    output = pathlib.Path(sys.argv[1])
    with open(output / "results.jsonl", encoding="utf-8") as file:
        results = Results([json.loads(line) for line in file])
    text = "\n".join(report(results))
    print(text)
    (output / "report.md").write_text(text + "\n", encoding="utf-8")
    panels = {step: {subject: {count: price for count in results.counts(step)
                               if (price := results.price(step, subject, count)) is not None}
                     for subject in results.subjects(step)}
              for step in STEPS if len(results.counts(step)) > 1}
    (output / "curves.svg").write_text(curves.svg(panels, STEPS, seconds), encoding="utf-8")
    sys.exit(1 if results.failed else 0)


if __name__ == "__main__":
    main()
