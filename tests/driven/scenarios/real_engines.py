"""The same road with a real game: two clients, two engines, one match."""

import contextlib
import os
import pathlib
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
        self.folder = pathlib.Path(WORK, name)
        self.folder.mkdir()
        program = self.folder / "zdoom.exe"
        self.path = str(program)
        adapter = os.path.abspath(os.path.join(BIN, "engines/zdoom.exe"))
        program.write_text("#!/bin/sh\n"
                           f"cd {quote(str(self.folder))} && echo $$ >pid\n"
                           f"exec stdbuf -oL {quote(adapter)} \"$@\" >printed 2>&1\n")
        program.chmod(0o755)

    def says(self, text, patience):
        printed = self.folder / "printed"
        said = lambda: printed.exists() and printed.read_text("utf-8", "replace")
        until(lambda: text in said(), lambda: f"{text!r} in {printed}: {said()}", patience)

    def signal(self, number):
        os.kill(int((self.folder / "pid").read_text()), number)

    def stop(self, _how=None):
        """As the programs of the test end with it; an engine outlives its client."""
        with contextlib.suppress(OSError):
            self.signal(9)


def start_game(host, guest):
    """Up to both engines in one match."""
    folder = pathlib.Path(WORK, "chocolate-doom")
    folder.mkdir(exist_ok=True)
    for name in ("default.cfg", "chocolate-doom.cfg"):
        (folder / name).write_text(GAME_WINDOW)
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
        engine.signal(0)  # still runs


SCENARIOS = [real_engines]
