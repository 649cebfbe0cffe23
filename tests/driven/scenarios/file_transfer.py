"""Files that go from one client to the other."""

import os
import socket
import threading
import time

from desk import key, until
from driver import PATIENCE, ROOM, WORK, Client, Visitor, two_players
from exchange_setup import (BOX, DONE, FILE_PORT, SEND, SERVE, WHOLE, choose, label, labels,
                            random_file, received, same_file, send_form, serve_form, tells)

MEGA = 1 << 20
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
    """A large file takes a while, in which the room is as quick as ever, however much is said."""
    ann, bob = two_players("data-large")
    carol = Visitor("carol")
    bob.lists("ann", "bob", "carol")
    path = random_file(file_folder("large"), "large.wad", 200 * MEGA, gap=16)
    serve_form(bob)
    send_form(ann, "bob")
    choose(ann, path)
    ann.activate(ROOM)
    ann.click(ann.find(ROOM, "Message", "text"))
    ann.retype("still here")
    stop = threading.Event()
    thread = threading.Thread(target=flood, args=(stop, carol))
    thread.start()
    begun = time.monotonic()
    ann.press(SEND, "Send")
    took = []
    try:
        until(lambda: os.path.exists(received(bob, "large.wad.part")), "the beginning")
        ann.activate(ROOM)
        said = time.monotonic()
        key("Return")
        bob.reads("ann: still here")
        took.append(time.monotonic() - said)
        middle = (time.monotonic() - begun, label(ann, SEND, "Complete"),
                  label(bob, SERVE, "Complete"))
        copy = received(bob, "large.wad")
        print(middle, os.path.exists(copy))
        until(lambda: os.path.exists(copy), lambda: f"the file, with {labels(bob, SERVE)}", 120)
        print(time.monotonic() - begun)
    finally:
        stop.set()
        thread.join()
    arrives(ann, bob, path)
    print(took)


SCENARIOS = [files_of_all_sizes, file_during_flood]
