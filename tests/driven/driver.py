"""Starts the programs and works their windows as a person would."""

import glob
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import time

import pyatspi

from desk import (PATIENCE, SCALE, extents, has, key, showing, text_of, until,
                  walk, write, x)

BIN = os.environ["KELVARON_BIN"]
WORK = os.environ["KELVARON_WORK"]

# Games find no home but this, and make no noise.
QUIET = dict(os.environ, HOME=WORK, XDG_DATA_HOME=WORK, XDG_CONFIG_HOME=WORK,
             SDL_AUDIODRIVER="dummy")

# A window is told by its title, or by its title and the name of something in it.
LOGIN = "Kelvaron Login"
VERSION = subprocess.run([os.path.join(BIN, "kelvaron-server"), "--version"], check=True,
                         capture_output=True, text=True).stdout.split()[-1]
ROOM = ("Kelvaron " + VERSION, "Chat")
MOTD = "Message Of The Day"


def title_of(window):
    return window if isinstance(window, str) else window[0]


class Program:
    """A program that ends with the scenario at the latest."""

    running = []

    def __init__(self, arguments, **options):
        self.process = subprocess.Popen(arguments, **options)
        Program.running.append(self)

    def ended(self):
        return self.process.poll() is not None

    def ends(self, why):
        """Waits for the program's end, which must be an orderly one."""
        until(self.ended, f"the program to end: {why}")
        assert self.process.returncode == 0, (why, self.process.returncode)

    def stop(self, how=signal.SIGTERM):
        if not self.ended():
            self.process.send_signal(how)
            self.process.wait(10)

    @classmethod
    def stop_all(cls):
        for program in cls.running:
            program.stop(signal.SIGKILL)
        cls.running = []
        # The next scenario begins with fresh programs.
        for folder in glob.glob(os.path.join(WORK, "program-*")):
            shutil.rmtree(folder, ignore_errors=True)


class Server(Program):
    """The companion server, on the port that clients look for."""

    def __init__(self, folder, moderator=None, motd=None):
        self.folder = os.path.join(WORK, folder)
        os.makedirs(self.folder, exist_ok=True)
        program = os.path.join(BIN, "kelvaron-server")
        if motd is not None:
            pathlib.Path(self.folder, "motd").write_text(motd, "cp1252")
        if moderator:
            name, mail, password = moderator
            subprocess.run([program, "--folder", self.folder, "--add-moderator", name, mail],
                           input=password + "\n", text=True, check=True, capture_output=True)
        super().__init__([program, "--address", "127.0.0.1", "--folder", self.folder],
                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        until(self.answers, "the server to listen")

    @staticmethod
    def answers():
        with socket.socket() as probe:
            return probe.connect_ex(("127.0.0.1", 3069)) == 0


class Visitor:
    """Somebody else in the room, who speaks the protocol by hand."""

    def __init__(self, name):
        self.name = name
        self.socket = socket.create_connection(("127.0.0.1", 3069))
        Program.running.append(self)  # whoever is forgotten would hang up
        self.send("Name", name, "127.0.0.1")

    def send(self, *fields):
        self.socket.sendall(("\t".join(fields) + "\r\n").encode("cp1252"))

    def stop(self, _how=None):
        self.socket.close()

    def says(self, text):
        self.send("Message", self.name + ": ", text)

    def hears(self, text):
        """Reads on until a text has come, and gives all that came."""
        self.socket.settimeout(PATIENCE)
        heard = b""
        while text.encode("cp1252") not in heard:
            more = self.socket.recv(4096)
            assert more, f"the server hung up before {text!r}: {heard!r}"
            heard += more
        return heard.decode("cp1252")


class Client(Program):
    """The client program in a session of its own."""

    at_work = None

    def __init__(self, session, **environment):
        runtime = os.path.join(WORK, session)
        os.makedirs(runtime, mode=0o700, exist_ok=True)
        # A folder of its own too, since the program keeps its files beside itself.
        self.folder = os.path.join(WORK, "program-" + session)
        if not os.path.exists(self.folder):
            shutil.copytree(os.path.join(BIN, "sounds"), os.path.join(self.folder, "sounds"))
            for name in ("kelvaron", "game.wav"):
                shutil.copy(os.path.join(BIN, name), self.folder)
        super().__init__([os.path.join(self.folder, "kelvaron")],
                         env=QUIET | {"XDG_RUNTIME_DIR": runtime} | environment)

    # Windows.

    def application(self):
        for app in pyatspi.Registry.getDesktop(0):
            if app is not None and app.get_process_id() == self.process.pid:
                return app
        return None

    def windows(self):
        app = self.application()
        if app is None:
            return []
        app.clear_cache()  # the library's picture of the windows can lag behind for good
        return [w for w in app if w is not None and showing(w)]

    def look_for_window(self, wanted):
        found = [w for w in self.windows() if w.name == title_of(wanted)]
        if len(found) > 1 and wanted != title_of(wanted):
            found = [w for w in found if any(node.name == wanted[1] for node in walk(w))]
        return found[0] if found else None

    def window(self, wanted):
        return until(lambda: self.look_for_window(wanted),
                     lambda: f"the window {wanted!r}, with {[w.name for w in self.windows()]}")

    def has_window(self, wanted):
        return self.look_for_window(wanted) is not None

    def no_window(self, wanted):
        until(lambda: not self.has_window(wanted), f"the window {wanted!r} to go")

    def activate(self, wanted):
        """Brings a window to the front and gives it the keyboard."""
        self.window(wanted)
        if Client.at_work is not self:
            Client.at_work = self
            time.sleep(0.2)  # the other's room takes the keyboard when a window of theirs has closed
        title = "^" + title_of(wanted).replace("[", r"\[") + "$"
        windows = until(lambda: x("search", "--all", "--onlyvisible", "--pid", self.process.pid,
                                  "--name", title).split(), f"the window {wanted!r} on the display")
        def active():
            if x("getactivewindow") == windows[-1] and has(self.window(wanted),
                                                           pyatspi.STATE_ACTIVE):
                return True
            windows.insert(0, windows.pop())  # another may have the same title
            x("windowactivate", windows[-1])
            time.sleep(0.05)
            return False
        until(active, f"the window {wanted!r} to take the keyboard")

    # Widgets.

    def find(self, window, name, role=None):
        def about():
            found = self.look_for_window(window)
            there = [(n.getRoleName(), n.name) for n in walk(found)] if found else self.windows()
            return f"{role or 'widget'} {name!r} in {window!r}, where {there} is"
        return until(lambda: next((n for n in walk(self.look_for_window(window)) if n.name == name
                                   and role in (None, n.getRoleName())), None), about)

    def has_focus(self, window, name):
        until(lambda: any(node.name == name and has(node, pyatspi.STATE_FOCUSED)
                          for node in walk(self.window(window))), f"the keyboard at {name!r}")

    def point(self, node):
        box = extents(node)
        x("mousemove", int((box.x + box.width / 2) * SCALE), int((box.y + box.height / 2) * SCALE))
        time.sleep(0.03)

    def click(self, node, button=1, repeat=1):
        self.point(node)
        x("click", "--repeat", repeat, "--delay", 60, button)

    def press(self, window, name):
        self.activate(window)
        self.click(self.find(window, name, "push button"))

    def tick(self, window, *names):
        for name in names:
            box = self.find(window, name, "check box")
            self.click(box)
            until(lambda: has(box, pyatspi.STATE_CHECKED), f"{name!r} to be ticked")

    def choose(self, window, name, value):
        """Opens a combo box at its arrow and clicks an entry."""
        box = self.find(window, name, "combo box")
        place = extents(box)
        x("mousemove", int((place.x + place.width - 10) * SCALE),
          int((place.y + place.height / 2) * SCALE), "click", 1)
        entry = until(lambda: next((node for node in walk(box)
                                    if node.name == value and node.getRoleName() == "list item" and
                                    showing(node)), None), f"{value!r} in the list of {name!r}")
        self.click(entry)
        self.holds(window, name, value)

    def type_in(self, window, name, text, role="text"):
        self.click(self.find(window, name, role))
        self.retype(text)

    def text_in(self, window, name, role="text"):
        return text_of(self.find(window, name, role))

    def holds(self, window, name, text):
        until(lambda: self.text_in(window, name) == text,
              lambda: f"{text!r} in {name!r}, not {self.text_in(window, name)!r}")

    def shows(self, window, name, text):
        """Of a label that has a name, and of a lamp."""
        until(lambda: self.find(window, name).description == text,
              lambda: f"{name!r} at {text!r}, not {self.find(window, name).description!r}")

    def retype(self, text):
        """Replaces what stands in the edit at work."""
        key("ctrl+a", "BackSpace")
        write(text)

    # Login and boxes.

    def try_name(self, name):
        self.activate(LOGIN)
        self.retype(name)
        key("Return")

    def log_in(self, name):
        self.name = name
        self.try_name(name)
        self.window(ROOM)
        self.close_motd()

    def close_motd(self):
        self.press(MOTD, "OK")
        self.no_window(MOTD)

    def box(self, title):
        """The text of a message box."""
        return until(lambda: " ".join(node.name for node in walk(self.window(title))
                                      if node.getRoleName() == "label" and node.name),
                     lambda: f"a text in the box {title!r} of {os.path.basename(self.folder)}, "
                             f"with {[w.name for w in self.windows()]}")

    def answer(self, title, *words):
        """Reads a message box, which must have these words, and closes it by keyboard."""
        text = self.box(title)
        for each in words:
            assert each in text, (each, text)
        self.activate(title)

        def gone():
            # A box that came by itself takes no key at first. The next may have the same title.
            if self.ended() or not self.has_window(title) or self.box(title) != text:
                return True
            # Once this box is closed the keyboard can be at somebody else's.
            if x("getactivewindow", "getwindowpid") == str(self.process.pid):
                key("Return")
                time.sleep(0.3)
            return self.ended()

        until(gone, f"the box {title!r} to go")

    # The room.

    def chat(self):
        return text_of(self.find(ROOM, "Chat"))

    def reads(self, text):
        until(lambda: text in self.chat(), lambda: f"{text!r} in the chat: {self.chat()[-400:]!r}")

    def message(self):
        return text_of(self.find(ROOM, "Message", "text"))

    def enter(self, text):
        self.activate(ROOM)
        self.click(self.find(ROOM, "Message", "text"))
        self.retype(text)
        key("Return")

    def users(self):
        return [item.name for item in self.find(ROOM, "Users") if item is not None]

    def lists(self, *names):
        until(lambda: self.users() == list(names), lambda: f"the users {names}, not {self.users()}")

    def user(self, name):
        return until(lambda: next((item for item in self.find(ROOM, "Users")
                                   if item.name == name), None), f"the user {name}")

    def select(self, name):
        self.activate(ROOM)
        self.click(self.user(name))
        until(lambda: has(self.user(name), pyatspi.STATE_SELECTED), f"{name} to be selected")

    # Menus.

    def menu_entry(self, name):
        return until(lambda: next((n for n in walk(self.application()) if n.name == name and
                                   n.getRoleName() in ("menu item", "menu") and showing(n)), None),
                     f"the menu entry {name!r}")

    def open_menu(self, *path):
        """Clicks entries one below the other, from the menu bar on; the last is chosen."""
        self.activate(ROOM)
        for name in path:
            self.click(self.menu_entry(name))
            time.sleep(0.1)


def two_players(folder, *names):
    """Clients that are in the room and see each other."""
    Server(folder)
    names = names or ("ann", "bob")
    players = [Client(session) for session in ("ann", "bob")]
    for player in players:
        player.window(LOGIN)  # one that comes later would take the keyboard
    for player, name in zip(players, names):
        player.log_in(name)
    for player in players:
        player.lists(*sorted(names))
    return players
