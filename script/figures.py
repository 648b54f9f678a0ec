"""Lengths and areas of SVG drawings, computed without Lumo, and compared with what `lumo info --json` says.

Everything here is done another way than in the program: paths are split by a regular expression, arcs stay arcs (their
area from the angle, their length by quadrature of the ellipse), curves keep their degree, transforms act on derivatives.

    python3 script/figures.py LUMO FILE-OR-FOLDER...
"""

import json
import math
import os
import re
import subprocess
import sys
import xml.etree.ElementTree as xml
from concurrent.futures import ProcessPoolExecutor

TOLERANCE = 1e-6  # of the larger of 1 and the figure, in user units

COMMAND = re.compile(r"([MmLlHhVvCcSsQqTtAaZz])([^MmLlHhVvCcSsQqTtAaZz]*)")
NUMBER = re.compile(r"[+-]?(?:\d+\.?\d*|\.\d+)(?:[eE][+-]?\d+)?")
ARC = re.compile(r"\s*,?\s*(%s)\s*,?\s*(%s)\s*,?\s*(%s)\s*,?\s*([01])\s*,?\s*([01])\s*,?\s*(%s)\s*,?\s*(%s)"
                 % ((NUMBER.pattern,) * 5))
COUNTS = {"M": 2, "L": 2, "H": 1, "V": 1, "C": 6, "S": 4, "Q": 4, "T": 2}

GAUSS = [(0.0, 0.2025782419255613), (0.2011940939974345, 0.1984314853271116), (0.3941513470775634, 0.1861610000155622),
         (0.5709721726085388, 0.1662692058169939), (0.7244177313601701, 0.1395706779261543),
         (0.8482065834104272, 0.1071592204671719), (0.9372733924007060, 0.0703660474881081),
         (0.9879925180204854, 0.0307532419961173)]
NODES = GAUSS + [(-x, w) for x, w in GAUSS[1:]]


def quadrature(speed, a, b):
    half, middle = (b - a) / 2, (a + b) / 2
    return half * sum(w * speed(middle + half * x) for x, w in NODES)


def arc_length(speed, a, b, depth=0):
    """Adaptive: where two halves disagree with the whole, they are looked at again."""
    middle = (a + b) / 2
    whole, left, right = quadrature(speed, a, b), quadrature(speed, a, middle), quadrature(speed, middle, b)
    if abs(left + right - whole) <= 1e-12 * (1 + left + right) or depth > 24:
        return left + right
    return arc_length(speed, a, middle, depth + 1) + arc_length(speed, middle, b, depth + 1)


class Measure:
    """Length under a linear map, and twice the area swept from the origin before it, per subpath."""

    def __init__(self, matrix):
        self.a, self.b, self.c, self.d = matrix[:4]
        self.length = self.area = self.swept = 0.0
        self.point = self.start = 0j

    def speed(self, v):
        return math.hypot(self.a * v.real + self.c * v.imag, self.b * v.real + self.d * v.imag)

    def move(self, p):
        self.point = self.start = p
        self.swept = 0.0

    def line(self, p):
        self.length += self.speed(p - self.point)
        self.swept += cross(self.point, p)
        self.point = p

    def bezier(self, controls):
        p = [self.point] + controls
        n = len(p) - 1
        q = [n * (p[k + 1] - p[k]) for k in range(n)]
        if n == 3:
            velocity = lambda t: (1 - t) ** 2 * q[0] + 2 * t * (1 - t) * q[1] + t * t * q[2]
            position = lambda t: ((1 - t) ** 3 * p[0] + 3 * t * (1 - t) ** 2 * p[1] + 3 * t * t * (1 - t) * p[2]
                                  + t ** 3 * p[3])
        else:
            velocity = lambda t: (1 - t) * q[0] + t * q[1]
            position = lambda t: (1 - t) ** 2 * p[0] + 2 * t * (1 - t) * p[1] + t * t * p[2]
        self.length += arc_length(lambda t: self.speed(velocity(t)), 0.0, 1.0)
        self.swept += quadrature(lambda t: cross(position(t), velocity(t)), 0.0, 1.0)
        self.point = p[-1]

    def arc(self, rx, ry, degrees, large, sweep, end):
        start = self.point
        if start == end:
            return
        if rx == 0 or ry == 0:
            return self.line(end)
        turn = complex(math.cos(math.radians(degrees)), math.sin(math.radians(degrees)))
        flat = lambda z: complex((z / turn).real / abs(rx), (z / turn).imag / abs(ry))
        u, v = flat(start), flat(end)
        radius = max(1.0, abs(v - u) / 2)
        height = math.sqrt(max(0.0, radius * radius - abs(v - u) ** 2 / 4))
        center = (u + v) / 2 + height * 1j * (v - u) / abs(v - u) * (1 if large != sweep else -1)
        angle = math.atan2(((v - center) / (u - center)).imag, ((v - center) / (u - center)).real)
        if sweep and angle < 0:
            angle += 2 * math.pi
        if not sweep and angle > 0:
            angle -= 2 * math.pi
        first = math.atan2((u - center).imag, (u - center).real)
        back = lambda z: complex(z.real * abs(rx), z.imag * abs(ry)) * turn
        velocity = lambda t: back(radius * 1j * complex(math.cos(t), math.sin(t)))
        self.length += abs(arc_length(lambda t: self.speed(velocity(t)), first, first + angle))
        middle = back(center)
        # The sector seen from the centre, and the triangle between it and the origin.
        self.swept += radius * radius * abs(rx * ry) * angle + cross(middle, end - start)
        self.point = end

    def close(self):
        self.line(self.start)
        self.area += self.swept
        self.swept = 0.0


def cross(u, v):
    return u.real * v.imag - u.imag * v.real


def path(measure, d):
    last, handle = "", 0j
    for letter, text in COMMAND.findall(d.replace("none", "")):
        upper = letter.upper()
        relative = letter != upper
        if upper == "Z":
            measure.close()
            last = "Z"
            continue
        if upper == "A":
            for values in ARC.findall(text):
                v = [float(x) for x in values]
                origin = measure.point if relative else 0j
                measure.arc(v[0], v[1], v[2], v[3] == 1, v[4] == 1, origin + complex(v[5], v[6]))
            last = "A"
            continue
        numbers = [float(x) for x in NUMBER.findall(text)]
        for k in range(0, len(numbers), COUNTS[upper]):
            origin = measure.point if relative else 0j
            v = numbers[k:k + COUNTS[upper]]
            z = [origin + complex(v[i], v[i + 1]) for i in range(0, len(v) - 1, 2)]
            if upper == "M":
                measure.move(z[0])
                upper = "L"
                last = "M"
                continue
            if upper == "L":
                measure.line(z[0])
            elif upper == "H":
                measure.line(complex(origin.real + v[0], measure.point.imag))
            elif upper == "V":
                measure.line(complex(measure.point.real, origin.imag + v[0]))
            else:
                mirrored = 2 * measure.point - handle
                if upper == "S":
                    z.insert(0, mirrored if last in "CS" and last else measure.point)
                elif upper == "T":
                    z.insert(0, mirrored if last in "QT" and last else measure.point)
                handle = z[-2]
                measure.bezier(z)
            last = upper


def shape(measure, name, node):
    number = lambda key: float(re.sub("px$", "", node.get(key) or "0"))
    if name == "path":
        path(measure, node.get("d", ""))
    elif name in ("polyline", "polygon"):
        v = [float(x) for x in NUMBER.findall(node.get("points", ""))]
        for k in range(0, len(v), 2):
            (measure.line if k else measure.move)(complex(v[k], v[k + 1]))
        if name == "polygon" and v:
            measure.close()
    elif name == "line":
        measure.move(complex(number("x1"), number("y1")))
        measure.line(complex(number("x2"), number("y2")))
    elif name in ("circle", "ellipse"):
        rx, ry = (number("r"),) * 2 if name == "circle" else (number("rx"), number("ry"))
        if not rx or not ry:
            return
        c = complex(number("cx"), number("cy"))
        measure.move(c + rx)
        measure.arc(rx, ry, 0, False, True, c - rx)
        measure.arc(rx, ry, 0, False, True, c + rx)
        measure.close()
    elif name == "rect":
        x, y, w, h = (number(k) for k in ("x", "y", "width", "height"))
        if not w or not h:
            return
        rx = number("rx") if node.get("rx") else number("ry")
        ry = number("ry") if node.get("ry") else rx
        rx, ry = min(rx, w / 2), min(ry, h / 2)
        path(measure, "M%r %rh%ra%r %r 0 0 1 %r %rv%ra%r %r 0 0 1 %r %rh%ra%r %r 0 0 1 %r %rv%ra%r %r 0 0 1 %r %rz" % (
            x + rx, y, w - 2 * rx, rx, ry, rx, ry, h - 2 * ry, rx, ry, -rx, ry, -(w - 2 * rx), rx, ry, -rx, -ry,
            -(h - 2 * ry), rx, ry, rx, -ry))


def product(m, n):
    return (m[0] * n[0] + m[2] * n[1], m[1] * n[0] + m[3] * n[1], m[0] * n[2] + m[2] * n[3], m[1] * n[2] + m[3] * n[3])


def linear(text):
    """The linear part of a transform attribute."""
    m = (1.0, 0.0, 0.0, 1.0)
    for name, values in re.findall(r"(\w+)\s*\(([^)]*)\)", text or ""):
        v = [float(x) for x in NUMBER.findall(values)]
        if name == "matrix":
            n = tuple(v[:4])
        elif name == "scale":
            n = (v[0], 0.0, 0.0, v[-1])
        elif name == "rotate":
            s, c = math.sin(math.radians(v[0])), math.cos(math.radians(v[0]))
            n = (c, s, -s, c)
        elif name == "skewX":
            n = (1.0, 0.0, math.tan(math.radians(v[0])), 1.0)
        elif name == "skewY":
            n = (1.0, math.tan(math.radians(v[0])), 0.0, 1.0)
        else:
            continue
        m = product(m, n)
    return m


SHAPES = ("path", "rect", "circle", "ellipse", "line", "polyline", "polygon")


def figures(node, matrix, out):
    """False when the drawing has something that this computation leaves to others."""
    for child in node:
        if not isinstance(child.tag, str):
            continue
        name = child.tag.rsplit("}", 1)[-1]
        if name in ("use", "svg", "switch"):
            return False
        if name not in SHAPES + ("g", "a") or child.get("display") == "none":
            continue
        local = product(matrix, linear(child.get("transform")))
        if name in SHAPES:
            measure = Measure(local)
            shape(measure, name, child)
            area = -measure.area / 2 * (local[0] * local[3] - local[1] * local[2])
            out.append((measure.length, area))
        elif not figures(child, local, out):
            return False
    return True


def compare(job):
    lumo, file = job
    expected = []
    if not figures(xml.parse(file).getroot(), (1.0, 0.0, 0.0, 1.0), expected):
        return file, 0, "left out", 0.0
    run = subprocess.run([lumo, "info", "--json", file], capture_output=True, text=True, timeout=120)
    if run.returncode != 0:
        return file, 0, run.stderr.strip() or "exit code %d" % run.returncode, 0.0
    # Elements that draw nothing are not in the program's list.
    expected = [e for e in expected if e[0] > 0]
    found = [p for p in json.loads(run.stdout)["paths"] if p["length"] > 0]
    if len(found) != len(expected):
        return file, 0, "%d elements, expected %d" % (len(found), len(expected)), 0.0
    worst = 0.0
    for (length, area), element in zip(expected, found):
        for want, name in ((length, "length"), (area, "area")):
            error = abs(element[name] - want) / max(1.0, abs(want))
            worst = max(worst, error)
            if not error <= TOLERANCE:
                return file, 0, "%s: %s %r, expected %r" % (element["id"], name, element[name], want), error
        if not element["valid"]:
            return file, 0, "%s is not valid" % element["id"], 0.0
    return file, len(found), "", worst


def main():
    lumo, files = sys.argv[1], []
    for argument in sys.argv[2:]:
        if os.path.isdir(argument):
            for folder, _, names in os.walk(argument):
                files += [os.path.join(folder, name) for name in names if name.endswith(".svg")]
        else:
            files.append(argument)
    files.sort()
    elements = drawings = left_out = failures = 0
    worst = 0.0
    with ProcessPoolExecutor() as pool:
        for file, count, message, error in pool.map(compare, [(lumo, f) for f in files], chunksize=32):
            if message == "left out":
                left_out += 1
            elif message:
                failures += 1
                print("%s: %s" % (file, message))
            else:
                drawings += 1
                elements += count
                worst = max(worst, error)
    print("%d drawings with %d elements agree, largest difference %.1e; %d left out, %d failures"
          % (drawings, elements, worst, left_out, failures))
    return 1 if failures or not elements else 0


if __name__ == "__main__":
    sys.exit(main())
