"""Shows Lumo's types in gdb: a path as SVG path text, a node type as its flags.

gdb loads this by itself when it loads the library, from beside it or from its auto-load folder; "info auto-load" says
whether it did. By hand: source lumo-gdb.py.
"""

import gdb
import gdb.printing

MOVE, LINE, CURVE, CONTROL = 0x00, 0x40, 0x80, 0xC0
KINDS = {MOVE: "move", LINE: "line", CURVE: "curve", CONTROL: "control"}
CONTINUITIES = {0: None, 1: "smooth", 2: "symmetric", 3: "continuity 3"}
CLOSED, USER, LETTER, ENABLED = 0x08, 0x04, 0x02, 0x01
FLAGS = ((CLOSED, "closed"), (USER, "user"), (LETTER, "letter"), (ENABLED, "enabled"))

# What is shown of a path when "print elements" sets no limit.
MOST_NODES = 100000


class NodeTypePrinter:
    def __init__(self, value):
        self.bits = int(value["value"])

    def to_string(self):
        words = [KINDS[self.bits & 0xC0], CONTINUITIES[(self.bits >> 4) & 3]]
        words += [name for bit, name in FLAGS if self.bits & bit]
        return " ".join(word for word in words if word)


def number(value):
    """A coordinate without a needless decimal point."""
    if value.type.strip_typedefs().code == gdb.TYPE_CODE_FLT:
        real = float(value)
        return "%d" % real if real == int(real) and abs(real) < 1e15 else repr(real)
    return str(int(value))


def arrays(data):
    """The points, the node types and the count of the storage behind a path."""
    storage = data.cast(data.dynamic_type).dereference()
    fields = {field.name for field in storage.type.fields()}
    if "points_" in fields:
        return storage["points_"], storage["types_"], int(storage["count_"])
    points, types = storage["points"]["_M_impl"], storage["types"]["_M_impl"]
    return points["_M_start"], types["_M_start"], int(types["_M_finish"] - types["_M_start"])


class PathText:
    """Path data for the first nodes of two arrays. What is not well formed stands behind a question mark."""

    def __init__(self, points, types, count):
        self.points, self.types, self.count = points, types, count

    def kind(self, i):
        return int(self.types[i]["value"]) & 0xC0 if i < self.count else None

    def place(self, i):
        return number(self.points[i]["x"]) + " " + number(self.points[i]["y"])

    def text(self, limit):
        parts, start, i = [], None, 0
        while i < min(self.count, limit):
            kind, closed = self.kind(i), int(self.types[i]["value"]) & CLOSED
            if kind == MOVE:
                start, goes_back = self.place(i), closed
                parts.append("M" + start)
            elif start is not None and kind == CONTROL and self.kind(i + 1) == CONTROL and self.kind(i + 2) == CURVE:
                parts.append("C" + " ".join(self.place(k) for k in (i, i + 1, i + 2)))
                i += 2
                closed = int(self.types[i]["value"]) & CLOSED
            elif start is not None and kind == LINE:
                # The Z that follows draws the closing line.
                if not (closed and goes_back and self.place(i) == start):
                    parts.append("L" + self.place(i))
            else:
                parts.append("?" + self.place(i))
            if kind != MOVE and closed:
                parts.append("Z")
            i += 1
        if i < self.count:
            parts.append("... (%d nodes)" % self.count)
        return "".join(parts)


class PathPrinter:
    def __init__(self, value):
        self.value = value

    def to_string(self):
        try:
            data = self.value["data_"]
            if int(data) == 0:
                return "(empty)"
            points, types, count = arrays(data)
            if count < 0:
                return "(not a path)"
            limit = gdb.parameter("print elements") or MOST_NODES
            return PathText(points, types, count).text(limit) or "(empty)"
        except gdb.error:
            return "(not a path)"  # not constructed yet, or overwritten


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("lumo")
    collection.add_printer("PolycurveT", "^Lumo::Polycurve(Ref)?T<.*>$", PathPrinter)
    collection.add_printer("NODETYPE", "^NODETYPE$", NodeTypePrinter)
    return collection


gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
