"""attacks.py SERVER-PROGRAM: what strangers do to the companion server, each in a few seconds, and
what the server must hold meanwhile. To be run by attacks.sh."""

import contextlib
import functools
import os
import selectors
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time

MIB = 1 << 20
GRANT = b"Moderator Privlidges Granted"
PROOF = b"RequestOP\tann\tann@example.org\tright\r\n"
SERVER = "10.7.255.1"


class Server:
    def __init__(self, program, settings="", address="0.0.0.0"):
        self.folder = tempfile.mkdtemp(prefix="kelvaron-attacks-")
        with open(f"{self.folder}/settings", "w", encoding="ascii") as file:
            file.write(settings)
        program = [program, "--folder", self.folder]
        subprocess.run([*program, "--add-moderator", "ann", "ann@example.org"], input=b"right\n",
                       check=True, stdout=subprocess.DEVNULL)
        self.process = subprocess.Popen([*program, "--address", address, "--port", "3069"],
                                        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        assert b"listens" in self.process.stdout.readline()
        self.memory = []

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.send_signal(signal.SIGTERM)
        assert self.process.wait(10) == 0, "the server ended badly"
        shutil.rmtree(self.folder)

    def sample(self):
        """Notes the resident memory of now."""
        with open(f"/proc/{self.process.pid}/statm", encoding="ascii") as file:
            self.memory.append(int(file.read().split()[1]) * os.sysconf("SC_PAGESIZE") / MIB)

    def grown(self, besides=0):
        """By how much the memory has grown since the first sample, which must not be much."""
        self.sample()
        grown = max(self.memory) - self.memory[0] - besides
        assert grown <= 16, f"memory grew by {grown:.1f} MiB"
        return f"memory {grown:+.1f} MiB"


class Stranger:
    """A connection from an address of our choice."""

    def __init__(self, source, nick=None, server=SERVER):
        family = socket.AF_INET6 if ":" in server else socket.AF_INET
        self.socket = socket.socket(family, socket.SOCK_STREAM)
        self.socket.bind((source, 0))
        self.socket.settimeout(10)
        self.socket.connect((server, 3069))
        self.received = b""
        if nick:
            self.send(f"Name\t{nick}\t10.0.0.7\r\n".encode())

    def send(self, data):
        self.socket.settimeout(10)
        self.socket.sendall(data)

    def push(self, data):
        """As much as the system takes now."""
        self.socket.settimeout(0)
        with contextlib.suppress(BlockingIOError, ConnectionError):
            self.socket.send(data)

    def read(self, seconds, text=None):
        """All that comes within the time, or up to the end or to a text."""
        end = time.monotonic() + seconds
        more = b" "
        with contextlib.suppress(TimeoutError, ConnectionError):
            while (more and (text is None or text not in self.received)
                   and (left := end - time.monotonic()) > 0):
                self.socket.settimeout(left)
                more = self.socket.recv(MIB)
                self.received += more
        heard, self.received = self.received, b""
        return heard

    def hears(self, text, seconds=2):
        """How long the text took to come; it must come."""
        begin = time.monotonic()
        heard = self.read(seconds, text)
        assert text in heard, f"{text} does not come, but {heard[-200:]}"
        self.received = heard.split(text, 1)[1]
        return time.monotonic() - begin


@contextlib.contextmanager
def meanwhile(*attacks):
    """Has each attack made again and again, in a thread of its own."""
    over = threading.Event()

    def again(attack):
        while not over.is_set():
            try:
                attack()
            except OSError:
                time.sleep(0.02)

    threads = [threading.Thread(target=again, args=(attack,)) for attack in attacks]
    for each in threads:
        each.start()
    try:
        yield
    finally:
        over.set()
        for each in threads:
            each.join()


def proof_counts():
    """The right proof from an address of its own is granted, and soon: how soon."""
    ann = Stranger("10.7.200.1", "ann")
    time.sleep(0.1)
    ann.send(PROOF)
    took = ann.hears(GRANT)
    ann.socket.close()
    return took


def kicks_without_rights(program):
    with Server(program) as server:
        proof_counts()
        strangers = [Stranger(f"10.7.1.{each // 4}", f"u{each}") for each in range(40)]

        def flood(seconds):
            until = time.monotonic() + seconds
            while time.monotonic() < until:
                server.sample()
                for each in strangers:
                    each.push(b"KICK\tx\r\n" * 5000)

        flood(2)
        took = proof_counts()
        flood(2)
        return f"{server.grown()}, right proof {took:.2f} s"


def toggles(program):
    with Server(program, "local_times = 1000000\n"):
        room = [Stranger("127.0.0.1", f"user{each}", "127.0.0.1") for each in range(1000)]
        listener = room.pop()
        selector = selectors.DefaultSelector()
        for each in room:
            each.socket.settimeout(0)
            selector.register(each.socket, selectors.EVENT_READ)

        def drain():
            for key, _ in selector.select(0.1):
                key.fileobj.recv(MIB)

        with meanwhile(drain):
            # As many changes as the allowance of its address gives.
            attacker = Stranger("10.7.3.1", "toggler")
            listener.read(4)
            attacker.push(b"INGAME\tx\r\nRETURN\tx\r\n" * 500)
            heard = listener.read(5)
            room[1].push(b"[AW]\tx\r\n")
            seen = listener.hears(b"user1[AW]\r\n")
        lists = sum(len(each) + 2 for each in heard.split(b"\r\n") if each.startswith(b"Users"))
        one = len(b"Users\tuser500\r\n") * 1001
        assert lists <= 65536 * 5 + one, f"{lists} bytes of lists in 5 s"
        return f"lists {lists / 5 / 1024:.0f} KiB/s, a change seen after {seen:.2f} s"


def guesses(program):
    def guess(address):
        one = Stranger(address, f"g{address.split('.')[-1]}")
        for _ in range(3):
            one.send(b"RequestOP\tann\tann@example.org\twrong\r\n"
                     b"THEKICK\tann\tx\twrong\tann@example.org\r\n")
        one.read(0.2)
        one.socket.close()

    with Server(program) as server:
        proof_counts()
        server.sample()
        took = []
        with meanwhile(*[functools.partial(guess, f"10.7.4.{each}") for each in range(1, 17)]):
            for _ in range(3):
                for _ in range(14):
                    time.sleep(0.05)
                    server.sample()
                took.append(proof_counts())
        # One password at a time is looked at, which takes 64 MiB.
        return f"right proof {max(took):.2f} s at most, {server.grown(64)} besides a hash"


def does_not_read(program):
    """Many lines for somebody who takes none."""
    with Server(program, "lines_per_second = 100000\nburst_lines = 100000\n") as server:
        server.sample()
        deaf = Stranger("10.7.7.1", "deaf")
        deaf.socket.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 2048)
        talker = Stranger("10.7.7.2", "talker")
        watcher = Stranger("10.7.7.3", "watcher")  # the talker may be dropped for its answers
        for _ in range(150):
            talker.send((b"PM\tdeaf\t" + b"." * 40 + b"\tx\r\n") * 1000)
            server.sample()
        watcher.hears(b"deaf has left", 5)
        return server.grown()


def six(program):
    """IPv6 and IPv4 by one socket: a limit and a ban of a network of 64 bits."""
    with Server(program, "connections_per_address = 4\n", "::"):
        old = Stranger("10.7.8.1", "old")
        old.hears(b"Users\told\r\n")
        network = [Stranger(f"fd07:0:0:1::{each}", f"six{each}", "fd07::1") for each in range(1, 5)]
        for each in network:
            each.hears(b"Userscl")
        fifth = Stranger("fd07:0:0:1:ffff::9", "six5", "fd07::1")
        fifth.hears(b"too many connections from your address")
        Stranger("fd07:0:0:2::1", "other", "fd07::1").hears(b"Userscl")
        ann = Stranger("10.7.200.1", "ann")
        ann.send(PROOF)
        ann.hears(GRANT)
        ann.send(b"BAN\tsix1\tspam\r\n")
        for each in network:
            each.hears(b"BANUSER\tann\tspam")
            each.socket.close()
        time.sleep(0.2)
        Stranger("fd07:0:0:1:1234::1", "fresh", "fd07::1").hears(b"banned\r\n")
        ann.send(b"BAN\told\tspam\r\n")
        old.hears(b"BANUSER")
        Stranger("10.7.8.1", "new").hears(b"banned\r\n")
        return "limit and bans hold"


def main():
    failed = False
    for attack in (kicks_without_rights, toggles, guesses, does_not_read, six):
        begin = time.monotonic()
        try:
            told = attack(sys.argv[1])
        except AssertionError as problem:
            failed, told = True, f"FAILED: {problem}"
        print(f"{attack.__name__}: {told} ({time.monotonic() - begin:.1f} s)", flush=True)
    sys.exit(failed)


main()
