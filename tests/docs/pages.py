"""The pages of the checkout and the commands that stand in them."""
import re
import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def pages():
    names = subprocess.run(["git", "ls-files", "*.md"], cwd=ROOT, check=True, text=True,
                           capture_output=True).stdout.split()
    return [ROOT / name for name in names]


def commands(page):
    """(line number, command) for every line of a ```sh block, and of a block that is indented by
    four and begins with a program; what stands behind three blanks explains it."""
    found = []
    fence = None
    for number, line in enumerate(page.read_text(encoding="utf-8").splitlines(), 1):
        text = line.strip()
        if text.startswith("```"):
            fence = None if fence is not None else text[3:]
            continue
        indented = re.match(r" {4}(?! )", line) and fence is None
        is_program = re.match(r"\./|(out|tests|packaging|simulator|skin)/\S|(cmake|find|git) ",
                              text)
        if text and not text.startswith("#") and (fence == "sh" or indented and is_program):
            found.append((number, re.split(r" {3,}| +# ", text)[0]))
    return found


def inline_code(page):
    """(line number, text) for every `text` outside of blocks."""
    found = []
    fenced = False
    for number, line in enumerate(page.read_text(encoding="utf-8").splitlines(), 1):
        if line.strip().startswith("```"):
            fenced = not fenced
        elif not fenced and not line.startswith("    "):
            found += [(number, text) for text in re.findall(r"`([^`]+)`", line)]
    return found
