#!/usr/bin/env python3
"""Runs the lobby's tests under Wine beside servers of this system.

    run.py SERVER COMMAND...

Each connection to the port in KELVARON_LOBBY_STARTER is a server on a fresh folder; it is told the
server's port, and the server ends with it.
"""
import os
import socket
import subprocess
import sys
import tempfile
import threading


def serve(program, connection):
    with connection, tempfile.TemporaryDirectory() as folder:
        place = ["--folder", folder]
        subprocess.run([program, "--add-moderator", "ann", "ann@example.org", *place],
                       input=b"secret\n", check=True, stdout=subprocess.DEVNULL)
        with subprocess.Popen([program, "--address", "127.0.0.1", "--port", "0", *place],
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True) as server:
            told = server.stdout.readline()
            connection.sendall(told.split(":")[1].split(",")[0].encode() + b"\n")
            while connection.recv(64):
                pass
            server.terminate()


def main(program, *command):
    with socket.create_server(("127.0.0.1", 0)) as listener:

        def accept():
            while True:
                connection, _ = listener.accept()
                threading.Thread(target=serve, args=(program, connection)).start()

        threading.Thread(target=accept, daemon=True).start()
        starter = str(listener.getsockname()[1])
        return subprocess.run(command, env={**os.environ, "KELVARON_LOBBY_STARTER": starter}).returncode


sys.exit(main(*sys.argv[1:]))
