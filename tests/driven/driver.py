"""Starts the programs and works their windows as a person would: eyes by accessibility, hands by
keyboard and mouse."""

import os
import shutil
import signal
import socket
import subprocess
import time

import pyatspi

BIN = os.environ["KELVARON_BIN"]
WORK = os.environ["KELVARON_WORK"]
PATIENCE = float(os.environ.get("KELVARON_DRIVEN_PATIENCE", 8))
# Accessibility tells places in the toolkit's pixels, the mouse wants the screen's.
SCALE = float(os.environ.get("QT_SCALE_FACTOR", 1))

LOGIN = "Kelvaron Login"
ROOM = "Kelvaron 4.1"
MOTD = "Message Of The Day"


def until(condition, about, patience=PATIENCE):
    """Waits for a condition and gives what it gave; fails with what was waited for."""
    end = time.monotonic() + patience
    while True:
        try:
            value = condition()
        except Exception:  # a widget can go while it is looked at
            value = None
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError("waited in vain: " + (about() if callable(about) else about))
        time.sleep(0.03)


def x(*arguments):
    result = subprocess.run(["xdotool", *map(str, arguments)], check=True, capture_output=True,
                            text=True)
    return result.stdout.strip()


def key(*names):
    x("key", "--delay", 15, *names)


def write(text):
    x("type", "--delay", 8, text)


def picture(path):
    subprocess.run(["import", "-window", "root", path], check=True)


def clipboard():
    return subprocess.run(["xclip", "-selection", "clipboard", "-o"], check=True,
                          capture_output=True, timeout=PATIENCE).stdout.decode()


def put_on_clipboard(text):
    subprocess.run(["xclip", "-selection", "clipboard", "-i"], input=text.encode(), check=True,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=PATIENCE)


def walk(node):
    yield node
    for child in node:
        if child is not None:
            yield from walk(child)


def has(node, state):
    return node.getState().contains(state)


def showing(node):
    return has(node, pyatspi.STATE_SHOWING)


def enabled(node):
    return has(node, pyatspi.STATE_ENABLED)


def extents(node):
    """Place and size on the screen, in the toolkit's pixels."""
    return node.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)


def text_of(node):
    text = node.queryText()
    return text.getText(0, text.characterCount)


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
        for visitor in Visitor.present:
            visitor.socket.close()
        Visitor.present = []


class Server(Program):
    """The companion server, on the port that clients look for."""

    def __init__(self, folder, moderator=None, motd=None):
        self.folder = os.path.join(WORK, folder)
        os.makedirs(self.folder, exist_ok=True)
        program = os.path.join(BIN, "kelvaron-server")
        if motd is not None:
            with open(os.path.join(self.folder, "motd"), "w", encoding="cp1252") as file:
                file.write(motd)
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

    present = []

    def __init__(self, name):
        self.name = name
        self.socket = socket.create_connection(("127.0.0.1", 3069))
        Visitor.present.append(self)  # whoever is forgotten would hang up
        self.send("Name", name, "127.0.0.1")

    def send(self, *fields):
        self.socket.sendall(("\t".join(fields) + "\r\n").encode("cp1252"))

    def says(self, text):
        self.send("Message", self.name + ": ", text)

    def hears(self, text):
        """Reads on until a text has come."""
        self.socket.settimeout(PATIENCE)
        heard = b""
        while text.encode("cp1252") not in heard:
            more = self.socket.recv(4096)
            assert more, f"the server hung up before {text!r}: {heard!r}"
            heard += more


class Client(Program):
    """The client program in a session of its own."""

    def __init__(self, session):
        runtime = os.path.join(WORK, session)
        os.makedirs(runtime, mode=0o700, exist_ok=True)
        # A folder of its own too, since the program keeps its files beside itself.
        folder = os.path.join(WORK, "program-" + session)
        if not os.path.exists(folder):
            os.makedirs(folder)
            shutil.copy(os.path.join(BIN, "kelvaron"), folder)
            shutil.copytree(os.path.join(BIN, "sounds"), os.path.join(folder, "sounds"))
        super().__init__([os.path.join(folder, "kelvaron")],
                         env=dict(os.environ, XDG_RUNTIME_DIR=runtime))

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

    def window(self, title):
        return until(lambda: next((w for w in self.windows() if w.name == title), None),
                     lambda: f"the window {title!r}, with {[w.name for w in self.windows()]}")

    def has_window(self, title):
        return any(w.name == title for w in self.windows())

    def no_window(self, title):
        until(lambda: not self.has_window(title), f"the window {title!r} to go")

    def activate(self, title):
        """Brings a window to the front and gives it the keyboard."""
        self.window(title)
        def find():
            found = x("search", "--all", "--onlyvisible", "--pid", self.process.pid, "--name",
                      "^" + title.replace("[", r"\[") + "$")
            return found.split()[-1]
        window = until(find, f"the window {title!r} on the display")
        def active():
            if x("getactivewindow") != window:
                x("windowactivate", window)
                time.sleep(0.05)
                return False
            return has(self.window(title), pyatspi.STATE_ACTIVE)
        until(active, f"the window {title!r} to take the keyboard")

    # Widgets.

    def look_for(self, window, name, role=None):
        return next((node for node in walk(self.window(window))
                     if node.name == name and (role is None or node.getRoleName() == role)), None)

    def find(self, window, name, role=None):
        return until(lambda: self.look_for(window, name, role),
                     f"{role or 'widget'} {name!r} in {window!r}")

    def has_focus(self, window, name):
        until(lambda: any(node.name == name and has(node, pyatspi.STATE_FOCUSED)
                          for node in walk(self.window(window))), f"the keyboard at {name!r}")

    def turn_wheel(self, node, notches):
        """Up for a positive number."""
        self.point(node)
        x("click", "--repeat", abs(notches), "--delay", 5, 4 if notches > 0 else 5)

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
                     f"a text in the box {title!r}")

    def answer(self, title, *words):
        """Reads a message box, which must have these words, and closes it by keyboard."""
        text = self.box(title)
        for each in words:
            assert each in text, (each, text)
        self.activate(title)
        key("Return")
        if not self.ended():
            until(lambda: self.ended() or not self.has_window(title), f"the box {title!r} to go")

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
