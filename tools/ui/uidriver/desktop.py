"""The X desktop by its command line tools."""

import os
import re
import subprocess
import sys
from collections import namedtuple

from .bus import UiError

Window = namedtuple("Window", "id title states rect")


def run(*command, seconds=None):
    """What the command prints; UiError when it fails or takes longer than `seconds`."""
    words = [str(word) for word in command]
    try:
        done = subprocess.run(words, capture_output=True, text=True, timeout=seconds)
    except subprocess.TimeoutExpired:
        raise UiError(f"{' '.join(words)}: not done after {seconds:g} s")
    if done.returncode:
        raise UiError(f"{command[0]}: {(done.stderr or done.stdout).strip()}")
    return done.stdout


def xdotool(*arguments, seconds=None):
    if os.environ.get("UIDRIVE_TRACE"):
        print("xdotool", *arguments, file=sys.stderr)
    return run("xdotool", *arguments, seconds=seconds)


def holding(keys, *commands):
    """xdotool's words for doing something while keys are held."""
    downs = [word for key in keys for word in ("keydown", key)]
    return [*downs, *commands, *(word for key in keys for word in ("keyup", key))]


def screen():
    """The place of the screen: x, y, width, height."""
    try:
        width, height = run("xdotool", "getdisplaygeometry").split()
    except FileNotFoundError:
        raise UiError("xdotool is not installed")
    return 0, 0, int(width), int(height)


def windows(pid):
    """The windows of a process that the window manager knows, bottom to top."""
    ids = re.findall(r"0x[0-9a-f]+", run("xprop", "-root", "_NET_CLIENT_LIST_STACKING"))
    return [window for window in (_window(number, pid) for number in ids) if window]


def _window(number, pid):
    try:
        properties = run("xprop", "-id", number, "_NET_WM_PID", "_NET_WM_NAME", "_NET_WM_STATE")
        # not xdotool getwindowgeometry: below a frame of the window manager it adds the offset twice
        information = run("xwininfo", "-id", number)
    except UiError:
        return None
    if not re.search(rf"_NET_WM_PID\(CARDINAL\) = {pid}\b", properties):
        return None
    title = re.search(r'_NET_WM_NAME\(UTF8_STRING\) = "(.*)"', properties)
    states = re.findall(r"_NET_WM_STATE_(\w+)", properties.split("= ", 1)[-1])
    rect = re.findall(r"(?:Absolute upper-left [XY]|Width|Height): +(-?\d+)", information)
    return Window(int(number, 16), title[1] if title else "", states, tuple(int(v) for v in rect))


def picture(path, rect=None):
    """Writes a picture of the screen, or of a place on it."""
    crop = ["-crop", f"{rect[2]}x{rect[3]}+{rect[0]}+{rect[1]}", "+repage"] if rect else []
    run("import", "-silent", "-window", "root", *crop, path)
    return path


def colour(x, y):
    """The colour of a point, as '#rrggbb'."""
    crop = ("-crop", f"1x1+{x}+{y}", "-depth", "8")
    text = run("import", "-silent", "-window", "root", *crop, "txt:-")
    return re.search(r"#[0-9A-Fa-f]{6}", text)[0].lower()


def clipboard():
    return run("xclip", "-o", "-selection", "clipboard")
