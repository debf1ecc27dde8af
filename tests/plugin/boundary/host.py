"""A host in Python, by the header alone: loads the module, exports its one document and unloads.

usage: host.py HEADER MODULE USER_HAND FOLDER
The functions' types are read from the header. Exit status 0 when nothing was refused and no handle is left.
"""
import ctypes
import re
import sys

header = open(sys.argv[1], encoding="utf-8").read()
header = re.sub(r"/\*.*?\*/", "", header, flags=re.S)
OK = 0
NAMES = {name: int(number) for name, number in re.findall(r"\b(HOPBOX_\w+) = (\d+)", header)}


class Text(ctypes.Structure):
    _fields_ = [("bytes", ctypes.c_char_p), ("length", ctypes.c_size_t)]


PUT = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_void_p, ctypes.c_size_t)


class Sink(ctypes.Structure):
    _fields_ = [("context", ctypes.c_void_p), ("put", PUT)]


TYPES = {"void": None, "int32_t": ctypes.c_int32, "uint32_t": ctypes.c_uint32, "uint64_t": ctypes.c_uint64,
         "double": ctypes.c_double, "size_t": ctypes.c_size_t, "hopbox_handle": ctypes.c_uint64,
         "void*": ctypes.c_void_p, "int32_t*": ctypes.POINTER(ctypes.c_int32),
         "uint32_t*": ctypes.POINTER(ctypes.c_uint32), "uint64_t*": ctypes.POINTER(ctypes.c_uint64),
         "hopbox_handle*": ctypes.POINTER(ctypes.c_uint64), "hopbox_text*": ctypes.POINTER(Text),
         "hopbox_sink*": ctypes.POINTER(Sink), "hopbox_page_sink*": ctypes.c_void_p,
         "hopbox_host_table*": ctypes.c_void_p}


def type_of(parameter):
    parameter = parameter.replace("const ", "").replace("[3]", "").strip()
    if "buttons" in parameter:
        return TYPES["hopbox_text*"]
    return TYPES[parameter.rsplit(" ", 1)[0] if " " in parameter else parameter]


def make_table(name):
    body = re.search(r"typedef struct %s\s*\{(.*?)\}" % name, header, re.S).group(1)
    fields = [("size", ctypes.c_uint32), ("version", ctypes.c_uint32)]
    for result, function, parameters in re.findall(r"(\w+) \(\*(\w+)\)\(([^)]*)\)", body):
        types = [] if parameters == "void" else [type_of(part) for part in parameters.split(",")]
        fields.append((function, ctypes.CFUNCTYPE(TYPES[result], *types)))
    return type(name, (ctypes.Structure,), {"_fields_": fields})


HostTable = make_table("hopbox_host_table")
PlugInTable = make_table("hopbox_plugin_table")
folder = sys.argv[4].encode()
told = {"handles": 0, "entries": [], "output": b"", "pages": []}


def read(text):
    return ctypes.string_at(text.contents.bytes, text.contents.length)


def put(sink, text):
    buffer = ctypes.create_string_buffer(text, len(text))
    sink.contents.put(sink.contents.context, ctypes.addressof(buffer), len(text))
    return OK


def give(pointer, value):
    pointer[0] = value
    return OK


def give_handle(pointer, value):
    told["handles"] += 1
    return give(pointer, value)


def release(host, handle):
    told["handles"] -= 1


def set_output(host, command, path):
    told["output"] = read(path)
    return OK


def set_pages(host, command, document, pages, count, are_joined):
    told["pages"] = pages[:count]
    return OK


def run_command(host, command):
    with open(told["output"], "wb") as pdf:
        pdf.write(b"%PDF-1.4\n%%EOF\n")
    return OK


functions = {
    "release": release,
    "is_action_known": lambda host, action, known: give(known, 0),
    "add_menu_item": lambda host, action, menu, position: told["entries"].append(read(menu)) or OK,
    "get_front_document": lambda host, document: give_handle(document, 7),
    "get_document_file": lambda host, document, path: put(path, folder + b"/Python.txt"),
    "get_page_count": lambda host, document, count: give(count, 2),
    "get_page": lambda host, document, index, page: give(page, index + 1),
    "get_missing_fonts": lambda host, document, names: OK,
    "create_command": lambda host, kind, command: give_handle(command, 8),
    "read_job_options": lambda host, command, path: OK,
    "set_output": set_output,
    "set_pages": set_pages,
    "run_command": run_command,
}
table = HostTable(size=ctypes.sizeof(HostTable), version=1)
kinds = dict(HostTable._fields_)
for name, function in functions.items():
    setattr(table, name, kinds[name](function))

error = []
sink = Sink(None, PUT(lambda context, text, length: error.append(ctypes.string_at(text, length))))
module = ctypes.CDLL(sys.argv[2])
module.hopbox_plugin.restype = ctypes.POINTER(PlugInTable)
plugin = module.hopbox_plugin(1).contents


def require(result, what):
    if result != OK:
        sys.exit("%s: %d %s" % (what, result, error))


require(plugin.load(ctypes.cast(ctypes.pointer(table), ctypes.c_void_p), None, ctypes.byref(sink)), "load")
require(plugin.open_actions(ctypes.byref(sink)), "open_actions")
require(plugin.startup(), "startup")
is_on = ctypes.c_int32()
require(plugin.get_action_state(NAMES["HOPBOX_ACTION_DOCUMENT"], ctypes.byref(is_on), None, None), "get_action_state")
ctypes.CDLL(sys.argv[3]).PressEnterInTheNextWindow()
require(plugin.do_action(NAMES["HOPBOX_ACTION_DOCUMENT"]), "do_action")
require(plugin.shutdown(), "shutdown")
require(plugin.unload(), "unload")
if not is_on.value or told["handles"] != 0 or len(told["entries"]) != 2 or told["pages"] != [1, 2]:
    sys.exit("the plug-in did otherwise: %r" % told)
print(told["output"].decode())
