"""Two clients in one room: talk, private messages, muting, going away."""

import pyatspi

from desk import enabled, has, key, until, write
from driver import ROOM, Client, two_players


def room_talk():
    """Lines go both ways as they were typed, actions and the away mark are seen by the other."""
    ann, bob = two_players("data-talk")
    ann.enter("hello bob")
    bob.enter("hello ann & <b>all</b> %s")
    for player in (ann, bob):
        player.reads("ann: hello bob")
        player.reads("bob: hello ann & <b>all</b> %s")
    ann.enter("/me waves")
    bob.reads("ann waves")
    bob.enter("/away")
    ann.lists("ann", "bob[AW]")
    until(lambda: bob.find(ROOM, "Status").description == "AWAY", "the status")
    bob.enter("back again")
    ann.lists("ann", "bob")
    ann.reads("bob: back again")


def private_messages():
    """A double click opens the form, Send sends, the other reads it in the room."""
    ann, bob = two_players("data-private")
    form = "Private Message to : bob"
    ann.activate(ROOM)
    ann.click(ann.user("bob"), repeat=2)
    ann.activate(form)
    ann.has_focus(form, "Private message")
    write("just you")
    key("Return")
    ann.press(form, "Send")
    ann.no_window(form)
    echo = "Private Message To bob: just you"
    ann.reads(echo)
    bob.reads("Private Message From ann: just you")
    assert ann.chat().count(echo) == 1, "Enter must not send"


def user_menu():
    """A right click opens the menu for the entry that was selected, and selects nothing."""
    ann, _ = two_players("data-user")
    ann.activate(ROOM)
    ann.click(ann.user("bob"))
    ann.click(ann.user("ann"), button=3)
    states = {name: enabled(ann.menu_entry(name)) for name in
              ("Ping User", "Get Profile", "Private Message", "Send File", "Join CSDOOM Game")}
    assert [name for name in states if not states[name]] == ["Join CSDOOM Game"], states
    assert has(ann.user("bob"), pyatspi.STATE_SELECTED)
    assert not has(ann.user("ann"), pyatspi.STATE_SELECTED)
    ann.click(ann.menu_entry("Private Message"))
    ann.window("Private Message to : bob")


def mute_list():
    """Muting brings the list into view and keeps the other's lines out; unmuting lets them in."""
    ann, bob = two_players("data-mute")
    form = "People you have Muted"
    ann.enter("/mute bob")
    ann.answer("Kelvaron", "BOB has been muted")
    ann.window(form)
    muted = lambda: [n.name for n in ann.find(form, "Muted users", "list")]
    assert muted() == ["BOB"], muted()
    ann.press(form, "Hide Me")
    ann.no_window(form)
    bob.enter("nobody hears this")
    bob.reads("nobody hears this")
    ann.enter("/unmute bob")
    ann.answer("Kelvaron", "bob Has been unmuted.")
    until(lambda: muted() == [], "the list to be empty")
    bob.enter("heard again")
    ann.reads("bob: heard again")
    assert "nobody hears this" not in ann.chat()


def farewells():
    """Closing the window says farewell to the room; Quit leaves without a word."""
    ann, bob = two_players("data-farewell")
    bob.activate(ROOM)
    key("alt+F4")
    bob.ends("its window was closed")
    ann.reads("bob has become bored with life and left Kelvaron!")
    ann.lists("ann")
    bob = Client("bob")
    bob.log_in("bob")
    ann.lists("ann", "bob")
    bob.open_menu("Tools", "Quit")
    bob.ends("Quit")
    ann.lists("ann")
    assert ann.chat().count("bored with life") == 1, ann.chat()


SCENARIOS = [room_talk, private_messages, user_menu, mute_list, farewells]
