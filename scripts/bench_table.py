"""bench_table.py FOLDER: lays the medians of the Google Benchmark reports there side by side.

A benchmark is named WORK/DATA/WHO; WHO is "library", "replay" (its callbacks alone, made by a shared object, as the
library is one), "replay in the program" (the same by the program that plays the host, which spares the processor calls
to code far away in memory), "dcmtk" or another peer. The repetitions of all of them are interleaved, so that a slow
moment of the machine meets each alike; the shortest times of each are those that the machine disturbed least. Of the
reports in FOLDER/before the library's rows are shown, as "before".
"""

import json
import pathlib
import statistics
import sys

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
REFERENCE = "library"
BEFORE = "before"
NOTE = "stand-in host"  # what the benchmarks tell of it


def medians(reports):
    """{work/data: {who: {quantity: median}}}, in the order of the first report."""
    runs = {}
    for run in (run for report in reports for run in report["benchmarks"]):
        if run["run_type"] != "iteration":
            continue
        name = run["run_name"].split("/iterations:")[0]  # how it was run is no part of its name
        work, who = name.rsplit("/", 1)
        samples = runs.setdefault(work, {}).setdefault(who, {})
        clock = "real_time" if run["run_name"].endswith("/real_time") else "cpu_time"
        samples.setdefault("ns", []).append(run[clock] * NANOSECONDS[run["time_unit"]])
        for counter, unit in (("per_element", 1e9), ("bytes_per_second", 1e-9), ("callbacks", 1), ("bytes_read", 1),
                              ("elements_per_second", 1)):
            if counter in run:
                samples.setdefault(counter, []).append(run[counter] * unit)
    return {work: {who: summary(samples) for who, samples in rows.items()} for work, rows in runs.items()}


def summary(samples):
    return {name: statistics.median(values) for name, values in samples.items()} | {"least ns": min(samples["ns"])}


def duration(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.2f} {unit}"
    return f"{nanoseconds:.1f} ns"


def ratio(reference, row, quantity):
    return f"{reference[quantity] / row[quantity]:.3g}"


def line(who, row, reference):
    cells = [f"  {who:<24}{duration(row['ns']):>12}"]
    cells.append(f"{row['per_element']:9.1f} ns/element" if row.get("per_element", 1e9) < 1e5 else " " * 20)
    cells.append(f"{row['bytes_per_second']:8.2f} GB/s" if "bytes_per_second" in row else " " * 13)
    if row is not reference:
        cells.append(f"  library takes {ratio(reference, row, 'ns')} x this")
        cells.append(f" (at their best {ratio(reference, row, 'least ns')} x)")
    for name in ("callbacks", "bytes_read", "elements_per_second"):
        if name in row:
            cells.append(f"  {row[name]:.0f} {name.replace('_', ' ')}")
    return "".join(cells).rstrip()


def reports_in(folder):
    return [json.loads(path.read_text(encoding="utf-8")) for path in sorted(folder.glob("*.json"))]


def main(folder):
    reports = reports_in(folder)
    before = medians(reports_in(folder / BEFORE))
    for work, rows in medians(reports).items():
        print(work)
        reference = rows.get(REFERENCE)
        if REFERENCE in before.get(work, {}):
            rows[BEFORE] = before[work][REFERENCE]
        for who, row in rows.items():
            print(line(who, row, reference or row))
    print(f"The {NOTE} {reports[0]['context'][NOTE]}.")


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]))
