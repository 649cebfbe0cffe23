"""A new user's walk: every entry and button once, and what must be true of each window."""

import time

from desk import enabled, extents, key, showing, until, walk as nodes
from driver import LOGIN, MOTD, ROOM, Client, Server

BOX = ("Kelvaron", "Escape")
CONFIGURE = ("Configure Kelvaron", "Escape")
# Each entry by its way through the menus: the windows that open one after the other, and the key
# that closes each.
ENTRIES = (
    (("Tools", "Connect"), (MOTD, "Escape")),
    (("Tools", "File Server"), ("Kelvaron File Server", "Escape")),
    (("Tools", "Config", "Configure Games"), CONFIGURE),
    (("Tools", "Config", "Edit Profile"), ("KV User Profiles", "alt+F4")),
    (("Games", "Launch CSDOOM Server"), BOX, CONFIGURE),
    (("Radio", "Volume"), ("Volume", "alt+F4")),
    (("Help", "About Kelvaron"), ("About Kelvaron", "Escape")),
    (("Help", "Request Operator Status"), ("Request OP Status", "Escape")),
    (("Help", "Operator Commands", "Kick User"), ("Kick User", "Escape")),
    (("Help", "Operator Commands", "Get users IP"), ("Get IP", "Escape")),
)
# Of the selected user, by the menu of the right button.
USER_ENTRIES = (
    ("Ping User", ("ann's Ping", "Escape")),
    ("Get Profile", BOX),
    ("Private Message", ("Private Message to : ann", "Escape")),
    ("Send File", ("Kelvaron File Send", "Escape")),
)
USED = ("push button", "text", "list", "check box", "radio button", "combo box", "menu",
        "menu item", "list item", "slider")
# No two of a window have the same name.
SINGLE = ("push button", "text", "check box", "combo box")
PLACED = ("push button", "text", "password text", "list", "check box", "radio button",
          "combo box", "slider", "label")


def letters_of(node):
    try:
        action = node.queryAction()
    except NotImplementedError:
        return set()
    keys = (action.getKeyBinding(i) for i in range(action.nActions))
    return {each for each in keys if each.startswith("Alt+")}


def name_faults(shown):
    told, letters = set(), {}
    for node in shown:
        role = node.getRoleName()
        if role not in USED:
            continue
        if not node.name:
            yield f"a {role} has no name"
        if role in SINGLE and (role, node.name) in told:
            yield f"there are two of {role} {node.name!r}"
        told.add((role, node.name))
        for letter in letters_of(node):
            other = letters.setdefault(letter, node.name)
            if other != node.name:
                yield f"{letter} is for {other!r} and {node.name!r}"


def stands_in(node, other):
    """The strip above the chat is a part of it."""
    return any(above == other for above in (node.parent, node.parent.parent))


def place_faults(window, shown):
    frame = extents(window)
    placed = [(n, extents(n)) for n in shown
              if n.getRoleName() in PLACED and n.parent.getRoleName() not in ("combo box", "list")]
    for i, (node, box) in enumerate(placed):
        if not (frame.x <= box.x and box.x + box.width <= frame.x + frame.width and
                frame.y <= box.y and box.y + box.height <= frame.y + frame.height):
            yield f"{node.name!r} is not within the window"
        for other, there in placed[i + 1:]:
            if (box.x < there.x + there.width and there.x < box.x + box.width and
                    box.y < there.y + there.height and there.y < box.y + box.height and
                    not stands_in(other, node)):
                yield f"{node.name!r} and {other.name!r} overlap"


class Walk:
    """Tells all that is wrong with the windows at the end."""

    def __init__(self, client):
        self.client = client
        self.faults = []

    def look(self, window):
        found = self.client.window(window)
        shown = [n for n in nodes(found) if showing(n)]
        self.faults += [f"{window}: {fault}" for fault in
                        (*name_faults(shown), *place_faults(found, shown))]

    def stop(self, opens, *windows):
        """Each window comes, is looked at, and goes by the keyboard."""
        self.client.activate(ROOM)
        opens()
        for title, closes in windows:
            self.look(title)
            self.client.activate(title)
            texts = self.texts(title)
            if (title, closes) == BOX:
                time.sleep(0.6)  # one that came by itself takes no key at first
            key(closes)
            # The next one may have the same title.
            until(lambda: self.texts(title) != texts, f"{closes} to close {title!r}")
        rest = lambda: [w.name for w in self.client.windows() if w.name != ROOM[0]]
        until(lambda: not rest(), lambda: f"{rest()} to close")

    def texts(self, title):
        window = self.client.look_for_window(title)
        return window and [n.name for n in nodes(window)]


def walk():
    """Every entry of the menus and every button is tried by somebody new."""
    Server("data-walk", motd="Welcome.")
    ann = Client("ann")
    tour = Walk(ann)
    tour.look(LOGIN)
    ann.try_name("ann")
    ann.window(ROOM)
    tour.look(MOTD)
    ann.close_motd()
    ann.lists("ann")
    tour.look(ROOM)
    for path, *windows in ENTRIES:
        if path[-1] == "Connect":
            ann.open_menu("Tools", "Disconnect")
            ann.lists()
        tour.stop(lambda: ann.open_menu(*path), *windows)
    assert not enabled(ann.find(ROOM, "Return from CS", "push button"))
    tour.stop(lambda: ann.press(ROOM, "Request A Game"), BOX, CONFIGURE)
    for entry, *windows in USER_ENTRIES:
        ann.select("ann")

        def opens():
            ann.click(ann.user("ann"), button=3)
            ann.click(ann.menu_entry(entry))

        tour.stop(opens, *windows)
    # Closed by its frame the list is only hidden.
    for command, closes in (("/mute nobody", "alt+F4"), ("/unmute nobody", "Escape")):
        ann.enter(command)
        ann.answer("Kelvaron", "muted")
        tour.stop(lambda: None, ("People you have Muted", closes))
    assert not tour.faults, "\n" + "\n".join(tour.faults)
    ann.open_menu("Tools", "Quit")
    ann.ends("Quit")


SCENARIOS = [walk]
