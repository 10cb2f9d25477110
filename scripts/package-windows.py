"""Packs the Windows build of a directory: package-windows.py <build directory>

The same files give the same bytes: sorted names, one fixed time, one fixed kind of file.
"""
import re
import sys
import zipfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
TIME = (1980, 1, 1, 0, 0, 0)  # the first one a zip file can hold
KEPT_SUFFIXES = {".md", ".png", ".txt", ".csv", ".xyz", ".xml"}


def versionOf(buildDirectory):
    cache = (buildDirectory / "CMakeCache.txt").read_text(encoding="utf-8")
    return re.search(r"^CMAKE_PROJECT_VERSION:STATIC=(.+)$", cache, re.MULTILINE).group(1)


def filesOf(buildDirectory):
    """From name in the package to file."""
    files = {"Vadelclip.exe": buildDirectory / "Vadelclip.exe"}
    for path in (buildDirectory / "locale").glob("*/LC_MESSAGES/VD2D.mo"):
        files[path.relative_to(buildDirectory).as_posix()] = path
    for name in ("README.md", "CHANGELOG.md"):
        files[name] = ROOT / name
    for directory in ("docs", "examples"):
        for path in (ROOT / directory).rglob("*"):
            if path.is_file() and path.suffix in KEPT_SUFFIXES:
                files[path.relative_to(ROOT).as_posix()] = path
    return files


def pack(buildDirectory):
    name = f"Vadelclip-{versionOf(buildDirectory)}-windows-x64"
    package = buildDirectory / f"{name}.zip"
    files = filesOf(buildDirectory)
    with zipfile.ZipFile(package, "w") as output:
        for entry in sorted(files):
            information = zipfile.ZipInfo(f"{name}/{entry}", TIME)
            information.compress_type = zipfile.ZIP_DEFLATED
            information.create_system = 0
            output.writestr(information, files[entry].read_bytes(), compresslevel=9)
    return package


package = pack(Path(sys.argv[1]).resolve())
print(f"{package}: {package.stat().st_size} bytes")
