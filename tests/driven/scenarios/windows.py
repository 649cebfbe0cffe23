"""The client for Windows, run by Wine, in a room with one of this system."""

import os
import pathlib
import re
import shutil
import subprocess
import time

from desk import clipboard, key, picture, until, write, x
from driver import QUIET, ROOM, WORK, Client, Program, Server
from game_setup import LAST_LOOK, OFFER, Engine, configure, folder_for_games
from scenarios.hostile import HostileServer

# Where the unpacked zip is, a program that writes down its arguments, and a prefix of Wine's.
FOLDER = os.environ.get("KELVARON_WINDOWS")
RECORDER = os.environ.get("KELVARON_WINDOWS_RECORDER")
PREFIX = os.environ.get("WINEPREFIX", os.path.join(WORK, "wine"))
# Wine takes its time with the first program.
PATIENCE = 60
# A key that comes sooner behind a change of the focus is lost on the way through Wine.
CALM = 0.5


def windows_path(path):
    """As a program under Wine has it: the root of this system is its drive Z."""
    return "Z:" + str(path).replace("/", "\\")


class WineClient(Program):
    """Worked by keys and the mouse alone: Wine has no accessibility here."""

    def __init__(self, name):
        self.name = name
        self.folder = pathlib.Path(WORK, "windows of " + name)
        shutil.copytree(FOLDER, self.folder)
        super().__init__(["wine", str(self.folder / "kelvaron.exe")],
                         env=QUIET | {"WINEPREFIX": PREFIX, "WINEDEBUG": "-all"})

    def window(self, title):
        """The newest of this title."""
        pattern = "^" + re.escape(title).replace(r"\ ", " ") + "$"

        def found():
            search = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", pattern],
                                    capture_output=True, text=True)
            own = [w for w in search.stdout.split() if is_wines(w)]
            return own and own[-1]
        return until(found, f"the window {title!r} under Wine", PATIENCE)

    def has_window(self, title):
        return any(is_wines(w) for w in subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--name", "^" + title + "$"],
            capture_output=True, text=True).stdout.split())

    def activate(self, title):
        window = self.window(title)

        def active():
            if x("getactivewindow") == window:
                return True
            x("windowactivate", window)
            time.sleep(0.1)
            return False
        until(active, f"the window {title!r} to take the keyboard", PATIENCE)
        Client.at_work = self
        time.sleep(CALM)
        if folder := os.environ.get("KELVARON_PICTURES"):
            picture_of(window, os.path.join(folder, re.sub(r"\W+", "_", title).lower() + ".png"))

    def click(self, title, across, down):
        """At a place told in parts of the window's width and height."""
        place = dict(line.split("=") for line in
                     x("getwindowgeometry", "--shell", self.window(title)).splitlines())
        x("mousemove", int(int(place["X"]) + across * int(place["WIDTH"])),
          int(int(place["Y"]) + down * int(place["HEIGHT"])), "click", 1)
        time.sleep(CALM)

    def press(self, *names, leads_to=None):
        """The last key may lead to another window. One that is let go while a neighbour has the
        keyboard is never let go for Wine, and the next press of it counts as its repetition."""
        for name in names[:-1] if leads_to else names:
            time.sleep(CALM)
            key(name)
        time.sleep(CALM)
        if leads_to:
            x("keydown", names[-1])
            self.activate(leads_to)
            x("keyup", names[-1])

    def stop(self, _how=None):
        subprocess.run(["wineserver", "-k"], env=QUIET | {"WINEPREFIX": PREFIX})
        super().stop()


def is_wines(window):
    about = subprocess.run(["xprop", "-id", window, "WM_CLASS"], capture_output=True, text=True)
    return "kelvaron.exe" in about.stdout


def picture_of(window, path):
    subprocess.run(["import", "-window", window, path], check=True)


def gives_way(player, window):
    player.no_window(window)
    time.sleep(CALM)  # until then the player's room takes the keyboard


def windows():
    """Login, talk, private messages, files both ways, a game, and the end."""
    Server("data-windows", motd="Welcome.")
    ann = Client("ann")
    ann.log_in("ann")
    games = folder_for_games("games for windows")
    engine, doom2 = Engine(games, "zdoom.exe"), os.path.join(games, "doom2.wad")
    pathlib.Path(doom2).write_bytes(b"PWAD" + bytes(8))
    configure(ann, zdoom=engine.path, doom2=doom2)

    win = WineClient("win")
    recorder = win.folder / "my engines" / "zdoom.exe"
    recorder.parent.mkdir()
    shutil.copy(RECORDER, recorder)
    configure(win, zdoom=windows_path(recorder), doom2=windows_path(doom2))
    win.activate("Kelvaron Login")
    write("win")
    win.press("Return", leads_to="Message Of The Day")
    ann.lists("ann", "win")
    win.press("Escape", leads_to=ROOM[0])
    write("hello from windows")
    win.press("Return")
    ann.reads("win: hello from windows")
    ann.enter("hello, windows")
    ann.reads("ann: hello, windows")

    def chat():
        win.activate(ROOM[0])
        win.click(ROOM[0], 0.3, 0.4)
        win.press("ctrl+a", "ctrl+c")
        return "ann: hello, windows" in clipboard()
    until(chat, "what ann said, in the chat under Wine", PATIENCE)

    def to_user(name):
        win.activate(ROOM[0])
        win.click(ROOM[0], 0.3, 0.92)
        win.press("Tab")
        write(name)

    to_user("ann")
    win.press("Return", leads_to="Private Message to : ann")
    write("just you")
    win.press("Tab", "space")
    ann.reads("Private Message From win: just you")

    content = os.urandom(3_000_000)
    sent = pathlib.Path(games, "a file.wad")
    sent.write_bytes(content)
    ann.open_menu("Tools", "File Server")
    ann.window("Kelvaron File Server")
    to_user("ann")
    win.press("Menu", "s", leads_to="Kelvaron File Send")
    win.press("Tab", "space")
    win.activate("Open")
    write(windows_path(sent))
    win.press("Return", leads_to="Kelvaron File Send")
    win.press("Tab", "Return")
    copy = pathlib.Path(ann.folder, "received", sent.name)
    until(lambda: copy.read_bytes() == content, "the file from Wine", PATIENCE)
    win.activate("Kelvaron File Send")
    win.press("Escape")
    ann.activate("Kelvaron File Server")
    key("Escape")
    gives_way(ann, "Kelvaron File Server")

    win.activate(ROOM[0])
    win.press("alt+t", "f", leads_to="Kelvaron File Server")
    ann.select("win")
    ann.click(ann.user("win"), button=3)
    ann.click(ann.menu_entry("Send File"))
    ann.press("Kelvaron File Send", "Browse")
    ann.activate("Open")
    write(str(sent))
    key("Return")
    ann.press("Kelvaron File Send", "Send")
    copy = win.folder / "received" / sent.name
    until(lambda: copy.read_bytes() == content, "the file under Wine", PATIENCE)
    win.activate("Kelvaron File Server")
    win.press("Escape")

    to_user("ann")
    win.press("Tab", "space")
    win.activate("Request a Game")
    win.press("space", "Return", leads_to="Kelvaron")
    ann.press(OFFER, "Accept")
    gives_way(ann, OFFER)
    win.activate("Kelvaron")
    win.press("Tab", "space")
    ann.press(LAST_LOOK, "OK")
    arguments = engine.arguments()
    assert arguments[:4] == ["-iwad", doom2, "-join", "127.0.0.1"], arguments
    record = pathlib.Path(str(recorder) + ".started")
    until(record.exists, f"{record}", PATIENCE)
    arguments = record.read_text("utf-8").splitlines()
    assert arguments == ["-IWAD", windows_path(doom2), "-host", "2"], arguments

    win.activate("Game Launch in Progress")
    win.press("space")
    win.activate(ROOM[0])
    win.press("alt+F4")
    ann.lists("ann[IG]")
    until(win.ended, "the end of Kelvaron under Wine", PATIENCE)


def windows_lines():
    """How long 100,000 lines take this system's program, and the one for Windows."""
    lines = "".join(f"Message\tbob: \tline {number} of what is said in a busy room\r\n"
                    for number in range(100_000)).encode()
    for program in (Client, WineClient):
        server = HostileServer()
        client = program("ann")
        if program is Client:
            client.try_name("ann")
            client.window(ROOM)
        else:
            client.activate("Kelvaron Login")
            write("ann")
            client.press("Return", leads_to=ROOM[0])
        connection = server.connections[-1]
        begun = time.monotonic()
        connection.sendall(lines + b"getip\r\n")
        connection.settimeout(PATIENCE)
        heard = b""
        while b"IP\t" not in heard:
            heard = connection.recv(4096)
        print(f"        {program.__name__}: 100,000 lines in {time.monotonic() - begun:.2f} s",
              flush=True)
        Program.stop_all()


SCENARIOS = [windows, windows_lines]
