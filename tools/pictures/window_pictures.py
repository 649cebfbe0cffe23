"""Pictures of the small windows of the room: the about box, the radio's volume, moderation."""

from desk import key
from driver import Client, Server, Visitor


def small_windows(shoot, at):
    Server("data-small-windows", moderator=("Marine", "marine@example.org", "hell on earth"))
    ann = Client("ann")
    ann.log_in("Marine")
    for name in ("Hellion", "Vex"):
        Visitor(name)
    ann.lists("Hellion", "Marine", "Vex")
    for entry, title, file in (
            (("Help", "About Kelvaron"), "About Kelvaron", "about.png"),
            (("Radio", "Volume"), ("Volume", "Volume Control"), "volume.png"),
            (("Help", "Request Operator Status"), "Request OP Status", "status_request.png")):
        ann.open_menu(*entry)
        if file == "status_request.png":
            ann.type_in(title, "Enter your E-mail address:", "marine@example.org")
            ann.type_in(title, "Enter your password:", "hell on earth", "password text")
        if file == "volume.png":
            ann.activate(title)
            key("Page_Up", "Page_Up")
        shoot(ann, title, at(file))
        key("alt+F4")
        ann.no_window(title)
    ann.enter("/kick Vex")
    ann.choose("User Kick", "Who would you like to kick?", "Vex")
    ann.type_in("User Kick", "Password", "hell on earth", "password text")
    ann.type_in("User Kick", "Email address registered with QZN", "marine@example.org")
    shoot(ann, "User Kick", at("user_kick.png"))
