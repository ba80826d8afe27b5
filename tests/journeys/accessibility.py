"""A journey that a screen reader goes along: the program's tree of accessible things, and the way of the keyboard.

Nothing of the machine's own accessibility is used or changed: the bus and the registry of the tree are the test's.
"""

import json
import pathlib
import re
import shutil
import subprocess

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
