"""Settings that no result shows on this machine, but another compiler or library would: read from the compile commands."""
import json
import os
import re
import sys
import unittest

HEADER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "src", "processmessage", "ProcessMessage.h")


class BuildSettings(unittest.TestCase):
    def setUp(self):
        with open(os.environ["VADELCLIP_COMPILE_COMMANDS"], encoding="utf-8") as file:
            self.commands = [entry["command"] for entry in json.load(file)]
        self.assertGreater(len(self.commands), 20)

    def expectEverywhere(self, option):
        self.assertEqual([command for command in self.commands if option not in command.split()], [])

    def test_every_file_is_built_without_contraction_of_floating_point(self):
        self.expectEverywhere("-ffp-contract=off")

    def test_no_file_is_built_for_this_processor_or_with_fast_math(self):
        wrong = re.compile(r" -(march=\S+|ffast-math|Ofast|mfma|funsafe\S+)")
        self.assertEqual([command for command in self.commands if wrong.search(command)], [])

    def test_every_file_takes_version_3_of_the_filesystem_library(self):
        self.expectEverywhere("-DBOOST_FILESYSTEM_VERSION=3")

    def test_only_the_base_of_the_messages_and_the_sender_have_destructors(self):
        with open(HEADER, encoding="utf-8") as file:
            self.assertEqual(re.findall(r"(?:virtual )?~\w+\(\)[^;{]*", file.read()),
                             ["virtual ~Message()", "~MessageSender()"])


if __name__ == "__main__":
    unittest.main(argv=sys.argv)
