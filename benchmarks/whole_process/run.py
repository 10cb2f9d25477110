"""Measures the whole tool against other programs, in pairs: A B A B ..., so that a machine that gets slower or faster
meanwhile does not decide. Prints a table of medians and writes it, with the raw numbers, into benchmarks/runs/.

run.py <directory of the executables> <directory for data> <directory of runs> [pairs [pattern]]
"""
import datetime
import json
import os
import platform
import re
import shutil
import statistics
import subprocess
import sys
import time
from dataclasses import dataclass

BUILD, DATA, RUNS = (os.path.abspath(path) for path in sys.argv[1:4])
PAIRS = int(sys.argv[4]) if len(sys.argv) > 4 else 7
PATTERN = re.compile(sys.argv[5] if len(sys.argv) > 5 else "")
SLOW = 60.0  # seconds for one pair; slower cases are measured once, and the table marks them
HERE = os.path.dirname(os.path.abspath(__file__))
EXAMPLES = os.path.join(HERE, "..", "..", "examples")
PROGRAMS = os.path.join(BUILD, "benchmarks")
TOOL = os.path.join(BUILD, "Vadelclip")
OUTPUT = os.path.join(DATA, "out")  # what every program writes, removed before each run


def program(name, *arguments):
    return [os.path.join(PROGRAMS, name), *arguments]


def data(name):
    return os.path.join(DATA, name)


@dataclass
class Job:
    """Node files and a boundary file."""
    nodes: str
    boundary: str
    lines: int

    def tool(self, *options):
        return [TOOL, os.path.join(self.nodes, "nodes"), os.path.relpath(OUTPUT, self.nodes), self.boundary, "-lang=en",
                *options]

    def geos(self):
        return program("geos_program", os.path.join(self.nodes, "nodes"), OUTPUT, self.boundary)

    def shapely(self):
        return ["/usr/bin/python3", os.path.join(HERE, "shapely_clip.py"), os.path.join(self.nodes, "nodes"), OUTPUT,
                self.boundary]

    def gmt(self):
        polygon = self.boundary + ".txt"
        if not os.path.exists(polygon):
            with open(self.boundary, encoding="utf-8") as source, open(polygon, "w", encoding="utf-8") as target:
                for x, y in re.findall(r'x="([^"]*)" y="([^"]*)"', source.read()):
                    target.write(f"{x} {y}\n")
        nodes = os.path.join(self.nodes, "nodes", "nodes_0.xyz")
        return ["sh", "-c", f"exec gmt select {nodes} -h1 -F{polygon} > {OUTPUT}"]

    def floor(self, percent):
        return program("floor_program", os.path.join(self.nodes, "nodes"), OUTPUT, str(percent))


def nodesOf(name, files, points, kind="nodes"):
    directory = data(name)
    if not os.path.exists(directory):
        os.makedirs(os.path.join(directory, "nodes"))
        subprocess.run(program("generate", kind, os.path.join(directory, "nodes"), str(files), str(points)), check=True)
    return directory


def boundaryOf(*arguments):
    path = data("-".join(arguments) + ".xml")
    if not os.path.exists(path):
        subprocess.run(program("generate", arguments[0], path, *arguments[1:]), check=True)
    return path


def triangle(name, minX, maxX):
    """A boundary south of all points, with this range of x."""
    path = data(name)
    with open(path, "w", encoding="utf-8") as file:
        file.write(f'<VADELSIM><VadeDGM><group type="boundaries"><polygon id="1"><point x="{minX}" y="0"/>'
                   f'<point x="{maxX}" y="0"/><point x="{maxX}" y="1"/></polygon></group></VadeDGM></VADELSIM>\n')
    return path


def keptPercent(job):
    """Returns the share of the lines that the tool keeps. The floor keeps the same share."""
    clean()
    subprocess.run(job.tool(), check=True)
    with open(os.path.join(OUTPUT, "total_node_count.txt"), encoding="ascii") as file:
        return 100.0 * int(file.read()) / job.lines


def clean():
    if os.path.isdir(OUTPUT):
        shutil.rmtree(OUTPUT)
    elif os.path.exists(OUTPUT):
        os.remove(OUTPUT)


def runOnce(command):
    """Wall and processor seconds of one run."""
    clean()
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    wall = time.perf_counter() - start
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise RuntimeError(f"{command} ended with {process.returncode}")
    return {"wall": wall, "cpu": usage.ru_utime + usage.ru_stime}


def peakMemory(command):
    """Returns the peak memory in KiB. A small program starts the command, because a process inherits the peak of the one
    that started it, and this one is larger than the tool."""
    clean()
    report = data("peak")
    subprocess.run(["/usr/bin/time", "-q", "-f", "%M", "-o", report, *command], stdout=subprocess.DEVNULL, check=True)
    with open(report, encoding="ascii") as file:
        return int(file.read())


def measure(commandA, commandB, pairs):
    start = time.perf_counter()
    peaks = peakMemory(commandA), peakMemory(commandB)  # these are the warm-up too
    if time.perf_counter() - start > SLOW:
        pairs = 1
    runs = [(runOnce(commandA), runOnce(commandB)) for _ in range(pairs)]
    clean()
    return runs, peaks


def median(runs, side, figure):
    return statistics.median(run[side][figure] for run in runs)


def jobs():
    """Yields the name of the case, the tool's command, the other program's name and command, and the lines of the job."""
    four = nodesOf("four-million", 1, 4000000)
    one = nodesOf("one-million", 1, 1000000)
    many = nodesOf("many-files", 500, 2000)
    tiny = nodesOf("tiny", 1, 10)
    small30 = Job(four, boundaryOf("outline", "20", "30"), 4000000)
    large30 = Job(four, boundaryOf("outline", "1000", "30"), 4000000)
    huge30 = Job(one, boundaryOf("outline", "100000", "30"), 1000000)
    for name, job in (("4 M points, 20 vertices, 30 % kept", small30),
                      ("4 M points, 1,000 vertices, 30 % kept", large30),
                      ("1 M points, 100,000 vertices, 30 % kept", huge30)):
        yield name, job.tool(), "gmt select", job.gmt(), job.lines
        yield name, job.tool(), "pandas with shapely", job.shapely(), job.lines
        yield name, job.tool(), "GEOS program", job.geos(), job.lines
    small90 = Job(four, boundaryOf("outline", "20", "90"), 4000000)
    large90 = Job(four, boundaryOf("outline", "1000", "90"), 4000000)
    for name, job in (("4 M points, 20 vertices, 30 % kept", small30),
                      ("4 M points, 1,000 vertices, 30 % kept", large30),
                      ("4 M points, 20 vertices, 90 % kept", small90),
                      ("4 M points, 1,000 vertices, 90 % kept", large90)):
        yield name, job.tool(), "floor", job.floor(keptPercent(job)), job.lines
    none = triangle("outside.xml", 0, 1)
    south = triangle("south.xml", 380000, 390000)
    long = nodesOf("four-million-long", 1, 4000000, "long-nodes")
    for name, job in (("nothing kept", Job(four, none, 4000000)),
                      ("nothing kept because of y", Job(four, south, 4000000)),
                      ("16 digits, nothing kept", Job(long, none, 4000000)),
                      ("16 digits, nothing kept because of y", Job(long, south, 4000000))):
        yield f"4 M points, {name}", job.tool(), "floor", job.floor(0), job.lines
    lattice = Job(one, boundaryOf("lattice", "2000"), 1000000)
    yield "1 M points, 2,000 polygons", lattice.tool(), "GEOS program", lattice.geos(), lattice.lines
    yield from unluckyJobs(one, tiny)
    files = Job(many, boundaryOf("outline", "20", "30"), 1000000)
    yield "500 files of 2,000 points", files.tool(), "floor", files.floor(keptPercent(files)), files.lines
    million = Job(tiny, boundaryOf("outline", "1000000", "50"), 10)
    yield "boundary of 1 M points, read and indexed", million.tool(), "load_file alone", program(
        "load_program", million.boundary), 1000000
    start = Job(tiny, none, 10)
    yield "one small file, English", start.tool(), "empty program", program("empty_program"), 0
    german = [argument for argument in start.tool() if argument != "-lang=en"]
    yield "one small file, German", german, "empty program", program("empty_program"), 0
    merewether = Job(os.path.join(EXAMPLES, "merewether"),
                     os.path.join(EXAMPLES, "merewether", "study-area.xml"), 133463)
    yield "example merewether, study-area.xml", merewether.tool(), "GEOS program", merewether.geos(), merewether.lines
    coast = Job(os.path.join(EXAMPLES, "coast"), os.path.join(EXAMPLES, "coast", "islands.xml"), 22636)
    yield "example coast, islands.xml", coast.tool(), "GEOS program", coast.geos(), coast.lines


def unluckyJobs(one, tiny):
    """Boundaries that are hard for an index."""
    stray = Job(one, boundaryOf("stray", "100000"), 1000000)
    yield ("1 M points, 100,000 vertices, one of them far away", stray.tool(), "without that vertex",
           Job(one, boundaryOf("coast", "100000"), 1000000).tool(), stray.lines)
    for name, kind, count in (("2,000 strips over each other", "strips", "2000"),
                              ("2,000 rings in each other", "nest", "2000"),
                              ("100,000 polygons", "lattice", "100000")):
        job = Job(one, boundaryOf(kind, count), 1000000)
        yield f"1 M points, {name}", job.tool(), "floor", job.floor(keptPercent(job)), job.lines
    jumping = Job(tiny, boundaryOf("jumping", "1000000"), 10)
    yield "boundary of 1 M points that jumps left and right", jumping.tool(), "load_file alone", program(
        "load_program", jumping.boundary), 1000000


def row(name, other, runs, peaks, lines):
    ratio = statistics.median(a["wall"] / b["wall"] for a, b in runs)
    a, b = median(runs, 0, "wall"), median(runs, 1, "wall")
    perLine = f"{a / lines * 1e9:.0f}" if lines else ""
    faster = f"{1 / ratio:.1f} × faster" if ratio < 0.5 else f"{ratio:.2f} × its time"
    name += " (1 pair)" if len(runs) == 1 else ""
    return (f"| {name} | {other} | {a:.4f} | {b:.4f} | {faster} | {perLine} | "
            f"{peaks[0] / 1024:.1f} | {peaks[1] / 1024:.1f} |")


def processorName():
    with open("/proc/cpuinfo", encoding="ascii") as file:
        return next((line.split(":")[1].strip() for line in file if line.startswith("model name")), platform.machine())


def main():
    os.makedirs(DATA, exist_ok=True)
    lines = [f"# {datetime.date.today()}, {processorName()}, {os.cpu_count()} processors, {platform.release()}", "",
             f"Medians of {PAIRS} pairs after one warm-up each; the ratio is the median of the pairs' ratios of wall time.", "",
             "| Case | Against | Vadelclip, s | other, s | Vadelclip is | ns per line | peak MiB | other, MiB |",
             "|---|---|---|---|---|---|---|---|"]
    print("\n".join(lines), flush=True)
    raw = []
    for name, command, other, otherCommand, lineCount in jobs():
        if not PATTERN.search(f"{name} {other}"):
            continue
        pairs = max(PAIRS, 25) if "small file" in name else PAIRS
        runs, peaks = measure(command, otherCommand, pairs)
        raw.append({"case": name, "against": other, "lines": lineCount, "runs": runs, "peaks": peaks})
        lines.append(row(name, other, runs, peaks, lineCount))
        print(lines[-1], flush=True)
        keep(lines, raw)


def keep(lines, raw):
    """Writes the results so far, because a run of all cases takes long."""
    name = f"{datetime.date.today()}-{re.sub('[^A-Za-z0-9]+', '-', processorName())}"
    directory = os.path.join(RUNS, name + ("-some-cases" if PATTERN.pattern else ""))
    os.makedirs(directory, exist_ok=True)
    with open(os.path.join(directory, "table.md"), "w", encoding="utf-8") as file:
        file.write("\n".join(lines) + "\n")
    with open(os.path.join(directory, "raw.json"), "w", encoding="utf-8") as file:
        json.dump(raw, file, indent=1)


main()
