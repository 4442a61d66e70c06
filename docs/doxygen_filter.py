#!/usr/bin/env python3
"""Reads a public header the way Doxygen should: as its developers wrote it.

The headers are commented in plain // prose, one comment above what it
describes (or trailing it on the same line), and one comment may describe a
run of declarations written together (getter and setter, a family of
overloads). This filter, Doxygen's INPUT_FILTER, turns those comments into
Doxygen comments and such runs into member groups whose documentation is
shared, so that only a declaration with no comment at all is undocumented.
The file's own comment above the include guard becomes the file's
description. Prints the filtered header to standard output.
"""

import re
import sys

COMMENT = re.compile(r"^(\s*)//(?!/)\s?(.*)$")
TRAILING = re.compile(r"^(.*?[;,{])\s*//(?![/<])\s?(.*)$")
ACCESS = re.compile(r"^\s*(public|protected|private)\s*:")


def is_code(line):
    stripped = line.strip()
    return bool(stripped) and not stripped.startswith(("//", "#")) and not ACCESS.match(line) \
        and stripped not in ("};", "}")


def statement_end(lines, start):
    """Index of the last line of the declaration starting at lines[start]."""
    depth = 0
    for i in range(start, len(lines)):
        code = lines[i].split("//")[0]
        depth += code.count("{") + code.count("(") - code.count("}") - code.count(")")
        stripped = code.rstrip()
        if depth <= 0 and (stripped.endswith(";") or stripped.endswith("}")):
            return i
    return len(lines) - 1


def filter_header(lines):
    out = []
    i = 0
    seen_guard = False
    while i < len(lines):
        line = lines[i]
        if line.startswith("#ifndef") and not seen_guard:
            seen_guard = True
        match = COMMENT.match(line)
        if match and not line.strip().startswith("///"):
            # A comment block, and what follows it.
            block = []
            while i < len(lines) and COMMENT.match(lines[i]) and not lines[i].strip().startswith("///"):
                m = COMMENT.match(lines[i])
                block.append((m.group(1), m.group(2)))
                i += 1
            indent = block[0][0]
            if not seen_guard:
                out.append("/// @file")
                out.extend(f"/// {text}" for _, text in block)
                continue
            starts = []
            j = i
            while j < len(lines) and is_code(lines[j]) and not COMMENT.match(lines[j]):
                starts.append(j)
                j = statement_end(lines, j) + 1
            group = len(starts) > 1
            if group:
                out.append(f"{indent}///@{{")
            out.extend(f"{indent}/// {prose(text)}" for _, text in block)
            if group:
                out.extend(trailing(l) for l in lines[i:j])
                out.append(f"{indent}///@}}")
                i = j
            continue
        out.append(trailing(line))
        i += 1
    return out


def prose(text):
    # An indented line of a comment quotes code or a file literally.
    if text.startswith("  ") and "`" not in text:
        return f"  `{text.strip()}`"
    return text


def trailing(line):
    match = TRAILING.match(line)
    if match and not line.lstrip().startswith("//"):
        return f"{match.group(1)} ///< {match.group(2)}"
    return line


def main():
    with open(sys.argv[1], encoding="utf-8") as header:
        lines = header.read().split("\n")
    sys.stdout.write("\n".join(filter_header(lines)))


if __name__ == "__main__":
    main()
