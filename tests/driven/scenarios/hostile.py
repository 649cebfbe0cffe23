"""A server that does what it likes, and a second program."""

import socket
import threading

from desk import key, until, write
from driver import LOGIN, MOTD, ROOM, Client, Program


class HostileServer:
    """Lets anybody in and sends what a scenario says."""

    def __init__(self):
        self.listener = socket.create_server(("127.0.0.1", 3069))
        self.connections = []
        threading.Thread(target=self.accept, daemon=True).start()
        Program.running.append(self)

    def accept(self):
        while True:
            try:
                self.connections.append(self.listener.accept()[0])
            except OSError:
                return

    def send(self, *lines):
        self.connections[-1].sendall("".join(line + "\r\n" for line in lines).encode("cp1252"))

    def stop(self, _how=None):
        self.listener.shutdown(socket.SHUT_RDWR)  # wakes the thread
        self.listener.close()
        for connection in self.connections:
            connection.close()


def in_the_room():
    server = HostileServer()
    ann = Client("ann")
    ann.try_name("ann")
    ann.window(ROOM)
    server.send("Userscl", "Users\tann", "Users\tR&D", "Users\tzoe")
    ann.lists("ann", "R&D", "zoe")
    ann.activate(ROOM)
    return server, ann


def keys_stay_in_the_line():
    """What comes by itself takes nothing of what is being typed."""
    server, ann = in_the_room()
    line = ann.find(ROOM, "Message", "text")
    ann.click(line)
    server.send("MOTD\tfirst")
    ann.window(MOTD)
    ann.activate(ROOM)
    write("half a ")
    server.send("MOTD\tsecond", "PROFILE\tbob" + "\t" * 13, "Kicker")
    ann.window("KV User Profiles")
    write("word")
    until(lambda: ann.message() == "half a word", lambda: f"the line, not {ann.message()!r}")
    server.send("MSGBOX\tlook")
    ann.window("Kelvaron")
    key("space", "Return", "Escape")
    assert ann.has_window("Kelvaron"), "a box that came by itself took a key at once"
    ann.answer("Kelvaron", "look")
    write(" more")
    until(lambda: ann.message() == "half a word more", lambda: f"the line, not {ann.message()!r}")


def second_instance():
    """One Kelvaron per session."""
    first = Client("ann")
    first.window(LOGIN)
    second = Client("ann")
    second.answer("Doh!", "there is another Kelvaron open")
    second.ends("another instance runs")
    assert not first.ended()
    Client("bob").window(LOGIN)


SCENARIOS = [keys_stay_in_the_line, second_instance]
