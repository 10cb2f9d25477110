"""Whose work is in the package for Windows, and on what terms: NOTICES.txt and the texts in licences/.

Texts and versions are those of the Debian packages that the parts were taken from. Our own terms, and those of the
example data, are the ones in packaging/copyright.
"""
import re
import subprocess
from pathlib import Path
from typing import NamedTuple


class Part(NamedTuple):
    """Something of others in the executable."""
    name: str
    package: str  # of Debian, that it comes from and that holds its terms
    terms: str
    text: str  # the file with the terms in licences/
    phrases: tuple  # what has to stand in that file, apart from blanks and line ends
    files: str  # what the compiler reads and the linker takes of it: an expression that is found in the path
    commonLicences: tuple = ()  # that the text names without giving them


MINGW = "mingw-w64-x86-64-dev"
MIT = "Permission is hereby granted, free of charge, to any person obtaining a copy"
PARTS = (
    Part("Boost: Filesystem, Locale, and headers of others", "boost1.74", "Boost Software License 1.0", "Boost.txt",
         ("Boost Software License - Version 1.0",), r"/include/boost/|/libboost_"),
    Part("pugixml", "pugixml", "MIT", "pugixml.txt", ("Arseny Kapoulkine", "Kristen Wegner", MIT),
         r"/include/pugi\w+\.hpp$|/libpugixml\.a$"),
    Part("fmt", "libfmt-dev", "MIT, with an exception for object code", "fmt.txt", ("Victor Zverovich", MIT),
         r"/include/fmt/"),
    Part("nlohmann-json", "nlohmann-json3-dev", "MIT", "nlohmann-json.txt", ("Niels Lohmann", MIT),
         r"/include/nlohmann/"),
    Part("winpthreads, the threads of mingw-w64", MINGW, "MIT, and BSD with three clauses", "mingw-w64.txt",
         ("mingw-w64-libraries/winpthreads/*", "Lockless Inc.", MIT), r"/lib(win)?pthread\.a$"),
    Part("mingw-w64: headers and the run-time library", MINGW, "Zope Public License 2.1, and others for single files",
         "mingw-w64.txt", ("License: ZPL-2.1", "mingw-w64-crt/gdtoa/*"),
         r"/mingw-w64/include/|/x86_64-w64-mingw32/(include|lib)/(?!lib(win)?pthread)"),
    Part("GCC: libstdc++ and libgcc", "gcc-mingw-w64-x86-64-posix-runtime",
         "GNU General Public License 3 or later, with the GCC Runtime Library Exception 3.1", "GCC.txt",
         ("GCC RUNTIME LIBRARY EXCEPTION Version 3.1", "- libstdc++-v3", "- libgcc"),
         r"/gcc/x86_64-w64-mingw32/", ("GPL-3",)),
)


class Origin(NamedTuple):
    """Where the texts and versions are looked for."""
    libraries: Path  # what scripts/windows-deps.sh has built, and noted of the source packages
    copyright: Path  # packaging/copyright
    system: Path = Path("/")

    def version(self, package):
        noted = self.libraries / "licences" / f"{package}.version"
        if noted.exists():
            return noted.read_text(encoding="ascii").strip()
        command = ["dpkg-query", f"--admindir={self.system / 'var/lib/dpkg'}", "-W", "-f=${Version}", package]
        return subprocess.run(command, check=True, capture_output=True, text=True).stdout

    def terms(self, package):
        noted = self.libraries / "licences" / f"{package}.txt"
        return noted if noted.exists() else self.system / "usr/share/doc" / package / "copyright"

    def commonLicence(self, name):
        return self.system / "usr/share/common-licenses" / name


def ownTerms(origin):
    """What packaging/copyright says of the tool and the examples, and the common licences that it names."""
    text = origin.copyright.read_text(encoding="utf-8")
    terms, end, _ = text.partition("Parts of these libraries")
    if not end:
        raise ValueError(f"{origin.copyright} does not tell where the terms of the libraries begin")
    names = []

    def inThisPackage(place):
        names.append(place[1])
        return f"licences/{place[1]}.txt"

    terms = re.sub(r"/usr/share/common-licenses/([A-Za-z]+-[0-9]+(?:\.[0-9]+)?)", inThisPackage, terms)
    # The first line names the package for Debian.
    return terms.split("\n", 1)[1].replace(", on Debian in", ", in").strip("\n"), names


def noticeOf(part, origin):
    places = [part.text, *(f"{name}.txt" for name in part.commonLicences)]
    return (f"{part.name}\n"
            f"    Version: {origin.version(part.package)} of the Debian package {part.package}\n"
            f"    Terms:   {part.terms}\n"
            f"    Text:    {', '.join('licences/' + place for place in places)}\n")


def notices(title, origin):
    """From name in the package to bytes."""
    terms, commonNames = ownTerms(origin)
    files = {}
    for part in PARTS:
        commonNames += part.commonLicences
        files[f"licences/{part.text}"] = origin.terms(part.package).read_bytes()
    for name in commonNames:
        files[f"licences/{name}.txt"] = origin.commonLicence(name).read_bytes()
    text = "\n".join([title + "\n", terms + "\n", "Vadelclip.exe holds parts of these works of others.\n",
                      *(noticeOf(part, origin) for part in PARTS)])
    files["NOTICES.txt"] = text.encode()
    return files


def findMissing(files):
    """What is wrong with the notices in a package, one text each; from name to bytes."""
    notice = files.get("NOTICES.txt", b"").decode()
    missing = [f"NOTICES.txt does not name {part.name}" for part in PARTS
               if f"\n{part.name}\n    Version: " not in notice]
    named = set(re.findall(r"licences/[\w.+-]+\.txt", notice))
    held = {name for name in files if name.startswith("licences/")}
    missing += [f"{name} is named and not there" for name in sorted(named - held)]
    missing += [f"{name} is not named in NOTICES.txt" for name in sorted(held - named)]
    for part in PARTS:
        text = " ".join(files.get(f"licences/{part.text}", b"").decode().split())
        missing += [f"licences/{part.text} does not say: {phrase}" for phrase in part.phrases if phrase not in text]
    return missing


def findUnknown(paths):
    """What does not fit, one text each, between the parts above and the files that went into the executable."""
    unknown = [f"{path} is of none of the parts" for path in paths
               if not any(re.search(part.files, path) for part in PARTS)]
    return unknown + [f"nothing of {part.name} is in the executable" for part in PARTS
                      if not any(re.search(part.files, path) for path in paths)]
