"""Login, talk and a game by what the accessibility bus offers: roles, names and their actions."""

import os
import pathlib

import pyatspi

from desk import has, key, until, walk
from driver import LOGIN, MOTD, ROOM, Client, Server
from game_setup import (CHOICE, FIRST_WAITING, IN_GAME, LAST_LOOK, OFFER, Engine, configure,
                        folder_for_games)


def act(client, window, name, role="push button"):
    """Does the first thing that a widget offers to do."""
    client.find(window, name, role).queryAction().doAction(0)


def fill(client, window, name, text):
    client.find(window, name, "text").queryEditableText().setTextContents(text)
    client.holds(window, name, text)


def by_bus():
    """Login, talk and a game through the accessibility bus alone."""
    Server("data-bus")
    games = folder_for_games("games by bus")
    engine, doom2 = Engine(games, "zdoom.exe"), os.path.join(games, "doom2.wad")
    pathlib.Path(doom2).write_bytes(b"PWAD" + bytes(8))
    ann, bob = Client("ann"), Client("bob")
    for player, name in ((ann, "ann"), (bob, "bob")):
        player.window(LOGIN)
        configure(player, zdoom=engine.path, doom2=doom2)
        assert player.window(LOGIN).getRoleName() == "dialog"
        fill(player, LOGIN, "User Name:", name)
        act(player, LOGIN, "Login")
        assert player.window(MOTD).getRoleName() == "dialog"
        act(player, MOTD, "OK")
        player.no_window(MOTD)
        role = player.window(ROOM).getRoleName()
        assert role == "frame", role
    for player in (ann, bob):
        player.lists("ann", "bob")
    # What the chat is drawn on can't be mistaken for a place of the keyboard.
    chat = ann.find(ROOM, "Chat", "text")
    assert not any(has(node, pyatspi.STATE_FOCUSABLE) for node in walk(chat)
                   if node != chat and node.getRoleName() == "filler")

    fill(ann, ROOM, "Message", "hello")
    ann.activate(ROOM)
    ann.find(ROOM, "Message", "text").queryComponent().grabFocus()
    key("Return")  # sending is no action of a text
    bob.reads("ann: hello")

    actions = ann.user("bob").queryAction()
    names = [actions.getName(i) for i in range(actions.nActions)]
    actions.doAction(names.index("Toggle"))
    until(lambda: has(ann.user("bob"), pyatspi.STATE_SELECTED), "bob to be selected")
    act(ann, ROOM, "Request A Game")
    act(ann, CHOICE, "Zdoom / DOOM2", "check box")
    act(ann, CHOICE, "Send Request")
    assert bob.window(OFFER).getRoleName() == "dialog"
    act(bob, OFFER, "Accept")
    ann.shows(FIRST_WAITING, "Player 1 accepted", "lit")
    act(ann, FIRST_WAITING, "GO")
    ann.window(IN_GAME)
    assert engine.arguments() == ["-IWAD", doom2, "-host", "2"]
    act(bob, LAST_LOOK, "OK")
    bob.window(IN_GAME)
    arguments = engine.arguments()
    assert arguments[:4] == ["-iwad", doom2, "-join", "127.0.0.1"], arguments


SCENARIOS = [by_bus]
