"""attacks.py SERVER-PROGRAM: what strangers do to the companion server, each in a few seconds, and
what the server must hold meanwhile. To be run by attacks.sh."""

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
HASH_MEMORY = 64 * MIB
GRANT = b"Moderator Privlidges Granted"
PROOF = b"RequestOP\tann\tann@example.org\tright\r\n"
SERVER = "10.7.255.1"


class Server:
    def __init__(self, program, settings="", address="0.0.0.0"):
        self.folder = tempfile.mkdtemp(prefix="kelvaron-attacks-")
        with open(f"{self.folder}/settings", "w", encoding="ascii") as file:
            file.write(settings)
        subprocess.run([program, "--add-moderator", "ann", "ann@example.org", "--folder", self.folder],
                       input=b"right\n", check=True, stdout=subprocess.DEVNULL)
        self.log = open(f"{self.folder}/log", "wb")
        self.process = subprocess.Popen(
            [program, "--address", address, "--port", "3069", "--folder", self.folder],
            stdout=subprocess.PIPE, stderr=self.log)
        assert b"listens" in self.process.stdout.readline()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.send_signal(signal.SIGTERM)
        assert self.process.wait(10) == 0, "the server ended badly"
        self.process.stdout.close()
        self.log.close()
        shutil.rmtree(self.folder)

    def memory(self):
        """Resident bytes now."""
        with open(f"/proc/{self.process.pid}/statm", encoding="ascii") as file:
            return int(file.read().split()[1]) * os.sysconf("SC_PAGESIZE")


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
        self.socket.sendall(data)

    def push(self, data):
        """As much as the system takes now."""
        self.socket.setblocking(False)
        try:
            self.socket.send(data)
        except (BlockingIOError, ConnectionError):
            pass
        self.socket.settimeout(10)

    def read(self, seconds):
        """All that comes within the time."""
        until = time.monotonic() + seconds
        heard = b""
        while (left := until - time.monotonic()) > 0:
            self.socket.settimeout(left)
            try:
                more = self.socket.recv(1 << 20)
            except (TimeoutError, ConnectionError):
                break
            if not more:
                break
            heard += more
        self.socket.settimeout(10)
        return heard

    def hears(self, text, seconds):
        """Reads on until the text has come; how long that took, or None."""
        begin = time.monotonic()
        while text not in self.received:
            left = begin + seconds - time.monotonic()
            if left <= 0:
                return None
            self.socket.settimeout(left)
            try:
                more = self.socket.recv(1 << 16)
            except (TimeoutError, ConnectionError):
                return None
            if not more:
                return None
            self.received += more
        self.received = self.received.split(text, 1)[1]
        return time.monotonic() - begin

    def close(self):
        self.socket.close()


def proof_counts(server_address=SERVER):
    """Whether the right proof from an address of its own is granted, and how soon."""
    ann = Stranger("10.7.200.1", "ann", server_address)
    time.sleep(0.1)
    ann.send(PROOF)
    took = ann.hears(GRANT, 5)
    ann.close()
    assert took is not None and took < 2, f"the right proof took {took}"
    return took


def kicks_without_rights(program):
    with Server(program) as server:
        proof_counts()
        before = server.memory()
        strangers = [Stranger(f"10.7.1.{each // 4}", f"u{each}") for each in range(40)]
        flood = b"KICK\tx\r\n" * 5000
        until = time.monotonic() + 4
        peak, took = 0, None
        while time.monotonic() < until:
            for each in strangers:
                each.push(flood)
            peak = max(peak, server.memory())
            if took is None and until - time.monotonic() < 2:
                took = proof_counts()
        assert peak - before <= 16 * MIB, f"memory grew by {(peak - before) / MIB:.1f} MiB"
        for each in strangers:
            each.close()
        return f"memory +{(peak - before) / MIB:.1f} MiB, right proof {took:.2f} s"


def said_in(seconds, attack):
    """Lines and joins that a listener hears while the attack runs for so long."""
    listener = Stranger("10.7.100.1", "listener")
    listener.read(0.5)
    over = threading.Event()
    thread = threading.Thread(target=attack, args=(over,))
    thread.start()
    heard = listener.read(seconds)
    over.set()
    thread.join()
    listener.close()
    return heard.count(b"Message\t"), heard.count(b" has entered")


def reconnects(program):
    line = b"Message\tx: \tspam\r\n"

    def stays(over):
        one = Stranger("10.7.2.1", "stays")
        while not over.is_set():
            one.push(line * 10)
            time.sleep(0.01)
        one.close()

    def returns(address, nick):
        def attack(over):
            turn = 0
            while not over.is_set():
                turn += 1
                try:
                    one = Stranger(address, f"{nick}{turn % 1000}")
                    one.send(line * 60)
                    one.read(0.02)
                    one.close()
                except OSError:
                    time.sleep(0.01)
        return attack

    def many(over):
        threads = [threading.Thread(target=returns("10.7.2.3", f"m{each}x"), args=(over,))
                   for each in range(16)]
        for each in threads:
            each.start()
        for each in threads:
            each.join()

    results = []
    for attack in (stays, returns("10.7.2.2", "r"), many):
        with Server(program):
            results.append(said_in(5, attack))
    allowed = results[0][0] * 1.1 + 5
    for lines, joins in results[1:]:
        assert lines <= allowed, f"{lines} lines where one who stays says {results[0][0]}"
        assert joins <= 32 + 5 + 1, f"{joins} joins"
    return f"lines in 5 s {[each[0] for each in results]}, joins {[each[1] for each in results]}"


def toggles(program):
    with Server(program, "local_times = 1000000\n") as server:
        room = [Stranger("127.0.0.1", f"user{each}", "127.0.0.1") for each in range(1000)]
        selector = selectors.DefaultSelector()
        for each in room:
            each.socket.setblocking(False)
            selector.register(each.socket, selectors.EVENT_READ)

        def drain(seconds, of=None):
            got, until = b"", time.monotonic() + seconds
            while (left := until - time.monotonic()) > 0:
                for key, _ in selector.select(left):
                    try:
                        more = key.fileobj.recv(1 << 18)
                    except OSError:
                        continue
                    if key.fileobj is of:
                        got += more
                        if b"seen" in got:
                            return got
            return got

        drain(3)
        listener = room[500].socket
        # As many changes as the allowance of its address gives.
        attacker = Stranger("10.7.3.1", "toggler")
        drain(1)
        attacker.push(b"INGAME\tx\r\nRETURN\tx\r\n" * 500)
        heard = drain(5, listener)
        lists = sum(len(each) + 2 for each in heard.split(b"\r\n") if each.startswith(b"Users"))
        one = len(b"Users\tuser500\r\n") * 1001
        assert lists <= 65536 * 5 + one, f"{lists} bytes of lists in 5 s"
        begin = time.monotonic()
        room[1].socket.setblocking(True)
        room[1].send(b"[AW]\tx\r\n")
        room[1].socket.setblocking(False)
        seen = None
        got = b""
        while seen is None and time.monotonic() - begin < 5:
            got += drain(0.02, listener)
            if b"user1[AW]\r\n" in got:
                seen = time.monotonic() - begin
        assert seen is not None and seen < 2, f"a change is seen after {seen}"
        for each in room:
            each.close()
        del server
        return f"lists {lists / 5 / 1024:.0f} KiB/s, a change seen after {seen:.2f} s"


def guesses(program):
    with Server(program) as server:
        proof_counts()
        before = server.memory()
        over = threading.Event()

        def guess(address):
            while not over.is_set():
                try:
                    one = Stranger(address, f"g{address.split('.')[-1]}")
                    for _ in range(3):
                        one.send(b"RequestOP\tann\tann@example.org\twrong\r\n"
                                 b"THEKICK\tann\tx\twrong\tann@example.org\r\n")
                    one.read(0.2)
                    one.close()
                except OSError:
                    time.sleep(0.05)

        threads = [threading.Thread(target=guess, args=(f"10.7.4.{each}",)) for each in range(1, 17)]
        for each in threads:
            each.start()
        took, peak = [], 0
        try:
            for _ in range(3):
                for _ in range(14):
                    time.sleep(0.05)
                    peak = max(peak, server.memory())
                took.append(proof_counts())
        finally:
            over.set()
            for each in threads:
                each.join()
        # One password at a time is looked at.
        grown = peak - before - HASH_MEMORY
        assert grown <= 16 * MIB, f"memory grew by {grown / MIB:.1f} MiB besides one hash"
        return f"right proofs {[round(each, 2) for each in took]} s, memory {grown / MIB:+.1f} MiB besides a hash"


def silent_crowd(program):
    with Server(program, "connections = 200\n") as server:
        before = server.memory()
        crowd = []
        for each in range(800):
            crowd.append(Stranger(f"10.7.5.{each // 20}"))
            if each % 100 == 50:
                person = Stranger("10.7.6.1", f"p{each}")
                assert person.hears(b"Userscl", 2) is not None, "a newcomer finds no place"
                crowd.append(person)
        grown = server.memory() - before
        assert grown <= 16 * MIB, f"memory grew by {grown / MIB:.1f} MiB"
        for each in crowd:
            each.close()
        return f"memory +{grown / MIB:.1f} MiB"


def does_not_read(program):
    """Small lines for somebody who takes none: what keeping them costs counts too."""
    with Server(program, "lines_per_second = 100000\nburst_lines = 100000\n") as server:
        before = server.memory()
        deaf = Stranger("10.7.7.1", "deaf")
        deaf.socket.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 2048)
        talker = Stranger("10.7.7.2", "talker")
        peak = 0
        for _ in range(150):
            talker.send(b"PM\tdeaf\t.\tx\r\n" * 1000)
            peak = max(peak, server.memory())
        gone = talker.hears(b"deaf has left", 5)
        peak = max(peak, server.memory())
        assert peak - before <= 16 * MIB, f"memory grew by {(peak - before) / MIB:.1f} MiB"
        assert gone is not None, "who takes nothing stays"
        deaf.close()
        talker.close()
        return f"memory +{(peak - before) / MIB:.1f} MiB"


def six(program):
    """IPv6 and IPv4 by one socket: a limit and a ban of a network of 64 bits."""
    with Server(program, "connections_per_address = 4\n", "::"):
        old = Stranger("10.7.8.1", "old")
        assert old.hears(b"Users\told\r\n", 2) is not None, "IPv4 clients can't come in"
        network = [Stranger(f"fd07:0:0:1::{each}", f"six{each}", "fd07::1") for each in range(1, 5)]
        for each in network:
            assert each.hears(b"Userscl", 2) is not None
        fifth = Stranger("fd07:0:0:1:ffff::9", "six5", "fd07::1")
        assert fifth.hears(b"too many connections from your address", 2) is not None
        other = Stranger("fd07:0:0:2::1", "other", "fd07::1")
        assert other.hears(b"Userscl", 2) is not None, "the next network has its own places"
        ann = Stranger("10.7.200.1", "ann")
        ann.send(PROOF)
        assert ann.hears(GRANT, 3) is not None
        ann.send(b"BAN\tsix1\tspam\r\n")
        for each in network:
            assert each.hears(b"BANUSER\tann\tspam", 2) is not None, "one of the network stays"
            each.close()
        time.sleep(0.2)
        back = Stranger("fd07:0:0:1:1234::1", "fresh", "fd07::1")
        assert back.hears(b"banned\r\n", 2) is not None, "the network comes in again"
        ann.send(b"BAN\told\tspam\r\n")
        assert old.hears(b"BANUSER", 2) is not None
        again = Stranger("10.7.8.1", "new")
        assert again.hears(b"banned\r\n", 2) is not None, "the IPv4 address comes in again"
        return "limit and bans hold"


def main():
    program = sys.argv[1]
    failed = False
    for attack in (kicks_without_rights, reconnects, toggles, guesses, silent_crowd, does_not_read,
                   six):
        begin = time.monotonic()
        try:
            told = attack(program)
        except AssertionError as problem:
            failed, told = True, f"FAILED: {problem}"
        print(f"{attack.__name__}: {told} ({time.monotonic() - begin:.1f} s)", flush=True)
    sys.exit(failed)


if __name__ == "__main__":
    main()
