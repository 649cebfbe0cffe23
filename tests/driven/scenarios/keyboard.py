"""The main jobs without a mouse, and how many keys each takes beside the words that are typed."""

import os
import pathlib
import time

from desk import has, key, until, write
from driver import LOGIN, MOTD, ROOM, Client, Server
from game_setup import (CHOICE, FIRST_WAITING, IN_GAME, LAST_LOOK, OFFER, Engine, configure,
                        folder_for_games)

import pyatspi

SEND = "Kelvaron File Send"
# What each job may take.
MOST = {"log in": 1, "talk": 1, "put the message away": 2, "private message": 4, "offer a game": 7, "accept": 6,
        "send a file": 8}


class Hands:
    """Presses keys, and counts them by the job at work."""

    def __init__(self, client):
        self.client = client
        self.counts = {job: 0 for job in MOST}

    def press(self, *names):
        for name in names:
            key(name)
            self.counts[self.job] += 1
            time.sleep(0.15)

    def at(self, window, name=None):
        """The keyboard is in a window, at a widget, with no help of the mouse."""
        until(lambda: has(self.client.window(window), pyatspi.STATE_ACTIVE),
              f"the keyboard in {window!r}")
        if name is not None:
            self.client.has_focus(window, name)

    def to_newest(self, window):
        """To what came by itself and left the keyboard where it was."""
        self.client.window(window)
        self.press("F6")
        self.at(window)

    def user(self, name):
        """From the input line, where each job begins."""
        self.at(ROOM)
        if not has(self.client.find(ROOM, "Message", "text"), pyatspi.STATE_FOCUSED):
            key("shift+Tab")
        self.at(ROOM, "Message")
        self.press("Tab")
        write(name)
        until(lambda: has(self.client.user(name), pyatspi.STATE_SELECTED), f"{name} to be selected")


def jobs():
    """Log in, talk, a private message, a game offered and accepted, a file."""
    Server("data-keys")
    games = folder_for_games("games by keyboard")
    engine, doom2 = Engine(games, "zdoom.exe"), os.path.join(games, "doom2.wad")
    pathlib.Path(doom2).write_bytes(b"PWAD" + bytes(8))
    ann, bob = Client("ann"), Client("bob")
    for player in (ann, bob):
        player.window(LOGIN)
        configure(player, zdoom=engine.path, doom2=doom2)
    bob.log_in("bob")

    hands = Hands(ann)
    hands.job = "log in"
    ann.activate(LOGIN)
    write("ann")
    hands.press("Return")
    ann.lists("ann", "bob")
    ann.window(MOTD)
    # What is typed at once is for the room: no button of the message takes its blanks.
    hands.at(ROOM, "Message")
    write("hello to all")
    key("Return")
    bob.reads("ann: hello to all")
    hands.job = "put the message away"
    hands.to_newest(MOTD)
    hands.press("Return")

    hands.job = "talk"
    hands.at(ROOM, "Message")
    write("hello")
    hands.press("Return")
    bob.reads("ann: hello")

    hands.job = "private message"
    hands.user("bob")
    hands.press("Return")
    hands.at("Private Message to : bob", "Private message")
    write("just you")
    hands.press("Tab", "space")
    bob.reads("Private Message From ann: just you")

    hands.job = "send a file"
    path, content = os.path.join(games, "a file.wad"), os.urandom(5000)
    pathlib.Path(path).write_bytes(content)
    bob.open_menu("Tools", "File Server")
    bob.window("Kelvaron File Server")
    ann.activate(ROOM)
    hands.user("bob")
    hands.press("Menu", "s")
    hands.at(SEND)
    hands.press("Tab", "space")
    hands.at("Open")
    write(path)
    hands.press("Return", "Tab", "Return")
    copy = pathlib.Path(bob.folder, "received", "a file.wad")
    until(lambda: copy.read_bytes() == content, "the file")
    key("Escape")
    ann.no_window(SEND)

    hands.job = "offer a game"
    hands.user("bob")
    hands.press("Tab", "space")
    hands.at(CHOICE)
    hands.press("space", "Return")
    hands.at(FIRST_WAITING)
    key("Tab")  # no button that starts had the keyboard
    bob.activate(ROOM)

    guest = Hands(bob)
    guest.job = "accept"
    guest.to_newest(OFFER)
    guest.press("Return")
    ann.shows(FIRST_WAITING, "Player 1 accepted", "lit")
    ann.activate(FIRST_WAITING)
    key("Tab")
    ann.has_focus(FIRST_WAITING, "GO")
    key("space")
    ann.window(IN_GAME)
    arguments = engine.arguments()
    assert arguments == ["-IWAD", doom2, "-host", "2"], arguments
    bob.activate(ROOM)
    guest.to_newest(LAST_LOOK)
    guest.press("Tab", "space")
    bob.window(IN_GAME)
    arguments = engine.arguments()
    assert arguments[:4] == ["-iwad", doom2, "-join", "127.0.0.1"], arguments

    taken = {job: hands.counts[job] + guest.counts[job] for job in MOST}
    print("    keys:", ", ".join(f"{job} {count}" for job, count in taken.items()), flush=True)
    assert all(0 < taken[job] <= most for job, most in MOST.items()), taken


SCENARIOS = [jobs]
