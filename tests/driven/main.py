"""Runs the scenarios, all or those named, or makes the pictures."""

import os
import sys
import time
import traceback

import desk
import driver
from scenarios import bus, hostile, keyboard, real_engines, walk, windows

SCENARIOS = bus.SCENARIOS + keyboard.SCENARIOS + hostile.SCENARIOS + walk.SCENARIOS
# Only when named: they need what not every machine has.
NAMED = real_engines.SCENARIOS + windows.SCENARIOS


def passes(name, scenario, *arguments):
    begun = time.monotonic()
    try:
        scenario(*arguments)
        print(f"ok      {name} ({time.monotonic() - begun:.1f} s)", flush=True)
        return True
    except Exception:  # whatever went wrong, the others run
        screen = f"{os.environ['KELVARON_FAILURES']}/kelvaron-driven-{scenario.__name__}.png"
        desk.picture(screen)
        print(f"FAILED  {name}: the screen is in {screen}", flush=True)
        traceback.print_exc(file=sys.stdout)
        return False
    finally:
        driver.Program.stop_all()


def main(arguments):
    if arguments[:1] == ["--pictures"]:
        sys.path.append(os.path.join(os.path.dirname(__file__), "../../tools/pictures"))
        import pictures
        folder, *part = arguments[1:]
        return 0 if passes("pictures", pictures.pictures, os.path.abspath(folder), *part) else 1
    if arguments[:1] == ["--stranger"]:
        sys.path.append(os.path.join(os.path.dirname(__file__), "../../bench"))
        import stranger_bench
        return 0 if passes("stranger", stranger_bench.run, *arguments[1:]) else 1
    chosen = SCENARIOS
    if arguments:
        chosen = [s for s in SCENARIOS + NAMED if s.__name__ in arguments]
    if not chosen:
        print("There is no such scenario:", *arguments)
        return 2
    try:
        if set(chosen) & set(real_engines.SCENARIOS):
            real_engines.needs_game()
    except real_engines.Skipped as why:
        print("Skipped:", why)
        return 77
    failed = [s.__name__ for s in chosen if not passes(s.__name__, s)]
    print(f"{len(chosen) - len(failed)} passed, {len(failed)} failed", *failed)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
