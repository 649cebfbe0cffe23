"""Makes the pictures of profiles, pings and files."""

import os

from desk import key, until
from driver import WORK, two_players
from exchange_setup import (PROFILE, SEND, SERVE, choose, edit_profile, fill_in, from_user_menu,
                            random_file, received, send_form, serve_form)

MARINE = {"User Name": "Marine", "First Name": "Tom", "Last Name": "Miller", "Age": "29",
          "Sex": "male", "ICQ Number": "000000042", "Email Address": "marine@example.org",
          "City": "Portland", "State": "Oregon", "Country": "USA",
          "Home Page": "http://marine.example.org/", "Comments": "Coop on weekdays after 8 pm"}
HELLION = {"User Name": "Hellion", "First Name": "Jörg", "Last Name": "Bäcker", "Age": "old enough",
           "Email Address": "hellion@example.org", "City": "Zürich", "Country": "Schweiz",
           "Home Page": "http://hellion.example.org/plutonia.html",
           "Comments": "Plutonia or nothing; no mercy"}


def pictures(at, shoot):
    """Of two users."""
    marine, hellion = two_players("data-exchange-pictures", "Marine", "Hellion")
    edit_profile(hellion, HELLION)
    marine.open_menu("Tools", "Config", "Edit Profile")
    marine.activate(PROFILE)
    for name, text in MARINE.items():
        fill_in(marine, PROFILE, name, text)
    shoot(marine, PROFILE, at("profile.png"))
    marine.press(PROFILE, "Save")
    marine.no_window(PROFILE)
    from_user_menu(marine, "Hellion", "Get Profile")
    marine.holds(PROFILE, "User Name", "Hellion")
    shoot(marine, PROFILE, at("profile_of_another.png"))
    from_user_menu(marine, "Hellion", "Ping User")
    form = "Hellion's Ping"
    until(lambda: marine.find(form, "Ping").description.endswith(" ms"), "a delay")
    shoot(marine, form, at("ping.png"))
    marine.press(form, "OK")
    transfer(marine, hellion, at, shoot)


def transfer(sender, receiver, at, shoot):
    name = "redbase, episodes 1 to 4, with new music.wad"
    path = random_file(os.path.join(WORK, "wads"), name, 1 << 30, gap=64)
    serve_form(receiver)
    send_form(sender, "Hellion")
    choose(sender, path)
    sender.press(SEND, "Send")
    until(lambda: os.path.getsize(received(receiver, name + ".part")) > 1 << 28, "a quarter", 60)
    for client, form, box, picture in ((sender, SEND, "Selected file", "file_send.png"),
                                       (receiver, SERVE, "Save file to", "file_server.png")):
        client.activate(form)
        client.click(client.find(form, box, "text"))
        key("End")
        shoot(client, form, at(picture))
    assert not os.path.exists(received(receiver, name)), "too late for a picture"
