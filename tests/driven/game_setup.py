"""Engines that record how they were started, and configurations that lead to them."""

import os
import pathlib

from desk import until
from driver import BIN, WORK

RECORDING_ENGINE = os.path.abspath(
    os.environ.get("KELVARON_RECORDING_ENGINE", os.path.join(BIN, "../tests/recording_engine")))

CONFIGURATION = "Configure Kelvaron"
CHOICE = "Request a Game"
# The form that waits for guests has the application's title until it was used once.
FIRST_WAITING = ("Kelvaron", "GO")
WAITING = "Awaiting Verification"
OFFER = "Game Request"
LAST_LOOK = "Final chance to decline a game."
IN_GAME = "Game Launch in Progress"

# In the order of the file.
RECORDS = ("zdoom", "gl_zdoom", "doom", "doom2", "final_doom", "plutonia", "evilution", "wads",
           "more_wads", "cs_server", "cs_client")


def folder_for_games(name):
    folder = os.path.join(WORK, name)
    os.makedirs(folder)
    return folder


def configure(client, **records):
    assert set(records) <= set(RECORDS), records
    text = "".join(records.get(name, "") + "\r\n" for name in RECORDS)
    pathlib.Path(client.folder, "kvconfig.cfg").write_bytes(text.encode("cp1252"))


class Engine:
    """A program that writes down its arguments."""

    def __init__(self, folder, name):
        self.path = os.path.join(folder, name)
        os.symlink(RECORDING_ENGINE, self.path)

    def arguments(self):
        """Waits for its start; the next start is a new one."""
        until(lambda: os.path.exists(self.path + ".started"), f"{self.path} to be started")
        lines = pathlib.Path(self.path + ".started").read_text("utf-8").splitlines()
        os.remove(self.path + ".started")
        return lines[5:]
