"""The same road with a real game: two clients, two engines, one match."""

import os
import shutil
import subprocess
import time
from shlex import quote

from desk import until
from driver import BIN, ROOM, WORK, Program, two_players
from game_setup import CHOICE, FIRST_WAITING, IN_GAME, LAST_LOOK, OFFER, configure

GAME_DATA = "/usr/share/games/doom/freedoom2.wad"
LINKER = os.path.join(os.path.dirname(__file__), "../../../engines/link_game_data.sh")
# Small windows, so that the clients can be worked beside the game.
GAME_WINDOW = "fullscreen 0\nwindow_width 640\nwindow_height 480\ngrabmouse 0\n"


class Skipped(Exception):
    """What the scenario needs is not installed."""


def needs_game():
    for program in ("chocolate-doom", "chocolate-server"):
        if not shutil.which(program, path=os.environ["PATH"] + ":/usr/games"):
            raise Skipped(program + " is not installed")
    if not os.access(GAME_DATA, os.R_OK):
        raise Skipped("the game data of the package freedoom are not installed")


class RealEngine:
    """The adapter, whose output is kept for the eyes of the test."""

    def __init__(self, name):
        self.folder = os.path.join(WORK, name)
        os.mkdir(self.folder)
        self.path = os.path.join(self.folder, "zdoom.exe")
        self.printed = os.path.join(self.folder, "printed")
        adapter = os.path.abspath(os.path.join(BIN, "engines/zdoom.exe"))
        with open(self.path, "w", encoding="utf-8") as file:
            file.write("#!/bin/sh\n"
                       f"cd {quote(self.folder)} && echo $$ >pid\n"
                       f"exec stdbuf -oL {quote(adapter)} \"$@\" >printed 2>&1\n")
        os.chmod(self.path, 0o755)

    def said(self):
        try:
            with open(self.printed, encoding="utf-8", errors="replace") as file:
                return file.read()
        except OSError:
            return ""

    def says(self, text, patience):
        until(lambda: text in self.said(),
              lambda: f"{text!r} from {self.path}: {self.said()[-600:]}", patience)

    def pid(self):
        with open(os.path.join(self.folder, "pid"), encoding="utf-8") as file:
            return int(file.read())

    def stop(self, how=None):
        """As the programs of the test end with it; an engine outlives its client."""
        try:
            os.kill(self.pid(), 9)
        except OSError:
            pass


def set_game_up():
    folder = os.path.join(WORK, "chocolate-doom")
    os.makedirs(folder, exist_ok=True)
    for name in ("default.cfg", "chocolate-doom.cfg"):
        with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
            file.write(GAME_WINDOW)


def start_game(host, guest):
    """Up to both engines in one match."""
    set_game_up()
    engines = {}
    for player in (host, guest):
        engine = engines[player] = RealEngine(player.name + "'s engine")
        Program.running.append(engine)
        wads = os.path.join(engine.folder, "wads")
        subprocess.run([LINKER, wads], check=True, capture_output=True)
        configure(player, zdoom=engine.path, doom2=os.path.join(wads, "DOOM2.WAD"))
    host.select(guest.name)
    host.press(ROOM, "Request A Game")
    host.activate(CHOICE)
    host.tick(CHOICE, "Zdoom / DOOM2", "No Monsters", "No Music", "No SFX",
              "Deathmatch")
    host.choose(CHOICE, "Skill", "4")
    host.choose(CHOICE, "Warp to Level", "07")
    host.press(CHOICE, "Send Request")
    guest.press(OFFER, "Accept")
    host.shows(FIRST_WAITING, "Player 1 accepted", "lit")
    host.press(FIRST_WAITING, "GO")
    def left():
        if guest.has_window(LAST_LOOK):
            guest.press(LAST_LOOK, "OK")
            time.sleep(0.5)
        return not guest.has_window(LAST_LOOK)
    guest.window(LAST_LOOK)
    # The host's game may come up under the mouse: who missed clicks again.
    until(left, "the last look to be left", 20)
    engines[host].says("player 1 of 2", 40)
    engines[guest].says("player 2 of 2", 20)
    return engines


def real_engines():
    """Both engines are in one match, with the host's choices, and outlive the way back."""
    ann, bob = two_players("data-real")
    engines = start_game(ann, bob)
    for engine in engines.values():
        engine.says("startskill 3  deathmatch: 1  startmap: 7  startepisode: 1", 10)
    for player in (ann, bob):
        player.press(IN_GAME, "Resume")
        player.no_window(IN_GAME)
    for engine in engines.values():
        os.kill(engine.pid(), 0)  # still runs


SCENARIOS = [real_engines]
