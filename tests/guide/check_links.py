#!/usr/bin/env python3
"""Finds links in the documents that lead nowhere: files that are not there, and headings that nobody wrote.

check_links.py [FOLDER]
"""

import re
import sys
from pathlib import Path
from urllib.parse import unquote

CHECKOUT = Path(__file__).resolve().parents[2]
LINK = re.compile(r"!?\[(?:[^\[\]]|\[[^\]]*\])*\]\(([^()\s]*)\)")
HEADING = re.compile(r"^#{1,6} +(.*?) *#*$")


def prose_lines(path):
    """Number and text of each line outside of blocks of code, without what stands in backticks."""
    is_code = False
    for number, line in enumerate(path.read_text(encoding="utf-8").split("\n"), 1):
        if line.lstrip().startswith("```"):
            is_code = not is_code
        elif not is_code and not line.startswith("    "):
            yield number, line


def anchors(path):
    """What a heading is linked by: its words in lower case, joined by '-', numbered where they come again."""
    found = {}
    for _, line in prose_lines(path):
        heading = HEADING.match(line)
        if not heading:
            continue
        text = re.sub(r"!?\[([^\]]*)\]\([^)]*\)", r"\1", heading[1])
        name = re.sub(r"[^\w\- ]", "", text.lower()).replace(" ", "-")
        count = found.get(name, 0)
        found[name] = count + 1
        if count:
            found[f"{name}-{count}"] = 1
    return set(found)


def documents(folder):
    """All documents, but for those in build folders and hidden ones."""
    return sorted(path for path in folder.rglob("*.md")
                  if not any(part.startswith(".") or part == "build" for part in path.relative_to(folder).parts))


def check(folder):
    """A line for each problem."""
    problems = []
    for document in documents(folder):
        for number, line in prose_lines(document):
            for link in LINK.findall(re.sub(r"(`+)(?!`).*?(?<!`)\1(?!`)", "", line)):
                problem = problem_of(document, link, folder)
                if problem:
                    problems.append(f"{document.relative_to(folder)}:{number}: {problem}")
    return problems


def problem_of(document, link, folder):
    if re.match(r"^(https?|mailto):", link):
        return None
    name, _, anchor = link.partition("#")
    target = (document.parent / unquote(name)).resolve() if name else document
    if name.startswith("/") or not target.is_relative_to(folder.resolve()):
        return f"{link} leads out of the project"
    if not target.exists():
        return f"{link}: there is no {name}"
    if anchor and (target.suffix != ".md" or anchor not in anchors(target)):
        return f"{link}: there is no heading #{anchor}"
    return None


def main():
    problems = check(Path(sys.argv[1]) if len(sys.argv) > 1 else CHECKOUT)
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
