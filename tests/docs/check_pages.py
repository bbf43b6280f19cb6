#!/usr/bin/env python3
"""The pages are true as far as a look can tell: links lead to files, paths are there, verbs and
options are those of --help. tests/docs/run.sh runs the commands themselves.
Usage: check_pages.py MEDIAPROBE HEADUNIT"""
import os
import re
import shlex
import subprocess
import sys

from pages import ROOT, commands, inline_code, pages

failed = 0
count = 0


def expect(page, number, what, good):
    global failed, count
    count += 1
    if not good:
        failed += 1
        print(f"FAILED {page.relative_to(ROOT)}:{number}: {what}")


def help_of(program, *words):
    return subprocess.run([program, *words, "--help"], check=True, text=True,
                          capture_output=True).stdout


mediaprobe, headunit = (os.path.abspath(path) for path in sys.argv[1:3])
probe_options = set(re.findall(r"(?<![\w-])--?[a-z0-9][a-z-]*", help_of(mediaprobe)))
verbs = set(re.findall(r"^  ([a-z]+)", help_of(headunit), re.MULTILINE))
top = {path.name for path in ROOT.iterdir()}


def check_command(page, number, command):
    words = [word for word in shlex.split(command, comments=True)]
    program = words[0]
    if program == "./headunit" and len(words) > 1 and not words[1].startswith("-"):
        expect(page, number, f"headunit has no verb {words[1]}", words[1] in verbs)
    elif os.path.basename(program) == "mediaprobe":
        options = [word.split("=")[0] for word in words[1:] if word.startswith("-") and word != "-"]
        expect(page, number, f"mediaprobe has no {options}", set(options) <= probe_options)
    for word in words:
        # What is made by building or by running is not there yet.
        if re.match(r"(\./)?[a-z]+(/|$)", word) and word.split("/")[0] in top | {"."} and \
                not word.startswith("out/"):
            expect(page, number, f"there is no {word}", (ROOT / word).exists())


for page in pages():
    lines = page.read_text(encoding="utf-8").splitlines()
    for number, line in enumerate(lines, 1):
        for link in re.findall(r"\]\(([^)#\s]+)", line):
            if "://" not in link:
                expect(page, number, f"the link {link} leads nowhere",
                       (page.parent / link).exists())
    for number, command in commands(page):
        check_command(page, number, command)
    for number, text in inline_code(page):
        if re.match(r"\./headunit [a-z]", text):
            verb = text.split()[1]
            expect(page, number, f"headunit has no verb {verb}", verb in verbs)
        # A path of the checkout: a top folder, a slash, no word in capitals that stands for
        # something else. A unit of source and header may be named without its ending.
        if re.fullmatch(r"[a-z]+/[\w./*-]+", text) and text.split("/")[0] in top - {"out"} and \
                not re.search(r"[A-Z]{4}", text):
            path = text.rstrip("/")
            expect(page, number, f"there is no {text}",
                   any(ROOT.glob(path)) or any(ROOT.glob(path + ".*")))
expect(ROOT / "README.md", 1, "commands are found", len(commands(ROOT / "README.md")) >= 20)

print(f"{count - failed} passed, {failed} failed")
sys.exit(1 if failed else 0)
