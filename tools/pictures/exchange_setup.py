"""What two users do with each other past the room: profiles, files, secrets."""

import hashlib
import os
import random
import subprocess
import time

from desk import PATIENCE, clipboard, key, until, walk

PROFILE = "KV User Profiles"
SEND = "Kelvaron File Send"
SERVE = "Kelvaron File Server"


def from_user_menu(client, name, entry):
    client.select(name)
    client.click(client.user(name), button=3)
    client.click(client.menu_entry(entry))


def put_on_clipboard(text):
    subprocess.run(["xclip", "-selection", "clipboard", "-i"], input=text.encode(), check=True,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=PATIENCE)


def fill_in(client, window, name, text):
    """Letters that the display's keyboard lacks come by the clipboard."""
    if text.isascii():
        client.type_in(window, name, text)
    else:
        client.click(client.find(window, name, "text"))
        put_on_clipboard(text)
        until(lambda: clipboard() == text, "the clipboard")
        key("ctrl+a", "ctrl+v")
    client.holds(window, name, text)


def type_secretly(client, window, name, password):
    """Other programs read nothing of what is typed."""
    client.type_in(window, name, password, "password text")
    time.sleep(0.2)
    assert not client.text_in(window, name, "password text"), "a password can be read"


def edit_profile(client, texts):
    """Fills the boxes that can be typed in, and saves."""
    client.open_menu("Tools", "Config", "Edit Profile")
    client.activate(PROFILE)
    for name, text in texts.items():
        fill_in(client, PROFILE, name, text)
    client.press(PROFILE, "Save")
    client.no_window(PROFILE)


def send_form(client, to):
    from_user_menu(client, to, "Send File")
    client.activate(SEND)


def serve_form(client):
    client.open_menu("Tools", "File Server")
    client.activate(SERVE)
    until(lambda: any(node.name == "2 on port: 5050" for node in walk(client.window(SERVE))),
          "the form to listen")


def choose(client, path):
    """Browses for a file by the dialog."""
    client.press(SEND, "Browse")
    client.activate("Open")
    fill_in(client, "Open", "File name:", path)
    key("Return")
    client.no_window("Open")
    client.holds(SEND, "Selected file", path)
    client.shows(SEND, "File name", os.path.basename(path))


def received(client, name=""):
    return os.path.join(client.folder, "received", name)


def random_file(folder, name, size, gap=1):
    """A file of random bytes; with a gap, blocks of them among holes."""
    os.makedirs(folder, exist_ok=True)
    path = os.path.join(folder, name)
    bytes_of = random.Random(size).randbytes
    block = 1 << 16
    with open(path, "wb") as file:
        for at in range(0, size, block * gap):
            file.seek(at)
            file.write(bytes_of(min(block, size - at)))
        file.truncate(size)
    return path


def same_file(path, copy):
    if not os.path.exists(copy) or os.path.getsize(copy) != os.path.getsize(path):
        return False
    digests = []
    for each in (path, copy):
        with open(each, "rb") as file:
            digests.append(hashlib.file_digest(file, "sha256").digest())
    return digests[0] == digests[1]
