"""Makes the pictures of the documents: windows of a lively room, each with its frame."""

import os
import subprocess
import time

import exchange_pictures
import game_pictures
import window_pictures
from desk import key, picture, write, x
from driver import LOGIN, MOTD, ROOM, Client, Program, Server, Visitor

# What somebody says or does, and then what it is.
TALK = (
    ("Hellion", "Message", "Hellion: ", "anyone up for coop on Plutonia?"),
    ("Doomgal", "Message", "Doomgal: ", "always! skill 4?"),
    ("imp_slayer", "Message", "imp_slayer: ", "count me in, just let me finish my coffee"),
    ("Hellion", "Message", "Hellion: ", "my notes: http://localhost/plutonia.html (map 1 to 11)"),
    ("Doomgal", "ACTION", "Doomgal is ready to FRAG"),
    ("Vex", "PM", "Marine", "my server has two seats left, join me?", "Vex"),
    ("BFG-Nina", "Message", "BFG-Nina: ", "gg last night, that double kill was unfair :)"),
)
CROWD = ("Hellion", "imp_slayer", "Vex", "Romy", "BFG-Nina", "Crusher", "Doomgal")


def shoot(client, title, path):
    """A picture of a window with its frame."""
    client.activate(title)
    time.sleep(0.5)
    window = x("getactivewindow")
    sides = subprocess.run(["xprop", "-id", window, "_NET_FRAME_EXTENTS"], check=True,
                           capture_output=True, text=True).stdout.split("=")[1].split(",")
    left, right, top, bottom = map(int, sides)
    # The tool's window geometry is off by the frame; the window's own is not.
    lines = subprocess.run(["xwininfo", "-id", window], check=True, capture_output=True,
                           text=True).stdout.splitlines()
    value = dict(line.strip().split(":", 1) for line in lines if ":" in line)
    width = int(value["Width"]) + left + right
    height = int(value["Height"]) + top + bottom
    at_x = int(value["Absolute upper-left X"]) - left
    at_y = int(value["Absolute upper-left Y"]) - top
    picture(path)
    subprocess.run(["convert", path, "-crop", f"{width}x{height}+{at_x}+{at_y}", "+repage",
                    "-strip", path], check=True)


def pictures(folder, *wanted):
    """All parts, or those named: room, match, server, exchange, windows."""
    os.makedirs(folder, exist_ok=True)
    at = lambda name: os.path.join(folder, name)
    parts = {"room": lambda: room(at),
             "match": lambda: game_pictures.match(at("game.png")),
             "server": lambda: game_pictures.server(at("server.png")),
             "exchange": lambda: exchange_pictures.pictures(at, shoot),
             "windows": lambda: window_pictures.small_windows(shoot, at)}
    for part in wanted or parts:
        parts[part]()
        Program.stop_all()


def room(at):
    Server("data-pictures",
           motd="Welcome to Kelvaron. Tournament on Saturday, 20:00, on the tournament server.\n"
                "Be kind to newcomers.\n")
    ann = Client("ann")
    ann.activate(LOGIN)
    write("Marine")
    shoot(ann, LOGIN, at("login.png"))
    crowd = {name: Visitor(name) for name in CROWD}
    crowd["Doomgal"].hears("Users\tVex")
    ann.activate(LOGIN)
    key("Return")
    shoot(ann, MOTD, at("message_of_the_day.png"))
    ann.close_motd()
    for name, mark in (("Romy", "INGAME"), ("Vex", "[CS]"), ("Crusher", "[AW]")):
        crowd[name].send(mark, name)
    ann.user("Romy[IG]")
    ann.enter("hi all")
    for name, *fields in TALK:
        crowd[name].send(*fields)
        time.sleep(0.15)
    ann.reads("unfair")
    ann.enter("give me a minute")
    ann.reads("give me a minute")
    ann.click(ann.user("Hellion"))
    shoot(ann, ROOM, at("room.png"))
    ann.click(ann.user("Doomgal"), repeat=2)
    form = "Private Message to : Doomgal"
    ann.activate(form)
    write("shall we take the red base?")
    shoot(ann, form, at("private_message.png"))
    key("Escape")
    game_pictures.forms(ann, crowd, shoot, at)
    for name in ("Crusher", "Hellion"):
        ann.enter("/mute " + name)
        ann.answer("Kelvaron")
    shoot(ann, "People you have Muted", at("mute_list.png"))
