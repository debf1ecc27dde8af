#!/usr/bin/python3
"""Reads the tree of a program on the accessibility bus, as a screen reader does, and writes a line for each
control: role|name|value|text|labels|description|states. usage: read_tree.py PROCESS"""
import sys

import pyatspi

ROLES = {
    pyatspi.ROLE_COMBO_BOX, pyatspi.ROLE_RADIO_BUTTON, pyatspi.ROLE_CHECK_BOX, pyatspi.ROLE_PUSH_BUTTON,
    pyatspi.ROLE_TOGGLE_BUTTON, pyatspi.ROLE_TEXT, pyatspi.ROLE_ENTRY, pyatspi.ROLE_SPIN_BUTTON}
STATES = {
    pyatspi.STATE_CHECKED: "checked", pyatspi.STATE_INDETERMINATE: "half", pyatspi.STATE_FOCUSED: "focused"}


def controls(node):
    for child in node:
        if child is None:
            continue
        if child.getRole() in ROLES and child.getState().contains(pyatspi.STATE_SHOWING):
            yield child
        if child.getRole() != pyatspi.ROLE_SPIN_BUTTON and child.getRole() != pyatspi.ROLE_COMBO_BOX:
            yield from controls(child)


def get(query, read):
    try:
        return str(read(query()))
    except NotImplementedError:
        return ""


def describe(control):
    labels = [target.name for relation in control.getRelationSet()
              if relation.getRelationType() == pyatspi.RELATION_LABELLED_BY
              for target in (relation.getTarget(i) for i in range(relation.getNTargets()))]
    value = get(control.queryValue, lambda value: value.currentValue)
    text = get(control.queryText, lambda text: text.getText(0, -1))
    description = control.description.replace("\n", " ")
    states = [name for state, name in STATES.items() if control.getState().contains(state)]
    if not control.getState().contains(pyatspi.STATE_ENABLED):
        states.append("closed")
    return "|".join(
        [control.getRoleName(), control.name, value, text, ",".join(labels), description, " ".join(states)])


desktop = pyatspi.Registry.getDesktop(0)
for program in desktop:
    if program is not None and program.get_process_id() == int(sys.argv[1]):
        print("\n".join(describe(control) for control in controls(program)))
