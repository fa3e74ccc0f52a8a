#!/usr/bin/env python3
"""Keeps the picture of the layers true: fails on an include in src/ that points up or sideways, on
files that need each other, on a header that must not be compiled for one processor only, and on a
throw, a heap call or a print where the house has none."""
import graphlib
import pathlib
import re
import sys

# Rooms on one line do not know each other; each knows every line below it.
LAYERS = [["base"], ["kernels"], ["limbs"], ["bigint"], ["fraction"],
          ["eval", "output", "numtheory"], ["console"]]
RANK = {room: rank for rank, rooms in enumerate(LAYERS) for room in rooms}

# What the targets may know beside kernels/. These have no functions: an inline function would be
# compiled for one processor in target_*.cpp, and the linker might take that copy for all.
TARGETS_MAY_KNOW = {"base/attend.h", "base/radix.h"}
# What its headers and bodies may take from the system, for the same reason; the intrinsics are
# always inlined.
TARGETS_SYSTEM = {"arm_neon.h", "cstddef", "cstdint", "emmintrin.h", "immintrin.h"}

# Units (a header and its source are one) that need each other, and why they may.
KNOTS = {
    # The evaluator's recursion: an operand may be a bracket or a function of an expression.
    frozenset({"eval/calc", "eval/operators", "eval/builtins", "eval/operand", "eval/power",
               "eval/trigonometry"}),
}

# What stops a computation that nobody wants to wait for.
MAY_THROW = "base/interrupt.cpp"
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
INCLUDE = re.compile(r'^\s*#\s*include\s+(?:"([^"]+)"|<([^>]+)>)', re.M)


def bound(name):
    """Is a file compiled for one processor, or part of one that is?"""
    return name.startswith("kernels/target_") or name in TARGETS_MAY_KNOW or (
        name.startswith("kernels/") and not name.endswith(".cpp"))


def fault_of_include(root, name, other):
    """What is wrong with a file `name` that includes another of src/, if anything."""
    room, target = name.split("/")[0], other.split("/")[0]
    if not (root / other).is_file():
        return f"no such file under src/: {other}"
    if bound(name) and target != "kernels" and other not in TARGETS_MAY_KNOW:
        return f"targets must not know {other}"
    if other.endswith(".inc") and room != "kernels":
        return f"only kernels/ may include {other}"
    if target == "limbs" and RANK[room] > RANK["bigint"]:
        return f"only bigint/ hands limbs to the engine, not {room}/: {other}"
    if target != room and RANK[target] >= RANK[room]:
        return f"{room}/ must not know {other}"
    return None


def fault_of_system(name, header):
    """What is wrong with a header of the system that is compiled for one processor only."""
    return f"not everywhere: <{header}>" if bound(name) and header not in TARGETS_SYSTEM else None


def knots(graph):
    """The groups of units that need each other, in a graph of units and those they include."""
    reach = {}
    for unit in graph:
        seen, left = set(), [unit]
        while left:
            for other in graph.get(left.pop(), ()):
                if other not in seen:
                    seen.add(other)
                    left.append(other)
        reach[unit] = seen
    return {frozenset(o for o in seen if unit in reach.get(o, ())) for unit, seen in reach.items()
            if unit in seen}


def main():
    root = pathlib.Path("src")
    faults, files, units = [], {}, {}
    for path in sorted(p for p in root.rglob("*") if p.suffix in {".h", ".cpp", ".inc"}):
        name = path.relative_to(root).as_posix()
        room = name.split("/")[0]
        text = path.read_text()
        if room not in RANK:
            faults.append(f"{path}: a room that is not in the picture")
            continue
        for match in INCLUDE.finditer(text):
            other, system = match.groups()
            line = text.count("\n", 0, match.start(1) if other else match.start(2)) + 1
            fault = fault_of_include(root, name, other) if other else fault_of_system(name, system)
            if fault:
                faults.append(f"{path}:{line}: {fault}")
            if other:
                files.setdefault(name, set()).add(other)
                unit, target = name.rsplit(".", 1)[0], other.rsplit(".", 1)[0]
                if unit != target:
                    units.setdefault(unit, set()).add(target)
        # Blanked, not cut, so that the line numbers stay.
        code = NOT_CODE.sub(lambda m: re.sub(r"[^\n]", " ", m[0]), text)
        rules = {} if name == MAY_THROW else {"throw": r"\bthrow\b"}
        if name not in MAY_ALLOCATE:
            rules["heap"] = HEAP
        if room not in MAY_PRINT:
            rules["print"] = PRINT
        for rule, pattern in rules.items():
            for match in re.finditer(pattern, code):
                faults.append(f"{path}:{code.count(chr(10), 0, match.start()) + 1}: {rule}: {match[0]}")

    try:
        graphlib.TopologicalSorter(files).prepare()
    except graphlib.CycleError as circle:
        faults.append("circle: " + " <- ".join(circle.args[1]))
    for knot in knots(units):
        if not any(knot <= named for named in KNOTS):
            faults.append("knot: " + ", ".join(sorted(knot)))
    print("\n".join(faults) or "the picture holds")
    return bool(faults)


if __name__ == "__main__":
    sys.exit(main())
