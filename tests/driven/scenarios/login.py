"""The login window."""

from desk import checked, key, until, write
from driver import LOGIN, ROOM, Client, Server, Visitor


def refused_names():
    """Each kind of wrong name has its box, and leaves the window ready for the next try."""
    Server("data-names")
    ann = Client("ann")
    for name, title, words in (("two words", "Kelvaron", "use Spaces in your name"),
                               ("a[b", "Kelvaron", "or [] in your name"),
                               ("1234567890123456", "Kelvaron", "to 12 characters"),
                               ("", "Connection Error", "The server may be down")):
        ann.try_name(name)
        ann.answer(title, words)
    ann.log_in("123456789012345")
    ann.lists("123456789012345")


def keyboard_alone():
    """The way through the window by Tab, a server by blank, Enter and Escape."""
    Server("data-keyboard")
    ann = Client("ann")
    ann.activate(LOGIN)
    for name in ("User Name:", "US - Oregon (Main Sever)", "US - Washington", "Tournament Server",
                 "Login", "Cancel", "User Name:"):
        ann.has_focus(LOGIN, name)
        key("Tab")
    ann.has_focus(LOGIN, "US - Oregon (Main Sever)")
    key("space", "Tab", "space")
    for name, set_ in (("US - Oregon (Main Sever)", False), ("US - Washington", True)):
        until(lambda: checked(ann.find(LOGIN, name)) == set_,
              f"{name} {'set' if set_ else 'cleared'}")
    key("alt+u")
    ann.has_focus(LOGIN, "User Name:")
    write("ann")
    key("Return")
    until(lambda: ann.find(ROOM, "Server").description == "Washington USA", "the chosen server")

    bob = Client("bob")
    bob.activate(LOGIN)
    key("Escape")
    bob.ends("Escape in the login window")


def no_server():
    """Nobody listens: the reason in a box, then the end."""
    ann = Client("ann")
    ann.try_name("ann")
    ann.answer("Kelvaron", "Error: 10061")
    ann.ends("the connection was refused")


def taken_name():
    """A name in use leads to a second login; the room stays behind it."""
    Server("data-taken")
    Visitor("ann").hears("Users\tann")
    bob = Client("bob")
    bob.try_name("ANN")
    bob.answer("Kelvaron", "Another users has chosen that name")
    assert bob.has_window(ROOM)
    bob.log_in("bob")
    bob.lists("ann", "bob")


def second_instance():
    """One Kelvaron per session."""
    first = Client("ann")
    first.window(LOGIN)
    second = Client("ann")
    second.answer("Doh!", "there is another Kelvaron open")
    second.ends("another instance runs")
    assert not first.ended()
    Client("bob").window(LOGIN)


SCENARIOS = [refused_names, keyboard_alone, no_server, taken_name, second_instance]
