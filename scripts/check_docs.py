#!/usr/bin/env python3
"""Fails on a path named in the documents that does not exist. A path is a link to a file, or a word
in backquotes or in a shell block, that has a known ending, or a slash and a small letter (1/3 is a
fraction); * stands for any name."""
import pathlib
import re
import sys

DOCUMENTS = ["*.md", "docs/**/*.md", "tests/**/*.md", "bench/**/*.md", "fuzz/**/*.md"]
ENDINGS = ("h", "cpp", "inc", "py", "sh", "md", "session", "txt", "json")
PATH = re.compile(r"(?:\./)?[\w.*-]+(?:/[\w.*-]+)*/?")


def named(text):
    for target in re.findall(r"\]\(([^)#]+)[^)]*\)", text):
        if "://" not in target:
            yield target
    blocks = re.findall(r"^```(\w*)\n(.*?)^```", text, re.M | re.S)
    quoted = re.findall(r"`([^`\n]+)`", re.sub(r"^```.*?^```", "", text, flags=re.M | re.S))
    for words in quoted + [body for kind, body in blocks if kind == "sh"]:
        for word in words.split():
            ending = word.rsplit(".", 1)[-1]
            if PATH.fullmatch(word) and ("/" in word and re.search("[a-z]", word) or ending in ENDINGS):
                yield word


def main():
    root, faults = pathlib.Path("."), []
    for document in (path for pattern in DOCUMENTS for path in root.glob(pattern)):
        for word in named(document.read_text()):
            path = word.removeprefix("./").rstrip("/")
            made = path.split("/")[0] == "build"
            # Within the tree from its top, from src/ (a room), or from the document's own folder.
            if not made and not any(any(base.glob(path)) for base in (root, root / "src", document.parent)):
                faults.append(f"{document}: there is no {word}")
    print("\n".join(faults) or "every path is there")
    return bool(faults)


if __name__ == "__main__":
    sys.exit(main())
