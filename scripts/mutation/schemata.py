"""Writes all changes of a source into it, each behind the switch of mutants.h."""
import re
from pathlib import Path

SWITCH = Path(__file__).resolve().parent / "mutants.h"
MARK = re.compile(r"::mutation::on\((\d+)\)|/\*~(\d+)\*/")


def latin(text):
    """Offsets are of bytes: each byte is one character."""
    return text.encode("utf-8", "surrogateescape").decode("latin-1")


def outermost_first(place):
    """Of places at the same characters, those whose result no other expression takes
    stand outside of those that are expressions themselves."""
    form = 0 if place.kind in ("return", "guard") else 1 if "void()" in place.before else 2 if place.kind == "branch" else 3
    return (place.begin, -place.end, form, place.number)


def rewritten(source, places):
    """The source with these changes in it, and the numbers of those that cannot be in
    it together with the others. Each stands on lines of its own."""
    refused = set()

    def rendered(low, high, items):
        out, at, i = [], low, 0
        while i < len(items):
            place = items[i]
            i += 1
            if place.begin < at or place.end > high:
                refused.add(place.number)
                continue
            inside = []
            while i < len(items) and items[i].begin < place.end:
                inside.append(items[i])
                i += 1
            for each in inside:
                if each.begin < place.inner[0] or each.end > place.inner[1]:
                    refused.add(each.number)
            inside = [each for each in inside if each.number not in refused]
            out.append(source[at : place.begin])
            out.append("\n" + latin(place.before).replace("\1", str(place.number)) + "\n")
            out.append(rendered(*place.inner, inside))
            out.append("\n" + latin(place.after) + f"/*~{place.number}*/")
            at = place.end
        out.append(source[at:high])
        return "".join(out)

    text = rendered(0, len(source), sorted(places, key=outermost_first))
    return f'#include "{SWITCH}"\n' + text, refused


def regions(text, places):
    """Of each change, by number: its first line, the last of its changed text, and the
    last of what it stands around."""
    lines = {p.number: latin(p.before).count("\n") for p in places}
    begun, ended = {}, {}
    for number, line in enumerate(text.split("\n"), 1):
        for match in MARK.finditer(line):
            if match[1]:
                begun.setdefault(int(match[1]), number)
            else:
                ended[int(match[2])] = number
    return {n: (first, first + lines[n], ended[n]) for n, first in begun.items() if n in ended and n in lines}


def at_fault(where, line):
    """Which changes an error in this line means: those whose changed text it is in, or
    else the innermost that stands around it."""
    exact = {n for n, (first, last, _) in where.items() if first <= line <= last}
    if exact:
        return exact
    around = [(end - first, n) for n, (first, _, end) in where.items() if first <= line <= end]
    return {min(around)[1]} if around else set()
