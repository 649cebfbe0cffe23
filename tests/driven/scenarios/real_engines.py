"""The real game: a match of two clients, and its server and players by the adapters alone."""

import contextlib
import os
import pathlib
import re
import shutil
import subprocess
import time
from shlex import quote

from desk import until, x
from driver import BIN, QUIET, ROOM, WORK, Program, two_players
from game_setup import CHOICE, FIRST_WAITING, IN_GAME, LAST_LOOK, OFFER, configure

GAME_DATA = "/usr/share/games/doom/freedoom2.wad"
GAME_PATH = os.environ["PATH"] + ":/usr/games"
LINKER = os.path.join(os.path.dirname(__file__), "../../../engines/link_game_data.sh")
# Small windows, so that the clients can be worked beside the game.
GAME_WINDOW = "fullscreen 0\nwindow_width 640\nwindow_height 480\ngrabmouse 0\n"


class Skipped(Exception):
    """What the scenario needs is not installed."""


def needs_game():
    for program in ("chocolate-doom", "chocolate-server"):
        if not shutil.which(program, path=GAME_PATH):
            raise Skipped(program + " is not installed")
    if not os.access(GAME_DATA, os.R_OK):
        raise Skipped("the game data of the package freedoom are not installed")


class RealEngine:
    """An adapter, whose output is kept for the eyes of the test."""

    def __init__(self, name, adapter="zdoom.exe"):
        self.folder = pathlib.Path(WORK, name)
        # A copy of the programs runs from anywhere.
        shutil.copytree(os.path.join(BIN, "engines"), self.folder / "my engines")
        program = self.folder / adapter
        self.path = str(program)
        adapter = str(self.folder / "my engines" / adapter)
        Program.running.append(self)
        program.write_text("#!/bin/sh\n"
                           f"cd {quote(str(self.folder))} && echo $$ >pid\n"
                           f"exec stdbuf -oL {quote(adapter)} \"$@\" >printed 2>&1\n")
        program.chmod(0o755)

    def says(self, text, patience):
        printed = self.folder / "printed"
        said = lambda: printed.exists() and printed.read_text("utf-8", "replace")
        until(lambda: re.search(text, said()), lambda: f"{text!r} in {printed}: {said()}", patience)

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


def started(name, adapter, *words):
    engine = RealEngine(name, adapter)
    engine.process = subprocess.Popen([engine.path, *words], env=QUIET, stdin=subprocess.DEVNULL)
    return engine


def real_server():
    """One plays alone; then a server that stays, and its players."""
    wads = os.path.join(WORK, "my wads")
    subprocess.run([LINKER, wads], check=True, capture_output=True)
    single = started("single", "zdoom.exe", "-iwad", wads + "/DOOM.WAD", "-nosfx", "-nomusic",
                     "-warp", "23", "-host", "1")
    single.says("player 1 of 1", 40)
    single.says("startmap: 3  startepisode: 2", 5)
    single.stop()
    single.process.wait(10)  # which has the game's port
    started("server", "doomsv.exe")
    players = [started(name, "doomcl.exe", "-connect", "127.0.0.1") for name in ("first", "second")]
    query = [shutil.which("chocolate-doom", path=GAME_PATH), "-nogui", "-query", "127.0.0.1"]
    until(lambda: re.search(r" 2/[48]", subprocess.check_output(query, env=QUIET, text=True)),
          "the server to have both", 40)

    def begins():
        # Whoever came first starts the game in the waiting window, which the other lacks.
        for window in x("search", "--onlyvisible", "--class", "chocolate").split():
            x("windowfocus", "--sync", window, "key", "space")
        players[0].says("player [12] of 2", 0.5)
        return True

    until(begins, "the game to begin", 20)
    players[1].says("player [12] of 2", 10)
    for each in players:
        each.signal(0)  # still runs


SCENARIOS = [real_engines, real_server]
