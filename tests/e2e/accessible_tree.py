#!/usr/bin/env python3
"""Prints what a screen reader finds of a running program on the accessibility bus.

    accessible_tree.py APP   one line per showing node of APP's windows, depth-first: window,
                             role, name, states (comma-separated), the role of its parent
"""
import sys

import pyatspi


def walk(node, window, parent):
    try:
        states = node.getState()
        if not states.contains(pyatspi.STATE_SHOWING):
            return
        names = ",".join(pyatspi.stateToString(s) for s in states.getStates())
        role = node.getRoleName()
        print("\t".join([window, role, node.name.replace("\n", " "), names, parent]))
        for child in node:
            if child is not None:
                walk(child, window, role)
    except Exception:  # a node that went away while walking
        return


for app in pyatspi.Registry.getDesktop(0):
    if app is not None and app.name.lower() == sys.argv[1].lower():
        for window in app:
            if window is not None:
                walk(window, window.name, "")
