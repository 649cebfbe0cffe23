"""What users learn of each other: profiles and pings."""

import os
import re
import socket
import threading
import time

from desk import key, showing, until, walk, x
from driver import Server, Visitor, enter_room, two_players
from exchange_setup import (BOX, PROFILE, PROFILE_BOXES, edit_profile, from_user_menu, in_profile,
                            writable)
from scenarios.menus import assert_named

OWN = {"User Name": "Marine", "First Name": "Jörg", "Last Name": "O'Neill \"the\" Imp",
       "Age": "29 ½", "Sex": "male", "ICQ Number": "123-456-789", "Email Address": "",
       "City": "Zürich", "State": " ", "Country": "Österreich & €uropa",
       "Home Page": "http://localhost/~marine?a=1&b=2", "Comments": "“frag” – naïve; 100 %"}


def profile_file(client):
    return os.path.join(client.folder, "profile.dat")


def profile_text(texts):
    return "".join(texts.get(name, "") + "\r\n" for name in PROFILE_BOXES).encode("cp1252")


def own_profile():
    """Edited and saved in the file's form; the next opening shows what was saved, and the window
    closed without Save leaves the file as it was."""
    Server("data-own-profile")
    ann, = enter_room("ann")
    edit_profile(ann, OWN)
    expected = profile_text(OWN)
    with open(profile_file(ann), "rb") as file:
        saved = file.read()
    assert saved == expected, (saved, expected)
    ann.open_menu("Tools", "Config", "Edit Profile")
    ann.activate(PROFILE)
    # A blank in front of a record is not read.
    shown = [OWN.get(name, "").lstrip() for name in PROFILE_BOXES]
    assert in_profile(ann) == shown, in_profile(ann)
    assert_named(ann, PROFILE)
    assert writable(ann) == [name for name in PROFILE_BOXES if name != "Version"], writable(ann)
    ann.type_in(PROFILE, "Age", "30")
    key("alt+F4")
    ann.no_window(PROFILE)
    with open(profile_file(ann), "rb") as file:
        assert file.read() == expected


def profile_of_another():
    """Asked for by the menu and shown, while its owner notices nothing; it can't be changed, and
    the asker's own stays hers."""
    ann, bob = two_players("data-profile")
    own = profile_text({"User Name": "Ann", "Version": "4.1", "Comments": "mine"})
    for player, text in ((bob, profile_text(OWN)), (ann, own)):
        with open(profile_file(player), "wb") as file:
            file.write(text)
    from_user_menu(ann, "bob", "Get Profile")
    ann.activate(PROFILE)
    expected = ["bob", "BETA"] + [OWN.get(name, "").lstrip() for name in PROFILE_BOXES[2:]]
    until(lambda: in_profile(ann) == expected, lambda: f"{expected}, not {in_profile(ann)}")
    assert writable(ann) == [], writable(ann)
    assert not any(node.name == "Save" and showing(node) for node in walk(ann.window(PROFILE)))
    assert not bob.has_window(PROFILE)
    ann.activate(PROFILE)
    key("alt+F4")
    ann.no_window(PROFILE)
    # One that comes while the own is at work waits until that is saved.
    ann.open_menu("Tools", "Config", "Edit Profile")
    ann.activate(PROFILE)
    carol = Visitor("carol")
    carol.send("PROFILE2", "ann", "carol", "BETA", *["hers"] * 11)
    carol.says("have a look")
    ann.reads("carol: have a look")
    assert in_profile(ann)[0] == "Ann", in_profile(ann)
    ann.press(PROFILE, "Save")
    until(lambda: in_profile(ann) == ["carol", "BETA"] + ["hers"] * 11,
          lambda: f"carol's, not {in_profile(ann)}")
    assert writable(ann) == [], writable(ann)
    with open(profile_file(ann), "rb") as file:
        assert file.read() == own


def no_profile():
    """Whoever made none is told so; the asker of a user in a game is told to wait."""
    ann, bob = two_players("data-no-profile")
    from_user_menu(ann, "bob", "Get Profile")
    bob.answer(BOX, "Someone is trying to view your profile But you havent made one. "
                    "Please create it to avoid seeing this message")
    assert not ann.has_window(PROFILE)
    carol = Visitor("carol")
    carol.send("INGAME", "carol")
    for entry, words in (("Get Profile", "You may not view a profile from a user that is currently "
                                         "in a game. Try again later when the user returns from "
                                         "his/her game"),
                         ("Ping User", "You may not ping a user that is currently in a game. Try "
                                       "when the user returns")):
        from_user_menu(ann, "carol[IG]", entry)
        ann.answer(BOX, words)
    # Nothing was asked of her: the line that follows is the first that comes.
    ann.enter("are you there?")
    heard = carol.hears("are you there?")
    assert "GETPROFILE" not in heard and "PING" not in heard, heard


def echoes_heard(seconds, address="127.0.0.1"):
    """How many pings to an address went over the wire in a time."""
    end = time.monotonic() + seconds
    count = 0
    with socket.socket(socket.AF_INET, socket.SOCK_RAW, socket.IPPROTO_ICMP) as wire:
        while (left := end - time.monotonic()) > 0:
            wire.settimeout(left)
            try:
                packet = wire.recv(2048)
            except TimeoutError:
                break
            header = 4 * (packet[0] & 15)
            count += packet[header] == 8 and socket.inet_ntoa(packet[16:20]) == address
    return count


def ping():
    """Measured once a second by the machine's own means, until the form is closed."""
    ann, bob = two_players("data-ping")
    from_user_menu(ann, "bob", "Ping User")
    form = "bob's Ping"
    ann.activate(form)
    ann.shows(form, "Player name", "bob")
    ann.shows(form, "Address", "127.0.0.1")
    delay = lambda: ann.find(form, "Ping").description
    measured = lambda: re.fullmatch(r"\d+ ms", delay())
    until(measured, lambda: f"a delay, not {delay()!r}")
    assert_named(ann, form)
    assert 2 <= echoes_heard(2.5) <= 3
    ann.point(ann.find(form, "Re-Ping", "push button"))
    clicks = threading.Thread(target=x, args=("click", "--repeat", 4, "--delay", 300, 1))
    clicks.start()
    assert 6 <= echoes_heard(2.5) <= 7
    clicks.join()
    assert not any(w.name.endswith("Ping") for w in bob.windows())
    # Another's address takes the place of the first.
    carol = Visitor("carol")
    carol.send("RETURNPING", "192.0.2.1", "carol", "ann")
    form = "carol's Ping"
    ann.shows(form, "Address", "192.0.2.1")
    until(lambda: not measured(), lambda: f"no delay to a machine that isn't there: {delay()!r}")
    carol.send("RETURNPING", "127.0.0.1", "carol", "ann")
    until(measured, lambda: f"a delay, not {delay()!r}")
    ann.press(form, "OK")
    ann.no_window(form)
    assert echoes_heard(1.5) == 0


SCENARIOS = [own_profile, profile_of_another, no_profile, ping]
