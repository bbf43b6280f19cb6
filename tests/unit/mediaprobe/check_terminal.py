#!/usr/bin/env python3
"""What mediaprobe prints on a terminal and nowhere else: colours, escaped control characters, the
progress line. The terminal is a pseudo terminal.
Usage: check_terminal.py MEDIAPROBE PROBE_SAMPLES"""
import os
import pty
import re
import select
import subprocess
import sys
import tempfile
import threading

from expecting import expect, finish

probe, samples = [os.path.abspath(path) for path in sys.argv[1:3]]


def read_all(terminal):
    told = b""
    while True:
        try:
            block = os.read(terminal, 65536)
        except OSError:  # Linux's way to tell that nobody holds the other end any more
            block = b""
        if not block:
            os.close(terminal)
            return told
        told += block


def run(arguments, on_terminal, environment=None, feed=None):
    """What came on the pseudo terminal, which the streams of `on_terminal` are, and on the others,
    which go to a file. `feed` writes to standard input while the terminal is read."""
    terminal, other = pty.openpty()
    with tempfile.TemporaryFile() as plain:
        streams = {name: other if name in on_terminal else plain for name in ("stdout", "stderr")}
        with subprocess.Popen([probe, *arguments], stdin=subprocess.PIPE, cwd=work,
                              env={**os.environ, "NO_COLOR": "", **(environment or {})},
                              **streams) as process:
            os.close(other)
            told = feed(process, terminal) if feed else b""
            process.stdin.close()
            told += read_all(terminal)
        plain.seek(0)
        return told.replace(b"\r\n", b"\n"), plain.read()


def until_progress(*names):
    """Names these files again and again until the progress line shows. What is told meanwhile is
    read all the time, or both would wait for each other."""
    def feed(process, terminal):
        seen = threading.Event()

        def name_files():
            while not seen.is_set():
                process.stdin.write("".join(name + "\n" for name in names).encode() * 100)
                process.stdin.flush()

        writer = threading.Thread(target=name_files)
        writer.start()
        told = b""
        while writer.is_alive():
            if select.select([terminal], [], [], 0.01)[0]:
                told += os.read(terminal, 65536)
            if b" files, " in told:
                seen.set()
        return told
    return feed


with tempfile.TemporaryDirectory() as work:
    subprocess.run([samples, work], check=True)
    os.link(os.path.join(work, "mp4_avc_and_aac"), os.path.join(work, "good.mp4"))
    odd = "a\nb\x1b[31mred\x7f\u0085.mp4"
    os.link(os.path.join(work, "good.mp4"), os.path.join(work, odd))
    os.link(os.path.join(work, "good.mp4"), os.path.join(work.encode(), b"\xc7\xd1.mp4"))
    damaged = "avi_4097_zero_headers_fail"
    # Its data chunk declares more than there is.
    with open(os.path.join(work, "cut.wav"), "wb") as file:
        file.write(b"RIFF\x24\x10\0\0WAVEfmt \x10\0\0\0\1\0\2\0\x44\xac\0\0\x10\xb1\2\0\4\0\x10\0"
                   b"data\0\x10\0\0" + bytes(3000))

    both = ("stdout", "stderr")
    told, _ = run(["good.mp4"], both)
    expect("the path is bold on a terminal", told.startswith(b"\x1b[1mgood.mp4\x1b[0m\n"))
    expect("labels are dim", b"  \x1b[2mVideo   \x1b[0m H.264" in told)
    told, _ = run([damaged], both)
    expect("damage is red", b"\x1b[2mDamage  \x1b[0m \x1b[31m" in told)
    told, _ = run([damaged], both, {"NO_COLOR": "1"})
    expect("NO_COLOR", b"\x1b[" not in told and b"Damage" in told)
    told, _ = run(["--color=never", "good.mp4"], both)
    expect("--color=never", b"\x1b[" not in told)
    told, _ = run(["--color", "always", "good.mp4"], both, {"NO_COLOR": "1"})
    expect("--color always", b"\x1b[1m" in told)
    _, piped = run(["good.mp4"], ("stderr",))
    expect("no colours in a pipe", b"\x1b" not in piped and b"Video" in piped)
    _, piped = run(["--color=always", "good.mp4"], ("stderr",))
    expect("colours in a pipe when asked for", b"\x1b[1mgood.mp4" in piped)

    told, _ = run(["--color=never", odd], both)
    expect("control characters of a name are escaped",
           told.startswith(b"a\\nb\\x1b[31mred\\x7f\\xc2\\x85.mp4\n"))
    told, _ = run(["--color=never", b"\xc7\xd1.mp4"], both)
    expect("bytes that are no UTF-8 are escaped", told.startswith(b"\\xc7\\xd1.mp4\n"))
    _, piped = run([odd], ("stderr",))
    expect("a pipe gets the name as it is", piped.startswith(odd.encode() + b"\n"))
    told, _ = run(["gone\n\x1b.avi"], both)
    expect("in an error as well", b"mediaprobe: gone\\n\\x1b.avi cannot be opened" in told)
    _, piped = run(["gone\x1b.avi"], ("stdout",))
    expect("an error in a pipe is as it is", b"mediaprobe: gone\x1b.avi cannot" in piped)
    told, _ = run(["--explain", "--color=never", odd], both)
    expect("--explain shows the escaped name", odd.encode() not in told)

    told, piped = run(["--json", "-"], ("stderr",), feed=until_progress("good.mp4"))
    expect("a progress line while a pipe takes the lines", b" files, 0 faulty" in told)
    expect("it is wiped at the end", told.endswith(b"\r\x1b[K"))
    expect("it is not in the pipe", b"faulty" not in piped)
    told, _ = run(["--json", "-"], ("stderr",),
                  feed=until_progress("good.mp4", damaged, "cut.wav", "gone.avi"))
    shown = re.findall(rb"([\d,]+) files, ([\d,]+) faulty", told)
    numbers = [[int(number.replace(b",", b"")) for number in one] for one in shown]
    expect("of four files all but the good one are faulty", numbers and
           all(faulty == files // 4 * 3 + max(files % 4 - 1, 0) for files, faulty in numbers))
    told, _ = run(["good.mp4"], ("stderr",))
    expect("short work shows none", told == b"")

finish()
