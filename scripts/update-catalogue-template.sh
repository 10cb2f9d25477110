#!/bin/sh
# Writes locale/VD2D.pot, the list of all message ids, from the sources.
#
# A message id is the literal argument of translateMessage or formatMessage. The template names the file of each id but
# no line, date or path of this machine, so it changes only when an id does.
set -eu

cd "$(dirname "$0")/.."
. scripts/no-arguments.sh
template=locale/VD2D.pot
trap 'rm -f "$template.new"' EXIT

{
    cat <<'HEADER'
# Message ids of Vadelclip.
# {0} and {1} stand for paths and numbers. Each one must stay in a translation exactly as it is, braces included.
# Written by scripts/update-catalogue-template.sh.
msgid ""
msgstr ""
"Project-Id-Version: Vadelclip\n"
"Report-Msgid-Bugs-To: \n"
"PO-Revision-Date: \n"
"Last-Translator: \n"
"Language-Team: \n"
"Language: \n"
"MIME-Version: 1.0\n"
"Content-Type: text/plain; charset=UTF-8\n"
"Content-Transfer-Encoding: 8bit\n"

HEADER
    # Sorted by file, so that the order does not depend on the file system. No ids but those of the two functions.
    find src -name '*.cpp' -o -name '*.hpp' | LC_ALL=C sort |
        xgettext --files-from=- --language=C++ --from-code=UTF-8 --keyword --keyword=translateMessage \
            --keyword=formatMessage --omit-header --add-location=file --sort-by-file --no-wrap --output=-
} >"$template.new"
mv "$template.new" "$template"
