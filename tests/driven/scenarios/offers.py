"""Offers that somebody else's program makes: very many, and unusual ones."""

import threading
import time

from desk import key, until, write, x
from driver import ROOM, Client, Server, Visitor
from game_setup import (BOX, LAST_LOOK, OFFER, QUESTION, Engine, configure, folder_for_games,
                        game_file, in_game, resumes, stays)

TYPED = "".join(f"word{i} " for i in range(30))


def offers(visitor, wad="NONE", options=" -nomonsters"):
    visitor.send("GAME", "1", "bob", "zdoom2", wad, "NONE", options, "127.0.0.1", visitor.name)


def guest(folder):
    """Bob, who could play, and somebody without a program."""
    Server("data-" + folder)
    bob = Client("bob")
    games = folder_for_games(folder)
    engine, doom2 = Engine(games, "zdoom.exe"), game_file(games, "doom2.wad")
    configure(bob, zdoom=engine.path, doom2=doom2)
    bob.log_in("bob")
    return bob, Visitor("mallory"), engine, doom2


def flood_of_offers():
    """Two hundred offers make one window, and take no letter from who types in the room."""
    bob, mallory, _, _ = guest("flood games")
    bob.activate(ROOM)
    bob.click(bob.find(ROOM, "Message", "text"))
    room = x("getactivewindow")

    def flood():
        for i in range(200):
            offers(mallory, f"wad{i}.wad")
            time.sleep(0.008)
    thread = threading.Thread(target=flood)
    thread.start()
    write(TYPED)
    thread.join()
    bob.holds(OFFER, "Wad", "wad199.wad")
    until(lambda: bob.message() == TYPED, lambda: f"{TYPED!r}, not {bob.message()!r}")
    assert [w.name for w in bob.windows()].count(OFFER) == 1
    assert x("getactivewindow") == room
    # Who wants to answer can, and who doesn't can't put it away.
    stays(bob, OFFER)
    bob.press(OFFER, "Decline")
    mallory.hears("DECLINE\tbob\r\n")
    bob.no_window(OFFER)
    assert bob.message() == TYPED


def unusual_offer():
    """What no Kelvaron would send is asked about before it starts anything."""
    bob, mallory, engine, doom2 = guest("unusual games")
    bob.lists("bob", "mallory")
    offers(mallory, "../x", " +exec evil.cfg")
    bob.holds(OFFER, "Command Line", " +exec evil.cfg")
    bob.press(OFFER, "Accept")
    mallory.hears("XCEPT\tbob\r\n")
    mallory.send("START", "bob")
    for agreed in (False, True):
        bob.press(LAST_LOOK, "OK")
        text = bob.box(QUESTION)
        for words in ("+exec evil.cfg", '"../x"'):
            assert words in text, (words, text)
        bob.activate(QUESTION)
        key("Tab", "space") if agreed else key("Return")
        bob.no_window(QUESTION)
        if not agreed:
            time.sleep(0.5)
            assert not engine.was_started() and "bob" in bob.users()
    arguments = engine.arguments()
    assert arguments[:4] == ["-iwad", doom2, "-join", "127.0.0.1"], arguments
    assert arguments[-2:] == ["+exec", "evil.cfg"], arguments
    in_game(bob, [bob])
    resumes(bob, [bob])


def offer_before_setup():
    """Without the file of the setup there is only a box; with an empty one, the last look tells
    what is missing."""
    Server("data-unset")
    bob = Client("bob")
    bob.log_in("bob")
    mallory = Visitor("mallory")
    bob.lists("bob", "mallory")
    offers(mallory)
    bob.answer(BOX, "Please create it to avoid seeing this message")
    assert not bob.has_window(OFFER)
    configure(bob)
    offers(mallory)
    bob.holds(OFFER, "Game", "ZDOOM / DOOM2")
    bob.press(OFFER, "Accept")
    mallory.hears("XCEPT\tbob\r\n")
    mallory.send("START", "bob")
    bob.press(LAST_LOOK, "OK")
    text = bob.box(QUESTION)
    for words in ("where the engine of this game is", "where the wad of this game is"):
        assert words in text, (words, text)
    bob.activate(QUESTION)
    key("Return")
    bob.no_window(QUESTION)
    bob.press(LAST_LOOK, "Cancel Launch")
    bob.no_window(LAST_LOOK)
    bob.enter("what do I need for that?")
    bob.reads("bob: what do I need")


SCENARIOS = [flood_of_offers, unusual_offer, offer_before_setup]
