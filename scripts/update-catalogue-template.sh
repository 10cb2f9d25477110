#!/bin/sh
# Writes the lists of all message ids from the sources: locale/VD2D.pot for Vadelclip, locale/vadelwatch.pot for
# Vadelwatch, whose sources are in src/watch, locale/vadelshard.pot for Vadelshard in src/shard.
#
# A message id is the literal argument of translateMessage or formatMessage. The template names the file of each id but
# no line, date or path of this machine, so it changes only when an id does.
#
#     scripts/update-catalogue-template.sh [directory]     writes to this directory instead of locale/
set -eu

place=$(realpath "${1:-$(dirname "$0")/../locale}")

cd "$(dirname "$0")/.."
trap 'rm -f "$place"/*.pot.new' EXIT

# write_template <domain> <program>: the list of the sources is read from standard input.
write_template() {
    cat >"$place/$1.pot.new" <<HEADER
# Message ids of $2.
# Keep the placeholders {0}, {1}, ... in each translation exactly as they are, braces included.
# Written by scripts/update-catalogue-template.sh.
msgid ""
msgstr ""
"Project-Id-Version: $2\n"
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
    LC_ALL=C sort |
        xgettext --files-from=- --language=C++ --from-code=UTF-8 --keyword --keyword=translateMessage \
            --keyword=formatMessage --omit-header --add-location=file --sort-by-file --no-wrap \
            --output=- >>"$place/$1.pot.new"
    mv "$place/$1.pot.new" "$place/$1.pot"
}

find src \( -name watch -o -name shard \) -prune -o -name '*.[ch]pp' -print | write_template VD2D Vadelclip
find src/watch -name '*.[ch]pp' | write_template vadelwatch Vadelwatch
find src/shard -name '*.[ch]pp' | write_template vadelshard Vadelshard
