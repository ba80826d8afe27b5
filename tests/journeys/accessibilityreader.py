"""Reads what a program tells screen readers. Run as a program by the system's own Python, which has the bindings of the
message bus; asked and answered in lines of JSON on its standard streams (see accessibility.py). Ends with its input.

A request is ["tree"], ["focus"] or ["act", path, action]. The tree is the list of the nodes of what shows, each behind its
parent; "focus" gives the paths of the nodes that have the keyboard.
"""

import json
import sys

from gi.repository import Gio, GLib

REGISTRY = "org.a11y.atspi.Registry"
ROOT = "/org/a11y/atspi/accessible/root"
A = "org.a11y.atspi."
PATIENCE = 5000  # milliseconds that an answer may take
MOST_NODES = 3000
STATES = {1: "active", 4: "checked", 8: "enabled", 7: "editable", 11: "focusable", 12: "focused", 24: "sensitive",
          16: "modal", 23: "selected", 25: "showing", 30: "visible", 18: "multiline"}


class Reader:
    def __init__(self, address):
        self.bus = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION,
            None, None)
        self.name = None  # of the program
        self.still = set()  # what can never have the focus: not asked about it, which takes most of the time
        self.leaves = set()  # what was without children when the tree was read last

    def call(self, name, path, interface, member, arguments=None):
        return self.bus.call_sync(name, path, interface, member, arguments, None, Gio.DBusCallFlags.NONE, PATIENCE,
                                  None).unpack()

    def value(self, path, interface, member):
        return self.call(self.name, path, "org.freedesktop.DBus.Properties", "Get",
                         GLib.Variant("(ss)", (interface, member)))[0]

    def use(self):
        """The program's name on the bus; None before it has come, or while there are two."""
        programs = self.call(REGISTRY, ROOT, A + "Accessible", "GetChildren")[0]
        self.name = programs[0][0] if len(programs) == 1 else None
        return self.name

    def states(self, path):
        low, high = self.call(self.name, path, A + "Accessible", "GetState")[0]
        bits = low | high << 32
        return [word for number, word in STATES.items() if bits >> number & 1]

    def children(self, path):
        return [child for _, child in self.call(self.name, path, A + "Accessible", "GetChildren")[0]]

    def node(self, path, parent):
        faces = self.call(self.name, path, A + "Accessible", "GetInterfaces")[0]
        actions = []
        if A + "Action" in faces:
            actions = [row[0] for row in self.call(self.name, path, A + "Action", "GetActions")[0]]
        place = None
        if A + "Component" in faces:
            place = self.call(self.name, path, A + "Component", "GetExtents", GLib.Variant("(u)", (0,)))[0]
        return {"path": path, "parent": parent, "name": self.value(path, A + "Accessible", "Name"),
                "about": self.value(path, A + "Accessible", "Description"),
                "role": self.call(self.name, path, A + "Accessible", "GetRoleName")[0],
                "states": self.states(path), "actions": actions, "place": place}

    def walk(self, visit):
        """Calls visit(path, parent) for the program and all below it that shows, parents first; below what it refuses, nothing."""
        waiting = [(ROOT, None)]
        count = 0
        while waiting and count < MOST_NODES:
            path, parent = waiting.pop()
            try:
                if visit(path, parent):
                    waiting.extend((child, path) for child in reversed(self.children(path)))
            except GLib.Error as error:  # it may go between the question and the answer
                if "Timeout" in error.message or "NoReply" in error.message:
                    raise
            count += 1

    def tree(self):
        if not self.use():
            return None
        nodes = []

        def visit(path, parent):
            shows = path == ROOT or "visible" in self.states(path)
            if shows:
                nodes.append(self.node(path, parent))
            return shows
        self.walk(visit)
        self.still = {node["path"] for node in nodes
                      if node["role"] in ("label", "graphic") and "focusable" not in node["states"]
                      or node["role"] == "tree item"}  # a folder may have many; the tree tells of the focus too
        self.leaves = {node["path"] for node in nodes} - {node["parent"] for node in nodes}
        return nodes

    def focus(self):
        if not self.use():
            return None
        found = []

        def visit(path, _):
            if path in self.still:
                return False
            states = self.states(path) if path != ROOT else ["visible"]
            if "focused" in states:
                found.append(path)
            return "visible" in states and path not in self.leaves
        self.walk(visit)
        return found

    def act(self, path, action):
        self.use()
        names = [row[0] for row in self.call(self.name, path, A + "Action", "GetActions")[0]]
        return self.call(self.name, path, A + "Action", "DoAction", GLib.Variant("(i)", (names.index(action),)))[0]


def main():
    reader = Reader(sys.argv[1])
    for line in sys.stdin:
        request, *arguments = json.loads(line)
        try:
            answer = {"tree": reader.tree, "focus": reader.focus, "act": reader.act}[request](*arguments)
            print(json.dumps({"answer": answer}), flush=True)
        except GLib.Error as error:
            print(json.dumps({"error": error.message}), flush=True)


if __name__ == "__main__":
    main()
