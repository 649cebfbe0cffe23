"""A CSDoom server that one hosts and another joins from the user list."""

from desk import enabled, until
from driver import ROOM, two_players
from game_setup import BOX, CONFIGURATION, Engine, configure, folder_for_games, in_game, resumes


def csdoom():
    """Launched from the menu, joined by a right click, left by Resume and Return from CS."""
    ann, bob = two_players("data-csdoom")
    ann.open_menu("Games", "Launch CSDOOM Server")
    ann.answer(BOX, "where the CSDoom server and the CSDoom client are")
    ann.press(CONFIGURATION, "Cancel")

    engines = {}
    for player in (ann, bob):
        games = folder_for_games(player.name + "'s CSDoom")
        engines[player] = [Engine(games, name) for name in ("doomsv.exe", "doomcl.exe")]
        server, client = engines[player]
        configure(player, cs_server=server.path, cs_client=client.path)
    ann.open_menu("Games", "Launch CSDOOM Server")
    for player in (ann, bob):
        player.lists("ann[CS]", "bob")
    server, client = engines[ann]
    server.starts_with()
    client.starts_with("-connect", "127.0.0.1")
    ann.shows(ROOM, "Status", "Hosting CSDOOM Server")

    bob.select("ann[CS]")
    bob.click(bob.user("ann[CS]"), button=3)
    entry = bob.menu_entry("Join CSDOOM Game")
    assert enabled(entry)
    bob.click(entry)
    server, client = engines[bob]
    client.starts_with("-connect", "127.0.0.1")
    assert not server.was_started()
    in_game(bob, [ann])
    resumes(bob, [ann], at="Chat Suspended")

    ann.press(ROOM, "Return from CS")
    for player in (ann, bob):
        player.lists("ann", "bob")
    until(lambda: not enabled(ann.find(ROOM, "Return from CS", "push button")), "hosting to end")
    ann.shows(ROOM, "Status", "Hosting CSDOOM Server")


SCENARIOS = [csdoom]
