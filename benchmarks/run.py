#!/usr/bin/env python3
"""Builds the benchmarks, runs them and prints each case as the engine's time beside the plain calls' of the same run.
Cases of the game have no plain side.

usage: benchmarks/run.py [--repetitions N] [PROGRAM ...]

The times are medians of the processor time; only the ratio means anything on another machine.
"""
import argparse
import json
import os
import platform
import statistics
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PROGRAMS = ["drawing_benchmark", "engine_benchmark", "file_benchmark", "game_benchmark", "geometry_benchmark",
            "image_benchmark", "render_benchmark"]
SECONDS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}


def machine():
    with open("/proc/cpuinfo") as info:
        names = [line.split(":", 1)[1].strip() for line in info if line.startswith("model name")]
    compiler = subprocess.run(["c++", "--version"], capture_output=True, text=True).stdout.split("\n")[0]
    return f"{len(names)} x {names[0] if names else platform.machine()}, {platform.system()}, {compiler}"


def build():
    configure = ["cmake", "--preset", "release", "-DXUM_BUILD_BENCHMARKS=ON"]
    for command in (configure, ["cmake", "--build", "--preset", "release", "--target", *PROGRAMS]):
        result = subprocess.run(command, cwd=ROOT, capture_output=True, text=True)
        if result.returncode != 0:
            sys.exit(result.stdout + result.stderr)


def run(program, repetitions):
    """The processor times of every benchmark, in seconds, by name."""
    path = os.path.join(ROOT, "build", "release", "bin", program)
    with tempfile.TemporaryDirectory() as directory:
        out = os.path.join(directory, "result.json")
        subprocess.run([path, f"--benchmark_repetitions={repetitions}", "--benchmark_enable_random_interleaving=true",
                        "--benchmark_min_time=0.1", f"--benchmark_out={out}", "--benchmark_out_format=json"],
                       cwd=directory, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        with open(out) as file:
            runs = json.load(file)["benchmarks"]
    times = {}
    for one in runs:
        if one.get("error_occurred"):
            sys.exit(f"{one['name']}: {one['error_message']}")
        if one["run_type"] == "iteration":
            times.setdefault(one["name"], []).append(one["cpu_time"] * SECONDS[one["time_unit"]])
    return times


def show(seconds):
    for unit, factor in (("ms", 1e-3), ("us", 1e-6), ("ns", 1e-9)):
        if seconds >= factor:
            return f"{seconds / factor:.4g} {unit}"
    return f"{seconds / 1e-9:.3g} ns"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--repetitions", type=int, default=9)
    parser.add_argument("programs", nargs="*", metavar="PROGRAM", help="of: " + ", ".join(PROGRAMS))
    arguments = parser.parse_args()
    build()
    print(f"Machine: {machine()}\n")
    print("| case | engine | plain calls | engine / plain |\n|---|---|---|---|")
    for program in arguments.programs or PROGRAMS:
        times = run(program, arguments.repetitions)
        for name, ours in times.items():
            if "/plain" in name:
                continue
            engine = statistics.median(ours)
            if "/engine" not in name:
                print(f"| {name} | {show(engine)} | | |", flush=True)
                continue
            plain = statistics.median(times[name.replace("/engine", "/plain")])
            case = name.replace("/engine", "")
            print(f"| {case} | {show(engine)} | {show(plain)} | {engine / plain:.3f} |", flush=True)


main()
