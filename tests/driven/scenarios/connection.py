"""The connection: lost, taken up again, taken away."""

import signal

from desk import key, until
from driver import LOGIN, ROOM, Client, Server, Visitor, enter_room


def lost_server():
    """The server is gone: a notice, the room stays, and Connect takes it up again."""
    server = Server("data-lost")
    ann, bob = enter_room("ann", "bob")
    server.stop(signal.SIGKILL)
    for player in (ann, bob):
        player.reads("* Connection to the server has been lost!")
        assert player.users() == ["ann", "bob"], player.users()
    ann.enter("kept")
    assert ann.message() == "kept", "what cannot be sent stays"
    Server("data-lost")
    ann.open_menu("Tools", "Connect")
    ann.close_motd()
    ann.lists("ann")
    ann.activate(ROOM)
    ann.click(ann.find(ROOM, "Message", "text"))
    key("Return")
    ann.reads("ann: kept")


def disconnect():
    """Disconnect empties the room, without the notice of a lost connection."""
    Server("data-disconnect")
    ann = Client("ann")
    ann.log_in("ann")
    bob = Visitor("bob")
    ann.lists("ann", "bob")
    ann.open_menu("Tools", "Disconnect")
    ann.lists()
    until(lambda: ann.chat() == "", "the view to be empty")
    bob.hears("Userscl\r\nUsers\tbob\r\n")
    assert ann.chat() == ""


def kicked():
    """A moderator's kick is told with name and reason, and ends the program."""
    Server("data-kick", moderator=("chief", "chief@example.org", "secret"))
    chief = Visitor("chief")
    chief.send("RequestOP", "chief", "chief@example.org", "secret")
    chief.hears("Moderator Privlidges Granted")
    bob = Client("bob")
    bob.log_in("bob")
    bob.lists("bob", "chief")
    chief.send("KICK", "bob", "spam and more")
    bob.answer("Kicked!", "by chief", "Reason: spam and more")
    bob.ends("a kick")
    assert not bob.has_window(LOGIN)


SCENARIOS = [lost_server, disconnect, kicked]
