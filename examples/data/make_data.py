#!/usr/bin/env python3
"""Writes the pictures and models that the examples use. Needs nothing but Python; run it in this folder."""
import math
import random
import struct
import zlib


def write_png(name, size, pixel):
    """Writes a square RGB picture; pixel(x, y) gives three numbers from 0 to 1, x and y run from 0 to 1."""
    rows = bytearray()
    for row in range(size):
        rows.append(0)
        for column in range(size):
            color = pixel((column + 0.5) / size, (row + 0.5) / size)
            rows.extend(max(0, min(255, round(255 * c))) for c in color)

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    with open(name, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n")
        file.write(chunk(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 2, 0, 0, 0)))
        file.write(chunk(b"IDAT", zlib.compress(bytes(rows), 9)))
        file.write(chunk(b"IEND", b""))


class Noise:
    """Smooth noise that tiles: values on a grid, blended with a smooth step."""

    def __init__(self, cells, seed):
        generator = random.Random(seed)
        self.cells = cells
        self.values = [[generator.random() for _ in range(cells)] for _ in range(cells)]

    def __call__(self, x, y):
        x, y = x * self.cells, y * self.cells
        i, j = math.floor(x), math.floor(y)
        u, v = x - i, y - j
        u, v = u * u * (3 - 2 * u), v * v * (3 - 2 * v)
        at = lambda a, b: self.values[b % self.cells][a % self.cells]
        low = at(i, j) * (1 - u) + at(i + 1, j) * u
        high = at(i, j + 1) * (1 - u) + at(i + 1, j + 1) * u
        return low * (1 - v) + high * v


def brick(x, y):
    """Height of a wall of bricks, four courses of two bricks: 0 in the joints, 1 on the bricks; and the brick's number."""
    course = math.floor(4 * y)
    along = 2 * x + 0.5 * (course % 2)
    edge = min((along % 1) / 2, (1 - along % 1) / 2, (4 * y % 1) / 4, (1 - 4 * y % 1) / 4)
    t = max(0.0, min(1.0, (edge - 0.008) / 0.012))
    return t * t * (3 - 2 * t), course * 7 + math.floor(along) % 2


def make_bricks(size):
    fine, coarse = Noise(64, 1), Noise(8, 2)

    def color(x, y):
        height, number = brick(x, y)
        shade = 0.75 + 0.25 * fine(x, y) - 0.12 * coarse(x, y) + 0.14 * math.sin(2.3 * number)
        wall, joint = (0.66, 0.29, 0.21), (0.72, 0.69, 0.64)
        return [height * a * shade + (1 - height) * b * (0.8 + 0.2 * fine(x, y)) for a, b in zip(wall, joint)]

    def relief(x, y):
        return brick(x % 1, y % 1)[0] * (0.93 + 0.07 * fine(x, y))

    def normal(x, y):
        step = 1 / size
        dx = (relief(x + step, y) - relief(x - step, y)) * 0.04 / (2 * step)
        dy = (relief(x, y + step) - relief(x, y - step)) * 0.04 / (2 * step)
        length = math.sqrt(dx * dx + dy * dy + 1)
        return (0.5 - 0.5 * dx / length, 0.5 + 0.5 * dy / length, 0.5 + 0.5 / length)

    write_png("bricks.png", size, color)
    write_png("bricks-normal.png", size, normal)
    write_png("bricks-height.png", size, lambda x, y: [brick(x, y)[0] * (0.9 + 0.1 * coarse(x, y))] * 3)


def make_wet(size):
    """Where a surface shines: white puddles and drops on a dull ground."""
    wide, narrow = Noise(5, 6), Noise(16, 7)

    def color(x, y):
        t = max(0.0, min(1.0, 12 * (0.7 * wide(x, y) + 0.3 * narrow(x, y) - 0.47)))
        return [0.04 + 0.96 * t * t * (3 - 2 * t)] * 3

    write_png("wet.png", size, color)


def make_leaves(size):
    """The light that comes through a tree: white, with the dark outlines of leaves."""
    generator = random.Random(8)
    leaves = [(generator.random(), generator.random(), generator.uniform(0, math.pi), generator.uniform(0.06, 0.11))
              for _ in range(26)]

    def inside(x, y, leaf):
        u, v, turn, length = leaf
        # The picture tiles: the nearest repetition of the leaf counts.
        dx, dy = (x - u + 0.5) % 1 - 0.5, (y - v + 0.5) % 1 - 0.5
        along = dx * math.cos(turn) + dy * math.sin(turn)
        across = -dx * math.sin(turn) + dy * math.cos(turn)
        return abs(along) < length and abs(across) < 0.42 * length * (1 - (along / length) ** 2)

    write_png("leaves.png", size, lambda x, y: [0.22 if any(inside(x, y, leaf) for leaf in leaves) else 1.0] * 3)


def make_noise(size):
    """Two independent random numbers a pixel."""
    generator = random.Random(9)
    write_png("noise.png", size, lambda x, y: [generator.random(), generator.random(), 0.5])


def make_studio(size):
    """What a mirroring ball shows in a room with two bright windows: a sphere map."""
    def color(x, y):
        u, v = 2 * x - 1, 1 - 2 * y
        r2 = u * u + v * v
        if r2 > 1:
            return (0.10, 0.11, 0.13)
        # The normal of the ball there, and where the view is thrown from it.
        n = math.sqrt(1 - r2)
        dx, dy, dz = 2 * n * u, 2 * n * v, 2 * n * n - 1
        azimuth, height = math.atan2(dx, dz), math.asin(max(-1.0, min(1.0, dy)))
        for center, low, high, tint in ((-0.7, 0.15, 0.75, (1.0, 0.97, 0.90)), (0.9, 0.05, 0.85, (0.85, 0.93, 1.0))):
            # How far inside the frame, and away from the bars that cross in the middle.
            across = abs(azimuth - center)
            pane = min(0.42 - across, height - low, high - height, across - 0.02, abs(height - (low + high) / 2) - 0.02)
            if pane > -0.06:
                t = max(0.0, min(1.0, 0.5 + pane / 0.12))
                return [0.35 * (1 - t) + c * t for c in tint]
        if height < 0:
            tile = (math.floor(2 * math.tan(min(1.4, height + 1.5707)) * math.cos(azimuth)) +
                    math.floor(2 * math.tan(min(1.4, height + 1.5707)) * math.sin(azimuth))) % 2
            return (0.42, 0.33, 0.25) if tile else (0.30, 0.23, 0.17)
        t = height / (0.5 * math.pi)
        return (0.45 + 0.2 * t, 0.47 + 0.2 * t, 0.52 + 0.2 * t)

    write_png("studio.png", size, color)


def make_wood(size):
    bend, grain = Noise(4, 3), Noise(64, 4)

    def color(x, y):
        ring = 6 * x + 1.5 * bend(x, y)
        t = 0.5 + 0.5 * math.sin(2 * math.pi * ring)
        shade = 0.9 + 0.2 * (grain(x, 0.1 * y) - 0.5)
        return [shade * ((1 - t) * a + t * b) for a, b in zip((0.54, 0.35, 0.18), (0.76, 0.55, 0.33))]

    write_png("wood.png", size, color)


def make_tiles(size):
    noise = Noise(32, 5)

    def color(x, y):
        dark = (math.floor(2 * x) + math.floor(2 * y)) % 2
        edge = min(2 * x % 1, 1 - 2 * x % 1, 2 * y % 1, 1 - 2 * y % 1)
        tone = (0.82 if dark else 0.62) + 0.06 * (noise(x, y) - 0.5)
        return [tone * (0.75 if edge < 0.012 else 1) * c for c in (1.0, 0.99, 0.96)]

    write_png("tiles.png", size, color)


def write_obj(name, comment, material, vertices, faces):
    """Writes a model; the file has y upwards, as the format's readers expect."""
    with open(name, "w") as file:
        file.write("# " + comment + "\nmtllib %s\nusemtl %s\n" % ("materials.mtl", material))
        for x, y, z in vertices:
            file.write("v %.5f %.5f %.5f\n" % (x, z, -y))
        for face in faces:
            file.write("f " + " ".join(str(i + 1) for i in face) + "\n")


def make_logo(size):
    """A white ring with three dots in it on a blue ground."""
    def color(x, y):
        u, v = 2 * x - 1, 2 * y - 1
        cover = lambda inside: max(0.0, min(1.0, 0.5 + inside * size / 2))
        white = cover(0.06 - abs(math.hypot(u, v) - 0.76))
        for turn in (0, 2 * math.pi / 3, 4 * math.pi / 3):
            white = max(white, cover(0.18 - math.hypot(u - 0.38 * math.sin(turn), v + 0.38 * math.cos(turn))))
        return tuple(c + (1 - c) * white for c in (0.14, 0.36, 0.55))
    write_png("logo.png", size, color)


def make_bowl(rings, sectors):
    """A round bowl of 3 m radius: the lower part of a ball, with a wall 0.15 m thick."""
    vertices, faces = [], []
    for shell, radius in enumerate((3.0, 3.15)):
        for ring in range(rings + 1):
            angle = 0.03 + (0.5 * math.pi - 0.45) * ring / rings
            for sector in range(sectors):
                turn = 2 * math.pi * sector / sectors
                vertices.append((radius * math.sin(angle) * math.cos(turn), radius * math.sin(angle) * math.sin(turn),
                                 3.15 - radius * math.cos(angle)))
    at = lambda shell, ring, sector: (shell * (rings + 1) + ring) * sectors + sector % sectors
    for sector in range(sectors):
        for ring in range(rings):
            a, b = at(0, ring, sector), at(0, ring + 1, sector)
            c, d = at(0, ring + 1, sector + 1), at(0, ring, sector + 1)
            faces += [(a, b, c), (a, c, d)]
            a, b = at(1, ring, sector), at(1, ring + 1, sector)
            c, d = at(1, ring + 1, sector + 1), at(1, ring, sector + 1)
            faces += [(a, c, b), (a, d, c)]
        for ring, flip in ((0, True), (rings, False)):
            a, b = at(0, ring, sector), at(1, ring, sector)
            c, d = at(1, ring, sector + 1), at(0, ring, sector + 1)
            faces += [(a, c, b), (a, d, c)] if flip else [(a, b, c), (a, c, d)]
    write_obj("bowl.obj", "A bowl, 3 m in radius; lengths in m.", "clay", vertices, faces)


def make_gem(sides):
    """A cut stone, 1 m across: a flat top, a crown, and a point below."""
    vertices = [(0.28 * math.cos(2 * math.pi * (i + 0.5) / sides), 0.28 * math.sin(2 * math.pi * (i + 0.5) / sides), 0.2)
                for i in range(sides)]
    vertices += [(0.5 * math.cos(2 * math.pi * i / sides), 0.5 * math.sin(2 * math.pi * i / sides), 0.0)
                 for i in range(sides)]
    vertices += [(0.0, 0.0, 0.2), (0.0, 0.0, -0.5)]
    top, point = 2 * sides, 2 * sides + 1
    faces = []
    for i in range(sides):
        j = (i + 1) % sides
        faces += [(top, i, j), (i, sides + j, j), (sides + i, sides + j, i), (point, sides + j, sides + i)]
    write_obj("gem.obj", "A cut stone, 1 m across; lengths in m.", "stone", vertices, faces)


def make_materials():
    with open("materials.mtl", "w") as file:
        file.write("# The materials of the models beside this file.\n")
        for name, color in (("clay", (0.80, 0.72, 0.58)), ("stone", (0.70, 0.20, 0.30))):
            file.write("newmtl %s\nKa %.2f %.2f %.2f\nKd %.2f %.2f %.2f\nKs 0.2 0.2 0.2\nNs 30\n" % ((name,) + color * 2))


if __name__ == "__main__":
    make_materials()
    make_bricks(256)
    make_wood(256)
    make_tiles(256)
    make_logo(192)
    make_wet(128)
    make_leaves(256)
    make_noise(64)
    make_studio(256)
    make_bowl(12, 40)
    make_gem(8)
