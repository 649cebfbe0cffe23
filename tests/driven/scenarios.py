"""The scenarios: what a player does, and what must be seen of it."""

import os
import signal
import sys
import time
import traceback

import pyatspi

import driver
from driver import Client, Program, Server, Visitor, key, showing, until, walk, write, x


def login_refusals():
    """Names that are refused, by the box that a person reads."""
    Server("data-login")
    ann = Client("ann")
    ann.window("Kelvaron Login")
    for name, words in (("two words", "Spaces"), ("a[b", "[]"), ("1234567890123456", "12 char")):
        ann.activate("Kelvaron Login")
        key("ctrl+a")
        write(name)
        key("Return")
        assert words in ann.box("Kelvaron"), ann.box("Kelvaron")
        ann.answer("Kelvaron")
        ann.no_window("Kelvaron")
    ann.activate("Kelvaron Login")
    key("ctrl+a", "BackSpace", "Return")
    assert "server may be down" in ann.box("Connection Error")
    ann.answer("Connection Error")
    # By keyboard alone: past the boxes to Cancel.
    ann.activate("Kelvaron Login")
    key("Escape")
    until(ann.ended, "Escape to cancel")
    assert ann.process.returncode == 0, ann.process.returncode


def no_server():
    """Nobody listens: a box with the reason, and the program ends."""
    ann = Client("ann")
    ann.window("Kelvaron Login")
    ann.activate("Kelvaron Login")
    write("ann")
    key("Return")
    assert "10061" in ann.box("Kelvaron"), ann.box("Kelvaron")
    ann.answer("Kelvaron")
    until(ann.ended, "the program to end")


def two_players():
    """Two clients talk, write privately, mute, go away and come back."""
    Server("data-two")
    ann, bob = Client("ann"), Client("bob")
    ann.log_in("ann")
    bob.log_in("bob")
    for player in (ann, bob):
        player.lists("ann", "bob")
    ann.enter("hello bob")
    bob.enter("hello ann & <b>all</b>")
    for player in (ann, bob):
        player.reads("ann: hello bob")
        player.reads("bob: hello ann & <b>all</b>")

    # A double click on a user opens the private message; the other side reads it.
    ann.activate("Kelvaron 4.1")
    ann.click(ann.user("bob"), repeat=2)
    ann.window("Private Message to : bob")
    ann.activate("Private Message to : bob")
    write("just you")
    key("Return")
    assert ann.has_window("Private Message to : bob"), "Enter must not send"
    ann.click(ann.find("Private Message to : bob", "Send", "push button"))
    ann.no_window("Private Message to : bob")
    ann.reads("Private Message To bob: just you")
    bob.reads("Private Message From ann: just you")

    # A right click opens the menu for the entry that was selected, and selects nothing.
    ann.activate("Kelvaron 4.1")
    ann.click(ann.user("ann"), button=3)
    entry = until(lambda: next((n for n in walk(ann.application())
                                if n.name == "Join CSDOOM Game" and showing(n)), None),
                  "the menu of users")
    assert not entry.getState().contains(pyatspi.STATE_ENABLED), "Join must be greyed"
    selected = ann.user("bob").getState().contains(pyatspi.STATE_SELECTED)
    assert selected, "the selection must not move"
    key("Escape")

    # Muting: the list comes into view, the other's lines are not shown.
    ann.enter("/mute bob")
    assert "BOB has been muted" in ann.box("Kelvaron")
    ann.answer("Kelvaron")
    ann.window("People you have Muted")
    names = [n.name for n in ann.find("People you have Muted", "Muted users")]
    assert names == ["BOB"], names
    ann.click(ann.find("People you have Muted", "Hide Me", "push button"))
    ann.no_window("People you have Muted")
    bob.enter("nobody hears this")
    bob.reads("nobody hears this")
    ann.activate("Kelvaron 4.1")
    ann.click(ann.find("Kelvaron 4.1", "Message", "text"))
    key("ctrl+a")
    write("/unmute bob")
    key("Return")
    assert "bob Has been unmuted." in ann.box("Kelvaron")
    ann.answer("Kelvaron")
    ann.click(ann.find("People you have Muted", "Hide Me", "push button"))
    assert "nobody hears this" not in ann.chat()

    bob.enter("/away")
    ann.lists("ann", "bob[AW]")
    bob.enter("back again")
    ann.lists("ann", "bob")
    ann.reads("bob: back again")

    # A second instance in the same session is told and ends.
    second = Client("ann")
    assert "another Kelvaron open" in second.box("Doh!")
    second.answer("Doh!")
    until(second.ended, "the second instance to end")

    # Closing the window says farewell.
    bob.activate("Kelvaron 4.1")
    key("alt+F4")
    until(bob.ended, "the window's close to end the program")
    ann.reads("bob has become bored with life and left Kelvaron!")
    ann.lists("ann")
    ann.open_menu("Tools", "Quit")
    until(ann.ended, "Quit to end the program")
    assert ann.process.returncode == 0


def menus():
    """Each menu opened, with its entries and their states."""
    Server("data-menus")
    ann = Client("ann")
    ann.log_in("ann")
    expected = {
        ("Tools",): ["Connect", "Disconnect", "File Server", "Config", "Quit"],
        ("Tools", "Config"): ["Configure Games", "Edit Profile"],
        ("Games",): ["Launch CSDOOM Server"],
        ("Radio",): ["Stop", "Stations", "Volume"],
        ("Radio", "Stations"): ["Z100 (Top 40 / Dance)", "KSHE 95 (Rock)", "KWJJ (Country)"],
        ("Help",): ["About Kelvaron", "Request Operator Status", "Operator Commands"],
        ("Help", "Operator Commands"): ["Kick User", "Get users IP"],
    }
    bar = next(n for n in walk(ann.window("Kelvaron 4.1")) if n.getRoleName() == "menu bar")
    shown = [n.name for n in bar if showing(n)]
    assert shown == ["Tools", "Games", "Radio", "Help"], shown
    for path, entries in expected.items():
        ann.open_menu(*path)
        def open_entries():
            menu = [n for n in walk(ann.application())
                    if n.name == entries[0] and showing(n)]
            return [n.name for n in menu[0].parent if showing(n) and n.name] if menu else None
        got = until(open_entries, f"the entries of {path}")
        assert got == entries, (path, got)
        for _ in range(len(path) + 1):
            key("Escape")
            time.sleep(0.05)
    button = ann.find("Kelvaron 4.1", "Return from CS", "push button")
    assert not button.getState().contains(pyatspi.STATE_ENABLED)
    # Everything that a person uses has a name.
    used = ("push button", "text", "list", "check box", "menu", "menu item", "list item")
    for window in ann.windows():
        for node in walk(window):
            if node.getRoleName() in used and showing(node):
                assert node.name, (window.name, node.getRoleName(), "has no name")


def chat_view():
    """Reading back, finding, copying, zooming, pasting."""
    Server("data-view")
    ann = Client("ann")
    ann.log_in("ann")
    bob = Visitor("bob")
    for i in range(80):
        bob.says(f"line {i} of many")
        time.sleep(0.04 if i > 50 else 0)
    ann.reads("line 79 of many")
    view = ann.find("Kelvaron 4.1", "Chat")
    ann.activate("Kelvaron 4.1")

    def top():
        """The first line on the screen."""
        box = view.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        text = view.queryText()
        offset = text.getOffsetAtPoint(box.x + 8, box.y + 8, pyatspi.DESKTOP_COORDS)
        return text.getText(offset, offset + 30).split("\n")[0]

    box = view.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
    x("mousemove", box.x + 200, box.y + 200)
    for _ in range(8):
        x("click", 4)
    time.sleep(0.3)
    before = top()
    bob.says("an arriving line")
    ann.reads("an arriving line")
    time.sleep(0.2)
    assert top() == before, (before, top())

    height = lambda: view.queryText().getCharacterExtents(
        view.queryText().getOffsetAtPoint(box.x + 8, box.y + 40, pyatspi.DESKTOP_COORDS),
        pyatspi.DESKTOP_COORDS)[3]
    small = height()
    x("keydown", "ctrl", "click", 4, "click", 4, "click", 4, "keyup", "ctrl")
    until(lambda: height() > small, "Ctrl+wheel to zoom")

    key("ctrl+f")
    write("line 42 of")
    key("Return")
    found = until(lambda: view.queryText().getNSelections() and view.queryText().getSelection(0),
                  "the match to be selected")
    assert view.queryText().getText(*found) == "line 42 of", found
    key("Escape")

    # Copied text reaches other programs: here, the message line; what the code page lacks is "?".
    x("click", 1)
    key("ctrl+a", "ctrl+c")
    ann.click(ann.find("Kelvaron 4.1", "Message", "text"))
    key("ctrl+v")
    pasted = until(ann.message, "the pasted text")
    assert "bob: line 0 of many bob: line 1 of many" in pasted, pasted[:80]
    key("ctrl+a", "BackSpace")
    write("\u0142\u00e9")
    until(ann.message, "typed letters")


def lost_server():
    """The server goes; the room stays; Connect takes it up again. Then a taken name, and a kick."""
    moderator = ("ann", "ann@example.org", "secret")
    server = Server("data-lost", moderator)
    ann = Client("ann")
    ann.log_in("ann")
    server.stop(signal.SIGKILL)
    ann.reads("* Connection to the server has been lost!")
    ann.enter("kept")
    assert ann.message() == "kept"
    Server("data-lost")
    ann.open_menu("Tools", "Connect")
    ann.close_motd()
    ann.lists("ann")
    ann.activate("Kelvaron 4.1")
    ann.click(ann.find("Kelvaron 4.1", "Message", "text"))
    key("Return")
    ann.reads("ann: kept")

    bob = Client("bob")
    bob.window("Kelvaron Login")
    bob.activate("Kelvaron Login")
    write("ANN")
    key("Return")
    assert "chosen that name" in bob.box("Kelvaron")
    bob.answer("Kelvaron")
    bob.window("Kelvaron Login")
    bob.log_in("bob")
    ann.lists("ann", "bob")

    # A visitor becomes the moderator's hands, as the dialogs for it come later.
    ann.open_menu("Tools", "Quit")
    until(ann.ended, "Quit")
    chief = Visitor("ann")
    chief.send("RequestOP", "ann", "ann@example.org", "secret")
    time.sleep(0.5)
    chief.send("KICK", "bob", "spam")
    words = bob.box("Kicked!")
    assert "by ann" in words and "spam" in words, words
    bob.answer("Kicked!")
    until(bob.ended, "the kicked client to end")


def pictures(folder):
    """The pictures of the documents."""
    os.makedirs(folder, exist_ok=True)
    at = lambda name: os.path.join(folder, name)
    server = Server("data-pictures")
    with open(os.path.join(server.folder, "motd"), "w", encoding="cp1252") as motd:
        motd.write("Welcome to Kelvaron. Tournament on Saturday, 20:00, on the tournament server.\n"
                   "Be kind to newcomers.\n")
    server.stop()
    Server("data-pictures")
    ann = Client("ann")
    ann.window("Kelvaron Login")
    ann.activate("Kelvaron Login")
    write("Marine")
    time.sleep(0.5)
    driver.crop_to(ann.window("Kelvaron Login"), at("login.png"))
    crowd = {name: Visitor(name) for name in
             ("Hellion", "imp_slayer", "Vex", "Romy", "BFG-Nina", "Crusher", "Doomgal")}
    key("Return")
    ann.window("Message Of The Day")
    time.sleep(0.5)
    driver.crop_to(ann.window("Message Of The Day"), at("message_of_the_day.png"))
    ann.close_motd()
    crowd["Romy"].send("INGAME", "Romy")
    crowd["Vex"].send("[CS]", "Vex")
    crowd["Crusher"].send("[AW]", "Crusher")
    time.sleep(0.3)
    talk = (("Hellion", "anyone up for coop on Plutonia?"), ("Doomgal", "always! skill 4?"),
            ("imp_slayer", "count me in, just let me finish my coffee"),
            ("Hellion", "notes are at http://localhost/plutonia.html (map 1 to 11)"))
    for name, text in talk:
        crowd[name].says(text)
        time.sleep(0.15)
    crowd["Doomgal"].send("ACTION", "Doomgal is ready to FRAG")
    time.sleep(0.15)
    ann.enter("give me a minute")
    crowd["Vex"].send("PM", "Marine", "my server has two seats left, join me?", "Vex")
    time.sleep(0.15)
    crowd["BFG-Nina"].says("gg last night, that double kill was unfair :)")
    ann.reads("unfair")
    ann.click(ann.user("Hellion"))
    time.sleep(0.5)
    driver.crop_to(ann.window("Kelvaron 4.1"), at("room.png"))
    ann.click(ann.user("Doomgal"), repeat=2)
    ann.window("Private Message to : Doomgal")
    ann.activate("Private Message to : Doomgal")
    write("shall we take the red base?")
    time.sleep(0.5)
    driver.crop_to(ann.window("Private Message to : Doomgal"), at("private_message.png"))
    key("Escape")
    for name in ("Crusher", "Hellion"):
        ann.activate("Kelvaron 4.1")
        ann.click(ann.find("Kelvaron 4.1", "Message", "text"))
        key("ctrl+a")
        write("/mute " + name)
        key("Return")
        ann.window("Kelvaron")
        if name == "Crusher":
            time.sleep(0.3)
            driver.crop_to(ann.window("Kelvaron"), at("box.png"))
        ann.answer("Kelvaron")
    ann.window("People you have Muted")
    ann.activate("People you have Muted")
    time.sleep(0.5)
    driver.crop_to(ann.window("People you have Muted"), at("mute_list.png"))


def main(arguments):
    if arguments[:1] == ["--pictures"]:
        scenarios = [lambda: pictures(arguments[1])]
        scenarios[0].__name__ = "pictures"
    else:
        scenarios = [login_refusals, no_server, two_players, menus, chat_view, lost_server]
        if arguments:
            scenarios = [s for s in scenarios if s.__name__ in arguments]
    failed = 0
    for scenario in scenarios:
        begun = time.monotonic()
        try:
            scenario()
            print(f"ok      {scenario.__name__} ({time.monotonic() - begun:.1f} s)", flush=True)
        except Exception:
            failed += 1
            shot = os.path.join("/tmp", f"kelvaron-driven-{scenario.__name__}.png")
            driver.picture(shot)
            print(f"FAILED  {scenario.__name__}: the screen is in {shot}", flush=True)
            traceback.print_exc()
        finally:
            Program.stop_all()
    print(f"{len(scenarios) - failed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
