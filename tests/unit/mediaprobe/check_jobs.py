#!/usr/bin/env python3
"""mediaprobe -j: as many threads as were asked for, and the same lines in the same order over many
more files than wait at a time.
Usage: check_jobs.py MEDIAPROBE PROBE_SAMPLES"""
import os
import subprocess
import sys
import tempfile

from expecting import expect, finish

probe, samples = [os.path.abspath(path) for path in sys.argv[1:3]]
WAITING = 64 * 4  # files that wait for each thread before any is told of
cores = len(os.sched_getaffinity(0))


def threads_of(*jobs):
    """How many threads there are once the first files were looked at, and more are waited for."""
    with subprocess.Popen([probe, *jobs, "-"], stdin=subprocess.PIPE, stderr=subprocess.PIPE,
                          cwd=work) as process:
        process.stdin.write(b"gone\n" * WAITING * 8)
        process.stdin.flush()
        process.stderr.readline()
        threads = len(os.listdir(f"/proc/{process.pid}/task"))
        process.communicate()
        return threads


def lines_with(jobs, names):
    run = subprocess.run([probe, "--json", "-j", str(jobs), "-"], input=names, cwd=work,
                         capture_output=True, check=False)
    return run.returncode, run.stdout, run.stderr


with tempfile.TemporaryDirectory() as work:
    subprocess.run([samples, work], check=True)
    expect("one file at a time needs no thread", threads_of() == 1 and threads_of("-j1") == 1)
    expect("each job has its thread", threads_of("-j2") == 3 and threads_of("-j", "7") == 8)
    expect("0 is one for each core", threads_of("-j0") == (cores + 1 if cores > 1 else 1))

    every = sorted(os.listdir(work)) + ["gone.avi"]
    many = "".join(f"{every[i % len(every)]}\n" for i in range(WAITING * 10)).encode()
    alone = lines_with(1, many)
    expect("every file has its line", alone[0] == 2 and alone[1].count(b"\n") == WAITING * 10)
    for jobs in (2, 5):
        expect(f"{jobs} at a time print the same", lines_with(jobs, many) == alone)

finish()
