"""Reads what a program tells screen readers. Run as a program by the system's own Python, which has the bindings of the
message bus; asked and answered in lines of JSON on its standard streams (see accessibility.py). Ends with its input.

A request is ["windows"], ["tree", path, hidden], ["focus"] or ["moved", path, seconds]. A tree is the
list of the nodes of what shows, each behind its parent; with `hidden` of what does not show too. "focus" is what the program
last said to have the keyboard, as the paths from that node up to its window; "moved" waits until that is another than `path`.
"""

import json
import sys
import time

from gi.repository import Gio, GLib

REGISTRY = "org.a11y.atspi.Registry"
ROOT = "/org/a11y/atspi/accessible/root"
A = "org.a11y.atspi."
PATIENCE = 5000  # milliseconds that an answer may take
SILENCE = 0.5  # seconds
MOST_NODES = 3000
MOST_LEVELS = 40
EVENT = "object:state-changed:focused"
HOLDERS = {"list", "tree", "table", "page tab list"}  # one place of the tabulator each, for all their items
STATES = {8: "enabled", 11: "focusable", 12: "focused", 23: "selected", 30: "visible"}


class TooMany(Exception):
    """A tree without end, or one that is larger than any of the program's should be."""


def is_silence(error):
    return "Timeout" in error.message or "NoReply" in error.message


class Reader:
    def __init__(self, address):
        self.bus = Gio.DBusConnection.new_for_address_sync(
            address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION,
            None, None)
        self.name = None  # of the program
        self.told = []  # the paths that the program has said to have the keyboard since it was asked
        self.has_told = False  # whether it has said anything so far: before it knows a listener it does not
        self.focused = []  # the last of them that has it, and the ones above it
        self.bus.signal_subscribe(None, A + "Event.Object", "StateChanged", None, "focused", Gio.DBusSignalFlags.NONE,
                                  self.hear)
        self.register()

    def register(self):
        """Has the programs told that somebody listens."""
        self.call(REGISTRY, "/org/a11y/atspi/registry", REGISTRY, "RegisterEvent", GLib.Variant("(s)", (EVENT,)))

    def hear(self, _bus, _sender, path, _interface, _member, facts):
        self.has_told = True
        if facts.unpack()[1] == 1:
            self.told.append(path)

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
                "role": self.role(path),
                "states": self.states(path), "actions": actions, "place": place}

    def lists(self, parent, path):
        """Whether what is above a path still tells of it."""
        try:
            return path in self.children(parent)
        except GLib.Error:  # gone too
            return False

    def asked(self, path, parent, question):
        """The answer of question() about a path; None when that has gone meanwhile. What does not answer though it is
        there is a fault."""
        try:
            return question()
        except GLib.Error as error:
            if is_silence(error):
                raise
        try:
            return question()
        except GLib.Error as error:
            if is_silence(error) or parent is None or self.lists(parent, path):
                raise
        return None

    def walk(self, top, above, visit):
        """Calls visit(path, parent) for a path and all below it, parents first. It answers what is below the path, or
        None."""
        waiting = [(top, above)]
        count = 0
        while waiting:
            if count == MOST_NODES:
                raise TooMany("more than %d things below %s" % (MOST_NODES, top))
            path, parent = waiting.pop()
            below = self.asked(path, parent, lambda: visit(path, parent))
            waiting.extend((child, path) for child in reversed(below or []))
            count += 1

    def role(self, path):
        return self.call(self.name, path, A + "Accessible", "GetRoleName")[0]

    def windows(self):
        """Path and name of the windows that show; None before the program has come."""
        if not self.use():
            return None
        found = []
        for path in self.children(ROOT):
            name = self.asked(path, ROOT, lambda: "visible" in self.states(path) and
                              [self.value(path, A + "Accessible", "Name")])
            found += [(path, each) for each in name or []]
        return found

    def tree(self, top, hidden):
        self.use()
        nodes = [] if top == ROOT else [self.node(ROOT, None)]

        def visit(path, parent):
            if not hidden and path != ROOT and "visible" not in self.states(path):
                return None
            node, below = self.node(path, parent), self.children(path)
            nodes.append(node)
            return below
        self.walk(top, None if top == ROOT else ROOT, visit)
        return nodes

    def listen(self, seconds):
        """Hears what has been said, and waits for more if nothing has."""
        context = GLib.MainContext.default()
        if not context.pending() and seconds > 0:
            alarm = GLib.timeout_add(int(seconds * 1000) + 1, lambda: GLib.SOURCE_CONTINUE)
            context.iteration(True)
            GLib.source_remove(alarm)
        while context.iteration(False):
            pass

    def focus(self):
        """The paths from what has the keyboard up to the program; an item of a list is left out for its list."""
        self.listen(0)
        while self.told and self.use():
            self.focused = self.chain(self.told.pop(0)) or self.focused
        if not self.focused:
            self.focused = self.searched()
        return self.focused

    def searched(self):
        """The same by a look through the tree: what got the keyboard before the program knew a listener was not told."""
        holders = []

        def visit(path, _parent):
            states = self.states(path)
            below = self.children(path) if path == ROOT or "visible" in states else None
            if "focused" in states:
                holders.append(path)
            return below
        if self.use():
            self.walk(ROOT, None, visit)
        return self.chain(holders[-1]) if holders else []

    def chain(self, path):
        """The paths from one that was said to have the keyboard up to its window; none where that is not so: lists say it
        of their items whoever has it."""
        chain = []
        try:
            while path != ROOT and len(chain) < MOST_LEVELS:
                if len(chain) == 1 and self.role(path) in HOLDERS:
                    chain.pop()
                chain.append(path)
                path = self.value(path, A + "Accessible", "Parent")[1]
            return chain if "focused" in self.states(chain[0]) else []
        except GLib.Error:  # gone meanwhile
            return []

    def moved(self, before, seconds):
        end = time.monotonic() + seconds
        while True:
            now = self.focus()
            left = end - time.monotonic()
            if now and now[0] != before:
                return now
            if left <= 0:
                return None
            self.listen(left if self.has_told else min(left, SILENCE))
            if not self.has_told:  # it may have come up while the first word to it was on its way
                self.register()
                self.focused = self.searched() or self.focused


def main():
    reader = Reader(sys.argv[1])
    requests = {"windows": reader.windows, "tree": reader.tree, "focus": reader.focus, "moved": reader.moved}
    for line in sys.stdin:
        request, *arguments = json.loads(line)
        try:
            answer = requests[request](*arguments)
            print(json.dumps({"answer": answer}), flush=True)
        except (GLib.Error, TooMany) as error:
            print(json.dumps({"error": str(error)}), flush=True)


if __name__ == "__main__":
    main()
