"""The chat view and the message line: reading back, finding, copying, zooming, pasting."""

import time

import pyatspi

from desk import clipboard, extents, key, put_on_clipboard, until, write, x
from driver import ROOM, Client, Server, Visitor


def full_view(folder, lines=80):
    """A client whose view holds more than its height, and who wrote it."""
    Server(folder)
    ann = Client("ann")
    ann.log_in("ann")
    bob = Visitor("bob")
    for i in range(lines):
        bob.says(f"line {i} of many")
    ann.reads(f"line {lines - 1} of many")
    ann.activate(ROOM)
    return ann, bob, ann.find(ROOM, "Chat")


def first_shown(view):
    """The first line on the screen."""
    box, text = extents(view), view.queryText()
    offset = text.getOffsetAtPoint(box.x + 8, box.y + 8, pyatspi.DESKTOP_COORDS)
    return text.getText(offset, offset + 30).split("\n")[0]


def reading_back():
    """Somebody who has scrolled up keeps the place while lines arrive; the end
    follows them again."""
    ann, bob, view = full_view("data-back")
    last = first_shown(view)
    ann.turn_wheel(view, 8)
    until(lambda: first_shown(view) != last, "the wheel to scroll")
    time.sleep(0.2)
    before = first_shown(view)
    bob.says("an arriving line")
    ann.reads("an arriving line")
    time.sleep(0.2)
    assert first_shown(view) == before, (before, first_shown(view))
    ann.turn_wheel(view, -40)
    until(lambda: first_shown(view) not in (before, last), "the view to be at its end again")
    at_end = first_shown(view)
    bob.says("one more")
    until(lambda: first_shown(view) != at_end, "the view to follow")


def zoom():
    """Ctrl and the wheel make the text larger, Ctrl+0 gives it its size back."""
    ann, _, view = full_view("data-zoom")
    ann.point(view)

    def height():
        box, text = extents(view), view.queryText()
        offset = text.getOffsetAtPoint(box.x + 8, box.y + 40, pyatspi.DESKTOP_COORDS)
        return text.getCharacterExtents(offset, pyatspi.DESKTOP_COORDS)[3]

    small = height()
    x("keydown", "ctrl", "click", 4, "click", 4, "click", 4, "keyup", "ctrl")
    until(lambda: height() > small, "Ctrl and the wheel to enlarge")
    x("click", 1)
    key("ctrl+0")
    until(lambda: height() == small, "Ctrl+0 to give the size back")


def find_and_copy():
    """Ctrl+F finds a line that is out of sight; the whole text reaches other programs."""
    ann, _, view = full_view("data-find")
    ann.click(view)
    key("ctrl+f")
    ann.has_focus(ROOM, "Find")
    write("LINE 12 of")
    key("Return")
    text = view.queryText()
    found = until(lambda: text.getNSelections() and text.getSelection(0), "a match")
    assert text.getText(*found) == "line 12 of", text.getText(*found)
    until(lambda: extents(view).y < text.getCharacterExtents(
        found[0], pyatspi.DESKTOP_COORDS)[1] < extents(view).y + extents(view).height,
        "the match to be in sight")
    key("Escape")
    ann.click(view)
    key("ctrl+a", "ctrl+c")
    copied = until(lambda: "of many" in clipboard() and clipboard(), "the copied text")
    lines = copied.splitlines()
    assert lines[-1] == "bob: line 79 of many", lines[-3:]
    assert len([line for line in lines if "of many" in line]) == 80, len(lines)


def pasted_text():
    """Line ends become blanks, what the code page lacks becomes "?", and so it is sent."""
    Server("data-paste")
    ann = Client("ann")
    ann.log_in("ann")
    ann.activate(ROOM)
    ann.click(ann.find(ROOM, "Message", "text"))
    put_on_clipboard("one\r\ntwo\nthr\u00e9e \u20ac \u0142 \U0001f600")
    key("ctrl+v")
    until(lambda: ann.message() == "one two thr\u00e9e \u20ac ? ?", lambda: repr(ann.message()))
    key("Return")
    ann.reads("ann: one two thr\u00e9e \u20ac ? ?")
    until(lambda: ann.message() == "", "the line to be cleared")


SCENARIOS = [reading_back, zoom, find_and_copy, pasted_text]
