# SPDX-License-Identifier: GPL-3.0-or-later
"""screenreader.py PID TITLE: prints as JSON what a screen reader is told of a window of a process.

It is a client of the accessibility bus like any other, and a process of its own: it stays with the bus that it finds first.
Each object is {role, name, description, labels, states, children}; null while the process or the window is not there.
"""

import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402


def told(of):
    states = of.get_state_set()
    known = (Atspi.StateType.FOCUSABLE, Atspi.StateType.SHOWING, Atspi.StateType.CHECKED, Atspi.StateType.ENABLED)
    labels = [relation for relation in of.get_relation_set() if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY]
    return {
        "role": of.get_role_name(),
        "name": of.get_name(),
        "description": of.get_description(),
        "labels": [label.get_target(i).get_name() for label in labels for i in range(label.get_n_targets())],
        "states": [state.value_nick for state in known if states.contains(state)],
        "children": [told(child) for child in children(of)],
    }


def children(of):
    return filter(None, (of.get_child_at_index(i) for i in range(of.get_child_count())))


def window(process, title):
    for application in children(Atspi.get_desktop(0)):
        if application.get_process_id() == process:
            for one in children(application):
                if one.get_name() == title:
                    return told(one)
    return None


def main():
    Atspi.init()
    Atspi.set_timeout(20000, 20000)
    try:
        found = window(int(sys.argv[1]), sys.argv[2])
    except GLib.Error as gone:  # while a window comes or goes
        print(gone.message, file=sys.stderr)
        found = None
    print(json.dumps(found))


main()
