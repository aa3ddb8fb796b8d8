"""Changes that mean the same as the original, by their address, each group below its
reason:

  # Why these mean the same.
  file | function | kind | change | which of its like in the function

The address has no line: it stays when the code around it changes."""


def read(file):
    """The addresses; one without a reason is an error."""
    found, reason = set(), False
    for number, line in enumerate(file.read_text().splitlines() if file.exists() else (), 1):
        line = line.strip()
        if line.startswith("#"):
            reason = True
        elif not line:
            reason = False
        elif not reason:
            raise SystemExit(f"mutation: {file.name}:{number}: no reason stands above")
        else:
            found.add(line)
    return found


def stale(listed, places, rooms):
    """What is listed for these rooms, but no longer to be found in them."""
    there = {p.address for p in places}
    return sorted(a for a in listed if rooms.of(a.split(" | ")[0]) and a not in there)
