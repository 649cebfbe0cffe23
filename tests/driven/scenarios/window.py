"""The window itself: following its size, the about box, the radio and its volume."""

import os
import stat
import time

from desk import extents, key, showing, until, walk, x
from driver import ROOM, WORK, Client, Server

DESIGN = (960, 632)
ABOUT = "About Kelvaron"
VOLUME = ("Volume", "Volume Control")
# Controls of the room in the window's design, by role and name.
LAYOUT = {
    ("text", "Chat"): (14, 76, 712, 500),
    ("text", "Message"): (14, 586, 712, 32),
    ("list", "Users"): (738, 76, 208, 462),
    ("push button", "Request A Game"): (738, 548, 208, 32),
    ("push button", "Return from CS"): (738, 586, 208, 32),
    ("label", "Status"): (558, 48, 220, 20),
}


def enter_alone(folder, **environment):
    Server(folder)
    ann = Client("ann", **environment)
    ann.log_in("ann")
    return ann


def layout(client):
    """The content's size, and where the controls are in it."""
    content = extents(client.find(ROOM, "Chat", "text").parent)
    places = {}
    for role, name in LAYOUT:
        box = extents(client.find(ROOM, name, role))
        places[role, name] = (box.x - content.x, box.y - content.y, box.width, box.height)
    return (content.width, content.height), places


def follows(client):
    """Whether each control is where the whole percentages of the size put it."""
    size, places = layout(client)
    percent = [100 * now // design for now, design in zip(size, DESIGN)]
    for control, design in LAYOUT.items():
        wanted = [design[i] * percent[i % 2] / 100 for i in range(4)]
        if any(abs(is_ - want) > 1 for is_, want in zip(places[control], wanted)):
            return False
    return True


def resizing():
    """The controls follow the window's size in proportion, and come back without drift."""
    ann = enter_alone("data-size")
    ann.activate(ROOM)
    window = x("getactivewindow")
    ann.enter("a line to keep")
    ann.reads("ann: a line to keep")
    original = layout(ann)
    assert original[0] == DESIGN, original
    until(lambda: follows(ann), lambda: f"the design's layout: {layout(ann)}")
    bar = extents(ann.window(ROOM)).height - DESIGN[1]
    for _ in range(2):
        for width, height in ((1200, 900), (700, 500), (400, 300), (960, DESIGN[1] + bar)):
            x("windowsize", "--sync", window, width, height)
            until(lambda: layout(ann)[0] == (width, height - bar),
                  lambda: f"{width}x{height}: {layout(ann)[0]}")
            until(lambda: follows(ann), lambda: f"the layout of {width}x{height}: {layout(ann)}")
            assert ann.chat().count("a line to keep") == 1
    assert layout(ann) == original, (layout(ann), original)
    # Below two fifths of the design nothing could be read.
    smallest = (round(DESIGN[0] * 0.4), round(DESIGN[1] * 0.4))
    x("windowsize", window, 100, 100)
    until(lambda: layout(ann)[0] == smallest, lambda: f"{smallest}: {layout(ann)[0]}")
    x("windowsize", "--sync", window, 700, 500)
    ann.enter("still in use")
    ann.reads("ann: still in use")


def about_box():
    """The about box by menu, its version, its two ways to close, and the button without a tool."""
    folder = os.path.join(WORK, "no tools")
    os.makedirs(folder)
    ann = enter_alone("data-about", PATH=folder)
    ann.open_menu("Help", ABOUT)
    labels = [n.name for n in walk(ann.window(ABOUT)) if n.getRoleName() == "label"]
    assert "Version 4.1" in labels and "Kelvaron" in labels, labels
    ann.press(ABOUT, "System Info...")
    ann.answer("Kelvaron", "System Information Is Unavailable At This Time")
    ann.press(ABOUT, "OK")
    ann.no_window(ABOUT)
    for way in ("Return", "Escape"):
        ann.open_menu("Help", ABOUT)
        ann.activate(ABOUT)
        key(way)
        ann.no_window(ABOUT)


def information_tool():
    """The system's information tool is started, by button and by the underlined letter."""
    folder = os.path.join(WORK, "tools here")
    os.makedirs(folder)
    tool, trace = os.path.join(folder, "hardinfo2"), os.path.join(folder, "was started")
    with open(tool, "w", encoding="utf-8") as file:
        file.write(f'#!/bin/sh\necho started >> "{trace}"\n')
    os.chmod(tool, stat.S_IRWXU)
    ann = enter_alone("data-tool", PATH=folder)
    ann.open_menu("Help", ABOUT)
    ann.press(ABOUT, "System Info...")

    def starts():
        with open(trace, encoding="utf-8") as file:
            return len(file.readlines())

    until(lambda: starts() == 1, "the tool to be started")
    ann.activate(ABOUT)
    key("alt+s")
    until(lambda: starts() == 2, "the tool to be started by keyboard")
    assert not ann.has_window("Kelvaron") and ann.has_window(ABOUT)


def volume():
    """The slider by keyboard, and a form that begins anew when it is opened again."""
    ann = enter_alone("data-volume")
    ann.open_menu("Radio", "Volume")
    label = lambda: [n.name for n in walk(ann.window(VOLUME)) if n.getRoleName() == "label"]
    assert label() == ["Volume"], label()
    ann.activate(VOLUME)
    ann.has_focus(VOLUME, "Volume")
    for name, value in (("Right", 1451), ("Left", 1450), ("Page_Up", None), ("Home", 0),
                        ("Left", 0), ("End", 2900), ("Right", 2900)):
        key(name)
        if value is None:
            until(lambda: label() not in (["Volume: 1450"], ["Volume"]), f"{name} to move")
        else:
            until(lambda: label() == [f"Volume: {value}"], lambda: f"{value} by {name}: {label()}")
    key("alt+F4")
    ann.no_window(VOLUME)
    ann.open_menu("Radio", "Volume")
    until(lambda: label() == ["Volume"], lambda: f"a new form: {label()}")
    slider = ann.find(VOLUME, "Volume", "slider").queryValue()
    assert slider.currentValue == 1450, slider.currentValue


def radio():
    """A station where nothing plays: its notice, its buffering display, and a client that
    answers to the keyboard all the while."""
    ann = enter_alone("data-radio")

    def frame():
        """What the display reads, if it is there."""
        found = next((n for n in walk(ann.window(ROOM)) if n.name.startswith("Buffering ") and
                      n.getRoleName() != "text" and showing(n)), None)
        return found and [found.name] + [n.name for n in walk(found) if n is not found and n.name]

    def still_types(text):
        ann.enter(text)
        ann.reads("ann: " + text)

    def silence_is_told():
        """A machine that can't play says so each time; one that can says nothing."""
        end = time.monotonic() + 3
        while not ann.has_window("Kelvaron"):
            if time.monotonic() > end:
                return False
        ann.answer("Kelvaron", "The radio is silent: ")
        return True

    told = []
    assert frame() is None
    for caption, station, notice in (
            ("Z100 (Top 40 / Dance)", "KKRZ", "KKRZ Z100 Portland Oregon....."),
            ("KSHE 95 (Rock)", "KSHE", "KSHE95 St. Louis Rock....."),
            ("KWJJ (Country)", "KWJJ", "KWJJ Portlands Favorite Country.....")):
        ann.open_menu("Radio", "Stations", caption)
        ann.reads("Buffering Station...." + notice)
        told.append(silence_is_told())
        until(lambda: frame() == ["Buffering " + station, "0%"], lambda: f"{station}: {frame()}")
        still_types("listening to " + station)
    ann.enter("/stop")
    until(lambda: ann.message() == "", "/stop to be cleared")
    time.sleep(1.2)
    assert frame() == ["Buffering KWJJ", "0%"], ("the typed stop leaves the display", frame())
    ann.open_menu("Radio", "Stop")
    until(lambda: frame() is None, "the display to go")
    ann.enter("/play kkrz")
    ann.reads("Buffering Station.........")
    told.append(silence_is_told())
    until(lambda: ann.message() == "", "/play to be cleared")
    still_types("by command")
    time.sleep(1.2)
    assert frame() is None, frame()
    ann.enter("/STOP")
    until(lambda: ann.message() == "", "/STOP to be cleared")
    ann.enter("/PLAY KWJJ")
    until(lambda: ann.chat().count("Buffering Station.........") == 2, "the second notice")
    told.append(silence_is_told())
    assert len(set(told)) == 1, told
    still_types("to the end")
    assert [w.name for w in ann.windows()] == ["Kelvaron 4.1"], [w.name for w in ann.windows()]


SCENARIOS = [resizing, about_box, information_tool, volume, radio]
