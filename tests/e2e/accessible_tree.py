#!/usr/bin/env python3
"""Prints what a screen reader finds of a running program on the accessibility bus.

    accessible_tree.py APP   one line per showing node of APP's windows, depth-first: window,
                             role, name, states (comma-separated), the role of its parent
"""
import sys

import pyatspi


def walk(node, window, parent, out):
    try:
        states = node.getState()
        if not states.contains(pyatspi.STATE_SHOWING):
            return
        names = [pyatspi.stateToString(s) for s in states.getStates()]
        role = node.getRoleName()
        out.append("\t".join([window, role, node.name.replace("\n", " "), ",".join(names), parent]))
        for child in node:
            if child is not None:
                walk(child, window, role, out)
    except Exception:  # a node that went away while walking
        return


def main():
    app_name = sys.argv[1].lower()
    out = []
    for app in pyatspi.Registry.getDesktop(0):
        if app is not None and app.name.lower() == app_name:
            for window in app:
                if window is not None:
                    walk(window, window.name, "", out)
    print("\n".join(out))


main()
