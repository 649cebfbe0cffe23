"""Engines that record how they were started, and configurations that lead to them."""

import os

from desk import until
from driver import BIN, ROOM, WORK

RECORDING_ENGINE = os.path.abspath(
    os.environ.get("KELVARON_RECORDING_ENGINE", os.path.join(BIN, "../tests/recording_engine")))

CONFIGURATION = "Configure Kelvaron"
CHOICE = "Request a Game"
# The form that waits for guests has the application's title until it was used once.
FIRST_WAITING = ("Kelvaron", "GO")
WAITING = "Awaiting Verification"
OFFER = "Game Request"
LAST_LOOK = "Final chance to decline a game."
IN_GAME = "Game Launch in Progress"
BOX = ("Kelvaron", "OK")

# In the order of the file.
RECORDS = ("zdoom", "gl_zdoom", "doom", "doom2", "final_doom", "plutonia", "evilution", "wads",
           "more_wads", "cs_server", "cs_client")


def folder_for_games(name):
    folder = os.path.join(WORK, name)
    os.makedirs(folder)
    return folder


def game_file(folder, name):
    path = os.path.join(folder, name)
    with open(path, "wb") as file:
        file.write(b"PWAD" + bytes(8))
    return path


def config_text(**records):
    assert set(records) <= set(RECORDS), records
    return "".join(records.get(name, "") + "\r\n" for name in RECORDS).encode("cp1252")


def config_file(client):
    return os.path.join(client.folder, "kvconfig.cfg")


def configure(client, **records):
    with open(config_file(client), "wb") as file:
        file.write(config_text(**records))


class Engine:
    """A program that writes down its arguments and then does what its plan says."""

    def __init__(self, folder, name, plan=()):
        self.path = os.path.join(folder, name)
        os.symlink(RECORDING_ENGINE, self.path)
        self.plan(*plan)

    def plan(self, *steps):
        with open(self.path + ".plan", "w", encoding="utf-8") as file:
            file.writelines(step + "\n" for step in steps)

    def was_started(self):
        return os.path.exists(self.path + ".started")

    def arguments(self):
        """Waits for its start; the next start is a new one."""
        until(self.was_started, f"{self.path} to be started")
        with open(self.path + ".started", encoding="utf-8") as file:
            lines = file.read().splitlines()
        os.remove(self.path + ".started")
        return lines[5:]

def in_game(player, others):
    """The player's side and the others' lists while in the game."""
    player.window(IN_GAME)
    player.shows(ROOM, "Status", "In a Game")
    name = player.name
    for other in others:
        until(lambda: name + "[IG]" in other.users(), f"{name} to be marked")


def resumes(player, others, at="Resume"):
    """Back by the button, or by a click on the form."""
    player.activate(IN_GAME)
    player.click(player.find(IN_GAME, at))
    player.no_window(IN_GAME)
    player.shows(ROOM, "Status", "Ready to Play")
    for other in others:
        until(lambda: player.name in other.users(), f"the mark of {player.name} to go")
