"""Differences between the tool on Windows and on Linux, as docs/windows.md describes them."""
import os
import shutil
import signal
import subprocess
import sys
import threading
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "support"))
from acceptance import CHANNEL, DIRECTORY, KEPT, NODES, RECORDING, SQUARE, TOOL, AcceptanceTest, output
from expected_messages import USAGE, failedRun, finishedRun, jsonFailedRun, jsonFinishedRun
from target_platform import endedAbnormally, launch, launchSettings, withoutTextMode

HEADER = b"x;y;z\n"
MESSAGES = jsonFinishedRun(0.0, 50.0, 100.0)


class TextMode(AcceptanceTest):
    def test_only_messages_have_no_carriage_returns(self):
        self.giveJob({"a.xyz": HEADER + b"1;1;5\n2;2;5\r\n"})
        run = self.clip("-pipe", "-lang=en", tool=TOOL)
        self.assertEqual(run.tree["base/out/a.xyz"], b"x;y;z\r\n1;1;5\r\n2;2;5\r\n")
        self.assertEqual(run.tree["base/out/total_node_count.txt"], b"2\r\n")
        self.channelFile.seek(0)
        self.assertEqual(self.channelFile.read(), "".join(line + "\n" for line in MESSAGES).encode())
        self.assertEqual(self.start("-lang=en", tool=TOOL).console, USAGE.encode() + b"\r\n")

    def test_end_of_file_character_ends_a_node_file(self):
        for content, count, kept in ((b"1;1;5\n\x1a\n2;2;5\n", 1, b"1;1;5\n"),
                                     (b"1;1;5\n2;2;5\x1a\n3;3;5\n", 1, b"1;1;5\n"),
                                     (b"1;1;5\n2;2;5\n\x1a", 2, b"1;1;5\n2;2;5\n"), (b"\x1a1;1;5\n", 0, b"")):
            with self.subTest(content=content):
                self.startOver()
                self.giveJob({"a.xyz": HEADER + content})
                files = {"a.xyz": HEADER + kept} if kept else {}
                self.expectFinished(self.clip(), kept.count(b"\n"), files, lineCounts=[count])

    def test_end_of_file_character_in_the_header_leaves_no_line(self):
        # The bytes before it are a header without a line feed.
        self.giveJob({"a.xyz": b"x;y;z\x1a\n1;1;5\n", "b.xyz": b"\x1ax;y;z\n1;1;5\n"})
        self.expectFinished(self.clip(), 0, lineCounts=[-1])

    def test_boundary_file_is_not_read_in_text_mode(self):
        self.giveJob(NODES, SQUARE.replace(b"<VadeDGM>", b"<!-- \x1a --><VadeDGM>"))
        self.expectFinished(self.clip(), 1, KEPT, lineCounts=[2])


class Paths(AcceptanceTest):
    def test_backslashes_separate_like_slashes(self):
        for path in ("base\\data", ".\\base\\data", ".\\base/data"):
            with self.subTest(path=path):
                self.startOver()
                self.giveJob(NODES)
                self.expectFinished(self.start(path, "out", "area.xml"), 1, KEPT, lineCounts=[2])

    def test_trailing_backslash_puts_the_output_into_the_input(self):
        self.giveJob(NODES)
        self.expect(self.start("base\\data\\", "out", "area.xml"), status=0,
                    created=output(1, KEPT, at="base/data/out"), messages=finishedRun(2))

    def test_path_may_begin_with_a_drive(self):
        self.giveJob(NODES)
        base = "Z:" + self.path("base").replace("/", "\\")
        self.expectFailed(self.start(base + "\\no\\data", "out", "area.xml"), f"Directory {base}\\no does not exist")
        self.expectFinished(self.start(base + "\\data", "out", "Z:" + self.path("area.xml")), 1, KEPT, lineCounts=[2])

    def test_drive_in_the_output_name_is_appended(self):
        self.giveJob(NODES)
        self.expectThrown(self.start("base/data", "C:\\out", "area.xml"), "boost::filesystem::create_directory")

    def test_messages_join_paths_by_a_backslash(self):
        self.giveJob(NODES)
        self.expectFailed(self.start("base/no", "out", "area.xml"), "Input directory base\\no does not exist")
        self.expectFailed(self.start("base/data", "data", "area.xml"),
                          "Output directory base\\data already exists, aborting in order avoid overwriting of "
                          "existing data")

    def test_only_suffixes_are_case_sensitive(self):
        self.giveJob({"a.xyz": NODES["a.xyz"], "b.XYZ": NODES["a.xyz"]})
        self.expectFinished(self.start("BASE/Data", "out", "AREA.xml"), 1, KEPT, lineCounts=[2])

    def test_passes_are_in_case_insensitive_order(self):
        lines = {"c.xyz": 1, "B.xyz": 2, "a.xyz": 3, "D.xyz": 4}
        self.giveJob({name: HEADER + b"20;1;5\n" * count for name, count in lines.items()})
        self.expectFinished(self.clip(), 0, lineCounts=[3, 2, 1, 4])

    def test_thrown_errors_have_the_texts_of_the_system(self):
        for name, text in (("file", "File already exists"), ("no\\out", "Path not found")):
            with self.subTest(name=name):
                self.startOver()
                self.giveJob(NODES)
                self.give({"base/file": b""})
                self.expectFailed(self.start("base/data", name, "area.xml"),
                                  f'boost::filesystem::create_directory: {text}: "base\\{name}"')


class NamesOfTheSystem(AcceptanceTest):
    """The system changes or interprets some names before it opens them. The tool does not check names."""

    def startInto(self, name):
        self.startOver()
        self.giveJob(NODES)
        return self.start("base/data", name, "area.xml")

    def test_null_device_as_output_keeps_nothing(self):
        for name in ("NUL", "nul", "NUL.txt", "nul "):
            with self.subTest(name=name):
                self.expect(self.startInto(name), status=0, messages=finishedRun(2))

    def test_console_as_output_ends_the_run(self):
        for name in ("con", "CON.txt"):
            with self.subTest(name=name):
                self.expectThrown(self.startInto(name), "boost::filesystem::create_directory")

    def test_single_dot_at_the_end_of_the_output_name_is_dropped(self):
        for name in ("new.", "new/.", "new\\.", "new\\"):
            with self.subTest(name=name):
                self.expect(self.startInto(name), status=0, created=output(1, KEPT, at="base/new"),
                            messages=finishedRun(2))

    def test_more_trailing_dots_or_spaces_leave_an_empty_output(self):
        for name in ("new..", "new...", "new ", "new  ", "new. ."):
            with self.subTest(name=name):
                self.expect(self.startInto(name), status=0, created={"base/new": DIRECTORY}, messages=finishedRun(2))

    def test_output_name_of_dots_or_spaces_is_the_parent_directory(self):
        for name in (".", "...", "  "):
            with self.subTest(name=name):
                self.expectFailed(self.startInto(name), f"Output directory base\\{name} already exists, aborting in "
                                                        "order avoid overwriting of existing data")


class HeldFiles(AcceptanceTest):
    def hold(self, name):
        """Starts a program that has a file open as descriptor 3 until its standard input ends."""
        settings = {**os.environ, **launchSettings("append", ()), "VADELCLIP_CHANNEL_FILE": self.path(name)}
        holder = subprocess.Popen(launch("C:\\windows\\system32\\cmd.exe", ["/c", "pause"]), env=settings,
                                  stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

        def endHolder():
            holder.stdin.close()
            holder.wait()

        self.addCleanup(endHolder)
        self.waitFor(lambda: os.path.exists(self.path(name)), name)

    def test_empty_output_open_in_another_program_ends_the_run(self):
        lines = b"1;1;5\n" * 200_000
        self.giveJob({"a.xyz": HEADER + lines, "b.xyz": HEADER + b"20;1;5\n"})

        def holdDuringTheFirstPass():
            self.waitFor(lambda: os.path.exists(self.path("base/out")), "the output directory")
            self.runningProcess().send_signal(signal.SIGSTOP)
            try:
                self.hold("base/out/b.xyz")
            finally:
                self.runningProcess().send_signal(signal.SIGCONT)

        helper = threading.Thread(target=holdDuringTheFirstPass)
        helper.start()
        run = self.clip("-lang=en", tool=TOOL, launcher=False)
        helper.join()
        self.expect(run, status=1, console=[r'boost::filesystem::remove: Sharing violation: "base\out\b.xyz"'],
                    created={"base/out": DIRECTORY, "base/out/a.xyz": HEADER + lines, "base/out/b.xyz": HEADER})


class NarrowText(AcceptanceTest):
    """The system converts arguments and names to the ANSI code page, which is 1252 here."""

    def test_argument_is_printed_in_the_code_page(self):
        run = self.start("base/data", "out", "Höhe→.xml", "-lang=en", "-pipe", tool=TOOL)
        self.assertEqual(run.console, b"Boundary file H\xf6he?.xml not found\r\n"
                                      b"Boundary file H\xf6he?.xml does not exist\r\n")
        self.assertEqual((run.status, run.errors, run.messages), (1, b"", jsonFailedRun(
            "Boundary file H\ufffdhe?.xml not found", "Boundary file H\ufffdhe?.xml does not exist")))

    def test_names_within_the_code_page_work(self):
        self.give({"Fläche.xml": SQUARE, "Höhen/Süd/ä.xyz": NODES["a.xyz"]})
        run = self.start("Höhen/Süd", "größe", "Fläche.xml")
        self.expect(run, status=0, created=output(1, {"ä.xyz": KEPT["a.xyz"]}, at="Höhen/größe"),
                    messages=finishedRun(2))

    def test_node_file_name_beyond_the_code_page_is_skipped(self):
        self.giveJob({**NODES, "→.xyz": NODES["a.xyz"]})
        self.expectFinished(self.clip(), 1, KEPT, lineCounts=[2])

    def test_boundary_file_name_beyond_the_code_page_is_not_found(self):
        self.giveJob(NODES)
        self.give({"→.xml": SQUARE})
        self.expectFailed(self.start("base/data", "out", "→.xml"), "Boundary file ?.xml not found",
                          "Boundary file ?.xml does not exist")


class Catalogues(AcceptanceTest):
    def copyOfTool(self, *folders):
        """Copies the tool and its catalogues into a path of these folders."""
        place = os.path.join(self.aside, *folders)
        os.makedirs(place)
        shutil.copy(TOOL, place)
        shutil.copytree(os.environ["VADELCLIP_LOCALE"], place + "/locale")
        return place + "/Vadelclip.exe"

    def usageText(self, tool, *options):
        # The run-time of the launcher does not start a program with a long path.
        run = self.start(*options, tool=tool, launcher=False)
        self.assertEqual((run.status, run.errors, run.tree), (1, b"", {}))
        return withoutTextMode(run.console).decode()

    def test_german_texts_are_utf8_on_the_console(self):
        self.giveJob(NODES)
        self.give({"base/out": DIRECTORY})
        run = self.clip(tool=self.copyOfTool("place"), launcher=False)
        self.expect(run, status=1, console=["Das Ausgabeverzeichnis base\\out existiert bereits; Abbruch, damit keine "
                                            "vorhandenen Daten überschrieben werden"])

    def test_catalogues_in_a_directory_beyond_ascii_are_not_found(self):
        for folder in ("Höhe", "→"):
            with self.subTest(folder=folder):
                self.assertEqual(self.usageText(self.copyOfTool(folder)), USAGE + "\n")

    def test_catalogues_in_a_path_of_260_characters_are_not_found(self):
        # The tool gets 259 or 260 characters of the path of the executable. They must contain the whole directory.
        parent = len("Z:" + self.aside) + len("/") * 2 + 100
        for length, german in ((258, True), (260, False)):
            with self.subTest(length=length):
                tool = self.copyOfTool("d" * 100, "d" * (length - parent))
                self.assertEqual(len("Z:" + os.path.dirname(tool)), length)
                self.assertEqual(self.usageText(tool) != USAGE + "\n", german)

    def test_directory_in_place_of_a_catalogue_counts_as_none(self):
        tool = self.copyOfTool("place")
        catalogue = Path(tool).parent / "locale/de/LC_MESSAGES/VD2D.mo"
        catalogue.unlink()
        catalogue.mkdir()
        self.assertEqual(self.usageText(tool), USAGE + "\n")

    def test_language_with_a_character_set_ends_the_process(self):
        for language in ("fr.latin1", "de.utf8"):
            with self.subTest(language=language):
                run = self.start("-lang=" + language, tool=RECORDING)
                self.assertTrue(endedAbnormally(run.status), run.status)
                self.assertEqual((run.console, run.messages), (b"", []))

    def test_language_with_a_variant_is_german(self):
        for language in ("de_", "de@x"):
            with self.subTest(language=language):
                run = self.start("-lang=" + language, tool=TOOL)
                self.assertEqual(run.console.split()[0], b"Aufruf:")


class Channel(AcceptanceTest):
    """Descriptor 3 of the C run-time, passed on by a program of the same run-time."""

    def clipPiped(self, **settings):
        self.giveJob(NODES)
        return self.clip("-pipe", "-lang=en", tool=TOOL, **settings)

    def expectJob(self, run, messages=()):
        self.expect(run, status=0, created=output(1, KEPT), messages=messages)

    def test_text_mode_descriptor_gets_only_line_feeds(self):
        path = os.path.join(self.aside, "channel")
        run = self.clipPiped(channel="text mode", environment={"VADELCLIP_CHANNEL_FILE": path})
        self.expectJob(run)
        self.assertEqual(Path(path).read_bytes(), "".join(line + "\n" for line in MESSAGES).encode())

    def test_file_opened_for_appending_keeps_its_content(self):
        path = Path(self.aside, "channel")
        path.write_bytes(b"earlier\n")
        run = self.clipPiped(channel="append", environment={"VADELCLIP_CHANNEL_FILE": str(path)})
        self.expectJob(run)
        self.assertEqual(path.read_bytes(), "".join(line + "\n" for line in ("earlier", *MESSAGES)).encode())

    def test_closed_or_unusable_channel_changes_no_result(self):
        for settings in ({"closed": (CHANNEL,)}, {"channel": ""}, {"channel": "read only"}, {"channel": "no reader"}):
            with self.subTest(settings=settings):
                self.startOver()
                self.expectJob(self.clipPiped(**settings))

    def test_program_without_descriptors_passes_none_on(self):
        self.giveJob(NODES)
        run = self.clip("-pipe", "-lang=en", tool=TOOL, launcher=False)
        self.expectJob(run)


class ConsoleWithoutReader(AcceptanceTest):
    def test_console_without_a_reader_changes_no_result(self):
        self.giveJob(NODES)
        reader, writer = os.pipe()
        os.close(reader)
        self.addCleanup(os.close, writer)
        run = self.start("base/no", "out", "area.xml", console=writer)
        self.expect(run, status=1, messages=failedRun("Input directory base\\no does not exist"))


class AbnormalEnd(AcceptanceTest):
    def test_killed_run_leaves_whole_lines_and_no_count(self):
        content = HEADER + b"".join(b"1;1;%07d\n" % index for index in range(1_000_000))
        self.giveJob({"a.xyz": content})
        output = Path(self.path("base/out/a.xyz"))

        def kill():
            self.waitFor(lambda: output.exists() and output.stat().st_size > 20_000, "some kept lines")
            self.runningProcess().kill()

        killer = threading.Thread(target=kill)
        killer.start()
        run = self.clip("-lang=en", tool=TOOL, launcher=False)
        killer.join()
        written = run.tree.pop("base/out/a.xyz")
        self.assertTrue(content.replace(b"\n", b"\r\n").startswith(written), written[-40:])
        self.assertTrue(written.endswith(b"\r\n"), written[-40:])
        self.assertEqual((run.status, sorted(run.tree)), (-9, ["area.xml", "base", "base/data", "base/data/a.xyz",
                                                               "base/out"]))

    def test_status_is_three(self):
        run = self.start(environment={"VADELCLIP_RECORDING_THROWS": f"ErrorMessage 2 {USAGE}"})
        self.assertEqual((run.status, run.messages), (3, failedRun(USAGE)[:2]))


if __name__ == "__main__":
    unittest.main()
