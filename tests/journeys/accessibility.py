"""A journey that a screen reader goes along: the program's tree of accessible things, and the way of the keyboard.

Nothing of the machine's own accessibility is used or changed: the bus and the registry of the tree are the test's.
"""

import json
import pathlib
import re
import shutil
import subprocess
import time

from harness import Journey, wait_until

LAUNCHERS = ("/usr/libexec/at-spi-bus-launcher", "/usr/lib/at-spi2-core/at-spi-bus-launcher")
SYSTEM_PYTHON = "/usr/bin/python3"  # the one that the packages of the bindings are for
READER = pathlib.Path(__file__).with_name("accessibilityreader.py")
BUS = """<busconfig>
  <type>session</type>
  <listen>unix:path={home}/run/session</listen>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
  </policy>
</busconfig>
"""


def tool(places):
    """The one of the places where a program stands."""
    return next(place for place in places if pathlib.Path(place).exists())


# What can be acted on by itself, and what is acted on within something that has the focus for it.
ACTING = {"push button", "toggle button", "check box", "radio button", "link", "combo box", "spin button", "slider", "list",
          "tree", "table", "page tab list", "text", "scroll bar", "page tab", "list item", "tree item", "menu item",
          "check menu item", "radio menu item"}
WITHIN = {"page tab": "page tab list", "list item": "list", "tree item": "tree", "table cell": "table"}
TELLING = {"label", "image", "icon", "progress bar", "frame", "window", "dialog", "alert", "status bar", "tool bar",
           "popup menu"}
VAGUE = {"filler", "unknown", "invalid", "layered pane", "frame", "window"}
STAYS = 2.5  # seconds after which a focus that a key did not move is taken to stay
MOST_STOPS = 80


def is_of_a_list(node):
    """The list of a combo box that is not open, and what a spin button or a view is put together of."""
    return any(above.role in ("combo box", "spin button") for above in node.above())


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
    if node.path in reached:
        return True
    holder = WITHIN.get(node.role)
    return any(above.role == holder and above.path in reached for above in node.above())


def arrow_within(node):
    """The key that leads on within the group of a node; None when it is in none."""
    holder = node.parent.role if node.parent else None
    if holder == "tool bar":
        return "Right"
    return "Down" if node.role == "radio button" else None


class Node:
    """A thing that shows, as the program tells of it."""

    def __init__(self, facts, parent):
        self.path, self.name, self.about, self.role = (facts[key] for key in ("path", "name", "about", "role"))
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
        (self.home / "bus.conf").write_text(BUS.format(home=self.home))
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

    def tree(self):
        """The program as a node, with all that shows below it."""
        facts = wait_until(lambda: self.ask("tree"), "the program on the bus")
        nodes = {}
        for each in facts:
            nodes[each["path"]] = Node(each, nodes.get(each["parent"]))
        return nodes[facts[0]["path"]]

    def focused(self):
        """The paths of the nodes that have the keyboard."""
        return frozenset(self.ask("focus") or ())

    def shown(self, title):
        """The node of the window whose title begins with `title`, once it is in the tree and has the keys."""
        def found():
            windows = [node for node in self.tree().children if node.name.startswith(title)]
            return windows[-1] if windows else None
        return wait_until(found, "the window \"%s\" in the tree" % title)

    def opened(self, how, what):
        """Does `how`; the node of the window that comes of it, once that has the keys."""
        before = {node.path for node in self.tree().children}
        how()

        def found():
            new = [node for node in self.tree().children if node.path not in before]
            # Wait for the focus within, which comes a moment after the window.
            return new[-1] if new and any("focused" in node.states for node in new[-1].below()) else None
        return wait_until(found, what)

    def closed(self, top, key="Escape"):
        """Ends a window by a key; waits until it has gone from the tree."""
        self.output("xdotool", "key", key)
        wait_until(lambda: top.path not in {node.path for node in self.tree().children}, "the end of " + top.name)

    # --- names and roles

    def check_names(self, what, top):
        """All of what `top` holds has the name and the role that a reader can say."""
        wrong = [str(node) for node in top.below() if is_unsaid(node)]
        self.faults += ["%s: %s has no fitting name or role" % (what, each) for each in wrong]

    # --- the way of the keys

    def press_and_see(self, key, before):
        """Presses a key; what has the focus then, or `before` when it stays for a while."""
        self.output("xdotool", "key", key)
        end = time.monotonic() + STAYS
        while time.monotonic() < end:
            now = self.focused()
            if now and now != before:
                return now
        return before

    def walk_by(self, key, reached):
        """Presses a key until the focus has been there before; adds what it reaches."""
        now = self.focused()
        seen = {now}
        reached |= now
        yield now
        if key == "Tab":
            now = self.focused()  # the arrows may have led on from there
        for _ in range(MOST_STOPS):
            now = self.press_and_see(key, now)
            if now in seen:
                break
            seen.add(now)
            reached |= now
            yield now
            if key == "Tab":
                now = self.focused()

    def reached_by_keys(self, top):
        """The paths of all that the Tab key reaches, and within groups the arrows."""
        kinds = {node.path: node for node in top.below()}
        reached = set()
        for stop in self.walk_by("Tab", reached):
            node = next((kinds[path] for path in stop if path in kinds), None)
            key = node and arrow_within(node)
            if key:
                for _ in self.walk_by(key, reached):
                    pass
        return reached

    def check_keys(self, what, top, otherwise=()):
        """All that can be acted on below `top` is reached by the keys, or is a row of `otherwise`: (role, name, reason), the
        name a pattern. A row that nothing needs is a fault too."""
        reached = self.reached_by_keys(top)
        needed = set()
        for node in top.below():
            if not is_acted_on(node) or is_reached(node, reached):
                continue
            row = next((row for row in otherwise if row[0] == node.role and re.fullmatch(row[1], node.name)), None)
            if row:
                needed.add(row)
            else:
                self.faults.append("%s: %s is not reached by the keyboard" % (what, node))
        self.faults += ["%s: the keys reach %s \"%s\" after all" % (what, row[0], row[1])
                        for row in otherwise if row not in needed]

    def check(self, what, top, otherwise=()):
        self.check_names(what, top)
        self.check_keys(what, top, otherwise)

    def no_faults(self):
        self.assertEqual(self.faults, [], "\n" + "\n".join(self.faults))
