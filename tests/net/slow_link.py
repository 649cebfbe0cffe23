#!/usr/bin/env python3
"""slow_link.py NAME-A NAME-B: a cable between two network devices that it makes.

What goes from A to B comes 50 ms late, and two frames in a hundred are lost on the way. It is ready
when it says so, and lasts until it is killed.
"""
import contextlib
import fcntl
import heapq
import os
import random
import select
import struct
import sys
import time

TUNSETIFF = 0x400454CA
IFF_TAP = 0x0002
IFF_NO_PI = 0x1000
DELAY_S = 0.050
LOSS = 0.02
MOST_UNDER_WAY = 1000  # frames; more are dropped, as in any cable's queue


def open_tap(name):
    device = os.open("/dev/net/tun", os.O_RDWR | os.O_NONBLOCK)
    fcntl.ioctl(device, TUNSETIFF, struct.pack("16sH22x", name.encode(), IFF_TAP | IFF_NO_PI))
    return device


def frames(device):
    with contextlib.suppress(OSError):  # nothing more for now, or the device is down
        while True:
            yield os.read(device, 65536)


def write(device, frame):
    with contextlib.suppress(OSError):  # the device is down: the frame is lost
        os.write(device, frame)


def main():
    a, b = open_tap(sys.argv[1]), open_tap(sys.argv[2])
    print("ready", flush=True)
    chance = random.Random(1)
    under_way = []
    number = 0
    while True:
        wait = max(0, under_way[0][0] - time.monotonic()) if under_way else None
        readable, _, _ = select.select([a, b], [], [], wait)
        if b in readable:
            for frame in frames(b):
                write(a, frame)
        if a in readable:
            for frame in frames(a):
                if chance.random() >= LOSS and len(under_way) < MOST_UNDER_WAY:
                    number += 1
                    heapq.heappush(under_way, (time.monotonic() + DELAY_S, number, frame))
        while under_way and under_way[0][0] <= time.monotonic():
            write(b, heapq.heappop(under_way)[2])


main()
