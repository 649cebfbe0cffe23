"""What a stranger's lines cost: the longest time without an answer while they come, how the program
grows, and how often an idle one wakes. The real program on a virtual display; a server that sends
what it likes. Run by tests/driven/run.sh BIN-FOLDER --stranger."""

import os
import select
import threading
import time

from desk import until, x
from driver import ROOM, Program
from game_setup import OFFER, configure
from scenarios.hostile import in_the_room

SIZE = 1_000_000
WATCHED = 5  # seconds
BLANKS = "word " * (SIZE // 5)
SOLID = "x" * SIZE
OFFER_LINE = "GAME\tzdoom2\t{0}\tNONE\t{1}\t10.0.0.9\t{2}"
THIRD = "y" * 300_000
LONG_OFFER = OFFER_LINE.format("a.wad", " " + THIRD, THIRD).replace("10.0.0.9", THIRD)
OFFERS = [OFFER_LINE.format(f"wad{i}.wad", " -fast", "bob") for i in range(10_000)]
# What is sent, as the lines of a moment.
CASES = {
    "nothing": [],
    "a chat line": ["Message\tbob: \t" + SOLID],
    "a chat line, with blanks": ["Message\tbob: \t" + BLANKS],
    "the message of the day": ["MOTD\t" + SOLID],
    "the message of the day, with blanks": ["MOTD\t" + BLANKS],
    "a profile's field": ["PROFILE\tbob" + ("\t" + SOLID) + "\t" * 12],
    "20 nicknames of the list": ["Userscl"] + [f"Users\t{i:02}" + SOLID[:50_000] for i in range(20)],
    "40 nicknames of 900,000": ["Userscl"] + [f"Users\t{i:02}" + SOLID[:900_000] for i in range(40)],
    "a list of 1,000,000 names": ["Userscl"] + [f"Users\tp{i * 7919 % 1_000_003}"
                                               for i in range(1_000_000)],
    "the moderator's mark 200,000 times":
        ["STATUSTEXT\t255\tModerator Privlidges Granted - You are now a moderator."] * 200_000,
    "the name in the ping form": ["THEPING\t127.0.0.1\t" + SOLID],
    "a box": ["MSGBOX\t" + SOLID],
    "a link of 900,000 closing brackets": ["Message\tbob: \thttp://a/" + ")" * 900_000],
    "an offer of three fields of 300,000": [LONG_OFFER],
    "its last look": ["START"],
    "a line that grows to 100 MB": None,
    "10,000 offers at once": OFFERS,
    "10,000 offers over three fields of 300,000": [LONG_OFFER, *OFFERS],
    "10,000 offers over such windows": [LONG_OFFER, "START", *OFFERS],
}


def resident(client):
    with open(f"/proc/{client.process.pid}/statm", encoding="ascii") as file:
        return int(file.read().split()[1]) * os.sysconf("SC_PAGE_SIZE") / (1 << 20)


def wakes(client):
    """How often its threads have gone to sleep so far, which is once for each time they woke."""
    count = 0
    for thread in os.listdir(f"/proc/{client.process.pid}/task"):
        with open(f"/proc/{client.process.pid}/task/{thread}/status", encoding="ascii") as file:
            count += sum(int(line.split()[1]) for line in file if line.startswith("voluntary"))
    return count


def grow(server):
    server.connections[-1].sendall(b"Message\tbob: \t")
    block = b"x" * (1 << 20)
    for _ in range(100):
        server.connections[-1].sendall(block)


def send_and_point(client, server, lines):
    """Sends, and moves the pointer to and fro over what came."""
    server.send(*lines)
    client.point(client.find(ROOM, "Chat", "text"))
    for step in range(30):
        x("mousemove_relative", "--", 3 if step % 2 else -3, 20 if step % 3 else -40)
        time.sleep(0.05)


def longest_wait(client, act, busy=lambda: False):
    """Asks how much the input line holds, over and over, each a question and an answer; in ms."""
    line = client.find(ROOM, "Message", "text").queryText()
    sender = threading.Thread(target=act)
    sender.start()
    longest, end = 0, time.monotonic() + WATCHED
    while time.monotonic() < end or sender.is_alive() or busy():
        asked = time.monotonic()
        assert line.characterCount == 0
        longest = max(longest, time.monotonic() - asked)
        time.sleep(0.004)
    sender.join()
    return longest * 1000


def lines(wanted):
    print(f"{'what comes':45} {'longest wait':>12} {'growth':>10} {'all handled':>12}")
    for name, sent in CASES.items():
        if wanted and name not in wanted:
            continue
        server, ann = in_the_room()
        configure(ann)
        if name == "its last look":
            server.send(LONG_OFFER)
            ann.press(OFFER, "Accept")
            time.sleep(1)
        server.connections[-1].recv(1 << 16)  # the greeting
        before, begun, took = resident(ann), time.monotonic(), []

        def busy():
            """Until the question behind all lines is answered."""
            if not took and select.select([server.connections[-1]], [], [], 0)[0]:
                took.append(time.monotonic() - begun)
            return not took and bool(sent)

        wait = longest_wait(ann, lambda: grow(server) if sent is None
                            else send_and_point(ann, server, [*sent, "getip"]), busy)
        print(f"{name:45} {wait:9.0f} ms {resident(ann) - before:6.1f} MiB "
              f"{took[0] if took else 0:10.1f} s", flush=True)
        Program.stop_all()


def private_message_window():
    """The window whose title and label hold a name of a million characters."""
    server, ann = in_the_room()
    server.send("Userscl", "Users\t" + SOLID)
    until(lambda: len(ann.users()) == 1, "the long name")
    ann.click(ann.find(ROOM, "Users")[0], repeat=2)
    wait = longest_wait(ann, lambda: time.sleep(1))
    print(f"{'the window of a private message':45} {wait:9.0f} ms", flush=True)
    Program.stop_all()


def unread_answers():
    """A server that asks for the address and reads no answer."""
    server, ann = in_the_room()
    before, sent = resident(ann), 0
    server.connections[-1].settimeout(1)
    try:
        while sent < 300 << 20:
            sent += server.connections[-1].send(b"getip\r\n" * 10_000)
    except TimeoutError:
        pass
    time.sleep(1)
    print(f"getip without reading: {sent / (1 << 20):.1f} MiB taken, "
          f"the client grew by {resident(ann) - before:.1f} MiB", flush=True)
    Program.stop_all()


def idle():
    _, ann = in_the_room()
    x("mousemove", 2, 2)
    time.sleep(12)  # the caret blinks for a while
    before = wakes(ann)
    time.sleep(20)
    print(f"idle: {(wakes(ann) - before) / 20:.2f} wakes a second", flush=True)
    Program.stop_all()


def run(*wanted):
    """All, or the cases named."""
    if not wanted:
        idle()
        unread_answers()
        private_message_window()
    lines(wanted)
