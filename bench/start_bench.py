#!/usr/bin/python3
"""start_bench.py PROGRAM [RUNS]: milliseconds from the start of a program to its first pixels on an
otherwise black display, and its resident memory half a second later. The display must be black at
the point that is looked at, which is in the middle of the login window."""

import ctypes
import os
import statistics
import subprocess
import sys
import time

X = ctypes.CDLL("libX11.so.6")
X.XOpenDisplay.restype = ctypes.c_void_p
X.XDefaultRootWindow.restype = ctypes.c_ulong
X.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
X.XGetImage.restype = ctypes.c_void_p
X.XGetImage.argtypes = ([ctypes.c_void_p, ctypes.c_ulong] + [ctypes.c_int] * 2 +
                        [ctypes.c_uint] * 2 + [ctypes.c_ulong, ctypes.c_int])
X.XGetPixel.restype = ctypes.c_ulong
X.XGetPixel.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_int]
X.XDestroyImage.argtypes = [ctypes.c_void_p]
display = X.XOpenDisplay(None)
root = X.XDefaultRootWindow(display)


def pixel(x, y):
    image = X.XGetImage(display, root, x, y, 1, 1, 0xFFFFFFFF, 2)
    value = X.XGetPixel(image, 0, 0)
    X.XDestroyImage(image)
    return value & 0xFFFFFF


def main(program, runs):
    times, resident = [], []
    for _ in range(runs + 1):
        while pixel(640, 520) != 0:
            time.sleep(0.01)
        begun = time.perf_counter()
        process = subprocess.Popen([program], stderr=subprocess.DEVNULL)
        while pixel(640, 520) == 0:
            time.sleep(0.0005)
        times.append((time.perf_counter() - begun) * 1000)
        time.sleep(0.5)
        with open(f"/proc/{process.pid}/status", encoding="ascii") as status:
            resident.append(next(int(line.split()[1]) / 1024 for line in status
                                 if line.startswith("VmRSS")))
        process.terminate()
        process.wait()
        time.sleep(0.2)
    times, resident = times[1:], resident[1:]  # the first run warms the caches
    print(f"{os.path.basename(program)}: start to first paint {statistics.median(times):.0f} ms "
          f"median of {runs} ({min(times):.0f} to {max(times):.0f}), "
          f"{statistics.median(resident):.1f} MiB resident")


main(sys.argv[1], int(sys.argv[2]) if len(sys.argv) > 2 else 11)
