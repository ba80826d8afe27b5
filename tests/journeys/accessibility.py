"""A journey that a screen reader goes along: the program's tree of accessible things, and the way of the keyboard.

Nothing of the machine's own accessibility is used or changed: the bus and the registry of the tree are the test's.
"""

import json
import pathlib
import re
import shutil
import subprocess

import messagebus
from harness import Journey, wait_until

LAUNCHERS = ("/usr/libexec/at-spi-bus-launcher", "/usr/lib/at-spi2-core/at-spi-bus-launcher")
SYSTEM_PYTHON = "/usr/bin/python3"  # the one that the packages of the bindings are for
READER = pathlib.Path(__file__).with_name("accessibilityreader.py")


def tool(places):
    """The one of the places where a program stands."""
    return next(place for place in places if pathlib.Path(place).exists())


# What can be acted on by itself, and what is acted on within something that has the focus for it.
ACTING = {"push button", "toggle button", "check box", "radio button", "link", "combo box", "spin button", "spin box", "slider", "list",
          "tree", "table", "page tab list", "text", "scroll bar", "page tab", "list item", "tree item", "menu item",
          "check menu item", "radio menu item"}
WITHIN = {"page tab": "page tab list", "list item": "list", "tree item": "tree", "table cell": "table"}
TELLING = {"label", "image", "icon", "progress bar", "frame", "window", "dialog", "alert", "status bar", "tool bar",
           "popup menu"}
VAGUE = {"filler", "unknown", "invalid", "layered pane", "frame", "window"}
MENU_ROLES = {"popup menu", "menu", "menu item", "check menu item", "radio menu item"}
ROOT = "/org/a11y/atspi/accessible/root"
STAYS = 8  # seconds after which a focus that a key did not move is taken to stay; only a fault makes one wait as long
MOVES = 2  # seconds after which a key that moved nothing in a list is taken to move nothing
LOST = 5  # seconds after which a key that brought nothing is taken to be lost
MOST_STOPS = 80
# The keys that lead through the items of what has the focus, and back: the first that move anything are taken.
WALKS = {"list": (("Down", "Up"), ("Up", "Down"), ("End", "Home"), ("Home", "End")),
         "page tab list": (("Right", "Left"), ("Left", "Right")),
         "tree": (("Down", "Up"), ("Up", "Down")), "table": (("Down", "Up"), ("Up", "Down"))}
# Not walked: role, name, reason.
UNWALKED = (("list", "Sidebar", "of the toolkit's file dialog, which goes to the folder of the first item that a key chooses"),)


def is_of_a_list(node):
    """The list of a combo box that is not open, and what a spin button or a view is put together of."""
    return any(above.role in ("combo box", "spin button", "spin box") for above in node.above())


def is_acted_on(node):
    if "enabled" not in node.states or is_of_a_list(node):
        return False
    if node.role == "page tab":  # the selected one may do nothing
        return "Press" in node.actions
    if node.role == "text":  # what has a caret, or is only looked at
        return "focusable" in node.states
    return node.role in ACTING or bool({"Press", "Toggle"} & set(node.actions))


def is_window(node):
    return node.parent is not None and node.parent.parent is None


def is_unsaid(node):
    """Whether a reader would have nothing to say of what can be acted on, or tells something."""
    if is_of_a_list(node):
        return False
    vague = node.role in VAGUE and not is_window(node) or node.role == "filler" and is_window(node)
    if vague and (set(node.actions) & {"Press", "Toggle"} or "focusable" in node.states and not is_window(node)):
        return True
    says = is_acted_on(node) or node.role in ACTING | TELLING - VAGUE or is_window(node)
    return bool(says) and not node.name.strip()


def is_reached(node, reached):
    """With a holder of items its items are reached: items_walked() sees to it."""
    if node.path in reached:
        return True
    holder = WITHIN.get(node.role)
    return any(above.role == holder and above.path in reached for above in node.above())


def row_of(node, table):
    """The row of a table that stands for a node: (role, name, reason), the name a pattern."""
    return next((row for row in table if row[0] == node.role and re.fullmatch(row[1], node.name)), None)


def items_of(holder):
    """What can be chosen in a list, a tree, a table or a strip of tabs."""
    return [node for node in holder.below() if WITHIN.get(node.role) == holder.role and "enabled" in node.states]


def place_of(node):
    """What Tab takes for one place: the node, or the group that arrows lead through."""
    return (node.parent.path, arrow_within(node)) if arrow_within(node) else node.path


def arrow_within(node):
    """The key that leads on within the group of a node; None when it is in none."""
    holder = node.parent.role if node.parent else None
    if holder == "tool bar":
        return "Right"
    if node.role != "radio button":
        return None
    left = node.place[0]
    below = [each for each in node.parent.children if each is not node and each.role == node.role
             and abs(each.place[0] - left) <= 2]
    return "Down" if below else "Right"


class Node:
    """A thing that shows, as the program tells of it."""

    def __init__(self, facts, parent):
        self.path, self.name, self.role = (facts[key] for key in ("path", "name", "role"))
        self.states, self.actions, self.place = set(facts["states"]), facts["actions"], facts["place"]
        self.parent = parent
        self.children = []
        if parent:
            parent.children.append(self)

    def below(self):
        """It and all below it, parents first."""
        yield self
        for child in self.children:
            yield from child.below()

    def above(self):
        """What it is in, the nearest first."""
        node = self.parent
        while node:
            yield node
            node = node.parent

    def __str__(self):
        within = [node.name or node.role for node in self.above()]
        return "%s \"%s\" (%s) in %s" % (self.role, self.name, ", ".join(self.actions) or "no action",
                                         " < ".join(within[:3]))


class AccessibleJourney(Journey):
    def setUp(self):
        super().setUp()
        self.faults = []
        (self.home / "bus.conf").write_text(messagebus.CONFIGURATION.format(socket=self.home / "run" / "session"))
        bus = subprocess.Popen(
            [shutil.which("dbus-daemon"), "--config-file=%s" % (self.home / "bus.conf"), "--nofork", "--print-address"],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.addCleanup(self._end, bus)
        with bus.stdout as answer:
            address = answer.readline().strip()
        self.environment.update(DBUS_SESSION_BUS_ADDRESS=address, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        # It starts the bus of the tree and ends that bus when it is ended.
        launcher = subprocess.Popen([tool(LAUNCHERS), "--launch-immediately"], env=self.environment,
                                    stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(self._end, launcher)
        answer = wait_until(lambda: re.search(r'string "(unix:[^"]*)"', self.output(
            "dbus-send", "--session", "--print-reply", "--dest=org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus.GetAddress")),
            "the bus of the tree")
        self.reader = subprocess.Popen([SYSTEM_PYTHON, "-I", str(READER), answer.group(1)], stdin=subprocess.PIPE,
                                       stdout=subprocess.PIPE, text=True)
        self.addCleanup(self._end, self.reader)
        self.addCleanup(self.reader.stdout.close)
        self.addCleanup(self.reader.stdin.close)

    def ask(self, *request):
        self.reader.stdin.write(json.dumps(request) + "\n")
        self.reader.stdin.flush()
        answer = json.loads(self.reader.stdout.readline())
        self.assertNotIn("error", answer)
        return answer["answer"]

    def spoken_windows(self):
        """The paths and names of the program's windows."""
        return dict(wait_until(lambda: self.ask("windows"), "the program on the bus"))

    def tree(self, path=ROOT, hidden=False):
        """The node of a path, with all that shows below it."""
        facts = self.ask("tree", path, hidden)
        nodes = {}
        for each in facts:
            nodes[each["path"]] = Node(each, nodes.get(each["parent"]))
        return nodes.get(path)

    def shown(self, title):
        """The node of the window whose title begins with `title`, once it is in the tree and has the keys."""
        def found():
            return self.with_keys([path for path, name in self.spoken_windows().items() if name.startswith(title)])
        return wait_until(found, "the window \"%s\" with the keys" % title)

    def with_keys(self, paths):
        """The node of the one of the windows that has the keys; None when none has."""
        focus = self.ask("focus")
        return self.tree(focus[-1]) if focus and focus[-1] in paths else None

    def opened(self, how, what):
        """Does `how`; the node of the window that comes of it, once that has the keys."""
        before = self.spoken_windows()
        return self.brought(how, lambda: self.with_keys(self.spoken_windows().keys() - before.keys()), what)

    @staticmethod
    def brought(how, condition, what):
        """Does `how` until it brings what is waited for: a key that comes while the last window still ends is lost."""
        def once():
            how()
            try:
                return wait_until(condition, what, LOST)
            except AssertionError:
                return None
        return wait_until(once, what)

    def by_menu(self, *keys, opener="shift+F10"):
        """Opens a menu, the context menu unless told, by its key and walks it by keys."""
        before = self.top_windows()
        self.brought(lambda: self.key(opener), lambda: self.top_windows() > before, "the menu")
        self.key(*keys)

    def closed(self, top, key="Escape"):
        """Ends a window by a key; waits until it has gone from the tree, and another has the keys."""
        self.key(key)
        wait_until(lambda: top.path not in self.spoken_windows() and self.ask("focus")[-1] != top.path,
                   "the end of " + top.name)

    def found(self, top, role, name):
        """The node below `top` of a role, whose name begins with `name`."""
        fitting = [node for node in top.below() if node.role == role and node.name.startswith(name)]
        self.assertTrue(fitting, "no %s \"%s\"" % (role, name))
        return fitting[0]

    # --- names and roles

    def check_names(self, what, top, unsaid=()):
        """All of what `top` holds has the name and the role that a reader can say, or is a row of `unsaid`, as those of
        check_keys()."""
        needed = set()
        for node in top.below():
            if not is_unsaid(node):
                continue
            row = row_of(node, unsaid)
            if row:
                needed.add(row)
            else:
                self.faults.append("%s: %s has no fitting name or role" % (what, node))
        self.faults += ["%s: %s \"%s\" can be said after all" % (what, row[0], row[1]) for row in unsaid if row not in needed]

    def check_menu(self, what, how, menus=1, least=3):
        """A menu that `how` opens by keys, with at least so many menus within and rows: all rows, and the keys lead through those
        that can be chosen, and through those of the menus within."""
        before = self.focused()
        first = self.brought(how, lambda: self.ask("moved", before, LOST), what)
        menu = self.tree(first[1], hidden=True)
        on_show = self.rows_walked(what, menu)
        self.assertGreaterEqual(len(on_show), least)
        self.assertGreaterEqual(self.menus_walked(what, on_show), menus)
        return menu

    def menus_walked(self, what, on_show):
        """Walks all the menus within one, whose rows are given, and theirs; how many it has itself."""
        withins = [node for node in on_show if node.children and "enabled" in node.states]
        for within in withins:
            self.go_to(within, "Down")
            first = self.brought(lambda: self.output("xdotool", "key", "Right"),
                                 lambda: self.ask("moved", within.path, LOST), within.name)
            name = "%s: %s" % (what, within.name)
            inner = self.tree(first[1], hidden=True)
            self.assertEqual(inner.name or within.name, within.name)
            rows = self.rows_walked(name, inner)
            self.assertTrue(rows, "nothing in " + name)
            self.menus_walked(name, rows)
            # Of the row that it came from the toolkit says nothing again.
            self.output("xdotool", "key", "Left")
            self.assertIn(self.press_and_see("Down", self.focused()), [node.path for node in on_show])
        return len(withins)

    def rows_walked(self, what, menu):
        """The rows of a menu that show, through which the Down key leads from the one that has the focus. All of them have
        names and roles."""
        self.faults += ["%s: %s has no fitting name or role" % (what, node) for node in menu.below()
                        if node.role != "separator" and (node.role not in MENU_ROLES or not node.name.strip())]
        on_show = {node.path: node for node in menu.children if "visible" in node.states and node.role != "separator"}
        reached = set()
        for _ in self.walk_by("Down", reached, {path for path, node in on_show.items() if "enabled" in node.states}):
            pass
        self.faults += ["%s: %s is not reached by the keyboard" % (what, node) for path, node in on_show.items()
                        if path not in reached and "enabled" in node.states]
        return list(on_show.values())

    # --- the way of the keys

    def focused(self):
        """The path of what has the keyboard."""
        return wait_until(lambda: self.ask("focus"), "the focus")[0]

    def press_and_see(self, key, before):
        """Presses a key; what has the focus then, or `before` when it stays for a while."""
        self.output("xdotool", "key", key)
        now = self.ask("moved", before, STAYS)
        return now[0] if now else before

    def go_to(self, node, key="Tab"):
        """Presses a key until the node has the focus."""
        for _ in range(MOST_STOPS):
            now = self.focused()
            if now == node.path:
                return
            self.press_and_see(key, now)
        self.fail("no way to %s" % node)

    def walk_by(self, key, seen, wanted=None):
        """Presses a key until the focus has been there before, or at all that is wanted; gives the places on the way."""
        now = self.focused()
        seen.add(now)
        yield now
        for _ in range(MOST_STOPS):
            if wanted and wanted <= seen:
                break
            now = self.press_and_see(key, self.focused())  # what walked on within a group may have moved it
            if now in seen:
                break
            seen.add(now)
            yield now

    def reached_by_keys(self, what, top):
        """The paths of all that the Tab key reaches, and within groups the arrows. Shift+Tab has to lead to the same."""
        kinds = {node.path: node for node in top.below()}
        able = [node for node in top.below()
                if "focusable" in node.states and is_acted_on(node) and not is_window(node) and node.role not in WITHIN]
        if len(able) < 2:
            return {self.focused()}
        ways = {}
        for key in ("Tab", "shift+Tab"):
            reached = set()
            for stop in self.walk_by(key, reached):
                node = kinds.get(stop)
                arrow = node and key == "Tab" and arrow_within(node)
                if arrow:
                    group = {each.path for each in node.parent.children
                             if is_acted_on(each) and place_of(each) == place_of(node)}
                    for _ in self.walk_by(arrow, reached, group):
                        pass
            ways[key] = reached
        forwards, backwards = ({place_of(kinds[path]): kinds[path] for path in way if path in kinds}
                               for way in ways.values())
        self.faults += ["%s: %s is only reached one way" % (what, {**forwards, **backwards}[place])
                        for place in forwards.keys() ^ backwards.keys()]
        for node in able:  # at last, as what is chosen may enable something
            if node.role in WALKS and node.path in ways["Tab"]:
                self.items_walked(what, node)
        return ways["Tab"]

    def chosen(self, holder):
        """The items of what has the focus that are chosen now, or where the keys are."""
        now = self.tree(holder.path)
        return frozenset(node.path for node in items_of(now) if {"selected", "focused"} & node.states) if now else frozenset()

    def stepped(self, holder, key):
        """Presses a key; whether another item is chosen then."""
        before = self.chosen(holder)
        self.output("xdotool", "key", key)
        try:
            return wait_until(lambda: self.chosen(holder) - before, "another item", MOVES)
        except AssertionError:
            return None

    def items_walked(self, what, holder):
        """The arrows lead from item to item of what has the focus, if it has two; they are left where they were."""
        if len(items_of(holder)) < 2 or any((holder.role, holder.name) == row[:2] for row in UNWALKED):
            return
        self.go_to(holder)
        begins = self.chosen(holder)
        for there, back in WALKS[holder.role]:
            # Where none was chosen, the first step only chooses one.
            if self.stepped(holder, there) and (begins or self.stepped(holder, there)):
                # Where the arrows are the viewer's, it drops one that comes right behind another.
                self.assertTrue(self.stepped(holder, back) or self.stepped(holder, back), "no way back in %s" % holder)
                return
        self.faults.append("%s: no arrow leads through %s" % (what, holder))

    def check_keys(self, what, top, otherwise=()):
        """All that can be acted on below `top` is reached by the keys, or is a row of `otherwise`: (role, name, reason), the
        name a pattern. A row that nothing needs is a fault too."""
        reached = self.reached_by_keys(what, top)
        needed = set()
        for node in top.below():
            if not is_acted_on(node) or is_reached(node, reached):
                continue
            row = row_of(node, otherwise)
            if row:
                needed.add(row)
            else:
                self.faults.append("%s: %s is not reached by the keyboard" % (what, node))
        self.faults += ["%s: the keys reach %s \"%s\" after all" % (what, row[0], row[1])
                        for row in otherwise if row not in needed]

    def check_holds(self, what, top, holds):
        """`top` shows at least two things: (role, name), the name a pattern. Else nothing would have been looked at."""
        self.assertGreater(len(holds), 1)
        nodes = list(top.below())
        self.faults += ["%s: there is no %s \"%s\"" % (what, role, name) for role, name in holds
                        if not any(node.role == role and re.fullmatch(name, node.name, re.DOTALL) for node in nodes)]

    def check(self, what, top, holds, otherwise=(), unsaid=()):
        self.check_holds(what, top, holds)
        self.check_names(what, top, unsaid)
        self.check_keys(what, top, otherwise)

    def no_faults(self):
        self.assertEqual(self.faults, [], "\n" + "\n".join(self.faults))
