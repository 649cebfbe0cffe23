"""Files that go from one client to the other."""

import os
import socket
import threading
import time

from desk import key, until
from driver import PATIENCE, ROOM, WORK, Visitor, two_players
from exchange_setup import (BOX, DONE, FILE_PORT, SEND, SERVE, WHOLE, choose, label, labels,
                            random_file, received, same_file, send_form, serve_form, tells)
from scenarios.menus import assert_named

MEGA = 1 << 20
# Takes seconds, in which something else can be done.
LARGE = 800 * MEGA
# At the edges of what goes over at once.
FILES = (("empty.wad", 0), ("one byte.txt", 1), ("below.bin", 2047), ("block.bin", 2048),
         ("above.bin", 2049), ("Größe 5 MiB – naïv.wad", 5 * MEGA))


def file_folder(name):
    return os.path.join(WORK, "files " + name)


def arrives(sender, receiver, path, patience=PATIENCE):
    """Waits for the copy, and for both forms to be ready for the next file."""
    copy = received(receiver, os.path.basename(path))
    until(lambda: same_file(path, copy),
          lambda: f"{copy}, with {labels(receiver, SERVE)} and {os.listdir(received(receiver))}",
          patience)
    last = {form: label(client, form, "Com") for client, form in ((sender, SEND),
                                                                  (receiver, SERVE))}
    assert set(last.values()) <= {WHOLE, DONE}, last
    tells(receiver, SERVE, DONE, f"File Size: {os.path.getsize(path)}")
    tells(sender, SEND, DONE)
    receiver.holds(SERVE, "Save file to", copy)
    return last.values()


def files_of_all_sizes():
    """Each arrives as it was, under its name; one form sends them all, the other takes them all."""
    ann, bob = two_players("data-files")
    serve_form(bob)
    send_form(ann, "bob")
    assert_named(ann, SEND)
    assert_named(bob, SERVE)
    ends = []
    for name, size in FILES:
        path = random_file(file_folder("sizes"), name, size)
        choose(ann, path)
        ann.press(SEND, "Send")
        ends += arrives(ann, bob, path)
    # Each tells that for a second at most, so that one of many may be missed.
    assert ends.count(WHOLE) > len(FILES), ends
    # The same once more, in the place of what came first.
    random_file(file_folder("sizes"), name, 3000)
    ann.press(SEND, "Send")
    arrives(ann, bob, path)
    assert sorted(os.listdir(received(bob))) == sorted(name for name, _ in FILES)
    ann.press(SEND, "Close")
    ann.no_window(SEND)
    bob.press(SERVE, "Close")
    bob.no_window(SERVE)


def flood(stop, visitor):
    count = 0
    while not stop.is_set():
        count += 1
        visitor.says(f"line {count} of very many lines that somebody says")
        time.sleep(0.005)


def file_during_flood():
    """A large file takes a while, in which both rooms are as quick as ever, however much is
    said."""
    ann, bob = two_players("data-large")
    carol = Visitor("carol")
    bob.lists("ann", "bob", "carol")
    path = random_file(file_folder("large"), "large.wad", LARGE, gap=64)
    copy = received(bob, "large.wad")
    serve_form(bob)
    send_form(ann, "bob")
    choose(ann, path)
    for player in (bob, ann):
        player.activate(ROOM)
        player.click(player.find(ROOM, "Message", "text"))
        player.retype(f"{player.name} is still here")
    stop = threading.Event()
    thread = threading.Thread(target=flood, args=(stop, carol))
    thread.start()
    try:
        ann.press(SEND, "Send")
        until(lambda: os.path.exists(copy + ".part"), "the beginning")
        for speaker, hearer in ((ann, bob), (bob, ann)):
            speaker.activate(ROOM)
            key("Return")
            said = time.monotonic()
            hearer.reads(f"{speaker.name}: {speaker.name} is still here")
            took = time.monotonic() - said
            assert took < 1, took
        assert not os.path.exists(copy), "that was no transfer to speak of"
        arrives(ann, bob, path, 120)
    finally:
        stop.set()
        thread.join()
    assert "line 100 of very many" in bob.chat()


def file_gone():
    """What isn't there any more can't be sent; a box tells so, and another file can."""
    ann, bob = two_players("data-gone")
    serve_form(bob)
    send_form(ann, "bob")
    gone = random_file(file_folder("gone"), "gone.wad", 10)
    choose(ann, gone)
    os.remove(gone)
    ann.press(SEND, "Send")
    ann.answer(BOX, f"The file {gone} was not found")
    there = random_file(file_folder("gone"), "there.wad", 20)
    choose(ann, there)
    ann.press(SEND, "Send")
    arrives(ann, bob, there)
    assert os.listdir(received(bob)) == ["there.wad"]


def sender_closes():
    """What came of a file stays beside an older one of its name, which stays whole. Opened anew,
    both forms do their work."""
    ann, bob = two_players("data-closes")
    path = random_file(file_folder("closes"), "large.wad", LARGE, gap=64)
    older = random_file(received(bob), "large.wad", 5000)
    with open(older, "rb") as file:
        content = file.read()
    serve_form(bob)
    send_form(ann, "bob")
    choose(ann, path)
    ann.press(SEND, "Send")
    part = older + ".part"
    until(lambda: os.path.getsize(part) > 0, "the beginning")
    ann.press(SEND, "Close")
    ann.no_window(SEND)
    tells(bob, SERVE, "Average: 0.0 / KBps")  # nothing comes any more
    size = os.path.getsize(part)
    assert 0 < size < LARGE, size
    with open(path, "rb") as file, open(part, "rb") as half:
        assert half.read() == file.read(size)
    with open(older, "rb") as file:
        assert file.read() == content
    bob.press(SERVE, "Close")
    bob.no_window(SERVE)
    serve_form(bob)
    send_form(ann, "bob")
    small = random_file(file_folder("closes again"), "large.wad", 6000)
    choose(ann, small)
    ann.press(SEND, "Send")
    arrives(ann, bob, small)
    assert sorted(os.listdir(received(bob))) == ["large.wad", "large.wad.part"]


class Sender:
    """Somebody without a form, who sends what he likes."""

    def __init__(self):
        self.socket = until(self.connected, "the form to listen")

    @staticmethod
    def connected():
        return socket.create_connection(("127.0.0.1", FILE_PORT), PATIENCE)

    def send(self, stream):
        self.socket.sendall(stream)

    def is_hung_up_on(self):
        self.socket.settimeout(PATIENCE)
        try:
            assert self.socket.recv(1) == b"", "something came back"
        except ConnectionError:
            pass
        self.socket.close()


# Each is no file, for whatever reason.
NO_FILES = (b"FILEINFO|-1|minus.wad|content", b"FILEINFO||nosize.wad|", b"FILEINFO|1e3|words.wad|x",
            b"FILEINFO|99999999999999999999|long.wad|", b"FILEINFO|2147483648|longer.wad|",
            b"FILEINFO|3||abc", b"FILEINFO|3|..|abc", b"FILEINFO|3|../|abc",
            b"FILEINFO|" + b"9" * 5000, b"FILEINFO|3|" + b"n" * 5000, b"GET / HTTP/1.0\r\n\r\n",
            b"\0" * 100)
# Names with more than a name, and where the content goes.
NAMES = ((b"../../evil", "evil"), (b"..\\..\\evil2", "evil2"), (b"/etc/evil3", "evil3"),
         (b"C:\\evil4", "evil4"), (b"a/../../evil5\n", "evil5_"), (b"C:evil6", "evil6"))


def everything_in(folder):
    return {os.path.join(at, name) for at, _, names in os.walk(folder) for name in names}


def hostile_senders():
    """Whatever comes, no file but those in the folder is touched, and the form listens again."""
    _, bob = two_players("data-hostile")
    serve_form(bob)
    before = everything_in(WORK)
    for stream in NO_FILES:
        sender = Sender()
        sender.send(stream)
        sender.is_hung_up_on()
    # More than was announced is dropped.
    for name, kept in NAMES:
        sender = Sender()
        sender.send(b"FILEINFO|7|" + name + b"|contents and more")
        sender.is_hung_up_on()
        path = received(bob, kept)
        until(lambda: os.path.exists(path), lambda: f"{path}, not {os.listdir(received(bob))}")
        with open(path, "rb") as file:
            assert file.read() == b"content"
    added = everything_in(WORK) - before
    assert added == {received(bob, kept) for _, kept in NAMES}, added
    # While one is heard, nobody else is; he may take his time.
    slow = Sender()
    for byte in b"FILEINFO|3|slow.wad|ab":
        slow.send(bytes([byte]))
        time.sleep(0.01)
    until(lambda: os.path.exists(received(bob, "slow.wad.part")), "the beginning")
    try:
        Sender.connected().close()
        raise AssertionError("a second one was let in")
    except ConnectionRefusedError:
        pass
    slow.send(b"c")
    slow.socket.close()
    tells(bob, SERVE, DONE)
    with open(received(bob, "slow.wad"), "rb") as file:
        assert file.read() == b"abc"
    assert not os.path.exists(received(bob, "slow.wad.part"))
    bob.enter("nothing happened")
    bob.reads("bob: nothing happened")


def nobody_listens():
    """A recipient who has not opened his form is waited for in vain, for half a minute."""
    ann, bob = two_players("data-nobody")
    send_form(ann, "bob")
    path = random_file(file_folder("nobody"), "file.wad", 10)
    choose(ann, path)
    ann.press(SEND, "Send")
    begun = time.monotonic()
    ann.enter("do you listen?")
    bob.reads("ann: do you listen?")
    until(lambda: ann.has_window(BOX), "the box", 40)
    took = time.monotonic() - begun
    assert 28 < took < 33, took
    ann.answer(BOX, "Timeout")
    serve_form(bob)
    ann.press(SEND, "Send")
    arrives(ann, bob, path)


SCENARIOS = [files_of_all_sizes, file_during_flood, file_gone, sender_closes, hostile_senders,
             nobody_listens]
