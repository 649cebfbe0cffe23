"""Games arranged in the room, with engines that record how they were started."""

import os

from desk import key, process_at_work, until
from driver import ROOM, Client, Server, two_players
from game_setup import (BOX, CHOICE, CONFIGURATION, FIRST_WAITING, IN_GAME, LAST_LOOK, OFFER,
                        WAITING, Engine, config_file, config_text, configure, folder_for_games,
                        game_file, in_game, resumes, stays)

WAD = "Castle Of Evil.wad"


def first_configuration(ann, engine, gl_engine, doom2, wads):
    """Without a configuration, asking for a game leads to the form that makes one."""
    ann.press(ROOM, "Request A Game")
    ann.answer(BOX, "Before your first game", "where your game engine and your wads are")
    for button, box, path in (("Locate ZDOOM", "Location Of ZDOOM", engine.path),
                              ("Locate GLZDoom", "Location Of GLZDoom", gl_engine.path),
                              ("Locate Doom2", "Doom2", doom2)):
        ann.press(CONFIGURATION, button)
        ann.choose_file("Open", path)
        ann.holds(CONFIGURATION, box, path)
    # A file of another name empties the box.
    ann.press(CONFIGURATION, "Locate Doom")
    ann.choose_file("Open", doom2)
    ann.holds(CONFIGURATION, "Doom", "")
    for card, switches in (("Voodoo1", " -paltex -3dfx -sprmaxsurf 4096"),
                           ("Voodoo2/3", " -paltex -3dfx")):
        ann.tick(CONFIGURATION, card)
        ann.holds(CONFIGURATION, "Location Of GLZDoom", gl_engine.path + switches)
    ann.type_in(CONFIGURATION, "External Wad Location", wads)
    ann.press(CONFIGURATION, "Save Configuration")
    ann.no_window(CONFIGURATION)
    with open(config_file(ann), "rb") as file:
        saved = file.read()
    expected = config_text(zdoom=engine.path, gl_zdoom=gl_engine.path + " -paltex -3dfx",
                           doom2=doom2, wads=wads)
    assert saved == expected, saved


def choose_game(ann):
    ann.select("bob")
    ann.press(ROOM, "Request A Game")
    ann.activate(CHOICE)
    # The first brings the levels, the second takes its place.
    ann.tick(CHOICE, "Zdoom / DOOM2")
    ann.tick(CHOICE, "ZGLdoom / DOOM2", "No Monsters", "Deathmatch",
             "Extratic (Sends backup movements)")
    assert not ann.ticked(CHOICE, "Zdoom / DOOM2")
    ann.choose(CHOICE, "Timer (Minutes)", "10")
    ann.choose(CHOICE, "Skill", "4")
    ann.choose(CHOICE, "Warp to Level", "07")
    ann.type_in(CHOICE, "Turbo", "155")
    ann.press(CHOICE, "Locate External Wad")
    # The dialog stands in the folder of external wads.
    ann.choose_file("Choose Your Wad", WAD)
    ann.holds(CHOICE, "External Wad", WAD)


OPTIONS = "-nomonsters -deathmatch -timer 10 -turbo 155 -skill 4 -warp 07"


def offered(ann, bob):
    """The offer shows everything, and leaves the keyboard where it was."""
    bob.window(OFFER)
    for name, text in (("Game request from", "ann"), ("Game", "GLDOOM / DOOM2"), ("Wad", WAD),
                       ("Skin", "NONE"), ("Command Line", " -extratic  " + OPTIONS),
                       ("Users IP", "127.0.0.1")):
        bob.holds(OFFER, name, text)
    assert process_at_work() == ann.process.pid


def whole_road():
    """From a fresh program to two engines: a configuration, an offer declined, one accepted."""
    ann, bob = two_players("data-road")
    ann_games, bob_games = folder_for_games("Ann's Games"), folder_for_games("Bob's Games")
    engine, gl_engine = Engine(ann_games, "zDoom.Exe"), Engine(ann_games, "ZDoomGL.exe")
    doom2 = game_file(ann_games, "Doom2.Wad")
    wads = {}
    for folder in (ann_games, bob_games):
        wads[folder] = os.path.join(folder, "Extra Wads")
        os.mkdir(wads[folder])
        game_file(wads[folder], WAD)
    first_configuration(ann, engine, gl_engine, doom2, wads[ann_games])
    # The disk spells bob's files otherwise than his configuration does.
    bob_engine = Engine(bob_games, "zdoomgl.exe")
    bob_doom2 = game_file(bob_games, "DOOM2.WAD")
    said = {"gl_zdoom": os.path.join(bob_games, "ZDoomGL.EXE") + " -width 640 -height 480",
            "doom2": os.path.join(bob_games, "doom2.wad"),
            "wads": wads[bob_games].replace("Extra", "EXTRA")}
    configure(bob, **said)

    choose_game(ann)
    ann.press(CHOICE, "Send Request")
    ann.no_window(CHOICE)
    ann.window(FIRST_WAITING)
    ann.shows(FIRST_WAITING, "Player 1", "bob")
    ann.shows(FIRST_WAITING, "Player 2", "None")
    offered(ann, bob)
    bob.press(OFFER, "Decline")
    bob.no_window(OFFER)
    ann.shows(FIRST_WAITING, "Player 1 declined", "lit")
    ann.shows(FIRST_WAITING, "Player 1 accepted", "unlit")
    ann.activate(FIRST_WAITING)
    key("alt+F4")
    ann.no_window(FIRST_WAITING)

    choose_game(ann)
    ann.press(CHOICE, "Send Request")
    ann.window(WAITING)
    ann.shows(WAITING, "Player 1 declined", "unlit")
    offered(ann, bob)
    bob.press(OFFER, "Accept")
    bob.no_window(OFFER)
    ann.shows(WAITING, "Player 1 accepted", "lit")
    ann.shows(WAITING, "Player 1 declined", "unlit")
    ann.press(WAITING, "GO")
    ann.no_window(WAITING)
    options = OPTIONS.split()
    gl_engine.starts_with("-paltex", "-3dfx", "-IWAD", doom2, "-extratic", *options, "-host", "2",
                          "-file", os.path.join(wads[ann_games], WAD))
    in_game(ann, [bob])

    command = (f"{said['gl_zdoom']} -iwad {said['doom2']} -join 127.0.0.1 "
               f"-file {said['wads']}\\{WAD}  -extratic  {OPTIONS}")
    until(lambda: bob.text_in(LAST_LOOK, "Command").rstrip("\n") == command,
          lambda: f"{command!r}, not {bob.text_in(LAST_LOOK, 'Command')!r}")
    bob.tick(LAST_LOOK, "Record a Demo")
    bob.type_in(LAST_LOOK, "Demo name", "bobs demo")
    bob.press(LAST_LOOK, "OK")
    bob.no_window(LAST_LOOK)
    bob_engine.starts_with("-width", "640", "-height", "480", "-iwad", bob_doom2, "-join",
                           "127.0.0.1", "-file", os.path.join(wads[bob_games], WAD), "-extratic",
                           *options, "-record", os.path.join(bob.folder, "bobs demo"))
    in_game(bob, [ann])
    resumes(ann, [bob])
    resumes(bob, [ann])
    assert not engine.was_started()


def solo_game():
    """A game alone, with its demo; the form stays for the next one."""
    Server("data-solo")
    ann = Client("ann")
    games = folder_for_games("solo games")
    engine, doom2 = Engine(games, "zdoom.exe"), game_file(games, "doom2.wad")
    configure(ann, zdoom=engine.path, doom2=doom2)
    ann.log_in("ann")
    ann.press(ROOM, "Request A Game")
    ann.activate(CHOICE)
    assert not ann.usable(CHOICE, "Zdoom / DOOM") and ann.usable(CHOICE, "Zdoom / DOOM2")
    ann.press(CHOICE, "Send Request")
    ann.answer(BOX, "You must first choose a game")
    ann.tick(CHOICE, "Zdoom / DOOM2", "Record Demo (Host Only)", "Make my game a SOLO GAME")
    ann.press(CHOICE, "Send Request")
    ann.answer(BOX, "Your demo will be placed in the Kelvaron Directory")
    engine.starts_with("-IWAD", doom2, "-record", os.path.join(ann.folder, "kvdemo"))
    in_game(ann, [ann])
    stays(ann, IN_GAME)
    resumes(ann, [ann])
    assert ann.ticked(CHOICE, "Zdoom / DOOM2")
    ann.press(CHOICE, "Cancel")
    ann.no_window(CHOICE)


def failing_engines():
    """Each failure is told with the program's name, the reason and what it said last."""
    Server("data-failing")
    ann = Client("ann")
    games = folder_for_games("failing games")
    doom2 = game_file(games, "doom2.wad")
    engine = Engine(games, "zdoom.exe",
                    ("say loading the map", "warn Error: no such map", "exit 3"))
    text = game_file(games, "text.exe")
    gone = os.path.join(games, "gone.exe")
    configure(ann, zdoom=engine.path, doom2=doom2)
    ann.log_in("ann")
    ann.press(ROOM, "Request A Game")
    ann.tick(CHOICE, "Zdoom / DOOM2", "Make my game a SOLO GAME")
    for path, *words in ((engine.path, "ended with the error 3", "loading the map",
                          "Error: no such map"),
                         (gone, "was not found"), (text, "is not executable")):
        configure(ann, zdoom=path, doom2=doom2)
        ann.press(CHOICE, "Send Request")
        ann.answer(BOX, path, *words)
        in_game(ann, [ann])
        resumes(ann, [ann])
    ann.enter("still here")
    ann.reads("ann: still here")


SCENARIOS = [whole_road, solo_game, failing_engines]
