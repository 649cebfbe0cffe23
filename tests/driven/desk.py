"""What a person has before a screen: eyes by accessibility, hands by keyboard and mouse."""

import os
import subprocess
import time

import pyatspi

PATIENCE = float(os.environ.get("KELVARON_DRIVEN_PATIENCE", 8))
# Accessibility tells places in the toolkit's pixels, the mouse wants the screen's.
SCALE = float(os.environ.get("QT_SCALE_FACTOR", 1))


def until(condition, about, patience=PATIENCE):
    """Waits for a condition and gives what it gave; fails with what was waited for."""
    end = time.monotonic() + patience
    while True:
        try:
            value = condition()
        except Exception:  # a widget can go while it is looked at
            value = None
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError("waited in vain: " + (about() if callable(about) else about))
        time.sleep(0.03)


def x(*arguments):
    result = subprocess.run(["xdotool", *map(str, arguments)], check=True, capture_output=True,
                            text=True)
    return result.stdout.strip()


def key(*names):
    x("key", "--delay", 15, *names)


def write(text):
    x("type", "--delay", 8, text)


def picture(path):
    subprocess.run(["import", "-window", "root", path], check=True)


def clipboard():
    return subprocess.run(["xclip", "-selection", "clipboard", "-o"], check=True,
                          capture_output=True, timeout=PATIENCE).stdout.decode()


def walk(node):
    yield node
    for child in node:
        if child is not None:
            yield from walk(child)


def has(node, state):
    return node.getState().contains(state)


def showing(node):
    return has(node, pyatspi.STATE_SHOWING)


def enabled(node):
    return has(node, pyatspi.STATE_ENABLED)


def extents(node):
    """Place and size on the screen, in the toolkit's pixels."""
    return node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)


def text_of(node):
    text = node.queryText()
    return text.getText(0, text.characterCount)
