"""What is in the package for Windows, and what it tells of the work of others, with files and packages made for it."""
import runpy
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
sys.dont_write_bytecode = True
sys.path[:0] = [str(ROOT / "scripts"), str(ROOT / "tests/support")]
from links import deadLinks  # noqa: E402
from windows_notices import PARTS, Origin, findMissing, findUnknown, notices  # noqa: E402

FROM_SOURCE = {"boost1.74", "pugixml"}
COMMON = {"Apache-2.0", "GPL-3", "LGPL-3"}
ONE_FILE_OF_EACH = ["/w/build/windows-deps/lib/libboost_locale.a", "/w/build/windows-deps/include/pugixml.hpp",
                    "/usr/include/fmt/core.h", "/usr/include/nlohmann/json.hpp",
                    "/usr/x86_64-w64-mingw32/lib/libwinpthread.a", "/usr/share/mingw-w64/include/stdio.h",
                    "/usr/lib/gcc/x86_64-w64-mingw32/12-posix/libstdc++.a"]


class Notices(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        place = Path(directory.name)
        self.origin = Origin(place / "libraries", ROOT / "packaging/copyright", place / "system")
        self.status = ""
        for package in sorted({part.package for part in PARTS}):
            # Over two lines, as texts are set.
            text = "\n".join(f"{phrase}\nof {package}".replace(" ", "\n ", 1)
                             for part in PARTS if part.package == package for phrase in part.phrases)
            self.giveTerms(package, text)
        self.write(self.origin.system / "var/lib/dpkg/status", self.status)
        for name in COMMON:
            self.write(self.origin.commonLicence(name), f"text of {name}\n")

    def write(self, path, text):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def giveTerms(self, package, text):
        if package in FROM_SOURCE:
            self.write(self.origin.libraries / f"licences/{package}.txt", text)
            self.write(self.origin.libraries / f"licences/{package}.version", f"1-{package}\n")
        else:
            self.write(self.origin.terms(package), text)
            self.status += (f"Package: {package}\nStatus: install ok installed\nMaintainer: nobody\nArchitecture: all\n"
                            f"Version: 1-{package}\nDescription: {package}\n\n")

    def notices(self):
        return notices("Vadelclip 7", self.origin)

    def test_each_part_is_named_with_its_version_terms_and_text(self):
        text = self.notices()["NOTICES.txt"].decode()
        self.assertTrue(text.startswith("Vadelclip 7\n\n"))
        for part in PARTS:
            with self.subTest(part=part.name):
                self.assertIn(f"\n{part.name}\n    Version: 1-{part.package} of the Debian package {part.package}\n"
                              f"    Terms:   {part.terms}\n    Text:    licences/{part.text}", text)

    def test_the_texts_are_the_packages_own_bytes(self):
        files = self.notices()
        for part in PARTS:
            self.assertEqual(files[f"licences/{part.text}"], self.origin.terms(part.package).read_bytes(), part.name)
        for name in COMMON:
            self.assertEqual(files[f"licences/{name}.txt"], f"text of {name}\n".encode())
        self.assertEqual(set(files), {"NOTICES.txt"} | {f"licences/{part.text}" for part in PARTS}
                         | {f"licences/{name}.txt" for name in COMMON})

    def test_our_own_terms_and_those_of_the_examples_are_told(self):
        text = self.notices()["NOTICES.txt"].decode()
        for phrase in ("Copyright 2026 the Vadelclip authors", "Apache License 2.0, in licences/Apache-2.0.txt",
                       "licences/LGPL-3.txt and licences/GPL-3.txt", "GeoNames", "GSHHG"):
            self.assertIn(phrase, text)
        self.assertNotIn("/usr/share", text)

    def test_the_same_packages_give_the_same_bytes(self):
        self.assertEqual(self.notices(), self.notices())

    def test_complete_notices_are_found_complete(self):
        self.assertEqual(findMissing(self.notices()), [])

    def test_whatever_is_taken_away_is_missed(self):
        for name in self.notices():
            with self.subTest(name=name):
                files = self.notices()
                del files[name]
                self.assertNotEqual(findMissing(files), [])

    def test_a_text_that_is_another_one_is_noticed(self):
        for part in PARTS:
            with self.subTest(part=part.name):
                files = self.notices()
                files[f"licences/{part.text}"] = b"Nothing of the kind.\n"
                self.assertEqual({wrong for wrong in findMissing(files) if part.text in wrong},
                                 {f"licences/{part.text} does not say: {phrase}"
                                  for other in PARTS if other.text == part.text for phrase in other.phrases})

    def test_a_text_that_nothing_names_is_noticed(self):
        self.assertEqual(findMissing(self.notices() | {"licences/other.txt": b"text\n"}),
                         ["licences/other.txt is not named in NOTICES.txt"])

    def test_a_package_without_its_terms_is_an_error(self):
        self.origin.terms("libfmt-dev").unlink()
        self.assertRaises(FileNotFoundError, self.notices)

    def test_files_of_all_parts_are_known(self):
        self.assertEqual(findUnknown(ONE_FILE_OF_EACH), [])

    def test_a_library_without_a_notice_is_noticed(self):
        for path in ("/w/build/windows-deps/lib/libz.a", "/usr/include/CLI/CLI.hpp", "/w/windows-deps/include/png.h"):
            self.assertEqual(findUnknown([*ONE_FILE_OF_EACH, path]), [f"{path} is of none of the parts"])

    def test_a_part_that_is_not_in_the_executable_is_noticed(self):
        for path in ONE_FILE_OF_EACH:
            others = [other for other in ONE_FILE_OF_EACH if other != path]
            with self.subTest(path=path):
                self.assertEqual(len(findUnknown(others)), 1)
                self.assertTrue(findUnknown(others)[0].startswith("nothing of "))


class Files(unittest.TestCase):
    WANTED = ["README.md", "docs/windows.md", "docs/images/road.png", "examples/README.md",
              "examples/coast/islands.xml", "examples/coast/nodes/europe.csv", "examples/coast/nodes/america.txt"]
    LEFT = ["docs/man/Vadelclip.1.in", "examples/coast/clipped/europe.csv",
            "examples/coast/clipped/total_node_count.txt", "examples/coast/notes.txt", "src/app/main.cpp"]

    def test_of_the_tree_it_holds_documents_and_examples_and_no_results_of_a_run(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        for name in [*self.WANTED, *self.LEFT, "build/Vadelclip.exe", "build/locale/de/LC_MESSAGES/VD2D.mo"]:
            path = Path(directory.name, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(b"content of " + name.encode())
        script = runpy.run_path(str(ROOT / "scripts/package-windows.py"))
        files = script["filesOf"](Path(directory.name, "build"), Path(directory.name))
        self.assertEqual(files, {name: b"content of " + name.encode() for name in self.WANTED} |
                         {name: b"content of build/" + name.encode()
                          for name in ("Vadelclip.exe", "locale/de/LC_MESSAGES/VD2D.mo")})

    def test_links_between_its_documents_lead_somewhere(self):
        script = runpy.run_path(str(ROOT / "scripts/package-windows.py"))
        files = script["filesOf"](ROOT / "no build", ROOT)
        self.assertIn("docs/windows.md", files)
        self.assertEqual(deadLinks(files), [])

    def test_a_link_that_leads_nowhere_is_noticed(self):
        files = {"a.md": b"# One two\n[x](b/c.md#x) [y](b/c.md#no) [z](d.md) [w](#one-two) [v](https://a.invalid/)\n",
                 "b/c.md": b"## `X`!\n[x](../a.md) [y](a.md)\n\n    [code](e.md)\n"}
        self.assertEqual(deadLinks(files), ["a.md: b/c.md#no", "a.md: d.md", "b/c.md: a.md"])


if __name__ == "__main__":
    unittest.main(argv=sys.argv)
