"""The menu bar, and the names that a screen reader tells."""

import time

from desk import enabled, key, showing, until, walk
from driver import LOGIN, ROOM, Client, Server, Visitor
from game_setup import (CHOICE, CONFIGURATION, FIRST_WAITING, IN_GAME, LAST_LOOK, OFFER, Engine,
                        configure, folder_for_games)

MENUS = {
    ("Tools",): ["Connect", "Disconnect", "File Server", "Config", "Quit"],
    ("Tools", "Config"): ["Configure Games", "Edit Profile"],
    ("Games",): ["Launch CSDOOM Server"],
    ("Radio",): ["Stop", "Stations", "Volume"],
    ("Radio", "Stations"): ["Z100 (Top 40 / Dance)", "KSHE 95 (Rock)", "KWJJ (Country)"],
    ("Help",): ["About Kelvaron", "Request Operator Status", "Operator Commands"],
    ("Help", "Operator Commands"): ["Kick User", "Get users IP"],
}
USED = ("push button", "text", "list", "check box", "radio button", "combo box", "menu",
        "menu item", "list item", "slider")
# No two of a window have the same name.
SINGLE = ("push button", "text", "check box", "combo box")


def every_menu():
    """Each menu and submenu opened: what is there and can be chosen, and nothing else."""
    Server("data-menus")
    ann = Client("ann")
    ann.log_in("ann")
    bar = next(n for n in walk(ann.window(ROOM)) if n.getRoleName() == "menu bar")
    shown = [n.name for n in bar if showing(n)]
    assert shown == ["Tools", "Games", "Radio", "Help"], shown
    for path, names in MENUS.items():
        ann.open_menu(*path)
        first = ann.menu_entry(names[0])
        entries = [n for n in first.parent if showing(n) and n.name]
        assert [n.name for n in entries] == names, (path, [n.name for n in entries])
        assert all(enabled(n) for n in entries), path
        for _ in path:
            key("Escape")
            time.sleep(0.05)
        until(lambda: not showing(first), f"the menu {path} to close")
    assert not enabled(ann.find(ROOM, "Return from CS", "push button"))
    assert enabled(ann.find(ROOM, "Request A Game", "push button"))


def assert_named(client, *titles):
    for title in titles:
        told = set()
        for node in walk(client.window(title)):
            role = node.getRoleName()
            if role not in USED or not showing(node):
                continue
            assert node.name, f"a {role} of {title!r} has no name"
            assert role not in SINGLE or (role, node.name) not in told, (title, role, node.name)
            told.add((role, node.name))


def named_widgets():
    """Everything that a person uses has a name, in each window."""
    Server("data-named")
    ann = Client("ann")
    assert_named(ann, LOGIN)
    ann.log_in("ann")
    ann.click(ann.user("ann"), repeat=2)
    ann.window("Private Message to : ann")
    ann.enter("/mute bob")
    ann.answer("Kelvaron")
    ann.activate(ROOM)
    ann.click(ann.find(ROOM, "Chat"))
    key("ctrl+f")
    ann.find(ROOM, "Find")
    assert_named(ann, ROOM, "Private Message to : ann", "People you have Muted")


def named_game_widgets():
    """The same for the forms of games."""
    Server("data-named-games")
    ann, bob = Client("ann"), Visitor("bob")
    games = folder_for_games("named games")
    engine = Engine(games, "zdoom.exe")
    configure(ann, zdoom=engine.path, doom2=engine.path)
    ann.log_in("ann")
    ann.open_menu("Tools", "Config", "Configure Games")
    assert_named(ann, CONFIGURATION)
    key("Escape")
    ann.select("bob")
    ann.press(ROOM, "Request A Game")
    ann.tick(CHOICE, "Zdoom / DOOM2")
    assert_named(ann, CHOICE)
    ann.press(CHOICE, "Send Request")
    ann.window(FIRST_WAITING)
    assert_named(ann, FIRST_WAITING)
    bob.send("GAME", "1", "ann", "zdoom2", "NONE", "NONE", "", "127.0.0.1", "bob")
    ann.window(OFFER)
    assert_named(ann, OFFER)
    bob.send("START", "ann")
    ann.tick(LAST_LOOK, "Record a Demo")
    assert_named(ann, LAST_LOOK)
    ann.press(LAST_LOOK, "OK")
    ann.window(IN_GAME)
    assert_named(ann, IN_GAME)


SCENARIOS = [every_menu, named_widgets, named_game_widgets]
