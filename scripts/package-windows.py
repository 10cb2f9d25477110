"""Packs the Windows build in a directory into a zip file: package-windows.py <build directory>

NOTICES.txt and licences/ in the zip have the terms of all software in the executable, taken from the Debian packages that it
comes from. The same files make the same bytes: the names are sorted, and there is one fixed time. Fails if a header or
library is in the executable that PARTS does not have.
"""
import re
import subprocess
import sys
import zipfile
from pathlib import Path
from typing import NamedTuple

ROOT = Path(__file__).resolve().parents[1]
LIBRARIES = ROOT / "build/windows-deps"
TIME = (1980, 1, 1, 0, 0, 0)  # the first one that a zip file can have
# File by file: a run in the source tree leaves its output directory in examples/.
DOCUMENTS = ("README.md", "CHANGELOG.md", "docs/*.md", "docs/images/*.png", "examples/README.md", "examples/*/*.xml",
             "examples/*/nodes/*")


class Part(NamedTuple):
    """Third-party software in the executable."""
    name: str
    package: str  # the Debian package with its version and terms
    terms: str
    text: str  # the file in licences/
    paths: str  # matches its headers and libraries


MINGW = "mingw-w64-x86-64-dev"
PARTS = (
    Part("Boost: Filesystem, Locale, and headers of others", "boost1.74", "Boost Software License 1.0", "Boost.txt",
         r"/include/boost/|/libboost_"),
    Part("pugixml", "pugixml", "MIT", "pugixml.txt", r"/include/pugi\w+\.hpp$|/libpugixml\.a$"),
    Part("fmt", "libfmt-dev", "MIT, with an exception for object code", "fmt.txt", r"/include/fmt/"),
    Part("nlohmann-json", "nlohmann-json3-dev", "MIT", "nlohmann-json.txt", r"/include/nlohmann/"),
    Part("winpthreads, the threads of mingw-w64", MINGW, "MIT, and BSD with three clauses", "mingw-w64.txt",
         r"/lib(win)?pthread\.a$"),
    Part("mingw-w64: headers and the run-time library", MINGW, "Zope Public License 2.1, and others for single files",
         "mingw-w64.txt", r"/mingw-w64/include/|/x86_64-w64-mingw32/(include|lib)/(?!lib(win)?pthread)"),
    Part("GCC: libstdc++ and libgcc", "gcc-mingw-w64-x86-64-posix-runtime",
         "GNU General Public License 3 or later, with the GCC Runtime Library Exception 3.1", "GCC.txt",
         r"/gcc/x86_64-w64-mingw32/"),
)


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def versionAndTerms(package):
    """Returns the version of a Debian package, or of a source package as scripts/windows-deps.sh has recorded it."""
    noted = LIBRARIES / "licences" / package
    if noted.exists():
        return (noted / "version").read_text(encoding="ascii").strip(), (noted / "copyright").read_bytes()
    return (output("dpkg-query", "-W", "-f=${Version}", package),
            Path("/usr/share/doc", package, "copyright").read_bytes())


def notices(title):
    """Returns the names and bytes of NOTICES.txt and of licences/."""
    # Our own terms and those of the examples, without the first line, which names the Debian package.
    copyright_ = (ROOT / "packaging/copyright").read_text(encoding="utf-8")
    own = copyright_.partition("\n")[2].partition("Parts of these libraries")[0].strip("\n")
    common = "/usr/share/common-licenses/"
    names = {"GPL-3", *re.findall(common + r"([A-Za-z]+-[0-9]+(?:\.[0-9]+)?)", own)}
    own = re.sub(common + r"([A-Za-z]+-[0-9]+(?:\.[0-9]+)?)", r"licences/\1.txt", own).replace(", on Debian in", ", in")
    files = {f"licences/{name}.txt": Path(common, name).read_bytes() for name in names}
    text = f"{title}\n\n{own}\n\nVadelclip.exe has parts of this software of others.\n"
    for part in PARTS:
        version, files[f"licences/{part.text}"] = versionAndTerms(part.package)
        text += (f"\n{part.name}\n    Version: {version} of the Debian package {part.package}\n"
                 f"    Terms:   {part.terms}\n    Text:    licences/{part.text}\n")
    return {"NOTICES.txt": text.encode(), **files}


def unknownParts(build):
    """Returns the third-party headers and linked files in the executable that belong to none of PARTS."""
    paths = set()
    for entry in output("ninja", "-C", build, "-t", "deps").split("\n\n"):
        if entry.startswith("src/"):
            paths.update((build / line.strip()).resolve() for line in entry.splitlines()[1:])
    linked = (build / "Vadelclip.map").read_text(encoding="utf-8", errors="replace")
    # Start-up files, and archives from which the linker took an object.
    for start, archive in re.findall(r"^LOAD (\S.*\.o)$|^(\S.*\.a)\(.+\)$", linked, re.MULTILINE):
        paths.add((build / (start or archive)).resolve())
    return sorted(str(path) for path in paths
                  if (path.is_relative_to(LIBRARIES) or not path.is_relative_to(ROOT))
                  and not any(re.search(part.paths, str(path)) for part in PARTS))


def main(build):
    unknown = unknownParts(build)
    if unknown:
        sys.exit("\n".join(["PARTS in scripts/package-windows.py does not have:", *unknown]))
    cache = (build / "CMakeCache.txt").read_text(encoding="utf-8")
    version = re.search(r"^CMAKE_PROJECT_VERSION:STATIC=(.+)$", cache, re.MULTILINE)[1]
    files = notices(f"Vadelclip {version} for 64-bit Windows")
    for place, patterns in ((build, ("Vadelclip.exe", "locale/*/LC_MESSAGES/VD2D.mo")), (ROOT, DOCUMENTS)):
        files |= {path.relative_to(place).as_posix(): path.read_bytes()
                  for pattern in patterns for path in place.glob(pattern)}
    name = f"Vadelclip-{version}-windows-x64"
    with zipfile.ZipFile(build / f"{name}.zip", "w") as package:
        for entry in sorted(files):
            information = zipfile.ZipInfo(f"{name}/{entry}", TIME)
            information.compress_type = zipfile.ZIP_DEFLATED
            information.create_system = 0
            package.writestr(information, files[entry], compresslevel=9)
    print(build / f"{name}.zip")


if __name__ == "__main__":
    main(Path(sys.argv[1]).resolve())
