"""What two users do with each other past the room: profiles, pings, files."""

import hashlib
import os
import random

from desk import clipboard, enabled, key, put_on_clipboard, until, walk

BOX = ("Kelvaron", "OK")
PROFILE = "KV User Profiles"
SEND = "Kelvaron File Send"
SERVE = "Kelvaron File Server"

# In the order of the form and of the file.
PROFILE_BOXES = ("User Name", "Version", "First Name", "Last Name", "Age", "Sex", "ICQ Number",
                 "Email Address", "City", "State", "Country", "Home Page", "Comments")
FILE_PORT = 5050
WHOLE, DONE = "Complete: 100 %", "Comlpete!"


def from_user_menu(client, name, entry):
    client.select(name)
    client.click(client.user(name), button=3)
    client.click(client.menu_entry(entry))


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


def in_profile(client):
    return [client.text_in(PROFILE, name) for name in PROFILE_BOXES]


def writable(client):
    return [name for name in PROFILE_BOXES if enabled(client.find(PROFILE, name, "text"))]


def edit_profile(client, texts):
    """Fills the boxes that can be typed in, and saves."""
    client.open_menu("Tools", "Config", "Edit Profile")
    client.activate(PROFILE)
    for name, text in texts.items():
        fill_in(client, PROFILE, name, text)
    client.press(PROFILE, "Save")
    client.no_window(PROFILE)


def labels(client, window):
    return [node.name for node in walk(client.window(window)) if node.getRoleName() == "label"]


def label(client, window, beginning):
    return next((text for text in labels(client, window) if text.startswith(beginning)), None)


def tells(client, window, *texts, patience=8):
    until(lambda: set(texts) <= set(labels(client, window)),
          lambda: f"{texts} in {window!r}, not {labels(client, window)}", patience)


def send_form(client, to):
    from_user_menu(client, to, "Send File")
    client.activate(SEND)


def serve_form(client, listening=True):
    client.open_menu("Tools", "File Server")
    client.activate(SERVE)
    if listening:
        tells(client, SERVE, f"2 on port: {FILE_PORT}")


def choose(client, path):
    """Browses for a file by the dialog."""
    client.press(SEND, "Browse")
    client.activate("Open")
    fill_in(client, "Open", "File name:", path)
    key("Return")
    client.no_window("Open")
    client.holds(SEND, "Selected file", path)
    tells(client, SEND, f"Filesize: {os.path.getsize(path)}")
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


def digest(path):
    result = hashlib.sha256()
    with open(path, "rb") as file:
        while block := file.read(1 << 20):
            result.update(block)
    return result.digest()


def same_file(path, copy):
    return (os.path.exists(copy) and os.path.getsize(copy) == os.path.getsize(path) and
            digest(copy) == digest(path))
