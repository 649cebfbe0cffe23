"""What only a display shows: sizes, the keyboard, other programs, a server that goes."""

import signal

from desk import extents, key, until, x
from driver import LOGIN, ROOM, Client, Server, enter_room


def resizing():
    """The controls follow the window's size, and come back without drift."""
    Server("data-size")
    ann, = enter_room("ann")
    ann.activate(ROOM)
    window = x("getactivewindow")
    size = lambda: tuple(extents(ann.find(ROOM, "Chat", "text").parent))[2:]
    sizes = lambda: [tuple(extents(ann.find(ROOM, name)))[2:] for name in
                      ("Chat", "Message", "Users", "Request A Game", "Status")]
    original, before = size(), sizes()
    bar = extents(ann.window(ROOM)).height - original[1]
    for width, height in ((1200, 900), (500, 400), (original[0], original[1] + bar)):
        x("windowsize", "--sync", window, width, height)
        until(lambda: size() == (width, height - bar), lambda: f"{width}x{height}: {size()}")
        shares = [now[0] / then[0] for now, then in zip(sizes(), before)]
        assert all(abs(share - width / original[0]) < 0.02 for share in shares), shares
    assert sizes() == before, (before, sizes())


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


def second_instance():
    """One Kelvaron per session."""
    first = Client("ann")
    first.window(LOGIN)
    second = Client("ann")
    second.answer("Doh!", "there is another Kelvaron open")
    second.ends("another instance runs")
    assert not first.ended()
    Client("bob").window(LOGIN)


SCENARIOS = [resizing, lost_server, second_instance]
