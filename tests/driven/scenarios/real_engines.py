"""The real games: matches of two and of seven clients, and a server that players join and leave."""

import contextlib
import os
import pathlib
import re
import shutil
import subprocess
import time
from shlex import quote

from desk import picture, until, x
from driver import BIN, LOGIN, QUIET, ROOM, WORK, Client, Program, Server, two_players
from game_setup import (CHOICE, FIRST_WAITING, IN_GAME, LAST_LOOK, OFFER, RECORDING_ENGINE,
                        configure)

GAME_DATA = "/usr/share/games/doom/freedoom2.wad"
GAME_PATH = os.environ["PATH"] + ":/usr/games"
LINKER = os.path.join(os.path.dirname(__file__), "../../../engines/link_game_data.sh")
# Seven games drawn without a graphics card are too much for two cores.
AT_ONCE = int(os.environ.get("KELVARON_GAMES_AT_ONCE", 4))
# Small windows, so that the clients can be worked beside the game.
SMALL = " -width 240 -height 180"
GAME_WINDOW = "fullscreen 0\nwindow_width 640\nwindow_height 480\ngrabmouse 0\n"


class Skipped(Exception):
    """What the scenario needs is not installed."""


def needs_game():
    for program in ("chocolate-doom", "crispy-doom", "doomsday", "doomsday-server"):
        if not shutil.which(program, path=GAME_PATH):
            raise Skipped(program + " is not installed")
    if not os.access(GAME_DATA, os.R_OK):
        raise Skipped("the game data of the package freedoom are not installed")


class RealEngine:
    """An adapter, whose output is kept for the eyes of the test."""

    def __init__(self, name, adapter="zdoom.exe", only=None, records=False, user=WORK):
        """`only` is the one game that it finds; one that `records` only writes down its start."""
        self.folder = pathlib.Path(WORK, name)
        # A copy of the programs runs from anywhere.
        shutil.copytree(os.path.join(BIN, "engines"), self.folder / "my engines")
        program = self.folder / adapter
        self.path = str(program)
        adapter = str(self.folder / "my engines" / adapter)
        Program.running.append(self)
        variables = f"LIBGL_ALWAYS_SOFTWARE=1 LP_NUM_THREADS=1 XDG_DATA_HOME={quote(str(user))}"
        if only:
            variables += f" KELVARON_GAMES={quote(str(self.folder))}"
            os.symlink(RECORDING_ENGINE if records else shutil.which(only, path=GAME_PATH),
                       self.folder / only)
        program.write_text("#!/bin/bash\n"
                           f"cd {quote(str(self.folder))} && echo $$ >pid\n"
                           f"exec env {variables} stdbuf -oL {quote(adapter)} \"$@\" > >(tee printed) 2>&1\n")
        program.chmod(0o755)

    def says(self, text, patience):
        """Fails once the engine has printed nothing for so long: a busy machine only loads slowly."""
        printed = self.folder / "printed"
        said, end = "", time.monotonic() + patience
        while not re.search(text, said):
            last, said = said, printed.read_text("utf-8", "replace") if printed.exists() else ""
            if said != last:
                end = time.monotonic() + patience
            elif time.monotonic() > end:
                raise AssertionError(f"waited in vain: {text!r} in {printed}: {said[-500:]}")
            time.sleep(0.03)

    def process_id(self):
        return int((self.folder / "pid").read_text())

    def signal(self, number):
        os.kill(self.process_id(), number)

    def loses_its_host(self):
        self.says("the host has ended the game", 40)
        self.ends()

    def ends(self):
        def ended():
            status = pathlib.Path(f"/proc/{self.process_id()}/stat")
            return not status.exists() or status.read_text().rpartition(")")[2].split()[0] == "Z"
        until(ended, f"the end of {self.path}", 20)

    def started(self):
        """The processes that the adapter has started: a game, or a server and a game."""
        mine = self.process_id()
        children = pathlib.Path(f"/proc/{mine}/task/{mine}/children").read_text().split()
        return [child for child in children
                if pathlib.Path(f"/proc/{child}/comm").read_text() != "tee\n"]

    def resident(self):
        return sum(resident(process) for process in self.started())

    def stop(self, _how=None):
        """As the programs of the test end with it; an engine outlives its client."""
        with contextlib.suppress(OSError):
            self.signal(9)


def resident(process):
    """MiB."""
    return int(re.search(r"VmRSS:\s+(\d+)",
                         pathlib.Path(f"/proc/{process}/status").read_text())[1]) // 1024


def linked(folder):
    wads = os.path.join(folder, "wads")
    subprocess.run([LINKER, wads], check=True, capture_output=True)
    return os.path.join(wads, "DOOM2.WAD")


def request(host, guests, game):
    """Up to GO: an offer that all accept."""
    host.activate(ROOM)
    x("keydown", "ctrl")
    for guest in guests:
        host.click(host.user(guest.name))
    x("keyup", "ctrl")
    host.press(ROOM, "Request A Game")
    host.activate(CHOICE)
    host.tick(CHOICE, game, "No Monsters", "No Music", "No SFX", "Deathmatch")
    host.choose(CHOICE, "Skill", "4")
    # The list has levels for one game only, but any can be typed.
    host.type_in(CHOICE, "Warp to Level", "07", "combo box")
    host.press(CHOICE, "Send Request")
    for number, guest in enumerate(guests, 1):
        guest.press(OFFER, "Accept")
        host.shows(FIRST_WAITING, f"Player {number} accepted", "lit")
    host.press(FIRST_WAITING, "GO")


def leave(player, window, button):
    """A game may come up under the mouse: who missed presses again."""
    def left():
        if player.has_window(window):
            player.press(window, button)
            time.sleep(0.5)
        return not player.has_window(window)
    player.window(window)
    until(left, f"the window {window!r} to be left", 20)


def start_game(host, guest, only="chocolate-doom"):
    """Up to both engines in one match."""
    folder = pathlib.Path(WORK, only)
    folder.mkdir(exist_ok=True)
    for name in ("default.cfg", only + ".cfg"):
        (folder / name).write_text(GAME_WINDOW)
    engines = {}
    for player in (host, guest):
        engine = engines[player] = RealEngine(f"{only} of {player.name}", only=only)
        configure(player, zdoom=engine.path, doom2=linked(engine.folder))
    request(host, [guest], "Zdoom / DOOM2")
    begun = time.monotonic()
    leave(guest, LAST_LOOK, "OK")
    engines[host].says("player 1 of 2", 40)
    engines[guest].says("player 2 of 2", 20)
    tell(only, begun, engines)
    return engines


def tell(name, begun, engines):
    """The figures of docs/performance.md, and KELVARON_LOOK seconds for whoever looks at the games."""
    clients = max(resident(player.process.pid) for player in engines)
    print(f"        {name}: {time.monotonic() - begun:.1f} s from GO until all are in the map, "
          f"engines {[engine.resident() for engine in engines.values()]} MiB, "
          f"a client {clients} MiB", flush=True)
    time.sleep(float(os.environ.get("KELVARON_LOOK", 0)))


def match(only):
    """Both engines are in one match, with the host's choices, and outlive the way back."""
    ann, bob = two_players("data-" + only)
    engines = start_game(ann, bob, only)
    for engine in engines.values():
        engine.says("startskill 3  deathmatch: 1  startmap: 7  startepisode: 1", 10)
    for player in (ann, bob):
        leave(player, IN_GAME, "Resume")
    for engine in engines.values():
        engine.signal(0)  # still runs
    # A game whose host has gone ends, and says so.
    engines[ann].signal(15)
    engines[bob].loses_its_host()
    bob.answer(("Kelvaron", "OK"), "ended with the error 69")


def real_engines():
    match("chocolate-doom")


def real_crispy():
    match("crispy-doom")


def real_seven():
    """A host and six guests are in one map, and go back to the room when the host's game ends."""
    Server("data-seven")
    players = [Client(f"marine{number}") for number in range(1, 8)]
    for player in players:
        player.window(LOGIN)
    for player in players:
        player.log_in(player.folder.rpartition("-")[2])
    host, *guests = players
    host.lists(*(player.name for player in players))
    engines = {}
    for number, player in enumerate(players, 1):
        records = number > AT_ONCE
        engine = engines[player] = RealEngine(f"doomsday of {player.name}", "zdoomgl.exe",
                                              "doomsday" if records else None, records)
        configure(player, gl_zdoom=engine.path + SMALL,
                  doom2=linked(engine.folder))
    request(host, guests, "ZGLdoom / DOOM2")
    begun = time.monotonic()
    play = dict(list(engines.items())[:AT_ONCE])
    for player in players:
        if player is not host:
            leave(player, LAST_LOOK, "OK")
        if player in play:
            engines[player].says("Arrived in netgame", 60)
            engines[player].says(r"Map: .*MAP07", 60)
        else:
            started = engines[player].folder / "doomsday.started"
            until(started.exists, f"the start of {started}", 20)
            assert started.read_text().endswith("-connect\n127.0.0.1:13209\n"), started.read_text()
    engines[guests[0]].says("skillmode: 3 monsters: no", 5)
    tell("Doomsday", begun, play)
    engines[host].signal(15)
    for guest in guests:
        if guest in play:
            engines[guest].loses_its_host()
            guest.answer(("Kelvaron", "OK"), "ended with the error 69")
        leave(guest, IN_GAME, "Resume")
    leave(host, IN_GAME, "Resume")
    host.lists(*(player.name for player in players))


def joins(player, host):
    player.activate(ROOM)
    player.click(player.user(host))
    player.click(player.user(host), button=3)
    player.click(player.menu_entry("Join CSDOOM Game"))


def comes_into_the_map(player, host, game):
    """A busy machine can keep the engine from its first map; whoever sees that joins once more."""
    for last in (False, True):
        joins(player, host)
        game.says("Arrived in netgame", 40)
        try:
            return game.says(r"Map: .*MAP01", 60)
        except AssertionError as why:
            if last:
                raise
            print("        once more:", why, flush=True)
            game.signal(15)
            game.ends()
            leave(player, IN_GAME, "Resume")


def real_server():
    """A server that one hosts, two join one after the other, one leaves, and its host ends."""
    Server("data-server")
    players = [Client(name) for name in ("ann", "bob", "cid")]
    for player in players:
        player.window(LOGIN)
    server = RealEngine("server", "doomsv.exe")
    games = {}
    for player in players:
        player.log_in(player.folder.rpartition("-")[2])
        game = games[player] = RealEngine(f"server's of {player.name}", "doomcl.exe")
        configure(player, cs_server=server.path,
                  cs_client=game.path + SMALL + " -nosfx -nomusic")
    ann, *guests = players
    ann.open_menu("Games", "Launch CSDOOM Server")
    games[ann].says("Arrived in netgame", 40)
    for guest in guests:
        guest.lists("ann[CS]", *(f"{g.name}[IG]" for g in guests[:guests.index(guest)]),
                    *(g.name for g in guests[guests.index(guest):]))
        comes_into_the_map(guest, "ann[CS]", games[guest])
    bob, cid = guests
    games[bob].signal(15)
    games[bob].ends()
    server.says(r"has left, was connected", 20)
    leave(bob, IN_GAME, "Resume")
    games[cid].signal(0)  # still runs
    ann.press(ROOM, "Return from CS")
    server.ends()
    for player in (cid, ann):
        games[player].loses_its_host()
        player.answer(("Kelvaron", "OK"), "ended with the error 69")
    leave(cid, IN_GAME, "Resume")
    ann.lists("ann", "bob", "cid")


def real_troubles():
    """What keeps players from a game is told in a box, and the room is as it was."""
    ann, bob = two_players("data-troubles")

    def told(player, *words):
        player.box(("Kelvaron", "OK"))
        if folder := os.environ.get("KELVARON_PICTURES"):
            picture(os.path.join(folder, words[-1].replace(" ", "_") + ".png"))
        player.answer(("Kelvaron", "OK"), *words)

    def serve(player, name, **how):
        server = RealEngine(name, "doomsv.exe", **how)
        game = RealEngine("game beside " + name, "doomcl.exe", user=server.folder)
        configure(player, cs_server=server.path, cs_client=game.path + SMALL)
        player.open_menu("Games", "Launch CSDOOM Server")
        return game

    def join(name, words=""):
        game = RealEngine(name, "doomcl.exe")
        configure(bob, cs_client=game.path + SMALL + words)
        joins(bob, "ann[CS]")
        return game

    # Without Doomsday's server there is none.
    alone = serve(bob, "no server", only="doomsday")
    told(bob, "doomsday-server isn't installed")
    alone.says("trying again", 5)
    time.sleep(2)  # until which an engine that ends is told of
    alone.signal(15)
    bob.press(ROOM, "Return from CS")
    # On this machine one server runs.
    serve(ann, "server").says(r"Map: .*MAP01", 60)
    second = serve(bob, "second server", user=pathlib.Path(WORK, "another user"))
    told(bob, "another server runs on this machine")
    second.signal(15)
    bob.press(ROOM, "Return from CS")
    bob.lists("ann[CS]", "bob")
    # The host's game is another one.
    join("other game", " -iwad /usr/share/games/doom/freedoom1.wad").ends()
    told(bob, "ended with the error 69", "it has another game file")
    leave(bob, IN_GAME, "Resume")
    # The engine crashes.
    game = join("crash")
    game.says(r"Map: .*MAP01", 60)
    os.kill(int(game.started()[0]), 11)
    told(bob, "ended with the error 69", "Doomsday was ended by signal 11")
    leave(bob, IN_GAME, "Resume")
    bob.lists("ann[CS]", "bob")


SCENARIOS = [real_engines, real_crispy, real_seven, real_server, real_troubles]
