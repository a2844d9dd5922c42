"""The exercise of the plug-in's window that is the same in every host."""

import time

import common
from common import ROUNDS, Ended, Failure, say, wait_for


def first_look(window, result):
    """Whether this really is Orvo's window; then 4x oversampling is set in it with the mouse."""
    wait_for(lambda: common.painted(window), "the plug-in's picture")
    common.click_in_plugin(window, common.FOUR_TIMES)
    common.picture("window", window)
    result.saw(f"window of {common.colours(window)} colours")


def turn(program, find, open_window, close_window, beside, result):
    """Opens and closes the window ROUNDS times; beside(number) does something else with windows meanwhile."""
    number = 0
    try:
        for number in range(1, ROUNDS + 1):
            window = common.ask_until(open_window, lambda: program.check() and find(), "the plug-in's window")[0]
            wait_for(lambda: program.check() and common.plugin_area(window), "the plug-in's own window in the host's")
            if number % 5 == 1:
                resize(program, window, number)
            if number % 4 == 2:
                open_menu(program, window)  # the window goes while its menu is there
            elif number % 4 != 3:  # else it goes as soon as it came
                beside(number)
            close_window(window)
            wait_for(lambda: program.check() and not find(), "the window to close")
            if number % 10 == 0:
                say(f"round {number}")
    except Failure as failure:
        raise Failure(f"in round {number} of {ROUNDS}: {failure}") from None
    result.did(f"window opened and closed {ROUNDS} times")


def open_menu(program, window):
    wait_for(lambda: program.check() and common.painted(window), "the picture before the menu")
    common.rest(window)  # a menu goes when its window moves
    before = common.shown()
    common.click_in_plugin(window, common.CURVE_MENU)
    try:
        wait_for(lambda: program.check() and common.shown() - before, "the plug-in's menu")
    except Ended:
        raise
    except Failure as failure:
        if common.pointer_is_held():
            raise Failure(f"{failure}, whose click the window manager holds") from None
        raise
    # A menu that takes the host's answer to the click for another program's is gone after some 60 ms.
    time.sleep(0.3)
    if not common.shown() - before:
        raise Failure("the plug-in's menu went by itself")


def resize(program, window, number):
    """By the window manager, as a user drags the frame; then the picture has to come again. -1 leaves the position."""
    common.rest(window)
    width, height = common.geometry(window)[2:]
    step = 120 if number % 2 else -120
    common.place(window, -1, -1, width + step, height + step)
    wait_for(lambda: program.check() and common.painted(window), "the picture after resizing")
    common.place(window, -1, -1, width, height)
    wait_for(lambda: program.check() and common.painted(window), "the picture after resizing back")
