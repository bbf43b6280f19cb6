"""Looks at the unit through a browser and clicks its play key.

usage: click.py URL HEADUNIT DEVICE PICTURES
URL is what `headunit view` printed, HEADUNIT the command, DEVICE the unit's folder; the page is
left as a picture in the folder PICTURES. Exit status 0 when every step held, 1 at the first that
did not.
"""

import json
import os
import subprocess
import sys
import time

from selenium import webdriver
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains

# The unit's screen, in its pixels.
SCREEN = (800, 480)
PLAY_KEY = (672, 452)
# A part of the recording that no bar covers: left, top, width, height.
PICTURE = (300, 100, 200, 200)

# The pixels of PICTURE as they stand on the page's canvas: "" while there is no screen yet.
PIXELS = """
const canvas = document.querySelector('canvas');
if (!canvas || canvas.width !== arguments[4] || canvas.height !== arguments[5]) return '';
const data = canvas.getContext('2d').getImageData(
    arguments[0], arguments[1], arguments[2], arguments[3]).data;
return Array.from(data).join(',');
"""


def step(what, held):
    print(("PASS " if held else "FAIL ") + what, flush=True)
    if not held:
        sys.exit(1)


def until(seconds, condition):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if condition():
            return True
        time.sleep(0.1)
    return False


def tape(headunit, device):
    """The unit's tape, as a list of objects."""
    text = subprocess.run([headunit, "--device", device, "log", "--json"], check=True,
                          capture_output=True, text=True).stdout
    return [json.loads(line) for line in text.splitlines()]


def is_play_key(line):
    return (line.get("kind") == "post" and line.get("message") == "ZEL_BSP_WMUSER_IR_KEY"
            and line.get("to") == "Video" and line.get("wParam") == 7)


def start_browser():
    options = Options()
    options.binary_location = "/usr/bin/chromium"
    for word in ("--headless=new", "--window-size=1000,700", "--disable-gpu",
                 "--disable-dev-shm-usage"):
        options.add_argument(word)
    if os.geteuid() == 0:
        options.add_argument("--no-sandbox")  # Chromium's own does not work for root
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


def click(browser, point):
    """A click of the browser's pointer where the unit's pixel `point` stands on the page."""
    place = browser.execute_script(
        "const r = document.querySelector('canvas').getBoundingClientRect();"
        "return [r.left, r.top, r.width, r.height];")
    x = place[0] + place[2] * (point[0] + 0.5) / SCREEN[0]
    y = place[1] + place[3] * (point[1] + 0.5) / SCREEN[1]
    actions = ActionChains(browser, duration=50)
    actions.w3c_actions.pointer_action.move_to_location(int(x), int(y))
    actions.w3c_actions.pointer_action.click()
    actions.perform()


def look(browser, url, headunit, device):
    def pixels():
        return browser.execute_script(PIXELS, *PICTURE, *SCREEN)

    def moves(seconds=0.6):
        before = pixels()
        time.sleep(seconds)
        return before != "" and before != pixels()

    browser.get(url)
    step("the page shows a screen of 800 x 480", until(20, lambda: pixels() != ""))
    step("the screen is not one colour", until(10, lambda: len(set(pixels().split(","))) > 8))
    step("the recording moves on the page", until(10, moves))

    before = len(tape(headunit, device))
    subprocess.run([headunit, "--device", device, "send", "MSG_ProcessManagertoMovie", "0", "0"],
                   check=True)
    time.sleep(0.5)  # the bar with the key is being drawn, and sent to the page
    step("without a click there is no key on the tape",
         not any(is_play_key(line) for line in tape(headunit, device)[before:]))
    click(browser, PLAY_KEY)
    step("a click on the play key puts ZEL_BSP_WMUSER_IR_KEY 7 on the tape", until(
        5, lambda: any(is_play_key(line) for line in tape(headunit, device)[before:])))
    step("the recording stands still on the page", until(5, lambda: not moves()))
    before = len(tape(headunit, device))
    click(browser, PLAY_KEY)
    step("the second click is a key of its own", until(
        5, lambda: sum(is_play_key(line) for line in tape(headunit, device)[before:]) == 1))
    step("the recording moves again", until(5, moves))


def main():
    url, headunit, device, pictures = sys.argv[1:]
    browser = start_browser()
    try:
        look(browser, url, headunit, device)
    finally:
        browser.save_screenshot(os.path.join(pictures, "page.png"))
        browser.quit()


main()
