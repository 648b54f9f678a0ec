"""Runs the benchmarks and the comparisons with open peers and writes docs/benchmarks.md with its plots.

    python3 script/benchmarks.py BUILD-FOLDER PAGE DRAWING...     called by script/bench --write

A comparison checks the answers of both sides before it times them; what it found stands on the page. A program that is
missing, because its peer is not installed, leaves its section out.
"""

import json
import math
import os
import re
import subprocess
import sys

BUILD, PAGE, DRAWINGS = sys.argv[1], sys.argv[2], sys.argv[3:]
PLOTS = os.path.join(os.path.dirname(PAGE), "benchmarks")
page = []


def say(*lines):
    page.extend(lines)


def output(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True).stdout.strip()
    except OSError:
        return ""


def run(name, *arguments):
    """What a program of the build prints; nothing when there is no such program. One that fails ends everything."""
    for folder in ("bench/peers", "bench"):
        program = os.path.join(BUILD, folder, name)
        if os.path.exists(program):
            print(name, *arguments[:1], flush=True)
            result = subprocess.run([program, *arguments], capture_output=True, text=True)
            if result.returncode != 0:
                sys.exit(f"{name} failed:\n{result.stdout[-2000:]}{result.stderr[-2000:]}")
            return result.stdout
    return ""


def table(head, rows):
    say("| " + " | ".join(head) + " |", "|" + "---|" * len(head))
    say(*("| " + " | ".join(str(cell) for cell in row) + " |" for row in rows), "")


def figure(number):
    """Three figures, without an exponent."""
    number = float(number)
    return f"{number:,.0f}" if number >= 100 else f"{number:.1f}" if number >= 10 else f"{number:.2f}"


# ---- Peers ----

def cubics():
    text = run("peers_cubic")
    if not text:
        return
    count = re.match(r"(\d+) cubics", text)[1]
    say("## One cubic", "", f"{count} random cubics of drawing size, cusps and loops among them. Errors are the worst found, relative to the "
        "true length or to the size of the curve, against an independent computation in long double.", "")
    rows = []
    for line in text.splitlines():
        m = re.match(r"(.{16}) +[\d.]+ ns +error +(\S+) +(\S+) +[\d.]+ ns +error +(\S+) +([\d.]+) times", line)
        if m:
            rows.append([m[1].strip(), m[2], m[3], m[4], figure(m[5])])
        m = re.match(r"flatten (\S+) +[\d.]+ ns +error (\S+) tol, (\S+) pieces.* cairo +[\d.]+ ns +error (\S+) tol, (\S+) pieces +([\d.]+) times", line)
        if m:
            rows.append([f"flatten to {m[1]} of the size: {m[3]} lines", f"{m[2]} of that", "cairo", f"{m[4]} of that, {m[5]} lines", figure(m[6])])
        m = re.match(r"inverse length +[\d.]+ ns +error +(\S+) +(\S+) times a length", line)
        if m:
            rows.append(["parameter at a length", m[1], "", "", f"{m[2]} of a length"])
    table(["operation", "worst error", "peer", "its worst error", "times faster"], rows)


def crossings():
    text = run("peers_crossings")
    m = re.search(r"(\d+) pairs, (\d+) clear crossings checked\nlumo.*missed (\d+) +error (\S+)\nlib2geom.*missed (\d+) +error (\S+)\n([\d.]+) times", text)
    if not m:
        return
    say("## Crossings of two cubics", "", f"{m[1]} pairs with {m[2]} clear crossings, known from a long double computation.", "")
    table(["", "missed", "worst error in the parameter", "times faster"],
          [["Lumo", m[3], m[4], figure(m[7])], ["lib2geom", m[5], m[6], "1"]])


def paths():
    text = run("peers_path", *DRAWINGS)
    m = re.match(r"(\d+) paths, ([\d.]+) nodes each", text)
    if not m:
        return
    say("## Whole paths", "", f"{m[1]} paths of real drawings, {m[2]} nodes each on average, beside lib2geom (lengths to 1e-9 of the path's size). "
        "Where the answers differ, the one that is wrong counts: a nearest point that is farther, a box that does not hold "
        "the path, a fill answer that a dense polygon refutes.", "")
    rows = []
    for name, asked, ours, theirs in re.findall(r"(.{14}) +(\d+) compared, (\d+) wrong by Lumo, (\d+) wrong by lib2geom", text):
        key = name.strip().replace("length to 1e-6", "length")
        times = re.search(re.escape(key) + r" +Lumo.*?([\d.]+) times", text)
        rows.append([name.strip(), asked, ours, theirs, figure(times[1])])
    table(["question", "asked", "wrong: Lumo", "wrong: lib2geom", "times faster"], rows)


def booleans():
    say("## Booleans", "", "Unions beside Clipper, which works on polygons: its input is flattened to 1/2400 of a shape's size, and the flattening "
        "counts, as a program that draws curves would have to do it. Lumo's results are curves. Areas are compared within "
        "what flattening explains.", "")
    rows = []
    for name, arguments in (("random self-crossing loops", []), ("elements of real drawings", DRAWINGS)):
        m = re.search(r"(\d+) unions:.*?\(([\d.]+) times\); nodes (\d+) and (\d+); areas differ: (\d+)", run("peers_boolean", *arguments))
        if m:
            rows.append([name, m[1], m[5], m[3], m[4], figure(m[2])])
    if rows:
        table(["shapes", "unions", "areas that differ", "nodes: Lumo", "nodes: Clipper", "times faster"], rows)
    m = re.search(r"(\d+) unions: lib2geom refused (\d+), differs in area on (\d+); the other (\d+):.*?\(([\d.]+) times\)",
                  run("peers_graph", *DRAWINGS))
    if m:
        say("The same pairs beside lib2geom's `PathIntersectionGraph`, which keeps curves too; each operand's ground first, as it wants "
            "outlines that do not cross themselves. Only pairs on which it succeeds are timed.", "")
        table(["unions", "refused by lib2geom", "its area differs", "timed", "times faster"],
              [[m[1], m[2], m[3], m[4], figure(m[5])]])


def offsets():
    text = run("peers_offset", *DRAWINGS)
    rows = [[name.strip(), differ, nodes, peer, figure(times)] for name, times, nodes, peer, differ in re.findall(
        r"(.{14}) Lumo.*?Clipper.*?([\d.]+) times; nodes (\d+) \(source \d+\) and (\d+); differ (\d+)", text)]
    if not rows:
        return
    say("## Offsets", "", f"Outer outlines of {text.split()[0]} elements of real drawings, by 1% and 5% of their size, beside Clipper on the same outlines "
        "flattened to 1/2400 of their size (not counted here). Lumo's results are curves within the same tolerance.", "")
    table(["offset", "areas that differ", "nodes: Lumo", "nodes: Clipper", "times faster"], rows)


# ---- Against the copying of memory, and growth ----

def measure(name, pattern=""):
    text = run(name, "--benchmark_format=json", "--benchmark_min_time=0.05", "--benchmark_repetitions=3",
               *([f"--benchmark_filter={pattern}"] if pattern else []))
    best = {}
    scale = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
    if text and not text.startswith("{"):  # the library's way to say that it cannot read a pattern
        sys.exit(f"{name} {pattern}: {text[:200]}")
    for entry in json.loads(text)["benchmarks"] if text else []:
        if entry.get("run_type") == "iteration" and "error_occurred" not in entry:
            key = entry["run_name"]
            best[key] = min(best.get(key, math.inf), entry["cpu_time"] * scale[entry["time_unit"]])
    return best


def scans():
    say("## One pass over memory", "", "Questions that have to look at every node, beside the copying of the same arrays by `memcpy` in the same run, a million "
        "nodes each. A copy that is 1 would be as fast as memory allows.", "")
    rows = []
    times = measure("bench_navigation")
    copy = times.get("MemcpyOfTheBytes")
    if copy:
        for name in sorted(times):
            if name.startswith("Scan/") or name.startswith("EnableAllControls"):
                rows.append([name.replace("Scan/", ""), "node types", figure(times[name] / copy)])
    times = measure("bench_measure", "MemoryCopy|LooseBox|TightBox|Translate")
    for kind, what in (("tagPOINT", "integer points"), ("DPoint", "double points")):
        copy = times.get(f"MemoryCopy<{kind}>")
        if copy:
            rows += [[name, what, figure(times[f"{name}<{kind}>"] / copy)] for name in ("LooseBox", "TightBox", "Translate")]
    times = measure("bench_hit", "Memcpy|/1000000$")
    copy = next((t for n, t in times.items() if n.startswith("Memcpy")), None)
    if copy:
        for name in sorted(times):
            m = re.match(r"Run/(\w+)_(wandering|scattered)/1000000", name)
            if m:
                rows.append([m[1], f"integer path, {m[2]} segments", figure(times[name] / copy)])
    table(["operation", "reads", "times a copy"], rows)


FAMILIES = (
    ("boolean", "Booleans: a scribble simplified, by its crossings", "bench_boolean", r"^SimplifyScribble/[0-9]+$"),
    ("offset", "Offsets: a noisy ring grown, by its nodes", "bench_offset", r"^NoisyRingGrowth/[0-9]+$"),
    ("intersect", "All crossings of a path, by its segments", "bench_intersect", r"^SelfCrossings/[0-9]+$"),
    ("hierarchy", "Containment trees, by their subpaths", "bench_hierarchy", r"^BuildHierarchy/[0-9]+$"),
    ("edit", "Edits, by the selected nodes", "bench_edit", ""),
    ("measure", "Measures and fits, by nodes", "bench_measure", r"/[0-9]+$"),
    ("hit", "Pointer questions, by nodes", "bench_hit", r"^Run/"),
)
COLOURS = ("#c0392b", "#1b6a8b", "#2e7d32", "#8e44ad", "#b9770e", "#34495e", "#d35f8d", "#5f7d1e", "#00838f", "#795548")


def plot(file, series):
    """Time for each unit of size, relative to that at the smallest size: a level line is linear growth."""
    width, height, left, bottom, legend = 480, 300, 50, 40, 250
    xs = [n for points in series.values() for n, _ in points]
    ys = [t for points in series.values() for _, t in points]
    x0, x1 = math.log10(min(xs)), math.log10(max(xs))
    y0, y1 = min(0.5, min(ys) * 0.9), max(2.0, max(ys) * 1.1)
    px = lambda n: left + (math.log10(n) - x0) / (x1 - x0) * (width - left - 10)
    py = lambda t: height - bottom - (math.log(t) - math.log(y0)) / (math.log(y1) - math.log(y0)) * (height - bottom - 10)
    svg = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width + legend} {max(height, 30 + 16 * len(series))}" font-family="sans-serif" font-size="11">',
           '<rect width="100%" height="100%" fill="#fff"/>']
    for power in range(round(x0), round(x1) + 1):
        if 10 ** power >= min(xs) * 0.99 and 10 ** power <= max(xs) * 1.01:
            x = px(10 ** power)
            svg.append(f'<path d="M{x:.1f},10V{height - bottom}" stroke="#ddd"/><text x="{x:.1f}" y="{height - bottom + 15}" text-anchor="middle">{10 ** power:,}</text>')
    for t in (0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 50, 100):
        if y0 <= t <= y1:
            svg.append(f'<path d="M{left},{py(t):.1f}H{width - 10}" stroke="{"#888" if t == 1 else "#ddd"}"/><text x="{left - 5}" y="{py(t) + 4:.1f}" text-anchor="end">{t:g}</text>')
    svg.append(f'<text x="{(left + width) / 2}" y="{height - 8}" text-anchor="middle">size; upwards: time for each, 1 at the smallest size</text>')
    for k, (name, points) in enumerate(series.items()):
        colour, dash = COLOURS[k % len(COLOURS)], "" if k < len(COLOURS) else ' stroke-dasharray="4 3"'
        svg.append(f'<path d="M{" L".join(f"{px(n):.1f},{py(t):.1f}" for n, t in points)}" fill="none" stroke="{colour}" stroke-width="1.8"{dash}/>')
        svg.append(f'<path d="M{width + 5},{20 + 16 * k}h18" stroke="{colour}" stroke-width="1.8"{dash}/><text x="{width + 28}" y="{24 + 16 * k}">{name}</text>')
    svg.append("</svg>")
    with open(file, "w") as out:
        out.write("\n".join(svg) + "\n")


def growth():
    say("## Growth", "", "Time for each node (crossing, subpath), relative to that at the smallest size: a level line is linear growth. A rise is the "
        "logarithm of a search, or memory that no longer fits the caches. The exponent is that of a power law from the smallest to the "
        "largest size.", "")
    for key, title, program, pattern in FAMILIES:
        series = {}
        for name, time in measure(program, pattern).items():
            m = re.match(r"(.+)/(\d+)$", name)
            if m and int(m[2]) > 1:
                series.setdefault(m[1], []).append((int(m[2]), time))
        series = {name.replace("Run/", "").replace("&", "").replace("<", " ").replace(">", ""): sorted(points)
                  for name, points in series.items() if len(points) > 2}
        if not series:
            continue
        each = {name: [(n, t / n / (points[0][1] / points[0][0])) for n, t in points] for name, points in series.items()}
        plot(os.path.join(PLOTS, f"{key}.svg"), each)
        exponents = [math.log(points[-1][1] / points[0][1]) / math.log(points[-1][0] / points[0][0]) for points in series.values()]
        span = f"{min(exponents):.2f}" + (f" to {max(exponents):.2f}" if len(exponents) > 1 else "")
        say(f"### {title}", "", f"![{title}](benchmarks/{key}.svg)", "", f"Exponent: {span}.", "")


def versions():
    found = []
    for name, package in (("lib2geom", "2geom"), ("cairo", "cairo")):
        version = output("pkg-config", "--modversion", package)
        if version:
            found.append([name, version])
    version = output("dpkg-query", "-W", "-f=${Version}", "libpolyclipping-dev")
    if version:
        found.append(["Clipper (libpolyclipping)", version])
    return found


def source(drawing):
    """The folder of a sample, the name and version of a fetched package."""
    m = re.match(r"(build/corpus/[^/]+)/", drawing)
    if not m:
        return f"`{os.path.dirname(drawing)}`"
    with open(os.path.join(m[1], "package", "package.json")) as file:
        package = json.load(file)
    return f"`{package['name']}` {package['version']}"


os.makedirs(PLOTS, exist_ok=True)
say("# Benchmarks", "",
    "`script/bench --write` measures anew and writes this page. Ratios only: both sides run in one process, on the same input, and what "
    "another machine would take is of no use. Every comparison first checks the answers of both sides.", "",
    f"Compiler: {output('g++', '--version').splitlines()[0]}, `-O3`; the peers as the distribution builds them. Their versions:", "")
table(["peer", "version"], versions())
say(f"Real drawings: {len(DRAWINGS)} files, from {', '.join(sorted({source(d) for d in DRAWINGS}))}.", "")
for section in (cubics, crossings, paths, booleans, offsets, scans, growth):
    section()
with open(PAGE, "w") as out:
    out.write("\n".join(page).rstrip() + "\n")
