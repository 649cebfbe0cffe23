"""Makes the pictures of games: their forms, and a match with the real game."""

import time

from desk import key, picture, until, x
from driver import ROOM, two_players
from game_setup import (CHOICE, CONFIGURATION, FIRST_WAITING, IN_GAME, LAST_LOOK, OFFER, WAITING,
                        Engine, configure, folder_for_games)
from scenarios import real_engines

HOME = "/home/marine/"
RECORDS = {"zdoom": HOME + "engines/zdoom.exe",
           "gl_zdoom": HOME + "engines/zdoomgl.exe -width 640 -height 480",
           "doom": HOME + "wads/DOOM.WAD", "doom2": HOME + "wads/DOOM2.WAD",
           "final_doom": HOME + "wads/DOOM2F.WAD", "plutonia": HOME + "wads/PLUTONIA.WAD",
           "evilution": HOME + "wads/TNT.WAD", "wads": HOME + "wads/extra",
           "cs_server": HOME + "engines/doomsv.exe", "cs_client": HOME + "engines/doomcl.exe"}


def forms(ann, crowd, shoot, at):
    """The forms of a player, in the order in which one meets them."""
    configure(ann, **RECORDS)
    ann.open_menu("Tools", "Config", "Configure Games")
    ann.tick(CONFIGURATION, "AGP")
    shoot(ann, CONFIGURATION, at("configure.png"))
    key("Escape")

    crowd["Hellion"].send("GAME", "1", "Marine", "zdoom4", "redbase.wad", "NONE",
                          " -nomusic -coop -skill 4 -warp 04", "192.0.2.17", "Hellion")
    shoot(ann, OFFER, at("offer.png"))
    ann.press(OFFER, "Accept")
    crowd["Hellion"].send("START", "Marine")
    ann.activate(LAST_LOOK)
    ann.tick(LAST_LOOK, "Record a Demo")
    ann.type_in(LAST_LOOK, "Demo name", "coop_with_hellion")
    shoot(ann, LAST_LOOK, at("final_chance.png"))
    ann.press(LAST_LOOK, "Cancel Launch")

    # An answer that nobody waits for shows the form, which has its own title once it was closed.
    crowd["Doomgal"].send("DECLINE", "Marine", "Doomgal")
    ann.activate(FIRST_WAITING)
    key("alt+F4")
    ann.select("BFG-Nina")
    x("keydown", "ctrl")
    for name in ("Doomgal", "Hellion"):
        ann.click(ann.user(name))
    x("keyup", "ctrl")
    ann.press(ROOM, "Request A Game")
    ann.activate(CHOICE)
    ann.tick(CHOICE, "Zdoom / DOOM2", "No Music", "Co-Op", "Fast Monsters",
             "Record Demo (Host Only)")
    ann.choose(CHOICE, "Timer (Minutes)", "20")
    ann.choose(CHOICE, "Skill", "4")
    ann.choose(CHOICE, "Warp to Level", "07")
    shoot(ann, CHOICE, at("game_request.png"))
    # The command is made at this press.
    engine = Engine(folder_for_games("picture games"), "zdoom.exe")
    configure(ann, zdoom=engine.path, doom2=engine.path)
    ann.press(CHOICE, "Send Request")
    ann.answer(("Kelvaron", "OK"))
    ann.window(WAITING)
    crowd["Doomgal"].send("XCEPT", "Marine", "Doomgal")
    crowd["BFG-Nina"].send("DECLINE", "Marine", "BFG-Nina")
    lamps = {ann.find(WAITING, name).description: name for name in ("Player 1", "Player 2")}
    ann.shows(WAITING, lamps["Doomgal"] + " accepted", "lit")
    ann.shows(WAITING, lamps["BFG-Nina"] + " declined", "lit")
    shoot(ann, WAITING, at("awaiting.png"))

    ann.press(WAITING, "GO")
    shoot(ann, IN_GAME, at("in_game.png"))
    ann.press(IN_GAME, "Resume")


def place(client, title, left, top):
    client.activate(title)
    x("windowmove", x("getactivewindow"), left, top)
    time.sleep(0.1)


def match(path):
    """Two clients and their game on one screen."""
    real_engines.needs_game()
    players = host, guest = two_players("data-match", "Marine", "Hellion")
    guest.enter("rematch on the red base? deathmatch this time")
    host.enter("you're on - map 7, skill 4")
    guest.reads("skill 4")
    corners = (10, 10), (630, 470)
    for player, corner in zip(players, corners):
        place(player, ROOM, *corner)
    real_engines.start_game(host, guest)
    for player, (left, top) in zip(players, corners):
        place(player, IN_GAME, left + 300, top + 300)
    show_games("chocolate", 1, path)


def server(path):
    """A server that stays, on one screen with its host's game and that of one who has joined it."""
    real_engines.needs_game()
    players = host, guest = two_players("data-picture-server", "Marine", "Hellion")
    stays = real_engines.RealEngine("server", "doomsv.exe")
    games = {}
    for player, corner in zip(players, ((10, 10), (630, 470))):
        game = games[player] = real_engines.RealEngine("game of " + player.name, "doomcl.exe")
        configure(player, cs_server=stays.path, cs_client=game.path + " -width 640 -height 480")
        place(player, ROOM, *corner)
    host.open_menu("Games", "Launch CSDOOM Server")
    games[host].says(r"Map: .*MAP01", 60)
    real_engines.joins(guest, "Marine[CS]")
    games[guest].says(r"Map: .*MAP01", 60)
    place(guest, IN_GAME, 930, 770)
    # Without a graphics card it takes that long until it draws.
    show_games("doomsday", 120, path)


def show_games(of_class, patience, path):
    windows = until(lambda: x("search", "--onlyvisible", "--class", of_class).split(),
                    "the games' windows")
    for window, (left, top) in zip(windows, ((940, 20), (10, 680))):
        x("windowmove", window, left, top, "windowraise", window)
    time.sleep(patience)
    picture(path)
