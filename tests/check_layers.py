#!/usr/bin/env python3
"""Keeps the picture of the layers true: fails on an include in src/ that points up or sideways, on
a circle of includes, and on a throw, a heap call or a print where the house has none."""
import graphlib
import pathlib
import re
import sys

# Rooms on one line do not know each other; each knows every line below it.
LAYERS = [["base"], ["limbs"], ["bigint"], ["fraction"], ["eval", "output", "numtheory"], ["console"]]
RANK = {room: rank for rank, rooms in enumerate(LAYERS) for room in rooms}

# Files that may take memory: start-up and the entry of a script lay out all of it.
MAY_ALLOCATE = {"console/process.cpp", "console/storage.cpp"}
MAY_PRINT = {"base", "console", "output"}

# A new with an address takes no memory.
HEAP = (r"\bnew\b(?!\s*\((?!std::nothrow))|\bmake_(?:unique|shared)\b"
        r"|\b(?:malloc|calloc|realloc|aligned_alloc|mmap|strdup)\s*\("
        r"|\bstd::(?:vector|string|deque|list|map|set|unordered_\w+|function|\w*stringstream)\b")
PRINT = (r"\b(?:v?f?printf|f?puts|f?putc|putchar|fwrite|perror)\s*\(|\bstd::(?:cout|cerr|clog)\b"
         r"|(?<!\w)::write\s*\(")
# Includes, comments, strings and characters; digit separators are no quotes.
NOT_CODE = re.compile(r"#\s*include[^\n]*|//[^\n]*|/\*.*?\*/|" r'"(?:\\.|[^"\\\n])*"'
                      r"|(?<![0-9a-fA-F])'(?:\\.|[^'\\\n])+'", re.S)


def main():
    root = pathlib.Path("src")
    faults, graph = [], {}
    for path in sorted(p for p in root.rglob("*") if p.suffix in {".h", ".cpp"}):
        name = path.relative_to(root).as_posix()
        room = name.split("/")[0]
        text = path.read_text()
        if room not in RANK:
            faults.append(f"{path}: a room that is not in the picture")
            continue
        for match in re.finditer(r'^\s*#\s*include\s+"([^"]+)"', text, re.M):
            other = match[1]
            line = text.count("\n", 0, match.start(1)) + 1
            graph.setdefault(name, []).append(other)
            if not (root / other).is_file():
                faults.append(f"{path}:{line}: no such file under src/: {other}")
            elif other.split("/")[0] != room and RANK[other.split("/")[0]] >= RANK[room]:
                faults.append(f"{path}:{line}: {room}/ must not know {other}")
        # Blanked, not cut, so that the line numbers stay.
        code = NOT_CODE.sub(lambda m: re.sub(r"[^\n]", " ", m[0]), text)
        rules = {"throw": r"\bthrow\b"}
        if name not in MAY_ALLOCATE:
            rules["heap"] = HEAP
        if room not in MAY_PRINT:
            rules["print"] = PRINT
        for rule, pattern in rules.items():
            for match in re.finditer(pattern, code):
                faults.append(f"{path}:{code.count(chr(10), 0, match.start()) + 1}: {rule}: {match[0]}")

    try:
        graphlib.TopologicalSorter(graph).prepare()
    except graphlib.CycleError as circle:
        faults.append("circle: " + " <- ".join(circle.args[1]))
    print("\n".join(faults) or "the picture holds")
    return bool(faults)


if __name__ == "__main__":
    sys.exit(main())
