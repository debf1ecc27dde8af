#!/usr/bin/env python3
"""Takes what the simulated application is made of out of the application's types.

usage: extract.py INDEX_D_TS > types.js
Of each class: its properties with their types, whether they are read-only, and their ranges; its methods with
the number of arguments that they must and may have. Of each enumeration that these name: its items.
"""
import json
import re
import sys

CLASSES = """Application Document Documents Page Pages Font Fonts Link Links Book Books BookContent BookContents
PDFExportPreset PDFExportPresets PDFExportPreference ScriptPreference ViewPreference MenuAction ScriptMenuAction
ScriptMenuActions Menu Menus Submenu Submenus MenuItem MenuItems MenuElement IdleTask IdleTasks""".split()

source = open(sys.argv[1], encoding="utf-8").read()
bodies = dict((name, (base, body)) for name, base, body in re.findall(
    r"^declare class (\w+)(?: extends (\w+))? \{\n(.*?)^\}", source, re.S | re.M))
enumerations = dict((name, dict((item, int(number)) for item, number in re.findall(r"^  (\w+) = (\d+),", body, re.M)))
                    for name, body in re.findall(r"^declare enum (\w+) \{\n(.*?)^\}", source, re.S | re.M))


def read_class(name):
    base, body = bodies[name]
    made = read_class(base) if base in bodies and base != "Preference" else {"properties": {}, "methods": {}}
    comment = ""
    for part in re.split(r"\n\n", body):
        comment = re.sub(r"\s*\*\s*", " ", "".join(re.findall(r"/\*\*.*?\*/", part, re.S)))
        code = re.sub(r"\s+", " ", re.sub(r"/\*\*.*?\*/", "", part, flags=re.S)).strip()
        method = re.match(r"(\w+)\((.*)\): (.+)$", code)
        member = re.match(r"(static )?(readonly )?(\w+): (.+)$", code)
        if method:
            arguments = [one for one in re.findall(r"(\w+\??):", method.group(2))]
            made["methods"][method.group(1)] = [len([one for one in arguments if not one.endswith("?")]), len(arguments)]
        elif member and not member.group(1):
            bounds = re.search(r"Range: ([\d.]+) to ([\d.]+)\)", comment)
            made["properties"][member.group(3)] = [member.group(4), 1 if member.group(2) else 0] + (
                [float(bounds.group(1)), float(bounds.group(2))] if bounds else [])
    return made


classes = {name: read_class(name) for name in CLASSES}
used = set(word for one in classes.values() for kind in one["properties"].values() for word in re.findall(r"\w+", kind[0]))
used |= {"ExportFormat", "SaveOptions", "LocationOptions", "UserInteractionLevels", "LinkStatus"}
print("// Made by extract.py.\nvar classes = {};\nvar enumerations = {};")
for name, one in classes.items():
    print("classes.%s = %s" % (name, json.dumps(one, separators=(",", ":"), sort_keys=True)))
for name in sorted(used & set(enumerations)):
    print("enumerations.%s = %s" % (name, json.dumps(enumerations[name], separators=(",", ":"))))
