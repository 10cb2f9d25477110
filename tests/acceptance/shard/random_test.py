"""Random directories, clipped by shards and by one run: the same status, console and bytes.

VADELSHARD_CASES is the number of directories, VADELSHARD_SEED the number of the first one.
"""
import os
import random
import shutil
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import SANITIZED
from sharding import WORK, ShardTest

CASES = int(os.environ.get("VADELSHARD_CASES", "6" if SANITIZED else "25"))
SEED = int(os.environ.get("VADELSHARD_SEED", "0"))

STRANGE = [b"total_node_count.txt", b"-lang=en.xyz", b"a\nb.csv", b"\xff.txt", b".txt", b"%0A.xyz", b"x" * 251 + b".txt",
           b"junk", b"a.XYZ", b"big.dat"]


def randomHeader(dice):
    separator = dice.choice(";,\t ")
    header = separator.join(dice.choice(["xyz", "XYZ", "xyzg", "XYZG"])).encode()
    if dice.random() < 0.15:
        header = dice.choice([b"", b"x", b"xyz", b"x;y;z;", b"y;x;z", b"x;y,z", header + b" ", b"x" * dice.randrange(200)])
    return (b"\xef\xbb\xbf" if dice.random() < 0.2 else b"") + header, separator.encode()


def randomLine(dice, separator):
    kind = dice.random()
    if kind < 0.1:
        return dice.choice([b"", b"\r", b"1", b"x;y;z", b"1;1", b"\0", b";;;", b"1 1 1", b"9" * dice.randrange(300)])
    x, y = (b"%.*f" % (dice.randrange(4), dice.uniform(-5, 15)) for _ in range(2))
    return separator.join([x, y, b"%d" % dice.randrange(10 ** dice.randrange(1, 9))])


def randomContent(dice):
    header, separator = randomHeader(dice)
    end = b"\r\n" if dice.random() < 0.3 else b"\n"
    lines = [header] + [randomLine(dice, separator) for _ in range(dice.choice([0, 1, 3, 20, 60]))]
    if dice.random() < 0.1:
        lines = [line.rstrip(b"\r") for line in lines]
    content = end.join(lines)
    return content + end if dice.random() < 0.7 else content


class RandomDirectories(ShardTest):
    def giveRandom(self, dice):
        self.giveJob({})
        place = os.fsencode(self.path("base/data"))
        for number in range(dice.choice([0, 1, 2, 5, 12])):
            name = dice.choice(STRANGE) if dice.random() < 0.3 else b"%d.%s" % (number, dice.choice([b"xyz", b"txt", b"csv"]))
            path = os.path.join(place, name)
            if os.path.lexists(path):
                continue
            kind = dice.random()
            if kind < 0.04:
                os.mkdir(path)
            elif kind < 0.08:
                os.symlink(b"nowhere", path)
            elif kind < 0.09:
                os.symlink(name, path)  # a circle, which ends the tool
            else:
                target = os.path.join(os.fsencode(self.aside), b"linked%d" % number) if kind < 0.15 else path
                with open(target, "wb") as file:
                    file.write(randomContent(dice))
                if target != path:
                    os.symlink(target, path)

    def clipRandomly(self, dice, count):
        indexes = list(range(count)) + dice.choices(range(count), k=dice.randrange(3))
        dice.shuffle(indexes)
        options = ["--direct"] if dice.random() < 0.3 else []
        atOnce = []
        for index in indexes:
            atOnce.append(self.begin("clip", WORK, str(index), *options))
            if dice.random() < 0.7:
                self.finishAll(atOnce)
        self.finishAll(atOnce)

    def finishAll(self, processes):
        while processes:
            done = self.finish(processes.pop())
            self.assertEqual((0, ""), (done.status, done.errors))

    def expectEqualCase(self, dice):
        self.giveRandom(dice)
        status, console, expected = self.oneRun()
        part = dice.choice([1, 2, 7, 30, 200, 1000, 2**31 - 1])
        planned = self.plan(f"--part={part}", f"--shards={dice.choice([1, 2, 5, 1000])}")
        self.assertEqual(status, planned.status, planned)
        if status == 0:
            count = int(planned.output)
            self.clipRandomly(dice, min(count, 12))
            for index in range(12, count):
                self.mustDo("clip", WORK, index)
            self.mustDo("merge", WORK)
        else:
            self.assertEqual(console, planned.output)
        self.assertEqual(expected, self.outputTree())
        self.expectNothingLeft()

    def test_equal_to_one_run(self):
        for seed in range(SEED, SEED + CASES):
            with self.subTest(seed=seed):
                self.expectEqualCase(random.Random(seed))
            self.startOver()
            shutil.rmtree(self.scratch)
            os.mkdir(self.scratch)


if __name__ == "__main__":
    unittest.main()
