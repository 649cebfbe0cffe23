"""Moderators: asking for the rights, and using them with and without having them."""

import time

from desk import key, until
from driver import MOTD, ROOM, Client, Server, Visitor, enter_room

CHIEF = ("ann", "ann@example.org", "secret")
STATUS = "Request OP Status"
KICK = "User Kick"
HIDDEN = "password text"
GRANT = "Moderator Privlidges Granted - You are now a moderator."
REFUSED = "Refused. Your request was logged."
NO_RIGHT = "Only moderators can do that."
WHOM = "Enter the usernick you want to kick"
WHY = "Enter the reason, if any, for kicking this user"
ADDRESS = "Enter a users IP to get"


def open_command(client, name):
    client.open_menu("Help", "Operator Commands", name)


def tell(client, title, prompt, text, holds=""):
    """Answers a box that asks for a text, and says what it held."""
    box = (title, prompt)
    client.activate(box)
    client.holds(box, prompt, holds)
    client.retype(text)
    key("Return")
    # The next box may have the same title.
    until(lambda: not client.has_window(box) or client.look_for(box, prompt) is None,
          f"the question {prompt!r} to go")


def type_secretly(client, window, name, password):
    """Other programs read nothing of what is typed."""
    client.type_in(window, name, password, HIDDEN)
    time.sleep(0.2)
    assert not client.text_in(window, name, HIDDEN), "a password can be read"


def proves(client, mail, password):
    client.open_menu("Help", "Request Operator Status")
    client.type_in(STATUS, "Enter your E-mail address:", mail)
    type_secretly(client, STATUS, "Enter your password:", password)
    client.press(STATUS, "Request Status")
    client.no_window(STATUS)


def moderator_and_guest(folder):
    server = Server(folder, moderator=CHIEF)
    return server, *enter_room("ann", "bob")


def status_request():
    """The right proof brings the grant and the mark, a wrong one the refusal; the cancelled form
    asks nothing, and nobody becomes a moderator by another's proof."""
    _, ann, bob = moderator_and_guest("data-status")
    ann.shows(ROOM, "Logged in as", "ann")
    ann.open_menu("Help", "Request Operator Status")
    ann.type_in(STATUS, "Enter your E-mail address:", CHIEF[1])
    key("Escape")
    ann.no_window(STATUS)
    proves(ann, CHIEF[1], "guess")
    ann.reads(REFUSED)
    ann.shows(ROOM, "Logged in as", "ann")
    proves(bob, CHIEF[1], CHIEF[2])
    bob.reads(REFUSED)
    assert GRANT not in ann.chat() + bob.chat()
    proves(ann, CHIEF[1], CHIEF[2])
    ann.reads(GRANT)
    ann.shows(ROOM, "Logged in as", "\u00a5ann")
    bob.shows(ROOM, "Logged in as", "bob")
    ann.enter("without a mark")
    bob.reads("ann: without a mark")
    proves(ann, CHIEF[1], CHIEF[2])
    ann.reads("You are a moderator already.")
    ann.shows(ROOM, "Logged in as", "\u00a5ann")


def without_rights():
    """Everything is open to a user without the rights, and the server refuses it."""
    _, ann, bob = moderator_and_guest("data-no-rights")
    refusals = lambda: bob.chat().count(NO_RIGHT)
    bob.select("ann")
    open_command(bob, "Kick User")
    tell(bob, "Kick User", WHOM, "ANN", holds="ann")
    tell(bob, "Kick User", WHY, "just so")
    until(lambda: refusals() == 1, "the refused kick")
    open_command(bob, "Get users IP")
    tell(bob, "Get IP", ADDRESS, "ann", holds="ann")
    until(lambda: refusals() == 2, "the refused question for an address")
    for count, line in enumerate(("/msg hear me", "/getip ann", "/kick ann out"), 3):
        bob.enter(line)
        until(lambda: refusals() == count, f"the refusal of {line!r}")
        until(lambda: bob.message() == "", f"{line!r} to be cleared")
    assert "hear me" not in ann.chat() and not ann.ended()
    ann.lists("ann", "bob")
    for player in (ann, bob):
        assert not player.has_window(KICK)


def kick_by_menu():
    """The menu takes a whole entry of the list in any capitals; the other is told who and why,
    and may come back."""
    _, ann, bob = moderator_and_guest("data-kick-menu")
    proves(ann, CHIEF[1], CHIEF[2])
    ann.reads(GRANT)
    for wrong in ("nobody", "bo"):
        open_command(ann, "Kick User")
        tell(ann, "Kick User", WHOM, wrong)
        ann.answer("User dosent exist!", "No user in chat has that name!")
    open_command(ann, "Kick User")
    ann.activate(("Kick User", WHOM))
    key("Escape")
    ann.no_window("Kick User")
    ann.select("bob")
    open_command(ann, "Kick User")
    tell(ann, "Kick User", WHOM, "BOB", holds="bob")
    tell(ann, "Kick User", WHY, "too loud, too long")
    ann.reads("bob was kicked by ann (too loud, too long)")
    ann.lists("ann")
    bob.answer("Kicked!", "by ann", "Reason: too loud, too long")
    bob.ends("a kick")
    bob = Client("bob")
    bob.log_in("bob")
    ann.lists("ann", "bob")


def kick_with_proof():
    """A moderator who has not asked for the rights is asked for the proof by the kick."""
    _, ann, bob = moderator_and_guest("data-proof")
    ann.enter("/kick bob whatever")
    for password in ("guess", CHIEF[2]):
        ann.activate(KICK)
        names = [n.name for n in ann.find(KICK, "Who would you like to kick?", "combo box")[0]]
        assert names == ["ann", "bob"], names
        ann.choose(KICK, "Who would you like to kick?", "bob")
        type_secretly(ann, KICK, "Password", password)
        ann.type_in(KICK, "Email address registered with QZN", CHIEF[1])
        ann.press(KICK, "Kick Selected User")
        ann.no_window(KICK)
        if password == "guess":
            ann.reads(REFUSED)
            ann.lists("ann", "bob")
            ann.enter("/kick bob whatever")
            ann.press(KICK, "Nevermind.")
            ann.no_window(KICK)
            ann.enter("/kick bob whatever")
    bob.answer("Kicked!", "by ann")
    bob.ends("a kick with proof")
    ann.reads("bob was kicked by ann")
    ann.lists("ann")
    # The proof was for this kick alone.
    ann.shows(ROOM, "Logged in as", "ann")


def addresses_and_messages():
    """The rights in use: a user's address by menu and command, and a message to all."""
    _, ann, bob = moderator_and_guest("data-rights")
    proves(ann, CHIEF[1], CHIEF[2])
    ann.reads(GRANT)
    told = lambda: ann.chat().count("; the server sees 127.0.0.1")
    ann.select("bob")
    open_command(ann, "Get users IP")
    tell(ann, "Get IP", ADDRESS, "bob", holds="bob")
    until(lambda: told() == 1, "the address by menu")
    ann.reads("bob tells the address ")
    ann.enter("/getip bob")
    until(lambda: told() == 2, "the address by command")
    ann.enter("/getip ghost")
    ann.reads("ghost is not on Kelvaron.")
    ann.enter("/kick ghost gone")
    until(lambda: ann.chat().count("ghost is not on Kelvaron.") == 2, "the kick of nobody")
    ann.enter("/msg the server restarts at noon")
    for player in (ann, bob):
        player.reads("Message from ann: the server restarts at noon")
    assert "tells the address" not in bob.chat()
    ann.lists("ann", "bob")


def ban():
    """A ban shuts the user out, is refused to those without the rights, and outlasts the server."""
    server = Server("data-ban", moderator=CHIEF)
    ann, guest = Visitor(CHIEF[0]), Visitor("guest")
    bob = Client("bob")
    bob.log_in("bob")
    bob.lists("ann", "bob", "guest")
    guest.send("BAN", "bob", "mine")
    guest.hears(NO_RIGHT)
    ann.send("RequestOP", *CHIEF)
    ann.hears(GRANT)
    ann.send("BAN", "BOB", "cheating at darts")
    bob.answer("Banned from Kelvaron!", "banned from Kelvaron by ann!",
               "Reason: cheating at darts")
    ann.hears("bob was banned by ann (cheating at darts)")
    bob.activate(ROOM)
    key("alt+F4")
    bob.ends("its window was closed")
    for restarted in (False, True):
        if restarted:
            server.stop()
            server = Server("data-ban")
        bob = Client("bob")
        bob.try_name("Bob")
        bob.answer("You have been banned!", "If this is a mistake")
        assert not bob.has_window(MOTD)
        bob.stop()
    # The ban is of the name, as this machine's own addresses stay open.
    bob = Client("bob")
    bob.log_in("bert")
    bob.lists("bert")


SCENARIOS = [status_request, without_rights, kick_by_menu, kick_with_proof, addresses_and_messages,
             ban]
